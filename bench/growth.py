"""Measures how time and memory grow with each kind of thing that a document or a command can have
many of: the program is run on n and on 2n of them, and the ratio of the two is printed. What a run
takes with nothing in the document is taken off its time.

Usage: growth.py PROGRAM [KIND...]
"""

import os
import subprocess
import sys
import tempfile

TIMES = 3  # each run; the fastest counts


def codebook(inside="", file="", declarations=""):
    return (
        f"<codeBook xmlns='ddi:codebook:2_5' {declarations}>"
        f"<fileDscr ID='F1'>{file}</fileDscr><dataDscr>{inside}</dataDscr></codeBook>"
    )


def variables(n, inside="", attributes=""):
    return "".join(f"<var ID='V{i}' name='v{i}' {attributes}>{inside}</var>" for i in range(n))


def categories(n, value="{0}"):
    one = "<catgry><catValu>" + value + "</catValu><labl>label {0}</labl></catgry>"
    return "".join(one.format(i) for i in range(n))


def sets(n, name="s", members="V0"):
    return "".join(f"<varGrp ID='{name}G{i}' name='{name}{i}' var='{members}'/>" for i in range(n))


def one(inside, **more):
    return codebook(f"<var ID='V0' name='v0'>{inside}</var>", **more)


def notes(n, kind):
    return "".join(f"<notes {kind.format(i)}>text {i}</notes>" for i in range(n))


ATTRIBUTE = "type='VELA:attribute' subject='a{0}'"
MANY_VALUES = "type='VELA:attribute' subject='a'"
STRING = "<varFormat type='character' formatname='A32767'/>"
ALL = "FROM 's.xml' /FILEINFO ALL /NEWVARS"

# Of each kind: n, the source, the working document and the command, for so many.
KINDS = {
    "variables": (20000, lambda n: codebook(variables(n, "<labl>l</labl>")), lambda n: codebook(variables(n)), None),
    "new variables": (20000, lambda n: codebook(variables(n, "<labl>l</labl>")), lambda n: one(""), None),
    "new variables with a weight": (
        20000,
        lambda n: codebook(variables(n, "", "wgt-var='W'") + "<var ID='W' name='w'/>"),
        lambda n: codebook("<var ID='W' name='w'/>"),
        None,
    ),
    "new variables with a new weight": (
        20000,
        lambda n: codebook(variables(n, "", "wgt-var='W'") + "<var ID='W' name='w'/>"),
        lambda n: one(""),
        None,
    ),
    "documented variables": (
        20000,
        lambda n: codebook(variables(n, "<qstn><qstnLit>Why?</qstnLit></qstn>")),
        lambda n: codebook(variables(n)),
        None,
    ),
    "categories": (100000, lambda n: one(categories(n)), lambda n: one(""), None),
    "categories that are there": (
        100000,
        lambda n: one(categories(n)),
        lambda n: one(categories(n).replace("label", "old")),
        None,
    ),
    "categories merged": (
        50000,
        lambda n: one(categories(n)),
        lambda n: one(categories(n, "-{0}")),
        "FROM 's.xml' /VARINFO VALLABELS=MERGE",
    ),
    "categories of a wide string": (
        20000,
        lambda n: one(categories(n) + STRING),
        lambda n: one(categories(n, "x{0}") + STRING),
        "FROM 's.xml' /VARINFO VALLABELS=MERGE",
    ),
    "missing values": (
        50000,
        lambda n: one("<invalrng>" + "".join(f"<item VALUE='{i}'/>" for i in range(n)) + "</invalrng>"),
        lambda n: one(categories(n)),
        None,
    ),
    "sets": (20000, lambda n: codebook(sets(n) + variables(1)), lambda n: codebook(sets(n, "t") + variables(1)), None),
    "sets in sets": (
        20000,
        lambda n: codebook(
            "".join(f"<varGrp ID='G{i}' name='g{i}' varGrp='G{i + 1}'/>" for i in range(n)) + variables(1)
        ),
        lambda n: one(""),
        None,
    ),
    "members": (
        50000,
        lambda n: codebook(sets(1, "s", " ".join(f"V{i}" for i in range(n))) + variables(n)),
        lambda n: codebook(variables(n)),
        None,
    ),
    "documents": (100000, lambda n: one("", file=notes(n, "")), lambda n: one("", file=notes(n, "ID='n{0}'")), None),
    "attributes": (
        40000,
        lambda n: one(notes(n, ATTRIBUTE)),
        lambda n: one(notes(n, "type='VELA:attribute' subject='b{0}'")),
        "FROM 's.xml' /VARINFO ATTRIBUTES=MERGE",
    ),
    "values of an attribute": (100000, lambda n: one(notes(n, MANY_VALUES)), lambda n: one(""), None),
    "notes of a variable": (200000, lambda n: one(notes(n, "")), lambda n: one(""), None),
    "data files": (
        200000,
        lambda n: one(""),
        lambda n: codebook("<var name='v0' files='F1'/>").replace(
            "<dataDscr>", "".join(f"<fileDscr ID='X{i}'/>" for i in range(n)) + "<dataDscr>"
        ),
        None,
    ),
    "files of a variable": (
        500000,
        lambda n: one(""),
        lambda n: codebook("<var name='v0' files='" + "F1 " * n + "'/>").replace("<dataDscr>", "<fileDscr/><dataDscr>"),
        None,
    ),
    "namespaces": (
        40000,
        lambda n: codebook("".join(f"<var name='v{i}' xmlns:p{i}='u{i}'/>" for i in range(n))),
        lambda n: codebook("".join(f"<var name='v{i}' xmlns:p{i}='u{i}'/>" for i in range(n))),
        None,
    ),
    "nested elements": (200000, lambda n: one("<txt>" + "<a>" * n + "x" + "</a>" * n + "</txt>"), lambda n: one(""), None),
    "nested elements on lines": (
        200000,
        lambda n: one("<txt>" + "<a>\n" * n + "x" + "</a>\n" * n + "</txt>"),
        lambda n: one(""),
        None,
    ),
    "attributes of an element": (
        400000,
        lambda n: one("<labl>l</labl>"),
        lambda n: codebook("<var name='v0' " + " ".join(f"a{i}='x'" for i in range(n)) + "/>"),
        None,
    ),
    "labels of an element": (200000, lambda n: one("<labl>l</labl>" * n), lambda n: one("<labl/>" * n), None),
    "commands": (50000, lambda n: one("<labl>l</labl>"), lambda n: one(""), lambda n: "FROM *.\n" * n),
    "names in a list": (
        40000,
        lambda n: codebook(variables(n)),
        lambda n: codebook(variables(n)),
        lambda n: "FROM 's.xml' /SOURCE VARIABLES=" + "\n".join(f"v{i}" for i in range(n)),
    ),
    "new names": (
        20000,
        lambda n: one("<labl>l</labl>"),
        lambda n: codebook("<var name='x'/>"),
        lambda n: "FROM 's.xml' /SOURCE VARIABLES=v0 /TARGET VARIABLES=" + "\n".join(f"n{i}" for i in range(n)) + " /NEWVARS",
    ),
    "texts like names of tags": (
        1000000,
        lambda n: one("<labl>l</labl>"),
        lambda n: one(f"<txt>{'labl ' * n}</txt>", file=f"<notes>{'var ' * n}</notes>"),
        None,
    ),
    "texts like tags without an end": (
        1000000,
        lambda n: one("<labl>l</labl>"),
        lambda n: one("<txt><![CDATA[" + '<labl "" ' * n + '"]]></txt>') + "\n",
        None,
    ),
    "long text": (8000000, lambda n: one("<labl>" + "l" * n + "</labl>"), lambda n: one(""), None),
}


