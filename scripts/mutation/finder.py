# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

"""Finds the mutants of a source file, and writes the file with all of them behind switches (switch.h)."""

import hashlib
import re

import clang.cindex
from clang.cindex import CursorKind

OPERATORS = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==",
    "+": "-", "-": "+", "*": "+", "/": "*", "%": "/",
    "&&": "||", "||": "&&", "&": "|", "|": "&", "<<": ">>", ">>": "<<",
}  # fmt: skip
ASSIGNMENTS = {"+=": "-=", "-=": "+=", "|=": "&=", "&=": "|=", "*=": "+="}
# The order of the first two arguments makes no difference. (`clamp` is `min(max(value, low), high)`.)
SYMMETRIC = re.compile(r"max|min|swap|clamp|sumOf|productOf|equalChars|mismatch|mismatchIgnoreCase|pthread_equal")
STATEMENTS = {CursorKind.CALL_EXPR, CursorKind.BINARY_OPERATOR, CursorKind.UNARY_OPERATOR,
              CursorKind.COMPOUND_ASSIGNMENT_OPERATOR}  # fmt: skip


class Mutant:
    """One change: the bytes [begin, end) of a file are wrapped so that `changed` acts while the switch is on."""

    def __init__(self, begin, end, kind, changed, form):
        self.begin, self.end, self.kind, self.changed, self.form = begin, end, kind, changed, form
        self.number = -1
        self.key = ""
        self.line = 0


def flat(text):
    """`text` on one line, without comments, so that a copy of it does not move the lines below."""
    text = re.sub(r"//[^\n]*|/\*.*?\*/", " ", text, flags=re.S)
    return re.sub(r"\s*\n\s*", " ", text)


class Source:
    """A file with the mutants that were found in it."""

    def __init__(self, root, name):
        self.root = root
        self.name = name
        self.data = (root / name).read_bytes()
        self.mutants = []
        self.spans = []

    def text(self, begin, end):
        return self.data[begin:end].decode()

    def add(self, begin, end, kind, changed, form="({on} ? ({changed}) : ({original}))"):
        if begin < end and not any(m.begin == begin and m.end == end and m.kind == kind for m in self.mutants):
            self.mutants.append(Mutant(begin, end, kind, flat(changed), form))

    def state(self):
        """Changes with the code, but not with comments and line breaks."""
        return hashlib.sha256(" ".join(flat(self.data.decode()).split()).encode()).hexdigest()

    def name_mutants(self):
        """Gives each mutant a key that survives changes elsewhere in the file."""
        seen = {}
        for mutant in self.mutants:
            mutant.line = self.data.count(b"\n", 0, mutant.begin) + 1
            what = f"{self.name}: {mutant.kind}: {flat(self.text(mutant.begin, mutant.end))}"
            what = what if len(what) < 150 else what[:150] + "..."
            seen[what] = seen.get(what, 0) + 1
            mutant.key = what if seen[what] == 1 else f"{what} ({seen[what]})"

    def mutated(self, disabled):
        """The text with every mutant that is not disabled; notes where each one stands in it."""
        self.spans = []
        used = [m for m in self.mutants if m.key not in disabled]
        return self._render(0, len(self.data), used, 0)

    def _render(self, begin, end, mutants, offset):
        out = bytearray()
        position = begin
        index = 0
        while index < len(mutants):
            mutant = mutants[index]
            inner = []
            index += 1
            while index < len(mutants) and mutants[index].begin < mutant.end:
                if mutants[index].end <= mutant.end:
                    inner.append(mutants[index])
                index += 1
            out += self.data[position:mutant.begin]
            head, tail = mutant.form.replace("{on}", f"mutation::on({mutant.number})").replace(
                "{changed}", mutant.changed).split("{original}")  # fmt: skip
            start = offset + len(out)
            out += head.encode()
            out += self._render(mutant.begin, mutant.end, inner, offset + len(out))
            out += tail.encode()
            self.spans.append((start, offset + len(out), mutant))
            position = mutant.end
        out += self.data[position:end]
        return bytes(out)


