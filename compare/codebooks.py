"""Random codebooks, which have, each some of it, all that docs/codebook.md names."""

from markup import COPY, Element, Repeated, Style

# Two codebooks have most names in common, in different case.
NAMES = ([f"v{i}" for i in range(1, 19)] + [f"s{i}" for i in range(1, 10)] + [
    "Größe", "ÄPFEL", "straße", "ἀρχή", "ı", "語彙", "x.y", "a@b", "_u", "#t", "two  words", "ALL",
    "to", "weight", "a'b&c", "n" * 70, "ä" * 40, "語" * 22
])
FILES = ["F1", "F2", "H"]
TEXTS = [
    "Yes", "No", "Refused", "Don't know", "Label one", "North", "South", "", "  two   blanks ",
    "a & b < c > d", 'with "quotes"', "Größe in cm", "“curly” – dash", "日本 語", "😀 face",
    "]]> there", "a\ttab", "a line\nand another", "a carriage\rreturn", "<b>no markup</b>",
    "long " * 50
]
NUMBERS = ["1", "2", "3", "4", "5", "8", "9"] * 6 + [
    "97", "98", "99", "0", "-1", "1.5", "01", "1.0", "+2", "1e1", "-0", ".5", "5.", "1e400",
    "1e-400", "n/a", "", "0x10", "123456789012345678901", "0.1", "1e300", "1 2", "１", "-99.25", "3 "
]
STRINGS = ["a", "b", "c", "no", "yes", "ab", "N", "S"] * 4 + [
    "abcd", "", "  ", "äö", "eight888", "nine99999", "longer than any of them", "1", "01", "x  y",
    "A"
]
NUMBER_FORMATS = [
    "F8", "F8.2", "F4", "f4.1", "COMMA9.2", "DOLLAR10.2", "E12.4", "DATE11", "PCT5.1", "N3"
]
STRING_FORMATS = ["A8", "A8", "A4", "A4", "A2", "A1", "A12", "a6", "HEX8", "HEX16", "HEX24"]
OTHER_FORMATS = [
    "F0", "F32768", "F32767", "F8.", "F8.40000", "F", "8.2", "HEX7", "A0", "A", "", " F5 ", "F8.2x",
    "A8.2", "F-3", "Ä3", "A300"
]
LEVELS = ["nominal", "ordinal", "interval", "ratio", "percent", "other", "Nominal", ""]
ROLES = ["input", "target", "both", "none", "partition", "split", "Target", ""]
ALIGNMENTS = ["left", "right", "center", "middle"]
SUBJECTS = ["Source", "source", "SOURCE"] * 3 + [
    "Unit", "unit", "$x", "größe", "GRÖSSE", "a  b", "o'clock", "O'CLOCK", ""
]
SUBJECT_VALUES = ["Yes", "No", "a & b", "Interview", ""]
SET_NAMES = ["Trust", "TRUST", "News", "Health", "Work & home", "Ä", "set 1", "G1"]
SET_TYPES = ["multipleResp", "multipleResp", "grid", "section", "subject", "other", ""]
WIDTHS = ["1", "2", "4", "4", "8", "8", "12", "20", "0", "-1", "x", "40000", " 6 "]


def is_string(name):
    """What variables of a name mostly are, in both codebooks."""
    return name.startswith("s") or name in ("Größe", "語彙")


