"""Compares two builds of the program; see scripts/compare."""

import argparse
import collections
import multiprocessing
import pathlib
import shlex
import shutil
import subprocess
import sys
import tempfile

import runs

PROJECT = pathlib.Path(__file__).resolve().parent.parent
KEPT = PROJECT / "build" / "compare"
TIMEOUT = 120  # seconds that one call of a program may take
SHOWN = 20  # differences that are told in full


class Outcome:
    """What a program did with a run: of each command line the results by name, and the files."""
    def __init__(self, results, files):
        self.results = results
        self.files = files


def carry_out(program, run, folder):
    """Runs a program's command lines one after the other in a new folder of the run's files."""
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    for name, content in run.files.items():
        (folder / name).write_bytes(content)
    results = [
        call(program, arguments, run.standard_input, folder) for arguments in run.command_lines
    ]
    return Outcome(results, {path.name: path.read_bytes() for path in folder.iterdir()})


def call(program, arguments, standard_input, folder):
    """One call of a program."""
    try:
        done = subprocess.run([program, *arguments],
                              input=standard_input,
                              cwd=folder,
                              stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE,
                              timeout=TIMEOUT,
                              check=False)
    except subprocess.TimeoutExpired:
        return {"exit status": b"none in time", "standard output": b"", "standard error": b""}
    return {
        "exit status": str(done.returncode).encode(),
        "standard output": done.stdout,
        "standard error": done.stderr
    }


def differing(old, new):
    """The names of what differs in two groups of texts."""
    return [name for name in sorted(old.keys() | new.keys()) if old.get(name) != new.get(name)]


def first_difference(old, new):
    """The first line that differs, of two texts; None is a file that is not there."""
    if old is None or new is None:
        return " only of the " + ("new" if old is None else "old")
    old_lines, new_lines = old.splitlines(True), new.splitlines(True)
    common = 0
    while common < min(len(old_lines), len(new_lines)) and old_lines[common] == new_lines[common]:
        common += 1
    ends = [lines[common][:300] if common < len(lines) else b"" for lines in (old_lines, new_lines)]
    return "".join(
        f"\n    {title}, line {common + 1}: {end!r}" for title, end in zip(("old", "new"), ends))


def keep(run, outcomes, folder):
    """Writes a run's files and what both programs made of them."""
    contents = {folder / name: content for name, content in run.files.items()}
    contents[folder / "standard input"] = run.standard_input
    for title, outcome in outcomes.items():
        for name, content in outcome.files.items():
            contents[folder / title / name] = content
        for number, result in enumerate(outcome.results, 1):
            for name, content in result.items():
                contents[folder / title / f"{name} {number}"] = content
    for path, content in contents.items():
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)


def describe(run, outcomes, programs, folder):
    """Tells how the outcomes of a run differ; then its files are kept in the folder."""
    old, new = outcomes["old"], outcomes["new"]
    lines = []
    for number, arguments in enumerate(run.command_lines):
        was, now = old.results[number], new.results[number]
        names = differing(was, now)
        details = "".join(f"\n  {name}:{first_difference(was[name], now[name])}" for name in names)
        if number == len(run.command_lines) - 1:  # the others write no files
            for name in differing(old.files, new.files):
                details += f"\n  file {name}:" + first_difference(old.files.get(name),
                                                                  new.files.get(name))
        if not details:
            continue
        command = shlex.join([str(programs["new"]), *arguments])
        given = " < 'standard input'" if run.standard_input else ""
        lines.append(
            f"{run.name}: differs{details}\n  (cd {shlex.quote(str(folder))} && {command}{given})")
    if lines:
        keep(run, outcomes, folder)
    return "\n".join(lines)


def compare(task):
    """Compares the programs on one job: what to tell of it, and its features to be counted."""
    number, programs, job = task
    run = runs.make_run(job)
    with tempfile.TemporaryDirectory() as folder:
        # The same folder for both: paths that a program shows are the same.
        place = pathlib.Path(folder) / "run"
        outcomes = {title: carry_out(programs[title], run, place) for title in programs}
    difference = describe(run, outcomes, programs, KEPT / f"run_{number}")
    return difference, features(run, outcomes["old"]) if job[0] == "generated" else []


def features(run, outcome):
    """What is counted of a generated run: the totals show that the runs are of many kinds."""
    result = outcome.results[-1]
    found = ["exit status " + result["exit status"].decode()]
    if b"warning:" in result["standard error"]:
        found.append("with warnings")
    if any(
            run.files.get("working.xml") != outcome.files.get(name, run.files["working.xml"])
            for name in ("output.xml", "working.xml")):
        found.append("codebook changed")
    if max(map(len, run.files.values())) > 1 << 20:
        found.append("over 1 MB")
    return found


def main():
    parser = argparse.ArgumentParser(prog="scripts/compare",
                                     description="Compares two builds of the program.")
    parser.add_argument("old", metavar="OLD_APPLYDIC", type=pathlib.Path)
    parser.add_argument("new", metavar="NEW_APPLYDIC", type=pathlib.Path)
    parser.add_argument("folders",
                        metavar="FOLDER",
                        type=pathlib.Path,
                        nargs="*",
                        help="codebooks to try in pairs")
    parser.add_argument("--runs", type=int, default=1000, help="generated runs (1000)")
    parser.add_argument("--seed", type=int, default=1, help="what they are generated from (1)")
    options = parser.parse_intermixed_args()
    programs = {"old": options.old.resolve(), "new": options.new.resolve()}
    for program in programs.values():
        if not program.is_file():
            parser.error(f"{program} is no program")
    for folder in options.folders:
        if not any(folder.glob("*.xml")):
            parser.error(f"{folder} has no codebooks (*.xml)")

    shutil.rmtree(KEPT, ignore_errors=True)
    folders = [PROJECT / "examples", *(folder.resolve() for folder in options.folders)]
    jobs = runs.jobs(programs["old"], folders, options.runs, options.seed)
    tasks = ((number, programs, job) for number, job in enumerate(jobs, 1))
    count, differences = 0, 0
    counts = collections.Counter()
    with multiprocessing.Pool(2) as pool:
        for difference, found in pool.imap(compare, tasks, chunksize=4):
            count += 1
            counts.update(found)
            if difference:
                differences += 1
                print(difference if differences <= SHOWN else difference.split("\n")[0], flush=True)
    print("Generated: " + ", ".join(f"{name} {number}" for name, number in sorted(counts.items())))
    print(f"{count} runs compared, {differences} differ")
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main())
