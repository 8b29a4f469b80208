"""Random commands: all subcommands, keywords and lists, in all the ways to write them."""

import re

VARINFO = [
    "ALIGNMENT", "FORMATS", "LEVEL", "MISSING", "ROLE", "VALLABELS", "VARLABEL", "WIDTH",
    "ATTRIBUTES"
]
FILEINFO = ["DOCUMENTS", "FILELABEL", "MRSETS", "VARSETS", "WEIGHT", "ATTRIBUTES"]
WITH_MODE = ["VALLABELS", "ATTRIBUTES", "DOCUMENTS", "MRSETS", "VARSETS"]
MODES = ["MERGE", "REPLACE"]
NEW_NAMES = [
    "new1", "new1 TO new4", "v1 new2", "Größer", "x" * 70, "new 2", "#a", "v1 TO v3", "n01 TO n03"
]
WRONG = [
    "=", "/", "'", "(", "1", "TO", "ALL", "ROLE=1", "VALLABELS=BOTH", "/VARINFO", ".", "é", "*",
    '"', "/*", "/NEWVARS x", "/FORM", "PASSWORD", "PASSWORD 'x", "nobody", "VARIABLES=nobody",
    "LABELS", "ATTRIBUTES=", "0x", "-", "-2", "1e5", "1.5E+3", "'a''b'", "TO TO"
]
WRONG_LISTS = [
    "TO b", "a TO", "a TO TO b", "a TO ALL", "1 TO 2", "x1 TO y3", "x5 TO x1", "v1 TO x3", "x y TO",
    "'v1'", "x0000000001 TO x0000000002", "n" * 63 + "1 TO " + "n" * 63 + "99", "x1 TO x9999999",
    "=", ""
]
WRITABLE = re.compile(r"[^\W\d][\w.@#$]*[\w@#$]|[@#$][\w.@#$]*[\w@#$]|[^\W\d]")


class CommandWriter:
    """Writes commands for two codebooks. names_of gives the names of each file of the source."""
    def __init__(self, rng, working_names, names_of, source_files):
        self.rng = rng
        self.working_names = _writable(working_names)
        self.names_of = names_of
        self.source_files = source_files

    def happens(self, probability):
        return self.rng.random() < probability

    def command(self, wrong=False):
        """A command, mostly without a fault; wrong asks for one that may have some."""
        path, source_names = self._source()
        wrong_list = wrong and self.happens(0.4)
        subcommands = [f"FROM {path}{self._password()}"] + self._lists(source_names, wrong_list)
        if self.happens(0.5):
            subcommands.append(self._keywords("FILEINFO", FILEINFO))
        if self.happens(0.6):
            subcommands.append(self._keywords("VARINFO", VARINFO))
        self.rng.shuffle(subcommands)
        text = self.rng.choice([" /", "\n  /", "/", " / "]).join(map(self._varied, subcommands))
        if wrong and not wrong_list:
            text = self._with_fault(text)
        start = self.rng.choice(
            ["", "", "/", "APPLY DICTIONARY ", "apply dict /", "APPLY DICTIONARY\n"])
        return start + (" /* a comment */ " if self.happens(0.1) else "") + text

    def commands(self, wrong=False):
        """The text of one or several commands."""
        count = self.rng.choice([1] * 5 + [2, 3, 4])
        bad = self.rng.randrange(count) if wrong else None
        return "".join(
            self.command(i == bad) + self.rng.choice([".\n", ". \n", ".\r\n", ". /* end */\n"])
            for i in range(count))

    def _source(self):
        """What follows FROM, and the names that the source has."""
        kind = self.rng.choices(["source", "*", "working.xml", "nowhere"], [90, 6, 3, 1])[0]
        if kind == "*":
            return "*", self.working_names
        if kind != "source":
            return f"'{kind}'", self.working_names
        quote = self.rng.choice("''\"")
        file_id = self.rng.choice([""] * 2 + self.source_files + ["F9"] * self.happens(0.05))
        name = "source.xml" + (f"#{file_id}" if file_id else "")
        return quote + name + quote, _writable(self.names_of(file_id))

    def _password(self):
        return self.rng.choice([""] * 20 + [" PASSWORD NONE", " PASSWORD='x'", " password = none"])

    def _lists(self, source_names, wrong):
        """The subcommands SOURCE, TARGET and NEWVARS; with wrong of one of the lists anything."""
        if wrong and source_names:
            lists = [self.rng.choice(source_names), self.rng.choice(WRONG_LISTS)]
            if self.happens(0.2):
                lists.reverse()
            new = ["NEWVARS"] * self.happens(0.6)
            return new + [
                f"{name} VARIABLES={given}" for name, given in zip(("SOURCE", "TARGET"), lists)
            ]
        form = self.rng.choice(
            ["", "", "NEWVARS", "NEWVARS", "SOURCE", "TARGET", "both", "new", "SOURCE NEWVARS"])
        lists = ["NEWVARS"] if "NEWVARS" in form or form == "new" else []
        if not source_names:
            return lists
        if form in ("both", "new"):
            lists.append("SOURCE VARIABLES=" + self.rng.choice(source_names))
            names = self._list(self.working_names) if form == "both" else self.rng.choice(NEW_NAMES)
            return lists + ["TARGET VARIABLES=" + names]
        if form.startswith("SOURCE"):
            lists.append("SOURCE VARIABLES=" + self._list(source_names))
        if form == "TARGET":
            lists.append("TARGET VARIABLES=" + self._list(source_names))
        return lists

    def _list(self, names):
        if not names or self.happens(0.1):
            return "ALL"
        places = [self.rng.randrange(len(names)) for _ in range(self.rng.randint(1, 4))]
        if len(places) == 2:
            return " TO ".join(names[i] for i in sorted(places))
        return " ".join(names[i] for i in places)

    def _keywords(self, subcommand, table):
        named = [keyword for keyword in table if self.happens(0.4)]
        words = [word + self._mode(word) for word in named]
        if self.happens(0.5):
            words.append("ALL")
            words = [word for word in words if "=" in word or word == "ALL"]
        self.rng.shuffle(words)
        return " ".join([subcommand] + words)

    def _mode(self, keyword):
        if keyword not in WITH_MODE or self.happens(0.2):
            return ""
        return self.rng.choice(["=", " = "]) + self.rng.choice(MODES)

    def _varied(self, subcommand):
        """A subcommand with its keywords in another case, or abbreviated."""
        if self.happens(0.7) or subcommand.startswith("FROM"):
            return subcommand
        words = set(VARINFO + FILEINFO + MODES +
                    ["SOURCE", "TARGET", "NEWVARS", "VARIABLES", "FILEINFO", "VARINFO"])
        length = self.rng.choice([3, 4, 99])

        def varied(match):
            return match[0][:length].lower() if match[0] in words else match[0]

        return re.sub(r"[A-Z]+", varied, subcommand)

    def _with_fault(self, text):
        kind = self.rng.choice(["word", "word", "word", "cut", "character", "twice"])
        at = self.rng.randrange(len(text))
        if kind == "word":
            at = text.rfind(" ", 0, at) + 1
            return f"{text[:at]}{self.rng.choice(WRONG)} {text[at:]}"
        if kind == "cut":
            return text[:at]
        return text[:at] + text[at + 1:] if kind == "character" else text + " /" + text


def _writable(names):
    """The names that can stand in a command as they are."""
    names = [" ".join(name.split()) for name in names]
    return [
        name for name in names if WRITABLE.fullmatch(name) and name.upper() not in ("ALL", "TO")
    ]
