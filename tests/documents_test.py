#!/usr/bin/python3
"""Checks that the documents show what the program prints, and name what is there: the links, and the
paths between backticks that begin with a folder of the project.

A fenced block whose first line begins with "$ " is a session: its commands are run, and what stands
below each must be what it prints, standard error included. The sessions of a document are run one
after the other in a folder with the files of examples/, so that a later one finds what an earlier
one has written.

  ...              a line of output with nothing else stands for any lines. A command whose output
                   is left out so must succeed.
  \\                at the end of a command's line, and <<END in it: it goes on in the next lines.
  <!-- not run     on a line before the block, as in "<!-- not run: needs a server -->": none of
                   its commands is run.

Usage: documents_test.py [--update] PROGRAM PROJECT DOCUMENT...
With --update what the program prints is written into the documents, and the difference is shown. Of a
command that fails it is written only where "error" stands in what the document shows of it, and of
one that crashes never.
"""

import difflib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

SECONDS = 120  # that a command may take
LEFT_OUT = "..."
FENCE = re.compile(r"( *)```")
NOT_RUN = "<!-- not run"


class Command:
    """A command of a document, and the output that stands below it."""

    def __init__(self, line, text):
        self.line = line  # of the document, from 0
        self.text = text
        self.output = []
        self.begin = self.end = 0  # the lines of the document with the output


def line_before(lines, at):
    """The last line that is not empty before a line."""
    before = [line for line in lines[:at] if line.strip()]
    return before[-1].strip() if before else ""


def sessions(lines):
    """The commands of a document, with the indentation of the block that each stands in."""
    at = 0
    while at < len(lines):
        fence = FENCE.match(lines[at])
        if not fence:
            at += 1
            continue
        indentation = len(fence[1])
        end = next((i for i in range(at + 1, len(lines)) if FENCE.match(lines[i])), len(lines))
        block = [line[indentation:] for line in lines[at + 1 : end]]
        if block and block[0].startswith("$ ") and not line_before(lines, at).startswith(NOT_RUN):
            for command in commands(block, at + 1):
                yield command, indentation
        at = end + 1


def commands(block, first):
    """The commands of a block that begins at that line of the document."""
    found = []
    at = 0
    while at < len(block):
        command = Command(first + at, block[at][2:])
        at += 1
        while at < len(block) and goes_on(command.text):
            command.text += "\n" + block[at].removeprefix("> ")
            at += 1
        command.begin = first + at
        while at < len(block) and not block[at].startswith("$ "):
            command.output.append(block[at])
            at += 1
        command.end = first + at
        found.append(command)
    return found


def goes_on(text):
    """Whether a command is not complete yet."""
    here = re.search(r"<<-? *['\"]?(\w+)", text)
    return text.endswith("\\") or (here is not None and here[1] not in text.split("\n")[1:])


def run(command, folder, program):
    """What a command prints, by lines, and its exit status; None where it runs too long."""
    environment = {"PATH": f"{program.parent}:/usr/bin:/bin", "HOME": folder, "LC_ALL": "C.UTF-8"}
    environment.update({name: os.environ[name] for name in os.environ if name.endswith("SAN_OPTIONS")})
    try:
        done = subprocess.run(
            ["bash", "-o", "pipefail", "-c", command.text],
            cwd=folder,
            env=environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            timeout=SECONDS,
            check=False,
        )
    except subprocess.TimeoutExpired:
        return [f"(more than {SECONDS} seconds)"], None
    return done.stdout.decode("utf-8", "replace").splitlines(), done.returncode


def has_crashed(status):
    """Whether a command runs too long, or ended by a signal: not by that of a pipe without a reader."""
    sigpipe = 128 + 13
    return status is None or status < 0 or (status > 128 and status != sigpipe)


def has_failed(command, status):
    """Whether a command has not done what it was to do. To find a difference is no failure."""
    return status > (1 if re.match(r"(applydic )?diff\b", command.text) else 0)


def is_as_shown(shown, printed):
    pattern = "".join("(?:.*\n)*" if line == LEFT_OUT else re.escape(line) + "\n" for line in shown)
    return re.fullmatch(pattern, "".join(line + "\n" for line in printed)) is not None