class Codebook:
    """A random codebook: its bytes, and what commands can name of it."""
    def __init__(self, rng, copies=0):
        self.rng = rng
        self.copies = copies  # of the variables, if it is large
        self.richness = rng.choice([0.1, 0.3, 0.6, 0.9])
        self.style = Style(rng, noise=rng.choice([0, 0.02]) if copies else None)
        self.files = rng.choice([[], [""], ["F1"], ["F1"], ["F1"], FILES[:2], FILES, ["", "H"]])
        self.names = []  # of the variables, by file
        self.groups = [f"G{i}" for i in range(1, rng.choice([0, 0, 2, 4, 8]) + 1)]
        self.ids = []  # of the variables
        self.bytes = self.style.document(self._root())

    def names_of(self, file_id):
        """The names of a file's variables; of the first file for an ID that no file has."""
        first = self.files[0] if self.files else ""
        known = file_id if file_id in self.files else first
        return [name for name, files in self.names if known in (files or [first])]

    def has(self, factor=1.0):
        """Whether the codebook has one more of what it may have."""
        return self.rng.random() < self.richness * factor

    def pick(self, items):
        return self.rng.choice(items)

    def some(self, items, most):
        return [self.pick(items) for _ in range(self.rng.randint(1, most))]

    def _root(self):
        variables = self._variables()
        content = []
        if self.has():
            content.append(
                Element("stdyDscr", [],
                        [Element("citation", [], [Element("titl", [], "A study")])]))
        content += [self._file(i) for i in self.files]
        content += self._data(variables)
        if self.has(0.3):
            content.append(
                Element("otherMat", [self._reference("refs", "parent")], [self._label()]))
        return Element("codeBook", [("version", "2.5"), ("xml:lang", "en")], content)

    def _data(self, variables):
        if not variables:
            return self.pick([[], [Element("dataDscr")]])
        sets = [self._set(group) for group in self.groups]
        cut = self.rng.randrange(len(variables)) if self.rng.random() < 0.1 else 0
        first = Element("dataDscr", [], sets)
        parts = [first]
        if self.has(0.15):
            first.content.append(Element("nCubeGrp", [self._reference("varGrp", "parent")]))
        if cut:
            first.content += variables[:cut]
            parts.append(Element("dataDscr"))
        rest = variables[cut:]
        if self.rng.random() < (0.5 if self.copies else 0.05):
            # A set among the variables, where it should not be.
            rest.insert(self.rng.randrange(len(rest) + 1), self._set("G" + COPY))
        parts[-1].content += [Repeated(rest, self.copies)] if self.copies else rest
        if self.has(0.15):
            parts[-1].content.append(Element("notes", [], "Not of a file"))
        return parts

    # The file

    def _file(self, file_id):
        content = []
        if self.has():
            texts = [Element("fileName", [], "x.dat")] if self.has() else []
            if self.has():
                texts += [Element("fileCont", [], self.pick(TEXTS))]
            if self.has(0.5):
                texts += [Element("fileStrc", [("type", "rectangular")])]
            content.append(Element("fileTxt", [], texts))
        if self.has(0.2):
            content.append(Element("locMap"))
        if self.has():
            content += [Element("notes", [], text) for text in self.some(TEXTS, 4)]
        if self.has(0.5):
            content.append(
                self._note("weight", self.pick([n for n, _ in self.names] + ["nobody", ""])))
        if self.has(0.5):
            content += self._attribute_notes()
        return Element("fileDscr", [("ID", file_id)] if file_id else [], content)

    def _reference(self, *attributes):
        """An attribute that refers to sets, or to an ID that a new variable could be given."""
        ids = self.some(self.groups * 2 + ["G9", "new1", "v3", "s4"], 3)
        return self.pick(attributes), " ".join(ids)

    def _set(self, group):
        attributes = [("ID", group)] if self.has() or self.rng.random() < 0.7 else []
        kind = self.pick(SET_TYPES)
        attributes += [("type", kind)] if kind else []
        if self.rng.random() < 0.7:
            attributes.append(("name", self.pick(SET_NAMES)))
        members = [i for i in self.ids if self.rng.random() < 0.2]
        members += ["nobody"] * (self.rng.random() < 0.25)
        if self.copies:
            members = [i.replace(COPY, f"_{self.rng.randrange(self.copies)}_") for i in members]
        attributes += [("var", " ".join(members))] if members or self.has(0.2) else []
        if self.has(0.4):
            attributes.append(self._reference("varGrp", "varGrp", "refs"))
        content = [self._label() for _ in range(self.pick([0, 1, 1, 2]))]
        for name in ("txt", "concept", "defntn", "universe", "notes"):
            if self.has(0.15):
                content.append(Element(name, [], self.pick(TEXTS)))
        return Element("varGrp", attributes, content)

    # The variables

    def _variables(self):
        count = self.rng.randint(15, 30)
        if not self.copies:
            count = self.pick([0, 1, 4] + [12, 20, 30, 40] * 5)
        names = self.rng.sample(NAMES, min(count, len(NAMES)))
        if self.rng.random() < 0.5:
            names.sort(key=NAMES.index)
        return [self._variable(name) for name in names]

    def _variable(self, plain):
        rng = self.rng
        string = is_string(plain) != (rng.random() < 0.08)
        name = self.pick([plain, plain, plain.upper(), plain.swapcase()])
        named = rng.random() < 0.93
        # A new variable may want the ID "v3" for its name.
        variable_id = self.pick(["V_", "V_", "v"] if named else ["X-"]) + str(NAMES.index(plain))
        if self.copies:
            name, variable_id = COPY + name, "V" + COPY + variable_id
        attributes = []
        if not named or rng.random() < 0.8:
            attributes.append(("ID", variable_id))
            self.ids.append(variable_id)
        if named:
            attributes.append(("name", name))
        else:
            name = variable_id
        files = [i for i in self.files if i and rng.random() < 0.6]
        if files or rng.random() < 0.05:
            attributes.append(("files", " ".join(files or ["F9"])))
        self.names.append((name, files))
        if self.has(0.6):
            attributes.append(("nature", self.pick(LEVELS)))
        if rng.random() < 0.05:
            attributes.append(("wgt", self.pick(["wgt", "wgt", "not-wgt"])))
        more = [("dcml", self.pick(["2", "0", "x"])), ("intrvl", "contin"), ("qstn", "Q1")]
        attributes += [attribute for attribute in more if self.has(0.2)]
        return Element("var", attributes, self._parts_of_variable(string))

    def _parts_of_variable(self, string):
        """The children of a var, in the standard's order."""
        values = STRINGS if string else NUMBERS
        categories = self._categories(values)
        parts = [self._location() for _ in range(self.pick([0, 0, 1, 1, 2]))]
        parts += [self._label() for _ in range(self.pick([0, 1, 2]))] if self.has(1.2) else []
        parts += self._plain("imputation", "security", "embargo", "respUnit", "anlysUnit")
        parts += [self._question()] if self.has(0.3) else []
        parts += [Element("valrng", [], [self._range()])] if self.has(0.2) else []
        if self.has(0.4):
            parts += [self._invalid(values) for _ in range(self.pick([1, 1, 1, 2]))]
        parts += self._plain("undocCod", "universe", "TotlResp", "sumStat", "txt", "txt",
                             "stdCatgry")
        parts += self._category_groups(categories) + categories
        parts += self._plain("codInstr", "verStmt", "concept", "derivation")
        parts += self._format(string)
        parts += self._plain("geoMap", "catLevel")
        return parts + self._notes(string)

    def _plain(self, *names):
        return [
            Element(name, [("ID", "P1"), ("source", "x")][:self.rng.randint(0, 2)],
                    self.pick(TEXTS)) for name in names if self.has(0.12)
        ]

    def _label(self):
        return Element("labl", [("xml:lang", "fr")] if self.has(0.2) else [], self.pick(TEXTS))

    def _location(self):
        attributes = [("StartPos", "1")]
        if self.has():
            attributes.append(("width", self.pick(WIDTHS)))
        if self.has(0.3) and self.files:
            attributes.append(("fileid", self.pick(FILES)))
        return Element("location", attributes)

    def _question(self):
        depth = self.pick([1, 1, 2, 5, 60])
        content = [Element("qstnLit", [("sdatrefs", "S1"), ("seqNo", "1")], self.pick(TEXTS))]
        if self.has(0.5):
            content += [
                "Text, ",
                Element("Link", [("refs", "V_1")], "linked " + self.pick(TEXTS)), " and more"
            ]
        for _ in range(depth):
            content = [Element("forward", [("qstn", "Q2"), ("x", "a\"b'<&\tc")], content)]
        return Element("qstn", [("ID", "Q1"), ("responseDomainType", "text")], content)

    def _range(self):
        attributes = []
        if self.rng.random() < 0.8:
            attributes.append(("min", self.pick(NUMBERS)))
        if self.rng.random() < 0.8:
            attributes.append(("max", self.pick(["97", "99", "1e3"] + NUMBERS)))
        if self.rng.random() < 0.05:
            attributes.append((self.pick(["minExclusive", "maxExclusive"]), "5"))
        return Element("range", attributes + [("UNITS", "INT")] * self.rng.randint(0, 1))

    def _invalid(self, values):
        items = [
            Element("item", [("VALUE", self.pick(values))] if self.rng.random() < 0.95 else [])
            for _ in range(self.pick([0, 1, 1, 2, 3, 3, 4]))
        ]
        if self.rng.random() < (0.3 if values is NUMBERS else 0.05):
            items = [self._range()] + items[:self.pick([0, 0, 1, 2])]
        items += [Element("key", [], "Key")] if self.has(0.1) else []
        return Element("invalrng", [], items)

    def _categories(self, values):
        if not self.has():
            return []
        return [self._category(i, values) for i in range(self.pick([1, 2, 4, 8, 25]))]

    def _category(self, number, values):
        attributes = [("ID", f"C{number}")] if self.has(0.5) else []
        if self.rng.random() < 0.15:
            attributes.append(("missing", self.pick(["Y", "Y", "Y", "N", "y"])))
        if self.has(0.05):
            attributes.append(("country", "NO"))
        content = [Element("catValu", [], self.pick(values))] if self.rng.random() < 0.97 else []
        content += [self._label() for _ in range(self.pick([0, 1, 1, 1, 1, 2]))]
        for name in ("txt", "catStat", "mrow"):
            if self.has(0.15):
                content.append(Element(name, [], self.pick(TEXTS)))
        return Element("catgry", attributes, content)

    def _category_groups(self, categories):
        if not categories or not self.has(0.2):
            return []
        ids = [f"C{i}" for i in range(len(categories)) if self.rng.random() < 0.3]
        return [Element("catgryGrp", [("catgry", " ".join(ids)), ("ID", "CG1")], [self._label()])]

    def _format(self, string):
        # Strings are what they are by this element alone; numbers need none.
        if not string and not self.has():
            return []
        number = self.pick(["numeric", "numeric", "other"])
        attributes = [("type", "character" if string else number)]
        if self.has(0.8):
            formats = (STRING_FORMATS if string else NUMBER_FORMATS) * 4 + OTHER_FORMATS
            attributes.append(("formatname", self.pick(formats)))
        attributes += [("schema", "other")] if self.has(0.3) else []
        return [Element("varFormat", attributes, "" if self.has() else "text")]

    def _note(self, kind, text):
        attributes = [("type", "VELA:" + kind)] + [("level", "variable")] * self.rng.randint(0, 1)
        return Element("notes", attributes, text)

    def _attribute_notes(self):
        notes = []
        # Of many attributes the names are looked up in another way.
        subjects = SUBJECTS if self.rng.random() < 0.95 else [f"Subject {i}" for i in range(30)]
        for _ in range(self.rng.randint(1, 5) if subjects is SUBJECTS else 40):
            note = self._note("attribute", self.pick(SUBJECT_VALUES))
            if self.rng.random() < 0.95:
                note.attributes.append(("subject", self.pick(subjects)))
            notes.append(note)
        return notes

    def _notes(self, string):
        notes = [Element("notes", [], self.pick(TEXTS))] if self.has(0.2) else []
        formats = (STRING_FORMATS if string else NUMBER_FORMATS) * 3 + OTHER_FORMATS
        for kind, texts in (("writeFormat", formats), ("columnWidth", WIDTHS), ("role", ROLES),
                            ("alignment", ALIGNMENTS), ("other", TEXTS), ("role", ROLES)):
            if self.has(0.3):
                notes.append(self._note(kind, self.pick(texts)))
        return notes + (self._attribute_notes() if self.has(0.5) else [])


