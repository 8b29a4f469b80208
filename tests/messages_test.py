#!/usr/bin/python3
"""Checks that each message of the library, the host and the program has its help, and that no help is
of a message that is no more. Usage: messages_test.py PROJECT

What a message is, is seen by how the sources write it: a text that ends with "...", what is given to
ReportError and its like, and the texts of a statement that throws.
"""

import pathlib
import re
import sys

TEXTS = r'"(?:[^"\\]|\\.)*"(?:\s*"(?:[^"\\]|\\.)*")*'
REPORT = re.compile(r"\b(?:ReportError|ReportFileError|WarnVariable)\(\s*(" + TEXTS + r")\s*[,)]")
THROW = re.compile(r"\b(?:throw (?:FileError|SaveError|XmlError|Failure)|CannotRead|Fail|FailBySystem)\(([^;]*);")
# What a library says, and what the program says of its arguments.
OTHERS = {"mismatched tag", "no element found", "undefined entity", "No such file or directory"}
ARGUMENTS = {"'. Did you mean '"}


def text_of(literals):
    """The text of string literals that stand one behind the other, as people see it."""
    text = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', literals))
    return re.sub(r"\\(.)", r"\1", text.replace("\\\\", ""))


def without_comments(source):
    return re.sub(r"^\s*(//|#include).*$", "", source, flags=re.M)


def parts_of(text):
    """The parts of a message that a source may put together, without what differs."""
    return [part.strip(" .;:,()") for part in re.split(r"[:;] |\^\d|\{\}", text)]


def main():
    project = pathlib.Path(sys.argv[1])
    help_folder = project / "program/Help"
    table = without_comments((help_folder / "Messages.cpp").read_text(encoding="utf-8"))
    rows = [text_of(found) for found in re.findall(r"\{\s*(" + TEXTS + r"),\s*" + TEXTS + r",", table)]
    parts_of_rows = {part for row in rows for part in parts_of(row)}
    problems = []
    parts_of_sources = set()
    for path in sorted(p for part in ("backend", "standalone", "program") for p in (project / part).rglob("*.[ch]*")):
        if help_folder in path.parents or path.parent.name == "CommandLine":
            continue
        source = without_comments(path.read_text(encoding="utf-8"))
        texts = [text_of(found) for found in re.findall(TEXTS, source)]
        parts_of_sources.update(part for text in texts for part in parts_of(text))
        messages = [text for text in texts if text.endswith("...")]
        messages += [text_of(found) for found in REPORT.findall(source)]
        if path.parent.name != "Syntax":  # its other texts are advice
            for statement in THROW.findall(source):
                messages += [text_of(found) for found in re.findall(TEXTS, statement)]
        for text in messages:
            unknown = [p for p in parts_of(text) if len(p) > 8 and p not in parts_of_rows]
            if unknown and text not in ARGUMENTS:
                problems.append(f"{path.relative_to(project)}: no help for: {text}")
    for part in sorted(parts_of_rows - OTHERS):
        if len(part) > 8 and part not in parts_of_sources:
            problems.append(f"program/Help/Messages.cpp: no source has: {part}")
    print("\n".join(problems))
    print(f"{len(rows)} messages with help, {len(problems)} problems")
    sys.exit(1 if problems or len(rows) < 60 else 0)


if __name__ == "__main__":
    main()