def updated(shown, printed):
    """What is to be shown of an output: where its end was left out, that is left out again."""
    if shown and shown[-1] == LEFT_OUT and LEFT_OUT not in shown[:-1]:
        return printed[: len(shown) - 1] + [LEFT_OUT]
    return printed


def why_wrong(command, status):
    """What is wrong with a command, whatever it prints; nothing if that is to be compared."""
    left_out = LEFT_OUT in command.output
    if has_crashed(status) or (left_out and has_failed(command, status)):
        return f"ends with status {status}"
    return None


def why_not_written(command, printed, status):
    if has_failed(command, status) and not any("error" in line for line in command.output):
        return f"ends with status {status}, and no error is shown"
    if any(line.startswith(("$ ", "```")) for line in printed):
        return "prints lines that a block cannot hold"
    return None


def anchors(document):
    """The places of a document that links can name: its headings, without what is no letter."""
    headings = re.findall(r"^#+ +(.*)$", document.read_text(encoding="utf-8"), re.MULTILINE)
    return {re.sub(r"[^\w -]", "", heading).lower().replace(" ", "-") for heading in headings}


def leads_to_nothing(target, document):
    """Whether a link names no file, or no place in one."""
    path, _, anchor = target.partition("#")
    file = document.parent / path if path else document
    return not file.exists() or (anchor != "" and anchor not in anchors(file))


def wrong_names(text, document, project):
    """The links and paths of a document that lead nowhere."""
    folders = "|".join(path.name for path in project.iterdir() if path.is_dir() and path.name != "build")
    prose = re.sub(r"^ *```.*?^ *```", "", text, flags=re.MULTILINE | re.DOTALL)
    links = re.findall(r"\]\(((?!\w+:)[^)\s]+)\)", prose)
    paths = re.findall(rf"`((?:{folders})/[^`\s]*)", prose)
    return [link for link in links if leads_to_nothing(link, document)] + [
        path for path in paths if not any(project.glob(path))
    ]


class Documents:
    """Checks, or updates, one document after the other."""

    def __init__(self, program, project, update):
        self.program = program
        self.project = project
        self.update = update
        self.count = 0
        self.failures = 0

    def check(self, path):
        text = path.read_text(encoding="utf-8")
        for name in wrong_names(text, path, self.project):
            print(f"{path}: leads nowhere: {name}")
            self.failures += 1
        lines = text.split("\n")
        written = []  # the commands, with the lines to be shown below them
        with tempfile.TemporaryDirectory() as folder:
            for file in (self.project / "examples").rglob("*"):
                if file.is_file():
                    shutil.copy(file, folder)
            for command, indentation in sessions(lines):
                printed = self.check_command(path, command, folder)
                if printed is not None:
                    margin = " " * indentation
                    written.append((command, [margin + line if line else "" for line in printed]))
        for command, printed in reversed(written):
            lines[command.begin : command.end] = printed
        if written:
            path.write_text("\n".join(lines), encoding="utf-8")

    def check_command(self, path, command, folder):
        """Runs a command; gives what is to be shown of its output where that is another."""
        self.count += 1
        printed, status = run(command, folder, self.program)
        why = why_wrong(command, status)
        if why is None and is_as_shown(command.output, printed):
            return None
        print(f"{path}:{command.line + 1}: $ {command.text}")
        for line in difflib.unified_diff(command.output, printed, "shown", "printed", lineterm=""):
            print(f"  {line}")
        if self.update:
            why = why or why_not_written(command, printed, status)
            if why is None:
                return updated(command.output, printed)
        if why is not None:
            print(f"  The command {why}.")
        self.failures += 1
        return None


def main(arguments):
    update = arguments[:1] == ["--update"]
    if update:
        arguments = arguments[1:]
    if len(arguments) < 3:
        raise SystemExit(__doc__)
    program, project, *paths = (pathlib.Path(argument).resolve() for argument in arguments)
    documents = Documents(program, project, update)
    for path in paths:
        documents.check(path)
    if documents.count == 0:
        raise SystemExit("No session found: are these the documents?")
    print(f"{documents.count} commands in {len(paths)} documents, {documents.failures} failures")
    if not documents.failures:
        return
    if not update:
        print("If what commands print is right, run scripts/update documents")
    raise SystemExit(1)


if __name__ == "__main__":
    main(sys.argv[1:])
