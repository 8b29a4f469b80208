"""Elements, and the many ways to write them: layout, encoding, quotes, prefix, noise."""

STANDARD = [
    "ddi:codebook:2_5", "ddi:codebook:2_6", "http://www.icpsr.umich.edu/DDI",
    "http://www.icpsr.umich.edu/DDI/Version2-0", "urn:another"
]
COMMENTS = [
    "<!-- checked -->", "<!---->", "<!-- </var> </dataDscr> <var name='no'> -->",
    "<?editor fold='</var>'?>", "<?x?>"
]
FOREIGN = [
    "<x:extra xmlns:x='urn:x' x:a=\"1\"><x:labl>not this one</x:labl></x:extra>",
    "<unknown ID='U'><labl>nor this</labl><notes>nor this note</notes></unknown>",
    "<y:extra><y:more y:b='2'>of a namespace around</y:more></y:extra>",
    "<labl xmlns='urn:other'>of another standard</labl>", "<empty/>"
]
DOCUMENT_TYPES = [
    "<!DOCTYPE codeBook SYSTEM 'codebook.dtd'>",
    "<!DOCTYPE codeBook PUBLIC '-//X//Y' 'y.dtd' [<!-- <var> -->]>",
    "<!DOCTYPE codeBook [<!ATTLIST var nature CDATA 'ordinal' wgt CDATA 'wgt'>\n"
    "<!ATTLIST catgry missing CDATA 'Y'>]>"
]

# Stands in the names and IDs of variables that are repeated; each copy has its own number there.
COPY = "_0_"


class Element:
    """An element of the standard. Its content is a list of elements and texts."""
    def __init__(self, name, attributes=(), content=()):
        self.name = name
        self.attributes = list(attributes)
        self.content = [content] if isinstance(content, str) else list(content)


class Repeated:
    """Elements that stand there so many times."""
    def __init__(self, elements, copies):
        self.elements = elements
        self.copies = copies