# Starts the program from a process of its own: a child counts the memory of the one that started it.
LAUNCH = """
import os, subprocess, sys
child = subprocess.Popen(sys.argv[1:], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
_, status, usage = os.wait4(child.pid, 0)
print(status, usage.ru_utime + usage.ru_stime, usage.ru_maxrss)
"""


def run(program, folder, source, working, command):
    """The seconds of the processor and the megabytes of the fastest of several runs."""
    for name, text in (("s.xml", source), ("w.xml", working), ("c.txt", command)):
        with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
            file.write(text)
    best = None
    for _ in range(TIMES):
        launched = subprocess.run(
            [sys.executable, "-S", "-c", LAUNCH, program, "apply", "-f", "c.txt", "-o", "o.xml", "w.xml"],
            cwd=folder,
            capture_output=True,
            check=True,
            text=True,
        )
        status, seconds, memory = launched.stdout.split()
        if int(status) != 0:
            raise SystemExit(f"growth.py: exit status {os.waitstatus_to_exitcode(int(status))}")
        taken = (float(seconds), int(memory) / 1024)
        best = taken if best is None or taken < best else best
    return best


def main(program, kinds):
    program = os.path.abspath(program)
    print("| kind | n | s | 2n: s | ratio | MB | 2n: MB | ratio |")
    print("| --- | --- | --- | --- | --- | --- | --- | --- |")
    with tempfile.TemporaryDirectory() as folder:
        nothing = run(program, folder, one(""), one(""), ALL)[0]
        for kind in kinds or KINDS:
            n, source, working, command = KINDS[kind]
            taken = []
            for count in (n, 2 * n):
                text = command(count) if callable(command) else command or ALL
                seconds, memory = run(program, folder, source(count), working(count), text)
                taken.append((max(seconds - nothing, 0.001), memory))
            (time1, memory1), (time2, memory2) = taken
            print(
                f"| {kind} | {n:,} | {time1:.2f} | {time2:.2f} | {time2 / time1:.1f} | "
                f"{memory1:.1f} | {memory2:.1f} | {memory2 / memory1:.1f} |",
                flush=True,
            )


if __name__ == "__main__":
    if len(sys.argv) < 2:
        raise SystemExit(__doc__)
    main(sys.argv[1], sys.argv[2:])
