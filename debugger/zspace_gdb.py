# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
"""Shows the strings, containers, handles, times, GUIDs, values and log records of ZSpace in GDB.

GDB loads it by itself with an installed shared library. Elsewhere:

    (gdb) source /usr/share/zspace/debugger/zspace_gdb.py
"""

import os
import sys

import gdb
import gdb.printing

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from zspace_kinds import CONTENT, KIND, KINDS, NAME  # noqa: E402

def lookup(name):
    if name.endswith("*"):
        return gdb.lookup_type(name[:-1].strip()).pointer()
    return gdb.lookup_type(name)


def integer_at(address):
    """The 64-bit number at an address: the layout of an atomic counter is that of its number."""
    return int(address.cast(gdb.lookup_type("unsigned long").pointer()).dereference())


def template_name(value):
    return str(value.type.strip_typedefs().unqualified()).split("<")[0].replace("ZSpace::", "")


class StringPrinter:
    """ZMStr and ZStrToken."""

    def __init__(self, value):
        self.text = value["m_buffer" if template_name(value) == "ZMStr" else "m_text"]
        self.length = int(value["m_length"])

    def to_string(self):
        if int(self.text) == 0 or self.length <= 0:
            return ""
        return self.text.lazy_string(length=self.length)

    def display_hint(self):
        return "string"


class OwnedStringPrinter:
    """ZGStr, which stores no length."""

    def __init__(self, value):
        self.text = value["m_text"]

    def to_string(self):
        return "" if int(self.text) == 0 else self.text.lazy_string()

    def display_hint(self):
        return "string"


class SequencePrinter:
    """ZArray, whose elements stand side by side, and the lists, which hold pointers to theirs."""

    def __init__(self, value, holds_pointers):
        self.name = template_name(value)
        self.block = value["m_block"]
        self.count = int(value["m_count"])
        self.holds_pointers = holds_pointers

    def element(self, index):
        element = (self.block + index).dereference()
        return element.dereference() if self.holds_pointers else element

    def to_string(self):
        return "%s of %d" % (self.name, self.count)

    def children(self):
        for index in range(self.count):
            yield "[%d]" % index, self.element(index)

    def display_hint(self):
        return "array"


class MapPrinter(SequencePrinter):
    def __init__(self, value):
        super().__init__(value, True)

    def children(self):
        for index in range(self.count):
            pair = self.element(index)
            yield "[%d].key" % index, pair["first"]
            yield "[%d].value" % index, pair["second"]

    def display_hint(self):
        return "map"


class HandlePrinter:
    """ZRef and ZReference."""

    def __init__(self, value):
        self.name = template_name(value)
        self.value = value

    def to_string(self):
        if int(self.value["m_ptValue"]) == 0:
            return "%s (empty)" % self.name
        if self.name == "ZRef":
            count = integer_at(self.value["m_ptCounter"]) & 0xFFFFFFFF
        else:
            count = integer_at(self.value["m_ptCounted"]["m_counter"].address) & 0xFFFFFFFF
        return "%s, 1 of %d" % (self.name, count)

    def children(self):
        if int(self.value["m_ptValue"]) != 0:
            yield "object", self.value["m_ptValue"].dereference()


class TimePrinter:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        names = ("year", "month", "day", "hour", "minute", "second", "milliseconds")
        return "%04d-%02d-%02dT%02d:%02d:%02d.%03d" % tuple(int(self.value["m_" + name]) for name in names)


class GuidPrinter:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        rest = "".join("%02x" % int(self.value["data4"][i]) for i in range(8))
        fields = tuple(int(self.value["data%d" % i]) for i in (1, 2, 3))
        return "{%08x-%04x-%04x-%s-%s}" % (fields + (rest[:4], rest[4:]))


class ValuePrinter:
    """TZValueBase and its derived classes."""

    def __init__(self, value):
        address = value.address.cast(gdb.lookup_type("char").pointer())
        self.kind = integer_at(address + KIND) & 0xFFFFFFFF
        self.content_address = gdb.Value(integer_at(address + CONTENT))
        self.name = gdb.Value(integer_at(address + NAME)).cast(gdb.lookup_type("char").pointer())

    def content(self):
        """What the value holds; None if it cannot be shown."""
        name = KINDS.get(self.kind)
        if name is None or int(self.content_address) == 0:
            return None
        return self.content_address.cast(lookup(name).pointer()).dereference()

    def to_string(self):
        name = KINDS.get(self.kind)
        if name is None:
            return "no value" if self.kind == 0 else "value of kind 0x%x" % self.kind
        return name.replace("ZSpace::", "")

    def children(self):
        if int(self.name) != 0:
            yield "name", self.name.string()
        content = self.content()
        if content is not None:
            yield "value", content


class RecordPrinter:
    def __init__(self, value):
        self.items = SequencePrinter(value["m_items"], True)

    def to_string(self):
        return "ZLogRecord of %d" % self.items.count

    def children(self):
        for index in range(self.items.count):
            item = ValuePrinter(self.items.element(index)["m_ptValue"].dereference())
            content = item.content()
            yield "[%d]" % index, item.to_string() if content is None else content

    def display_hint(self):
        return "array"


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("zspace")
    for name, pattern, printer in (
        ("ZGStr", "^ZSpace::ZGStr<.*>$", OwnedStringPrinter),
        ("ZMStr", "^ZSpace::(ZMStr|ZStrToken)<.*>$", StringPrinter),
        ("ZArray", "^ZSpace::ZArray<.*>$", lambda value: SequencePrinter(value, False)),
        ("ZList", "^ZSpace::(ZList|ZListing|ZSet)<.*>$", lambda value: SequencePrinter(value, True)),
        ("ZMap", "^ZSpace::ZMap<.*>$", MapPrinter),
        ("ZRef", "^ZSpace::(ZRef|ZReference)<.*>$", HandlePrinter),
        ("ZTime", "^ZSpace::ZTime$", TimePrinter),
        ("ZGUID", "^ZSpace::ZGUID$", GuidPrinter),
        ("TZValueBase", "^ZSpace::(TZValueBase<.*>|ZValue<.*>)$", ValuePrinter),
        ("ZLogRecord", "^ZSpace::ZLogRecord$", RecordPrinter),
    ):
        collection.add_printer(name, pattern, printer)
    return collection


def register(objfile):
    gdb.printing.register_pretty_printer(objfile, printers(), replace=True)


if __name__ == "__main__":  # by "source"
    register(None)
