"""The runs that two builds are compared on: files, and the command lines for them."""

import functools
import json
import random
import subprocess

from codebooks import Codebook, break_document
from commands import CommandWriter

USAGE = [[], ["--help"], ["apply", "--help"], ["show", "--help"], ["--version"], ["show"],
         ["show", "nowhere.xml"], ["show", "."], ["show", "working.xml#"],
         ["show", "working.xml#F9"], ["list", "working.xml"], ["apply", "working.xml"],
         ["apply", "-c", "FROM *", "working.xml"],
         ["apply", "-c", "FROM *", "-n", "-i", "working.xml"],
         ["apply", "-f", "nowhere", "-n", "working.xml"],
         ["apply", "-c", "FROM *", "-f", "-", "-n", "working.xml"],
         ["apply", "-c", "", "-n", "working.xml"],
         ["apply", "-c", "FROM 'source.xml'", "-o", "source.xml", "working.xml"],
         ["apply", "-c", "FROM *", "-o", "no/folder.xml", "working.xml"],
         ["apply", "--json=1", "working.xml"]]
LARGE_EVERY = 50  # generated runs


class Run:
    """The program is called with each of the command lines in a folder of the files."""
    def __init__(self, name, files, command_lines, standard_input=b""):
        self.name = name
        self.files = files  # bytes by name
        self.command_lines = command_lines
        self.standard_input = standard_input


def jobs(program, folders, count, seed):
    """What make_run makes the runs of, in their order."""
    yield from (("usage", arguments) for arguments in USAGE)
    for folder in folders:
        paths = sorted(folder.glob("*.xml"))
        yield from (("file", path) for path in paths)
        for source in paths:
            for working in paths:
                yield from (("pair", program, source, working, form)
                            for form in range(len(pair_commands([], []))))
    yield from (("generated", seed, number) for number in range(1, count + 1))


def make_run(job):
    """The run of a job."""
    return {"usage": _usage, "file": _file, "pair": _pair, "generated": generated}[job[0]](*job[1:])


def _usage(arguments):
    files = {name: Codebook(random.Random(name)).bytes for name in ("source.xml", "working.xml")}
    return Run("usage " + " ".join(arguments), files, [arguments])


def _file(path):
    name = path.name
    return Run(f"show {path.parent.name}/{name}", {name: path.read_bytes()},
               [["show", name], ["show", "--json", name]])


def pair_commands(source, working):
    """The command lines' ends of a pair, by the names of the variables of both."""
    first, last = (source[0], source[len(source) // 2]) if source else ("a", "b")
    target = working[-1] if working else "c"
    return [
        ["FROM 'source.xml'"],
        ["FROM 'source.xml' /FILEINFO ALL /VARINFO ALL"],
        ["FROM 'source.xml' /FILEINFO ALL /VARINFO ALL /NEWVARS"],
        ["FROM 'source.xml' /VARINFO ALL VALLABELS=MERGE ATTRIBUTES=MERGE", "--json"],
        ["FROM 'source.xml' /FILEINFO MRSETS=REPLACE VARSETS=REPLACE DOCUMENTS=REPLACE"],
        [f"FROM 'source.xml' /SOURCE VARIABLES={first} TO {last} /NEWVARS"],
        [f"FROM 'source.xml' /SOURCE VARIABLES={last} /TARGET VARIABLES={target}"],
        [f"FROM 'source.xml' /NEWVARS /SOURCE VARIABLES={first} /TARGET VARIABLES={target} n1 TO n3"],
        [f"FROM * /SOURCE VARIABLES={target} /TARGET VARIABLES=ALL /VARINFO ALL VALLABELS=MERGE"],
    ]


def _pair(program, source, working, form):
    command = pair_commands(_names(program, source), _names(program, working))[form]
    files = {"source.xml": source.read_bytes(), "working.xml": working.read_bytes()}
    name = f"{source.parent.name}: {source.name} onto {working.name}, command {form + 1}"
    return Run(name, files, [["apply", "-c", *command, "-o", "output.xml", "working.xml"]])


@functools.lru_cache(maxsize=None)
def _names(program, path):
    shown = subprocess.run([program, "show", "--json", path],
                           stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL,
                           check=False)
    return [v["name"] for v in json.loads(shown.stdout)["variables"]
           ] if shown.returncode == 0 else []


def generated(seed, number):
    """A random run, the same for the same seed and number."""
    rng = random.Random(f"{seed}/{number}")
    copies = rng.choice([80, 200, 300]) if number % LARGE_EVERY == 0 else 0
    source = Codebook(rng, copies)
    working = Codebook(rng, copies * rng.randint(0, 1) if rng.random() < 0.5 else copies)
    files = {"source.xml": source.bytes, "working.xml": working.bytes}
    if rng.random() < 0.08:
        broken = rng.choice(sorted(files))
        files[broken] = break_document(rng, files[broken])
    if rng.random() < 0.03:
        files["source.xml#F1"] = working.bytes  # a file whose whole name this is comes before an ID

    working_id = rng.choice([""] * 3 + working.files + ["F9"] * (rng.random() < 0.03))
    working_name = "working.xml" + (f"#{working_id}" if working_id else "")
    source_name = "source.xml" + (f"#{source.files[-1]}"
                                  if source.files and source.files[-1] else "")
    writer = CommandWriter(rng, working.names_of(working_id), source.names_of, source.files)
    if copies and rng.random() < 0.6:  # as much as can be in a large codebook
        command = "FROM 'source.xml' /FILEINFO ALL /VARINFO ALL VALLABELS=MERGE /NEWVARS"
        apply, standard_input = ["apply", "-c", command, "-o", "output.xml"], b""
    else:
        apply, standard_input = _apply(rng, writer, files)
    shows = [["show", *json_too, name]
             for name in (source_name, working_name)
             for json_too in ([], ["--json"])]
    return Run(f"generated {number} of seed {seed}", files, shows + [apply + [working_name]],
               standard_input)


def _apply(rng, writer, files):
    """A command line without its end, and the standard input; adds the syntax file."""
    wrong = rng.random() < 0.15
    standard_input = b""
    way = rng.choice(["-c", "-c", "-f", "-"])
    if way == "-c":
        arguments = ["apply", "-c", writer.command(wrong)]
    else:
        text = writer.commands(wrong).encode(rng.choice(["utf-8", "utf-8", "utf-8-sig"]))
        if way == "-f":
            files["commands.txt"] = text
        else:
            standard_input = text
        arguments = ["apply", "-f", "commands.txt" if way == "-f" else "-"]
    arguments += rng.choice([["-o", "output.xml"]] * 10 + [["-i"], ["-n"]])
    return arguments + ["--json"] * (rng.random() < 0.2), standard_input
