"""Measures how well and how quickly `applydic match` finds pairs: on pairs of codebooks that are
made so that the right answer is known. Names are changed by one scheme, labels are reworded, cut,
misspelt and moved to another year, categories come and go, variables are dropped and added, and
some have the label of another one.
"""

import argparse
import json
import os
import random
import statistics
import subprocess
import sys
import tempfile
import time
from xml.sax.saxutils import escape

SYNONYMS = {
    "household": "family", "income": "earnings", "total": "overall", "confidence": "trust",
    "satisfaction": "contentment", "frequency": "how often", "job": "work", "children": "kids",
    "current": "present", "important": "essential", "respondent": "person", "often": "frequently",
    "government": "administration", "believe": "think", "support": "favour", "number": "count",
}
TOPICS = """income trust health education housing transport climate religion politics media work
leisure family migration crime pension welfare taxes science sports culture technology energy food
water language neighbourhood friendship volunteering savings debt childcare insurance retirement
elections parties parliament police courts army church unions banks companies newspapers television
radio internet hospitals schools universities""".split()
HEADS = """total current previous usual main second last first average highest lowest expected
perceived preferred monthly weekly daily yearly net gross""".split()
ASPECTS = """satisfaction with|confidence in|frequency of|importance of|number of hours for|
expenses for|opinion on|interest in|knowledge of|experience with|support for more|concern about|
time spent on|access to|distance to|quality of|reason for leaving|participation in|change of|
worries about the future of""".replace("\n", "").split("|")
PLACES = """at home|at work|in the country|in the region|in Europe|last month|last year|
in childhood|before the pandemic|since the last interview|for the household|for the respondent|
for the partner|for the children|in the neighbourhood|on weekends|on weekdays|
according to the interviewer""".replace("\n", "").split("|")
SCALES = [
    ["Strongly agree", "Agree", "Neither agree nor disagree", "Disagree", "Strongly disagree"],
    ["Yes", "No"],
    ["Never", "Seldom", "Sometimes", "Often", "Always"],
    ["Very satisfied", "Satisfied", "Dissatisfied", "Very dissatisfied"],
    ["Mentioned", "Not mentioned"],
]
GENERIC = ["Other, please specify", "Don't know", "Remarks of the interviewer", "Flag", "Weight"]


class Variable:
    """One variable of a file, and what it is called in both."""
    def __init__(self, number):
        self.number = number
        self.label = None
        self.question = None
        self.values = []
        self.string = False


def make_label(rng, used):
    for _ in range(50):
        label = f"{rng.choice(ASPECTS)} {rng.choice(TOPICS)}"
        if rng.random() < 0.6:
            label = f"{rng.choice(HEADS)} {label}"
        if rng.random() < 0.7:
            label += f" {rng.choice(PLACES)}"
        if rng.random() < 0.2:
            label += " 2024"
        if label not in used:
            break
    used.add(label)
    return label[0].upper() + label[1:]


def make_values(rng):
    if rng.random() < 0.3:
        return []
    if rng.random() < 0.7:
        scale = list(enumerate(rng.choice(SCALES), 1))
        return scale + [(9, "No answer")] if rng.random() < 0.7 else scale
    words = rng.sample(TOPICS, rng.randint(3, 9))
    return [(i, w.capitalize()) for i, w in enumerate(words, 1)]


def make_variables(rng, count):
    variables = []
    used = set()
    while len(variables) < count:
        kind = rng.random()
        if kind < 0.08:  # a battery: items of one question, all with the same values
            stem = make_label(rng, used)
            question = f"The following is about: {stem.lower()}. What do you say of each?"
            values = list(enumerate(rng.choice(SCALES), 1))
            for topic in rng.sample(TOPICS, rng.randint(3, 12)):
                variable = Variable(len(variables))
                variable.label, variable.question = f"{stem}: {topic}", question
                variable.values = values
                variables.append(variable)
            continue
        variable = Variable(len(variables))
        if kind < 0.11:
            variable.label = rng.choice(GENERIC)
        elif kind < 0.14 and variables:  # a twin
            variable.label = rng.choice(variables[-20:]).label
        else:
            variable.label = make_label(rng, used)
        variable.values = make_values(rng)
        variable.string = not variable.values and rng.random() < 0.2
        if rng.random() < 0.3:
            variable.question = f"And now: what about {variable.label.lower()}, if you think of it?"
        variables.append(variable)
    return variables[:count]


