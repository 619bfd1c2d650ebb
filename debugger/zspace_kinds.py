# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
"""What the debuggers know of a TZValueBase (ZSpace/value/TZValue.h and ZTypeId.h).

Its bytes are read by their offsets, since a program's debug information may lack the class.
"""

CONTENT, KIND, NAME = 8, 16, 24

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
