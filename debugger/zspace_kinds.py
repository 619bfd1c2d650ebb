# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
"""Layouts, which do not change within a version of the binary interface.

Objects are read by their bytes, since a program's debug information may lack what only the library instantiates.
"""

import struct

# The offsets in a TZValueBase.
CONTENT, KIND, NAME = 8, 16, 24

# The offset of the length, if the object has one; the pointer to the characters comes first.
LENGTHS = {"ZGStr": None, "ZStrToken": 8, "ZMStr": 16}

TIME_SIZE = 10
GUID_SIZE = 16


def time_text(data):
    """The text of the bytes of a ZTime."""
    milliseconds, second, minute, hour, day, _, month, year = struct.unpack("<HBBBBBBH", data)
    return "%04d-%02d-%02dT%02d:%02d:%02d.%03d" % (year, month, day, hour, minute, second, milliseconds)


def guid_text(data):
    """The text of the bytes of a ZGUID."""
    first, second, third, rest = struct.unpack("<IHH8s", data)
    return "{%08x-%04x-%04x-%s-%s}" % (first, second, third, rest[:2].hex(), rest[2:].hex())


# The kinds with the type of the content.
KINDS = {
    0x2: "bool",
    0x4: "unsigned char",
    0x8: "signed char",
    0x10: "unsigned short",
    0x20: "short",
    0x40: "unsigned int",
    0x80: "int",
    0x100: "unsigned long long",
    0x200: "long long",
    0x1000: "float",
    0x2000: "double",
    0x10000: "char",
    0x20000: "wchar_t",
    0x40000: "char *",
    0x80000: "wchar_t *",
    0x100000: "ZSpace::ZGStr<char>",
    0x200000: "ZSpace::ZGStr<wchar_t>",
    0x400000: "ZSpace::TZBinary<unsigned char>",
    0x800000: "ZSpace::ZBITFIELD",
    0x1000000: "ZSpace::ZTime",
    0x2000000: "ZSpace::ZGUID",
}
