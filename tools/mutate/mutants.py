"""The faults that can be planted in a file."""

import dataclasses
import re
import zlib

from source import Source

_COMPARISONS = {
    "<": ("<=", ">="),
    "<=": ("<", ">"),
    ">": (">=", "<="),
    ">=": (">", "<"),
    "==": ("!=",),
    "!=": ("==",),
}
_ARITHMETIC = {
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "/",
    "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "%=": "/=",
}  # fmt: skip
_BITS = {
    "&": "|", "|": "&", "^": "|", "<<": ">>", ">>": "<<",
    "&=": "|=", "|=": "&=", "^=": "|=", "<<=": ">>=", ">>=": "<<=",
}  # fmt: skip
_NO_STATEMENT = {
    "if", "for", "while", "do", "switch", "case", "default", "return", "else", "using", "typedef",
    "static_assert", "constexpr", "static", "const", "struct", "class", "union", "enum",
    "namespace", "extern", "template", "public", "private", "protected", "friend", "goto",
}  # fmt: skip
_DECLARATION = re.compile(r"(::)?\w[\w:]*(<[^;=(]*>)?[\s*&]+\w+\s*([=;({\[]|$)")
_CONVERSION = re.compile(r"%[-+ #0]*(\*|\d+)?(\.(\*|\d+))?(hh|h|ll|l|z)?[a-zA-Z%]|\\(x[0-9a-fA-F]+|.)")


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str
    # Name of the function that holds it; empty outside of functions.
    function: str
    # The whole line where it begins, without blanks at its ends.
    text: str
    # What becomes of what: "a -> b", and which of several on such lines, as in "a -> b #2".
    change: str
    kind: str
    line: int
    begin: int
    end: int
    replacement: str

    @property
    def key(self):
        """What stays the same when the file is changed elsewhere."""
        return (self.file, self.function, self.text, self.change)

    def apply(self, text):
        return text[: self.begin] + self.replacement + text[self.end :]


def enumerators_of(texts):
    """The enumerators of each enumeration in some files: a list of lists."""
    found = []
    for text in texts:
        text = re.sub(r"//[^\n]*", "", text)
        for match in re.finditer(r"\benum\b([^{;()]*)\{([^}]*)\}", text):
            names = re.findall(r"(?:^|,)\s*(\w+)", match.group(2))
            name = re.search(r"\w+", re.sub(r"\b(class|struct)\b|:.*", "", match.group(1), flags=re.S))
            found.append((name.group() if name else "", "class" in match.group(1), names))
    return found


