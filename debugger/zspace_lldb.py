# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
"""Shows the strings, containers, handles, times, GUIDs, values and log records of ZSpace in LLDB.

    (lldb) command script import /usr/share/zspace/debugger/zspace_lldb.py

A line with this command in ~/.lldbinit loads it each time.
"""

import lldb

from zspace_kinds import CONTENT, GUID_SIZE, KIND, KINDS, LENGTHS, NAME, TIME_SIZE, guid_text, time_text


def member(value, name):
    """A member of an object or of one of its bases."""
    value = value.GetNonSyntheticValue()
    found = value.GetChildMemberWithName(name)
    for i in range(value.GetNumChildren()):
        if found.IsValid():
            break
        if value.GetType().GetNumberOfDirectBaseClasses() > i:
            found = member(value.GetChildAtIndex(i), name)
    return found


def number(value, name):
    return member(value, name).GetValueAsSigned()


def read_number(value, address, size=8):
    return value.GetProcess().ReadUnsignedFromMemory(address, size, lldb.SBError())


def read(value, address, size):
    return value.GetProcess().ReadMemory(address, size, lldb.SBError()) or bytes(size)


def quoted(value, address, width, length=None):
    """The characters at an address, up to the terminator unless the length is given."""
    codes = []
    while address != 0 and len(codes) < (1000 if length is None else min(length, 1000)):
        code = read_number(value, address, width)
        if code == 0 and length is None:
            break
        codes.append(code)
        address += width
    if width == 1:
        text = bytes(codes).decode("utf-8", "replace")
    else:
        text = "".join(chr(code) if code < 0x110000 else "\ufffd" for code in codes)
    return '%s"%s"' % ("L" if width > 1 else "", text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n"))


def string_text(value, name, address):
    """The string of this class at an address."""
    kind, character = name.replace("ZSpace::", "").rstrip(">").split("<")
    offset = LENGTHS[kind]
    length = None if offset is None else read_number(value, address + offset, 4)
    characters = read_number(value, address)
    if character == "":  # a class that is only declared has no template argument: guess from the first unit
        first = read(value, characters, 4)
        width = 4 if first[0] != 0 and first[1:] == bytes(3) else 1
    else:
        width = 4 if character == "wchar_t" else 1
    return quoted(value, characters, width, length)


def address_of(value):
    return value.GetNonSyntheticValue().GetLoadAddress()


def string_summary(value, _):
    return string_text(value, value.GetType().GetCanonicalType().GetUnqualifiedType().GetName(), address_of(value))


def time_summary(value, _):
    return time_text(read(value, address_of(value), TIME_SIZE))


def guid_summary(value, _):
    return guid_text(read(value, address_of(value), GUID_SIZE))


def handle_summary(value, _):
    if member(value, "m_ptValue").GetValueAsUnsigned() == 0:
        return "empty"
    counter = member(value, "m_ptCounter")
    if not counter.IsValid():
        counter = member(member(value, "m_ptCounted").Dereference(), "m_counter").AddressOf()
    return "1 of %d" % (read_number(value, counter.GetValueAsUnsigned()) & 0xFFFFFFFF)


def sequence_summary(value, _):
    return "%d elements" % number(value, "m_count")


def value_text(value, address):
    """The value at an address, as one line; `value` is anything in the process."""
    kind = read_number(value, address + KIND, 4)
    content = read_number(value, address + CONTENT)
    name = read_number(value, address + NAME)
    prefix = ""
    if name != 0:
        prefix = "%s = " % value.GetProcess().ReadCStringFromMemory(name, 100, lldb.SBError())
    if kind == 0:
        return prefix + "no value"
    shown = content_text(value, kind, content)
    if shown is None:
        return prefix + "value of kind 0x%x" % kind
    return "%s%s %s" % (prefix, KINDS[kind].replace("ZSpace::", ""), shown)


def content_text(value, kind, address):
    """What a value holds; None if it cannot be shown."""
    name = KINDS.get(kind)
    if name is None or address == 0:
        return None
    if name == "ZSpace::ZTime":
        return time_text(read(value, address, TIME_SIZE))
    if name == "ZSpace::ZGUID":
        return guid_text(read(value, address, GUID_SIZE))
    if name.startswith("ZSpace::ZGStr"):
        return string_text(value, name, address)
    content = value.GetTarget().FindFirstType(name.rstrip(" *"))
    if name.endswith("*"):
        content = content.GetPointerType()
    held = value.CreateValueFromAddress("value", address, content) if content.IsValid() else None
    return (held.GetSummary() or held.GetValue()) if held is not None and held.IsValid() else None


def value_summary(value, _):
    return value_text(value, address_of(value))


def record_summary(value, _):
    items = member(value, "m_items")
    block = member(items, "m_block").GetValueAsUnsigned()
    texts = []
    for index in range(min(number(items, "m_count"), 100)):
        handle = read_number(value, block + 8 * index)
        texts.append(value_text(value, read_number(value, handle + 8)))
    return "[%s]" % ", ".join(texts)


class Elements:
    """The elements of ZArray, which are contiguous, or of the lists, which hold pointers to them."""

    holds_pointers = False

    def __init__(self, value, _):
        self.value = value
        self.update()

    def update(self):
        self.count = number(self.value, "m_count")
        self.block = member(self.value, "m_block")
        self.type = self.block.GetType().GetPointeeType()

    def num_children(self):
        return max(0, min(self.count, 1000))

    def get_child_index(self, name):
        return int(name.strip("[]"))

    def get_child_at_index(self, index):
        address = self.block.GetValueAsUnsigned() + index * self.type.GetByteSize()
        kind = self.type
        if self.holds_pointers:
            address = read_number(self.value, address)
            kind = kind.GetPointeeType()
        return self.value.CreateValueFromAddress("[%d]" % index, address, kind)

    def has_children(self):
        return True


class PointedElements(Elements):
    holds_pointers = True


class Object:
    """What a handle holds."""

    def __init__(self, value, _):
        self.value = value
        self.update()

    def update(self):
        self.pointer = member(self.value, "m_ptValue")

    def num_children(self):
        return 0 if self.pointer.GetValueAsUnsigned() == 0 else 1

    def get_child_index(self, _):
        return 0

    def get_child_at_index(self, _):
        kind = self.pointer.GetType().GetPointeeType()
        return self.value.CreateValueFromAddress("object", self.pointer.GetValueAsUnsigned(), kind)

    def has_children(self):
        return True


def pair_summary(value, _):
    def shown(name):
        part = member(value, name)
        return part.GetSummary() or part.GetValue() or "..."

    return "%s: %s" % (shown("first"), shown("second"))


def __lldb_init_module(debugger, _):
    summaries = (
        ("(ZGStr|ZMStr|ZStrToken)<.*>", "string_summary", True),
        ("ZTime", "time_summary", True),
        ("ZGUID", "guid_summary", True),
        ("(ZRef|ZReference)<.*>", "handle_summary", False),
        ("(ZArray|ZList|ZListing|ZSet|ZMap)<.*>", "sequence_summary", False),
        ("ZPair<.*>", "pair_summary", True),
        ("(TZValueBase|ZValue)<.*>", "value_summary", True),
        ("ZLogRecord", "record_summary", True),
    )
    for pattern, function, hides_members in summaries:
        debugger.HandleCommand(
            'type summary add -w zspace %s -x "^ZSpace::%s$" -F zspace_lldb.%s'
            % ("" if hides_members else "-e", pattern, function)
        )
    for pattern, provider in (
        ("ZArray<.*>", "Elements"),
        ("(ZList|ZListing|ZSet|ZMap)<.*>", "PointedElements"),
        ("(ZRef|ZReference)<.*>", "Object"),
    ):
        debugger.HandleCommand(
            'type synthetic add -w zspace -x "^ZSpace::%s$" -l zspace_lldb.%s' % (pattern, provider)
        )
    debugger.HandleCommand("type category enable zspace")
