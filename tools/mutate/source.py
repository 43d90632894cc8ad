"""What stands where in a C++ file: its tokens, the functions and the tables that hold them.

Not a parser: it relies on the format of this tree (.clang-format), where a binary operator stands
between blanks and a unary one does not.
"""

import bisect
import dataclasses
import re

_TOKEN = re.compile(
    r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:\\\n|[^\n])*)
  | (?P<text>"(?:\\.|[^"\\\n])*")
  | (?P<character>'(?:\\.|[^'\\\n])+')
  | (?P<number>0[xX][0-9a-fA-F']+[uUlL]*|\d+\.\d+|\d[\d']*[uUlL]*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<sign><<=|>>=|\.\.\.|->|\+\+|--|&&|\|\||[-+*/%&|^=!<>]=|<<|>>|::|\[\[|\]\]|\S)
    """,
    re.X | re.S | re.M,
)
_CLOSING = {"(": ")", "[": "]", "{": "}", "[[": "]]"}


@dataclasses.dataclass
class Token:
    kind: str  # text, character, number, name or sign
    text: str
    begin: int
    end: int
    # What holds it: "function", "table" (an initialiser outside of functions), "enum" or "".
    place: str = ""
    # Number of the function that holds it, or -1.
    function: int = -1
    # The position of the bracket that belongs to this one.
    partner: int = -1
    # Whether it stands where no fault is planted.
    skipped: bool = False


@dataclasses.dataclass
class Function:
    name: str
    first_line: int
    last_line: int


class Source:
    """A file's tokens, without comments and directives."""

    def __init__(self, name, text):
        self.name = name
        self.text = text
        self._lines = [0] + [match.end() for match in re.finditer("\n", text)]
        self.functions = []
        self.tokens = [
            Token(match.lastgroup, match.group(), match.start(), match.end())
            for match in _TOKEN.finditer(text)
            if match.lastgroup not in ("comment", "directive")
        ]
        self._match_brackets()
        self._find_places()
        self._skip_declarations()

    def line_of(self, position):
        """The number of a line, from 1."""
        return bisect.bisect_right(self._lines, position)

    def line_text(self, line):
        end = self._lines[line] if line < len(self._lines) else len(self.text)
        return self.text[self._lines[line - 1] : end].strip()

    def function_at(self, line):
        """The number of the innermost function of a line, or -1."""
        found = -1
        for number, function in enumerate(self.functions):
            if function.first_line <= line <= function.last_line:
                if found < 0 or function.first_line >= self.functions[found].first_line:
                    found = number
        return found

    def is_text(self, i, *texts):
        return 0 <= i < len(self.tokens) and self.tokens[i].text in texts

    def is_spaced(self, i):
        """Whether a sign stands between blanks, as a binary operator does."""
        token = self.tokens[i]
        return self.text[token.begin - 1 : token.begin].isspace() and self.text[
            token.end : token.end + 1
        ].isspace()

    def _match_brackets(self):
        open_ones = []
        for i, token in enumerate(self.tokens):
            if token.kind != "sign":
                continue
            if token.text in _CLOSING:
                open_ones.append(i)
            elif open_ones and token.text == _CLOSING[self.tokens[open_ones[-1]].text]:
                token.partner = open_ones.pop()
                self.tokens[token.partner].partner = i
            elif token.text == "]]" and open_ones and self.tokens[open_ones[-1]].text == "[":
                # The ends of two subscripts.
                self.tokens[open_ones.pop()].partner = i
                if open_ones and self.tokens[open_ones[-1]].text == "[":
                    self.tokens[open_ones.pop()].partner = i

    def _head_of(self, i):
        """The tokens of what a brace belongs to."""
        begin = i
        while begin > 0 and self.tokens[begin - 1].text not in (";", "{", "}"):
            begin -= 1
            partner = self.tokens[begin].partner
            if self.tokens[begin].text in (")", "]", "]]") and 0 <= partner < begin:
                begin = partner
        return begin

    def _kind_of_brace(self, i):
        """What a brace outside of functions opens: its kind, and the name of a function."""
        begin = self._head_of(i)
        top = []  # what stands outside of brackets
        j = begin
        while j < i:
            top.append(j)
            if self.tokens[j].text in _CLOSING and self.tokens[j].partner > j:
                j = self.tokens[j].partner
            j += 1
        words = [self.tokens[j].text for j in top]
        if "namespace" in words or words[:1] == ["extern"] and self.tokens[i - 1].kind == "text":
            return "", None, begin
        if "=" in words:
            return "table", None, begin
        if "enum" in words:
            return "enum", None, begin
        if ":" in words:
            j = words.index(":")
            if "(" in words[:j]:
                top, words = top[:j], words[:j]
        named = [
            self.tokens[top[k - 1]].text
            for k, word in enumerate(words)
            if word == "(" and k > 0 and words[k - 1] not in ("noexcept", "alignas", "requires")
        ]
        if named:
            return "function", named[-1], begin
        if {"struct", "class", "union"} & set(words):
            return "", None, begin
        return "table", None, begin

    def _find_places(self):
        open_ones = []  # kind and number of the function
        for i, token in enumerate(self.tokens):
            kind, function = open_ones[-1] if open_ones else ("", -1)
            token.place, token.function = kind, function
            if token.text == "{":
                if kind not in ("function", "table", "enum"):
                    kind, name, begin = self._kind_of_brace(i)
                    if kind == "function":
                        function = len(self.functions)
                        first = self.line_of(self.tokens[begin].begin)
                        last = self.tokens[token.partner].end if token.partner > 0 else len(self.text)
                        self.functions.append(Function(name, first, self.line_of(last - 1)))
                open_ones.append((kind, function))
            elif token.text == "}" and open_ones:
                open_ones.pop()

    def _skip(self, begin, end):
        for token in self.tokens[begin:end]:
            token.skipped = True

    def _skip_declarations(self):
        """What the compiler alone reads."""
        for i, token in enumerate(self.tokens):
            if token.text in ("static_assert", "alignas", "decltype", "noexcept", "sizeof"):
                if self.is_text(i + 1, "("):
                    self._skip(i, self.tokens[i + 1].partner + 1)
            elif token.text == "[[" and token.partner > i:
                self._skip(i, token.partner + 1)
            elif token.text == "template" and self.is_text(i + 1, "<"):
                depth = 0
                for j in range(i + 1, len(self.tokens)):
                    depth += {"<": 1, ">": -1, ">>": -2}.get(self.tokens[j].text, 0)
                    self.tokens[j].skipped = True
                    if depth <= 0:
                        break
            elif token.text == "using" or token.text == "extern":
                j = i
                while not self.is_text(j, ";", "{"):
                    j += 1
                self._skip(i, j)