class _Planter:
    """Collects the faults of one file."""

    def __init__(self, source, enumerations):
        self.source = source
        self.tokens = source.tokens
        self.found = []
        self.scoped = {}
        self.unscoped = {}
        for name, is_scoped, members in enumerations:
            if len(members) < 2:
                continue
            for i, member in enumerate(members):
                near = [members[(i + 1) % len(members)]]
                if is_scoped:
                    self.scoped[name, member] = near
                else:
                    others = members[max(i - 1, 0) : i] + members[i + 1 : i + 2]
                    self.unscoped[member] = others

    def add(self, kind, begin, end, replacement):
        if self.source.text[begin:end] != replacement:
            self.found.append((begin, end, replacement, kind))

    def replace(self, kind, i, replacement):
        self.add(kind, self.tokens[i].begin, self.tokens[i].end, replacement)

    def plant(self):
        for i, token in enumerate(self.tokens):
            if token.skipped:
                continue
            if token.kind == "sign":
                self._sign(i)
            elif token.kind == "number":
                self._number(i)
            elif token.kind == "character":
                self._character(i)
            elif token.kind == "text":
                self._text(i)
            else:
                self._name(i)
            if token.place == "function":
                self._statement(i)
        self._tables()

    def _sign(self, i):
        token = self.tokens[i]
        text = token.text
        if text == "!" and not self.source.is_spaced(i):
            self.replace("negation", i, "")
        elif text in ("++", "--"):
            self.replace("arithmetic", i, "--" if text == "++" else "++")
        elif text == "." and self.source.is_text(i - 1, ")") and self.source.is_text(i + 2, "("):
            if token.place != "function" or self.tokens[i + 1].text[0].isupper():
                self.add("call", token.begin, self.tokens[self.tokens[i + 2].partner].end, "")
        elif text == "." and self.source.is_text(i - 1, "{", ","):
            self._designator(i)
        elif text == "?" and token.place:
            self._choice(i)
        elif text == "~" and self.tokens[i - 1].kind == "sign":
            self.replace("bits", i, "")
        elif not self.source.is_spaced(i):
            pass
        elif text in _COMPARISONS:
            for other in _COMPARISONS[text]:
                self.replace("comparison", i, other)
        elif text in _ARITHMETIC:
            self.replace("arithmetic", i, _ARITHMETIC[text])
        elif text in _BITS:
            self.replace("bits", i, _BITS[text])
        elif text in ("&&", "||"):
            self.replace("logic", i, "||" if text == "&&" else "&&")

    def _number(self, i):
        text = self.tokens[i].text
        match = re.fullmatch(r"(0[xX])?([0-9a-fA-F']+?)([uUlL]*)", text)
        if not match:
            return
        base = 16 if match.group(1) else 10
        value = int(match.group(2).replace("'", ""), base)
        for other in (value + 1, value - 1):
            if other >= 0:
                shown = f"0x{other:x}" if base == 16 else str(other)
                self.replace("constant", i, shown + match.group(3))

    def _character(self, i):
        text = self.tokens[i].text
        inner = text[1:-1]
        if inner == "\\\\":
            other = "/"
        elif inner == "\\'":
            other = '"'
        elif inner.startswith("\\"):
            other = inner[1]
        else:
            other = chr(ord(inner) + 1)
            other = "\\" + other if other in "'\\" else other
        self.replace("constant", i, f"'{other}'")

    def _text(self, i):
        text = self.tokens[i].text
        inner = text[1:-1]
        if not inner:
            self.replace("text", i, '"x"')
            return
        kept = set()
        for match in _CONVERSION.finditer(inner):
            kept.update(range(*match.span()))
        places = [j for j, letter in enumerate(inner) if letter.isalnum() and j not in kept]
        if not places:
            self.replace("text", i, '""')
            return
        at = places[zlib.crc32(inner.encode()) % len(places)]
        letter = inner[at]
        other = {"z": "a", "Z": "A", "9": "0"}.get(letter) or chr(ord(letter) + 1)
        self.replace("text", i, f'"{inner[:at]}{other}{inner[at + 1:]}"')

    def _name(self, i):
        text = self.tokens[i].text
        if text in ("true", "false"):
            self.replace("constant", i, "false" if text == "true" else "true")
        elif text in self.unscoped and self.tokens[i].place != "enum":
            for other in self.unscoped[text]:
                kind = "level" if text.startswith("kLog") else "enumerator"
                self.replace(kind, i, other)
        elif self.source.is_text(i - 1, "::") and i > 1:
            for other in self.scoped.get((self.tokens[i - 2].text, text), ()):
                self.replace("enumerator", i, other)
        elif text in ("if", "while") and self.source.is_text(i + 1, "("):
            self._condition(i + 1, text)
        elif text == "for" and self.source.is_text(i + 1, "("):
            self._loop(i + 1)
        elif text == "return" and not self.source.is_text(i + 1, ";"):
            self._result(i)

    def _condition(self, i, word):
        begin, end = self.tokens[i].end, self.tokens[self.tokens[i].partner].begin
        condition = self.source.text[begin:end]
        if ";" in condition or _DECLARATION.match(condition):
            return
        self.add("condition", begin, end, "false")
        if word == "if":
            self.add("condition", begin, end, "true")
        signs = {token.text for token in self.tokens[i + 1 : self.tokens[i].partner]}
        # One comparison is negated as such.
        if not signs & (_COMPARISONS.keys() | {"!"}):
            self.add("condition", begin, end, f"!({condition})")

    def _loop(self, i):
        parts = [
            j
            for j in range(i + 1, self.tokens[i].partner)
            if self.tokens[j].text == ";"
        ]
        if len(parts) == 2 and parts[1] > parts[0] + 1:
            first, last = self.tokens[parts[0] + 1], self.tokens[parts[1] - 1]
            self.add("condition", first.begin, last.end, "false")

    def _end_of_statement(self, i):
        while i < len(self.tokens) and not self.source.is_text(i, ";"):
            if self.source.is_text(i, "(", "[", "{") and self.tokens[i].partner > i:
                i = self.tokens[i].partner
            elif self.source.is_text(i, ")", "]", "}"):
                return -1
            i += 1
        return i

    def _result(self, i):
        end = self._end_of_statement(i)
        if end < 0:
            return
        value = self.source.text[self.tokens[i].end : self.tokens[end].begin].strip()
        if value not in ("{}", "0", "false", "nullptr", "true", "1", "*this"):
            self.add("result", self.tokens[i].end, self.tokens[end].begin, " {}")

    def _choice(self, i):
        """The two values of a conditional expression, exchanged."""
        depth, j = 0, i + 1
        while j < len(self.tokens):
            text = self.tokens[j].text
            if self.tokens[j].partner > j:
                j = self.tokens[j].partner
            elif text == "?":
                depth += 1
            elif text == ":" and depth > 0:
                depth -= 1
            elif text == ":":
                break
            elif text in (";", ")", "}"):
                return
            j += 1
        colon, j = j, j + 1
        while j < len(self.tokens) and self.tokens[j].text not in (";", ",", ")", "}", "]", ":"):
            j = self.tokens[j].partner + 1 if self.tokens[j].partner > j else j + 1
        if j >= len(self.tokens):
            return
        first = self.source.text[self.tokens[i + 1].begin : self.tokens[colon - 1].end]
        second = self.source.text[self.tokens[colon + 1].begin : self.tokens[j - 1].end]
        self.add(
            "condition", self.tokens[i + 1].begin, self.tokens[j - 1].end, f"{second} : {first}"
        )

    def _statement(self, i):
        before = self.tokens[i - 1]
        starts = before.text in (";", "{", "}", "else", ":") or (
            before.text == ")"
            and 0 < before.partner
            and self.source.is_text(before.partner - 1, "if", "for", "while")
        )
        token = self.tokens[i]
        if not starts or token.text in _NO_STATEMENT or token.text in (";", "{", "}"):
            return
        end = self._end_of_statement(i)
        if end < 0:
            return
        statement = self.source.text[token.begin : self.tokens[end].end]
        if before.text == ":" and not re.match(r"[\w.>:\[\]-]+(\(| [-+|&^]?= )", statement):
            return
        if _DECLARATION.match(statement):
            return
        self.add("statement", token.begin, self.tokens[end].end, ";")

    def _end_of_element(self, i, close):
        while i < close and not self.source.is_text(i, ","):
            i = self.tokens[i].partner + 1 if self.tokens[i].partner > i else i + 1
        return i

    def _designator(self, i):
        """A column of a row that names its columns."""
        j = i
        while not self.source.is_text(j, ",", "}"):
            j = self.tokens[j].partner + 1 if self.tokens[j].partner > j else j + 1
            if j >= len(self.tokens):
                return
        if self.source.is_text(j, ","):
            self.add("column", self.tokens[i].begin, self.tokens[j].end, "")
        elif self.source.is_text(i - 1, ","):
            self.add("column", self.tokens[i - 1].begin, self.tokens[j - 1].end, "")

    def _tables(self):
        """Rows that are left out: the elements of what stands in braces outside of functions."""
        for i, token in enumerate(self.tokens):
            if token.text != "{" or token.place or token.partner < 0:
                continue
            # One row of named columns is no table.
            if self.tokens[i + 1].place != "table" or self.tokens[i + 1].text == ".":
                continue
            j = i + 1
            while j < token.partner:
                end = self._end_of_element(j, token.partner)
                last = end if self.source.is_text(end, ",") else end - 1
                self.add("row", self.tokens[j].begin, self.tokens[last].end, "")
                j = end + 1


def _shown(text):
    text = " ".join(text.split())
    return text if len(text) <= 60 else text[:40] + "..." + text[-17:]


def mutants_of(name, text, enumerations):
    """All faults of a file, in the order of their places."""
    source = Source(name, text)
    planter = _Planter(source, enumerations)
    planter.plant()
    result = []
    seen = {}
    for begin, end, replacement, kind in sorted(set(planter.found)):
        line = source.line_of(begin)
        number = source.function_at(line)
        function = source.functions[number].name if number >= 0 else ""
        change = f"{_shown(text[begin:end])} -> {_shown(replacement) or 'nothing'}"
        key = (function, source.line_text(line), change)
        seen[key] = seen.get(key, 0) + 1
        if seen[key] > 1:
            change += f" #{seen[key]}"
        result.append(
            Mutant(name, function, source.line_text(line), change, kind, line, begin, end, replacement)
        )
    return result