def misspell(rng, label):
    long = [i for i, w in enumerate(label.split(" ")) if len(w) > 5]
    if not long:
        return label
    words = label.split(" ")
    at = rng.choice(long)
    letter = rng.randrange(1, len(words[at]) - 1)
    word = words[at]
    words[at] = rng.choice([
        word[:letter] + word[letter + 1:],
        word[:letter] + word[letter + 1] + word[letter] + word[letter + 2:],
        word[:letter] + word[letter] + word[letter:],
    ])
    return " ".join(words)


def reword(rng, label):
    """The label of a year later."""
    label = label.replace("2024", "2025")
    kind = rng.random()
    if kind < 0.15:
        for word, other in SYNONYMS.items():
            label = label.replace(word, other)
    elif kind < 0.22:
        label = label[:40].rstrip()
    elif kind < 0.32:
        label = misspell(rng, label)
    elif kind < 0.37:
        words = label.split(" ")
        rng.shuffle(words)
        label = " ".join(words)
    elif kind < 0.40:
        label = label.upper()
    return label


def later(rng, old):
    """The variable a year later."""
    new = Variable(old.number)
    new.label = reword(rng, old.label)
    new.question = old.question
    if new.question and rng.random() < 0.15:
        new.question = new.question.replace("And now: what", "What").replace("if you think of it", "please")
    new.values = list(old.values)
    new.string = old.string
    if new.values and rng.random() < 0.12:
        new.values.append((len(new.values) + 90, rng.choice(["Refused", "Not applicable", "Other"])))
    if len(new.values) > 3 and rng.random() < 0.05:
        del new.values[rng.randrange(len(new.values))]
    return new


# Names by scheme: of a variable's number, in the old and in the new file.


def stem(number):
    """A part of a name that says something, and no other has."""
    topic = TOPICS[number % len(TOPICS)][:6]
    return f"{topic}{number // len(TOPICS) + 1}" if number >= len(TOPICS) else topic


def code(rng):
    letters = "abcdefghijklmnopqrstuvwxyz"
    return "".join(rng.choice(letters) for _ in range(3)) + "".join(
        rng.choice(letters + "0123456789") for _ in range(5))


def by_position(format_of):
    """Names that count the variables of each file by themselves."""
    return lambda n, place, rng: format_of(place)


SCHEMES = {
    # name: (old name, new name) of (number, place in its file, rng); systematic or not
    "letter": (lambda n, p, r: f"CC{'CDE'[n % 3]}A_{n // 3:03}", lambda n, p, r: f"CC{'CDE'[n % 3]}C_{n // 3:03}", True),
    "wave letter": (lambda n, p, r: f"a{stem(n)}", lambda n, p, r: f"b{stem(n)}", True),
    "year suffix": (lambda n, p, r: f"q_{n}_2024", lambda n, p, r: f"q_{n}_2025", True),
    "short year": (lambda n, p, r: f"{stem(n)}24", lambda n, p, r: f"{stem(n)}25", True),
    "wave prefix": (lambda n, p, r: f"w3_{stem(n)}", lambda n, p, r: f"w4_{stem(n)}", True),
    "prefix added": (lambda n, p, r: stem(n), lambda n, p, r: f"s2_{stem(n)}", True),
    "suffix removed": (lambda n, p, r: f"{stem(n)}_r", lambda n, p, r: stem(n), True),
    "both ends": (lambda n, p, r: f"w3_q{n}_24", lambda n, p, r: f"w4_q{n}_25", True),
    "case and zeros": (lambda n, p, r: f"Item_{n}a", lambda n, p, r: f"ITEM{n:05}A", True),
    "number shifted": (lambda n, p, r: f"v{n + 1}", lambda n, p, r: f"v{n + 100001}", True),
    "renumbered": (by_position(lambda p: f"v{p + 1}"), by_position(lambda p: f"v{p + 1}"), False),
    "renumbered apart": (by_position(lambda p: f"v{p + 1}"), by_position(lambda p: f"n{p + 1}"), False),
    "year, renumbered": (by_position(lambda p: f"q_{p + 1}_2024"), by_position(lambda p: f"q_{p + 1}_2025"), False),
    "random": (lambda n, p, r: code(r), lambda n, p, r: code(r), False),
}


# What the new file says of its variables: labels; nothing; or nothing, while names break the scheme.
LABELS = ["reworded", "none", "none, moved"]


def write(path, variables, names, bare):
    with open(path, "w", encoding="utf-8") as out:
        out.write('<codeBook xmlns="ddi:codebook:2_5" version="2.5"><fileDscr ID="F1"/><dataDscr>\n')
        for i, (variable, name) in enumerate(zip(variables, names)):
            out.write(f'<var ID="V{i}" name="{escape(name)}" files="F1">')
            if not bare:
                out.write(f"<labl>{escape(variable.label)}</labl>")
                if variable.question:
                    out.write(f"<qstn><qstnLit>{escape(variable.question)}</qstnLit></qstn>")
                for value, label in variable.values:
                    out.write(f"<catgry><catValu>{value}</catValu><labl>{escape(label)}</labl></catgry>")
            kind = "character" if variable.string else "numeric"
            out.write(f'<varFormat type="{kind}"/></var>\n')
        out.write("</dataDscr></codeBook>\n")