class Finder:
    """Finds the mutants in the functions of a file."""

    def __init__(self, source):
        self.source = source
        self.path = str(source.root / source.name)

    def visit(self, cursor, in_function):
        for child in cursor.get_children():
            location = child.extent.start
            if location.file and location.file.name != self.path:
                continue
            self.look(child, cursor, in_function)

    def look(self, cursor, parent, in_function):
        kind = cursor.kind
        if kind in (CursorKind.STATIC_ASSERT, CursorKind.CASE_STMT, CursorKind.ENUM_DECL, CursorKind.CXX_METHOD,
                    CursorKind.TYPE_ALIAS_DECL) and kind != CursorKind.CXX_METHOD:  # fmt: skip
            if kind == CursorKind.CASE_STMT:  # the label is a constant, the statement is not
                for child in list(cursor.get_children())[1:]:
                    self.look(child, cursor, in_function)
            return
        if kind == CursorKind.VAR_DECL and self.is_constant(cursor):
            return
        if kind == CursorKind.IF_STMT and re.match(r"if\s+constexpr", self.text(cursor)):
            for child in list(cursor.get_children())[1:]:
                self.look(child, cursor, in_function)
            return
        inside = in_function or kind == CursorKind.COMPOUND_STMT
        if inside and not self.is_macro(cursor):
            self.mutate(cursor, parent)
        self.visit(cursor, inside)

    def is_constant(self, cursor):
        return "constexpr" in self.text(cursor).split("=")[0]

    def is_macro(self, cursor):
        text = self.text(cursor)
        return not text or re.search(r"\b(EXPECT|assert|offsetof|va_arg|va_start|va_end|va_copy)\b", text) is not None

    def text(self, cursor):
        return self.source.text(cursor.extent.start.offset, cursor.extent.end.offset)

    def range(self, cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def mutate(self, cursor, parent):
        kind = cursor.kind
        children = list(cursor.get_children())
        if parent.kind == CursorKind.COMPOUND_STMT and kind in STATEMENTS | {CursorKind.UNEXPOSED_EXPR}:
            begin, end = self.range(cursor)
            if not self.text(cursor).startswith("(void)"):
                self.source.add(begin, end, "remove", "", "do {{ if (!{on}) {{ {original}; }} }} while (false)"
                                .replace("{{", "{").replace("}}", "}"))  # fmt: skip
        if kind == CursorKind.BINARY_OPERATOR and len(children) == 2:
            self.operator(cursor, children, OPERATORS)
        elif kind == CursorKind.COMPOUND_ASSIGNMENT_OPERATOR and len(children) == 2:
            self.operator(cursor, children, ASSIGNMENTS)
        elif kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT, CursorKind.CONDITIONAL_OPERATOR):
            self.condition(cursor, children)
        elif kind == CursorKind.INTEGER_LITERAL:
            self.number(cursor, parent)
        elif kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            other = "false" if self.text(cursor) == "true" else "true"
            self.source.add(*self.range(cursor), "flag", other)
        elif kind == CursorKind.CALL_EXPR:
            self.arguments(cursor)

    def operator(self, cursor, children, table):
        left_end, right_begin = children[0].extent.end.offset, children[1].extent.start.offset
        between = flat(self.source.text(left_end, right_begin)).strip()
        begin, end = self.range(cursor)
        if between in table and begin <= left_end <= right_begin <= end:
            changed = self.source.text(begin, left_end) + " " + table[between] + " " + self.source.text(right_begin, end)
            self.source.add(begin, end, f"{between} to {table[between]}", changed)

    def condition(self, cursor, children):
        if not children:
            return
        head = self.source.text(cursor.extent.start.offset, children[0].extent.start.offset)
        condition = children[0]
        if "constexpr" in head or condition.kind in (CursorKind.VAR_DECL, CursorKind.DECL_STMT):
            return
        begin, end = self.range(condition)
        self.source.add(begin, end, "negate", f"!({self.source.text(begin, end)})",
                        "({on} ? static_cast<bool>({changed}) : static_cast<bool>({original}))")  # fmt: skip

    def number(self, cursor, parent):
        text = self.text(cursor)
        begin, end = self.range(cursor)
        before = self.source.text(max(0, begin - 1), begin)
        if not re.fullmatch(r"(0[xX])?[0-9a-fA-F']+[uUlL]*", text) or before in "[<":
            return
        self.source.add(begin, end, "number", f"{text} + 1" if text.rstrip("uUlL") != "1" else f"{text} - 1")

    def arguments(self, cursor):
        arguments = list(cursor.get_arguments())
        name = cursor.spelling
        if len(arguments) < 2 or name.startswith("operator") or SYMMETRIC.fullmatch(name):
            return
        begin, end = self.range(cursor)
        first, second = arguments[0].extent, arguments[1].extent
        b1, e1, b2, e2 = first.start.offset, first.end.offset, second.start.offset, second.end.offset
        if not begin < b1 < e1 < b2 < e2 <= end or self.source.text(b1, e1) == self.source.text(b2, e2):
            return
        text = self.source.text
        if text(end - 1, end) != ")":
            return  # braces: a construction, which a conditional may not copy
        changed = text(begin, b1) + text(b2, e2) + text(e1, b2) + text(b1, e1) + text(e2, end)
        self.source.add(begin, end, "swap", changed)


def find(source):
    """Adds the mutants of `source` to it."""
    finder = Finder(source)
    unit = clang.cindex.Index.create().parse(finder.path, args=["-x", "c++", "-std=c++20", f"-I{source.root}"])
    finder.visit(unit.cursor, False)
    source.mutants.sort(key=lambda m: (m.begin, -m.end, m.kind))
