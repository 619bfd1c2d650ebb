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
from zspace_kinds import (  # noqa: E402
    CONTENT,
    GUID_SIZE,
    KIND,
    KINDS,
    LENGTHS,
    NAME,
    TIME_SIZE,
    guid_text,
    time_text,
)

def lookup(name):
    if name.endswith("*"):
        return gdb.lookup_type(name[:-1].strip()).pointer()
    return gdb.lookup_type(name)


def read(address, size):
    return bytes(gdb.selected_inferior().read_memory(address, size))


def integer_at(address, size=8):
    """The number at an address; the layout of an atomic counter is that of its number."""
    return int.from_bytes(read(address, size), "little")


def template_name(value):
    return str(value.type.strip_typedefs().unqualified()).split("<")[0].replace("ZSpace::", "")


class StringPrinter:
    """ZGStr, ZMStr and ZStrToken."""

    def __init__(self, name, address):
        kind, character = name.replace("ZSpace::", "").rstrip(">").split("<")
        self.text = gdb.Value(integer_at(address)).cast(gdb.lookup_type(character).pointer())
        offset = LENGTHS[kind]
        self.length = -1 if offset is None else max(0, integer_at(address + offset, 4))

    def to_string(self):
        if int(self.text) == 0 or self.length == 0:
            return ""
        return self.text.lazy_string(length=self.length)

    def display_hint(self):
        return "string"


class SequencePrinter:
    """ZArray, whose elements are contiguous, and the lists, which hold pointers to theirs."""

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
            count = integer_at(int(self.value["m_ptCounter"]), 4)
        else:
            count = integer_at(int(self.value["m_ptCounted"]["m_counter"].address), 4)
        return "%s, 1 of %d" % (self.name, count)

    def children(self):
        if int(self.value["m_ptValue"]) != 0:
            yield "object", self.value["m_ptValue"].dereference()


class TextPrinter:
    def __init__(self, text):
        self.text = text

    def to_string(self):
        return self.text


def time_printer(value):
    return TextPrinter(time_text(read(int(value.address), TIME_SIZE)))


def guid_printer(value):
    return TextPrinter(guid_text(read(int(value.address), GUID_SIZE)))


def string_printer(value):
    return StringPrinter(str(value.type.strip_typedefs().unqualified()), int(value.address))


class ValuePrinter:
    """TZValueBase and its derived classes."""

    def __init__(self, value):
        address = int(value.address)
        self.kind = integer_at(address + KIND, 4)
        self.content_address = integer_at(address + CONTENT)
        self.name = integer_at(address + NAME)

    def content(self):
        """What the value holds; None if it cannot be shown."""
        name = KINDS.get(self.kind)
        address = self.content_address
        if name is None or address == 0:
            return None
        if name == "ZSpace::ZTime":
            return time_text(read(address, TIME_SIZE))
        if name == "ZSpace::ZGUID":
            return guid_text(read(address, GUID_SIZE))
        if name.startswith("ZSpace::ZGStr"):
            return StringPrinter(name, address).to_string()
        try:
            return gdb.Value(address).cast(lookup(name).pointer()).dereference()
        except gdb.error:  # the program knows no such type
            return None

    def to_string(self):
        name = KINDS.get(self.kind)
        if name is None:
            return "no value" if self.kind == 0 else "value of kind 0x%x" % self.kind
        return name.replace("ZSpace::", "")

    def children(self):
        if self.name != 0:
            yield "name", gdb.Value(self.name).cast(gdb.lookup_type("char").pointer()).string()
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
        ("ZGStr", "^ZSpace::(ZGStr|ZMStr|ZStrToken)<.*>$", string_printer),
        ("ZArray", "^ZSpace::ZArray<.*>$", lambda value: SequencePrinter(value, False)),
        ("ZList", "^ZSpace::(ZList|ZListing|ZSet)<.*>$", lambda value: SequencePrinter(value, True)),
        ("ZMap", "^ZSpace::ZMap<.*>$", MapPrinter),
        ("ZRef", "^ZSpace::(ZRef|ZReference)<.*>$", HandlePrinter),
        ("ZTime", "^ZSpace::ZTime$", time_printer),
        ("ZGUID", "^ZSpace::ZGUID$", guid_printer),
        ("TZValueBase", "^ZSpace::(TZValueBase<.*>|ZValue<.*>)$", ValuePrinter),
        ("ZLogRecord", "^ZSpace::ZLogRecord$", RecordPrinter),
    ):
        collection.add_printer(name, pattern, printer)
    return collection


def register(objfile):
    gdb.printing.register_pretty_printer(objfile, printers(), replace=True)


if __name__ == "__main__":  # by "source"
    register(None)