def unique(names):
    seen = {}
    for i, name in enumerate(names):
        count = seen.setdefault(name.upper(), 0)
        seen[name.upper()] += 1
        if count:
            names[i] = f"{name}_{count}"
    return names


def disturb_numbers(rng, new, dropped, in_old, place):
    """Lets some names break the scheme: of neighbours that are swapped, and of variables that are
    added under the number of one that was dropped."""
    for a, b in zip(new[::2], new[1::2]):
        if rng.random() < 0.02:
            place[a.number], place[b.number] = place[b.number], place[a.number]
    added = [v.number for v in new if v.number not in in_old]
    for number, free in zip(added, sorted(dropped)):
        if rng.random() < 0.5:
            place[number], place[free] = place[free], place[number]


class Pair:
    """Two files of one scheme, with the truth."""
    def __init__(self, scheme, count, seed, folder, bare=False, disturbed=True):
        rng = random.Random(f"{scheme} {count} {seed} {bare}")
        old_name, new_name, _ = SCHEMES[scheme]
        all_variables = make_variables(rng, count + count // 14)
        kept = [v for v in all_variables if rng.random() < 0.93]
        dropped = {v.number for v in all_variables} - {v.number for v in kept}
        old = [v for v in all_variables if v.number in dropped or rng.random() < 0.93]
        new = [later(rng, v) for v in kept]
        place = {v.number: v.number for v in all_variables}
        if SCHEMES[scheme][2] and disturbed:
            disturb_numbers(rng, new, dropped, {v.number for v in old}, place)
        for _ in range(count // 200):  # blocks that have moved
            at, to = rng.randrange(len(new)), rng.randrange(len(new))
            block = new[at:at + 10]
            del new[at:at + 10]
            new[to:to] = block
        old_names = unique([old_name(v.number, p, rng) for p, v in enumerate(old)])
        new_names = unique([new_name(place[v.number], p, rng) for p, v in enumerate(new)])
        self.old, self.new = (os.path.join(folder, f) for f in ("old.xml", "new.xml"))
        write(self.old, old, old_names, False)
        write(self.new, new, new_names, bare)
        origin = {v.number: name for v, name in zip(old, old_names)}
        # Of each new variable: the old one that it comes from, if that is not its namesake.
        self.truth = {
            name: origin[v.number]
            for v, name in zip(new, new_names)
            if v.number in origin and origin[v.number].upper() != name.upper()
        }


def run(program, *arguments):
    """The output of the program, and how long it took. A difference is no failure."""
    start = time.perf_counter()
    done = subprocess.run([program, *arguments], stdout=subprocess.PIPE, check=False)
    if done.returncode > 1:
        sys.exit(f"{program} failed")
    return done.stdout, time.perf_counter() - start


class Score:
    """What came of one or more pairs of files."""
    def __init__(self):
        self.certain = self.right = self.right_or_uncertain = self.wanted = 0
        self.seconds = 0.0

    def add(self, program, pair):
        output, seconds = run(program, "match", "--json", pair.old, pair.new)
        proposals = json.loads(output)["proposals"]
        certain = [p for p in proposals if p["certain"]]
        self.certain += len(certain)
        self.right += sum(pair.truth.get(p["new"]) == p["old"] for p in certain)
        self.right_or_uncertain += sum(pair.truth.get(p["new"]) == p["old"] for p in proposals)
        self.wanted += len(pair.truth)
        self.seconds += seconds
        return proposals

    def precision(self):
        return self.right / self.certain if self.certain else 1.0

    def recall(self):
        return self.right / self.wanted if self.wanted else 1.0

    def recall_with_uncertain(self):
        return self.right_or_uncertain / self.wanted if self.wanted else 1.0


def measure_quality(arguments, scratch):
    """Prints a line for each scheme. Returns whether all reached what they are to reach."""
    reached = True
    print(f"{'names':<18}{'new labels':<13}{'certain':>8}{'precision':>11}{'recall':>8}{'uncertain too':>15}")
    for scheme in arguments.scheme or SCHEMES:
        systematic = SCHEMES[scheme][2]
        for labels in LABELS if systematic else LABELS[:1]:
            folder = os.path.join(arguments.k or scratch, f"{scheme} {labels}".replace(" ", "_"))
            os.makedirs(folder, exist_ok=True)
            score = Score()
            for seed in range(arguments.s, arguments.s + arguments.r):
                pair = Pair(scheme, arguments.n, seed, folder, labels != "reworded", labels != "none")
                proposals = score.add(arguments.program, pair)
            if arguments.k:
                with open(os.path.join(folder, "found.json"), "w", encoding="utf-8") as out:
                    json.dump({"truth": pair.truth, "proposals": proposals}, out, indent=1)
            # Where nothing but names is known, nothing tells of one that breaks the scheme.
            is_judged = labels != "none, moved"
            missed = is_judged and score.precision() < 0.98
            if systematic and labels == "reworded":
                missed = missed or score.recall() < 0.9
            reached = reached and not missed
            print(f"{scheme:<18}{labels:<13}{score.certain:>8}{score.precision():>11.4f}"
                  f"{score.recall():>8.3f}{score.recall_with_uncertain():>15.3f}{'   missed' if missed else ''}")
    return reached


class AlikePair:
    """Two files in which every variable says the same, so that each could be each."""
    def __init__(self, label, count, folder):
        text = f"<labl>{label}</labl>" if label else ""
        text += "".join(f"<catgry><catValu>{v}</catValu><labl>{l}</labl></catgry>" for v, l in ((1, "Yes"), (2, "No")))
        self.old, self.new = (os.path.join(folder, f"{name}.xml") for name in ("old", "new"))
        for path, name in ((self.old, "old{}"), (self.new, "x{}y")):
            with open(path, "w", encoding="utf-8") as out:
                variables = (f'<var name="{name.format(i)}">{text}</var>\n' for i in range(count))
                out.write(f'<codeBook><fileDscr/><dataDscr>{"".join(variables)}</dataDscr></codeBook>\n')


def measure_time(arguments, scratch):
    """Compares with the time of `diff` on the same files, in turn; the median of each counts."""
    reached = True
    print(f"{'names':<18}{'match':>8}{'diff':>8}{'ratio':>8}")
    for scheme in arguments.scheme or ["letter", "random", "renumbered", "alike", "alike, no label"]:
        if scheme.startswith("alike"):
            pair = AlikePair("" if "no" in scheme else "All the same", arguments.n, scratch)
        else:
            pair = Pair(scheme, arguments.n, arguments.s, scratch)
        times = {"match": [], "diff": []}
        for _ in range(arguments.r):
            for command, taken in times.items():
                taken.append(run(arguments.program, command, pair.old, pair.new)[1])
        match, diff = (statistics.median(times[command]) for command in ("match", "diff"))
        reached = reached and match <= 10 * diff
        print(f"{scheme:<18}{match:>8.2f}{diff:>8.2f}{match / diff:>8.1f}")
    return reached


def measure_commands(arguments, scratch):
    """Compares many commands on one source with one of them."""
    pair = Pair("letter", arguments.n, arguments.s, scratch)
    syntax = os.path.join(scratch, "all.txt")
    run(arguments.program, "match", "-o", syntax, pair.old, pair.new)
    with open(syntax, encoding="utf-8") as file:
        commands = [line for line in file if line.startswith("FROM")]
    times = {1: [], 519: [], len(commands): []}
    some = os.path.join(scratch, "some.txt")
    for _ in range(arguments.r):
        for count, taken in times.items():
            with open(some, "w", encoding="utf-8") as file:
                file.writelines(commands[:count])
            taken.append(run(arguments.program, "apply", "-q", "-n", "-f", some, pair.new)[1])
    one = statistics.median(times[1])
    print(f"{'commands':<18}{'seconds':>8}{'ratio':>8}")
    for count, taken in times.items():
        print(f"{count:<18}{statistics.median(taken):>8.2f}{statistics.median(taken) / one:>8.1f}")
    return statistics.median(times[519]) <= 2 * one


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("scheme", nargs="*", help="of names; all without any")
    parser.add_argument("-m", choices=["quality", "time", "commands"], default="quality", help="what is measured")
    parser.add_argument("-n", type=int, default=2000, help="variables")
    parser.add_argument("-s", type=int, default=1, help="seed")
    parser.add_argument("-r", type=int, default=1, help="rounds: pairs of files, or runs")
    parser.add_argument("-k", help="a folder to keep the last codebooks and what was proposed for them")
    arguments = parser.parse_args()
    measure = {"quality": measure_quality, "time": measure_time, "commands": measure_commands}[arguments.m]
    with tempfile.TemporaryDirectory() as scratch:
        sys.exit(0 if measure(arguments, scratch) else 1)


if __name__ == "__main__":
    main()