def break_document(rng, document):
    """The document with something wrong, which it may stand."""
    faults = [
        lambda: document[:rng.randrange(len(document) + 1)],
        lambda: _without(document, rng.randrange(len(document))),
        lambda: _changed(document, rng.randrange(len(document)),
                         rng.choice([b"<", b"&", b"\xff", b'"', b"\0"])),
        lambda: document.replace(b"</", b"&nosuch;</", 1),
        lambda: document.replace(b"<codeBook", b"<!DOCTYPE c [<!ENTITY e 'x'>]><codeBook", 1),
        lambda: document.replace(b"codeBook", b"codebook"),
        lambda: b'<?xml version="1.0" encoding="windows-1252"?><codeBook/>',
        lambda: document.decode("latin-1").encode("utf-16"),
        lambda: b"",
        lambda: _nested(b"<x>", b"</x>", 3000, document),
        lambda: _nested(b"<qstn xmlns:p%d='urn:%d'>", b"</qstn>", rng.choice([900, 1100, 1100]),
                        document),
        lambda: b"<!DOCTYPE codeBook [" + b"".join(b"<!ATTLIST var a%d CDATA 'x'>" % i
                                                   for i in range(rng.choice([900, 1100]))) +
        b"]><codeBook><dataDscr><var name='v1'/></dataDscr></codeBook>",
        lambda: document.replace(b"name=", b"nome="),
        lambda: document.replace(b"v2", b"v1").replace(b"v3", b"V1"),
    ]
    return rng.choice(faults)()


def _without(document, at):
    return document[:at] + document[at + 1:]


def _changed(document, at, byte):
    return document[:at] + byte + document[at + 1:]


def _nested(start, end, depth, document):
    starts = b"".join(start % (i, i) if b"%" in start else start for i in range(depth))
    return document.replace(b"</var>", starts + b"deep" + end * depth + b"</var>", 1)