class Style:
    """How one document is written."""
    def __init__(self, rng, noise=None):
        self.rng = rng
        self.encoding, self.declared = rng.choice([("utf-8", "UTF-8"), ("utf-8", "utf-8"),
                                                   ("utf-8", None), ("utf-8-sig", "UTF-8"),
                                                   ("us-ascii", "US-ASCII"),
                                                   ("iso-8859-1", "ISO-8859-1"),
                                                   ("iso-8859-1", "iso-8859-1")])
        self.indentation = rng.choice(["  ", "  ", "    ", "\t", "", None])  # None: a single line
        self.new_line = rng.choice(["\n"] * 5 + ["\r\n"] * 3 + ["\r"])
        self.namespace = rng.choice([""] + STANDARD[:1] * 4 + STANDARD)
        self.prefix = rng.choice(["", "", "", "ddi:", "d-1:"]) if self.namespace else ""
        if self.prefix and self.encoding != "us-ascii" and rng.random() < 0.2:
            self.prefix = "dé:"
        self.document_type = rng.choice(DOCUMENT_TYPES) if rng.random() < 0.12 else ""
        self.noise = rng.choice([0, 0, 0.02, 0.1]) if noise is None else noise
        self.references = rng.choice([0, 0, 0.02])
        self.cdata = rng.choice([0, 0, 0.1])
        self.single_quotes = rng.choice([0, 0, 0.3, 1])
        self.end_tags = rng.choice([0, 0, 0.3, 1])  # of empty elements
        self.blanks = rng.choice([0, 0, 0.1])
        self.disorder = rng.choice([0, 0, 0, 0.1, 0.5])
        self.redeclared = rng.choice([0, 0, 0, 0.05])

    def happens(self, probability):
        return probability > 0 and self.rng.random() < probability

    def document(self, root):
        """The document's bytes."""
        out = []
        if self.declared:
            out.append(f'<?xml version="1.0" encoding="{self.declared}"?>{self.new_line}')
        out.append(self.document_type.replace("\n", self.new_line))
        if self.noise:
            out.append("<!-- before the root -->" + self.new_line)
        if self.namespace:
            name = "xmlns:" + self.prefix[:-1] if self.prefix else "xmlns"
            root.attributes.insert(0, (name, self.namespace))
        root.attributes += [("xmlns:y", "urn:y")] * self.happens(0.5)
        self._write(root, 0, out)
        out.append(self.rng.choice(["", self.new_line, self.new_line + "<!-- behind it -->"]))
        return "".join(out).encode(self.encoding, errors="xmlcharrefreplace")

    def _lead(self, depth):
        if self.indentation is None:
            return ""
        lead = self.new_line + self.indentation * depth
        return lead + self.new_line if self.happens(self.blanks / 4) else lead

    def _write(self, element, depth, out):
        prefix, attributes = self.prefix, list(element.attributes)
        if self.happens(self.redeclared) and depth > 1:
            prefix = self.rng.choice(["", "other:"])
            attributes.append(("xmlns:other" if prefix else "xmlns", self.rng.choice(STANDARD)))
            attributes.append(("xmlns:z", "urn:z"))
        if self.happens(self.disorder):
            self.rng.shuffle(attributes)
        out.append("<" + prefix + element.name)
        for name, value in attributes:
            out.append(self._attribute(name, value))
        content = element.content
        if not content and not self.happens(self.end_tags):
            out.append(" />" if self.happens(self.blanks) else "/>")
            return
        out.append(" >" if self.happens(self.blanks) else ">")
        # What stands inside has the namespaces of its element, so the prefix goes with it.
        outer, self.prefix = self.prefix, prefix
        self._write_content(content, depth + 1, out)
        self.prefix = outer
        out.append(f"</{prefix}{element.name}>")

    def _write_content(self, content, depth, out):
        if len(content) > 1 and self.happens(self.disorder):
            content = self.rng.sample(content, len(content))
        for item in content:
            if self.happens(self.noise):
                out.append(self._lead(depth) + self.rng.choice(COMMENTS + FOREIGN))
            if isinstance(item, str):
                out.append(self._text(item))
            elif isinstance(item, Repeated):
                self._write_copies(item, depth, out)
            else:
                out.append(self._lead(depth))
                self._write(item, depth, out)
        if content and not isinstance(content[-1], str):
            out.append(self._lead(depth - 1))

    def _write_copies(self, repeated, depth, out):
        block = []
        for element in repeated.elements:
            block.append(self._lead(depth))
            self._write(element, depth, block)
        text = "".join(block)
        out.extend(text.replace(COPY, f"_{i}_") for i in range(repeated.copies))

    def _attribute(self, name, value):
        quote = "'" if self.happens(self.single_quotes) else '"'
        value = value.replace("&", "&amp;").replace("<", "&lt;").replace("\t", "&#9;")
        value = value.replace(quote, "&quot;" if quote == '"' else "&#39;")
        equals = " = " if self.happens(self.blanks) else "="
        lead = self._lead(3) or "  " if self.happens(self.blanks) else " "
        return f"{lead}{name}{equals}{quote}{value}{quote}"

    def _text(self, text):
        if self.happens(self.cdata) and self._fits_cdata(text):
            return "<![CDATA[" + text.replace("\n", self.new_line) + "]]>"
        text = text.replace("&", "&amp;").replace("<", "&lt;").replace("]]>", "]]&gt;")
        if self.references and "&" not in text:
            text = "".join(f"&#x{ord(c):X};" if self.happens(self.references) else c for c in text)
        if self.document_type.startswith("<!DOCTYPE codeBook SYSTEM") and self.happens(0.1):
            text += "&nbsp;"  # that only the external declaration could know
        if self.happens(self.noise):
            text += "<!-- -->" + self.rng.choice(["", "<b>bold</b>"])
        text = text.replace("\r", "&#13;").replace("\n", self.new_line)
        return self._lead(4) + " " + text + self._lead(3) if self.happens(self.blanks) else text

    def _fits_cdata(self, text):
        """Whether a text can be written without a reference."""
        return "]]>" not in text and "\r" not in text and text.encode(
            self.encoding, "ignore").decode(self.encoding) == text
