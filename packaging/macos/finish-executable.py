#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Finishes an x86-64 Mach-O executable in place, after a link by Zig:
#   packaging/macos/finish-executable.py PROGRAM
#  - sorts the names of its weak binding information, as the loader of macOS 10.13 and 10.14 expects them;
#  - adds an ad-hoc code signature: hashes of the file's pages, without an identity.
import hashlib
import struct
import sys

MAGIC_64 = 0xFEEDFACF
LC_SEGMENT_64 = 0x19
LC_CODE_SIGNATURE = 0x1D
LC_DYLD_INFO_ONLY = 0x80000022

BIND_DONE, BIND_SYMBOL, BIND_TYPE, BIND_ADDEND, BIND_SEGMENT = 0x00, 0x40, 0x50, 0x60, 0x70
BIND_ADD_ADDRESS, BIND_HERE, BIND_THEN_ADD, BIND_THEN_ADD_SCALED, BIND_REPEATEDLY = 0x80, 0x90, 0xA0, 0xB0, 0xC0
POINTER_SIZE = 8

SIGNATURE_MAGIC = 0xFADE0CC0
DIRECTORY_MAGIC = 0xFADE0C02
DIRECTORY_VERSION = 0x20400  # the first with the bounds of the executable segment
DIRECTORY_FORMAT = ">9I4B4I4Q"
AD_HOC_BY_LINKER = 0x20002
HASH_SHA256 = 2
MAIN_BINARY = 1
PAGE_BITS = 12
PAGE = 1 << PAGE_BITS


class UnexpectedFile(Exception):
    pass


def aligned(number, alignment):
    return (number + alignment - 1) // alignment * alignment


class Executable:
    HEADER_SIZE = 32

    def __init__(self, content):
        self.content = bytearray(content)
        magic, _, _, _, self.count, self.commands_size = struct.unpack_from("<6I", content)
        if magic != MAGIC_64:
            raise UnexpectedFile("no 64-bit Mach-O file")

    def commands(self):
        """Yields offset and kind of each load command."""
        offset = self.HEADER_SIZE
        for _ in range(self.count):
            kind, size = struct.unpack_from("<2I", self.content, offset)
            yield offset, kind
            offset += size

    def command(self, kind):
        return next((offset for offset, found in self.commands() if found == kind), None)

    def segment(self, name):
        """The offset of the segment's load command and its offset in the file."""
        for offset, kind in self.commands():
            if kind == LC_SEGMENT_64 and self.content[offset + 8 : offset + 24].rstrip(b"\0") == name:
                return (offset, *struct.unpack_from("<2Q", self.content, offset + 40))
        raise UnexpectedFile(f"no segment {name.decode()}")

    def first_section_start(self):
        """The file offset at which the space for load commands ends."""
        starts = []
        for offset, kind in self.commands():
            if kind != LC_SEGMENT_64:
                continue
            (sections,) = struct.unpack_from("<I", self.content, offset + 64)
            for i in range(sections):
                start = struct.unpack_from("<I", self.content, offset + 72 + 80 * i + 48)[0]
                starts += [start] if start else []
        return min(starts)


class Opcodes:
    """Reads binding information."""

    def __init__(self, content):
        self.content = content
        self.at = 0

    def byte(self):
        self.at += 1
        return self.content[self.at - 1]

    def unsigned(self):
        number = shift = 0
        while True:
            byte = self.byte()
            number |= (byte & 0x7F) << shift
            shift += 7
            if byte < 0x80:
                return number

    def signed(self):
        start = self.at
        number = self.unsigned()
        bits = 7 * (self.at - start)
        return number - (1 << bits) if number >> (bits - 1) else number

    def name(self):
        end = self.content.index(b"\0", self.at)
        name = bytes(self.content[self.at : end])
        self.at = end + 1
        return name


def encoded_unsigned(number):
    """A ULEB128."""
    result = bytearray()
    while number > 0x7F:
        result.append(number & 0x7F | 0x80)
        number >>= 7
    return bytes(result) + bytes([number])


def encoded_signed(number):
    """An SLEB128."""
    result = bytearray()
    while not -0x40 <= number < 0x40:
        result.append(number & 0x7F | 0x80)
        number >>= 7
    return bytes(result) + bytes([number & 0x7F])


def read_binds(content):
    """The entries as {(name, flags): [(type, addend, segment, offset)]}."""
    binds = {}
    places = None
    kind = addend = segment = offset = 0
    opcodes = Opcodes(content)
    while opcodes.at < len(content):
        byte = opcodes.byte()
        opcode, immediate = byte & 0xF0, byte & 0x0F
        times, skip = 0, 0
        if opcode == BIND_DONE:
            break
        elif opcode == BIND_SYMBOL:
            places = binds.setdefault((opcodes.name(), immediate), [])
        elif opcode == BIND_TYPE:
            kind = immediate
        elif opcode == BIND_ADDEND:
            addend = opcodes.signed()
        elif opcode == BIND_SEGMENT:
            segment, offset = immediate, opcodes.unsigned()
        elif opcode == BIND_ADD_ADDRESS:
            offset = (offset + opcodes.unsigned()) % (1 << 64)
        elif opcode == BIND_HERE:
            times = 1
        elif opcode == BIND_THEN_ADD:
            times, skip = 1, opcodes.unsigned()
        elif opcode == BIND_THEN_ADD_SCALED:
            times, skip = 1, immediate * POINTER_SIZE
        elif opcode == BIND_REPEATEDLY:
            times, skip = opcodes.unsigned(), opcodes.unsigned()
        else:
            raise UnexpectedFile(f"binding opcode {byte:#x}")
        for _ in range(times):
            places.append((kind, addend, segment, offset))
            offset = (offset + POINTER_SIZE + skip) % (1 << 64)
    return binds


def entries_of(binds):
    """The places in the order of their symbols, as [(opcodes before, (segment, offset))], and the opcodes at the end."""
    entries = []
    opcodes = b""
    kind = addend = 0
    for (name, flags), places in sorted(binds.items()):
        opcodes += bytes([BIND_SYMBOL | flags]) + name + b"\0"
        for place in sorted(places, key=lambda place: place[2:]):
            if place[0] != kind:
                kind = place[0]
                opcodes += bytes([BIND_TYPE | kind])
            if place[1] != addend:
                addend = place[1]
                opcodes += bytes([BIND_ADDEND]) + encoded_signed(addend)
            entries.append((opcodes, place[2:]))
            opcodes = b""
    return entries, opcodes


def skip_after(entries, index):
    """How much to skip between a place and the next one; 0 if the next one is not ahead."""
    if index + 1 == len(entries):
        return 0
    (segment, offset), (next_segment, next_offset) = entries[index][1], entries[index + 1][1]
    return max(0, next_offset - offset - POINTER_SIZE) if segment == next_segment else 0


def bind(times, skip):
    """The opcodes that bind several places at equal distances, and skip as much after the last."""
    if times > 1:
        return bytes([BIND_REPEATEDLY]) + encoded_unsigned(times) + encoded_unsigned(skip)
    if skip == 0:
        return bytes([BIND_HERE])
    if skip % POINTER_SIZE == 0 and skip // POINTER_SIZE < 16:
        return bytes([BIND_THEN_ADD_SCALED | skip // POINTER_SIZE])
    return bytes([BIND_THEN_ADD]) + encoded_unsigned(skip)


def write_binds(binds):
    """The entries as opcodes, sorted by name."""
    entries, last_opcodes = entries_of(binds)
    result = bytearray()
    position = None
    index = 0
    while index < len(entries):
        opcodes, place = entries[index]
        if place != position:
            result += bytes([BIND_SEGMENT | place[0]]) + encoded_unsigned(place[1])
        result += opcodes
        skip, times = skip_after(entries, index), 0
        position = place
        while index < len(entries) and entries[index][1] == position and skip_after(entries, index) == skip and (
            times == 0 or not entries[index][0]
        ):
            position = (position[0], position[1] + POINTER_SIZE + skip)
            index, times = index + 1, times + 1
        result += bind(times, skip)
    return bytes(result) + last_opcodes + bytes([BIND_DONE])


def sort_weak_binds(executable):
    command = executable.command(LC_DYLD_INFO_ONLY)
    if command is None:
        raise UnexpectedFile("no LC_DYLD_INFO_ONLY")
    start, size = struct.unpack_from("<2I", executable.content, command + 24)
    if size == 0:
        return
    binds = read_binds(executable.content[start : start + size])
    written = write_binds(binds)
    if read_binds(written) != {key: sorted(places, key=lambda place: place[2:]) for key, places in binds.items()}:
        raise UnexpectedFile("the sorted binding information reads differently")
    if len(written) > size:
        raise UnexpectedFile(f"{len(written)} bytes of sorted binding information do not fit into {size}")
    executable.content[start : start + size] = written.ljust(size, b"\0")


def add_signature_command(executable):
    """Reserves space for a signature at the end of the file; returns its offset and size."""
    link_edit, link_edit_start, _ = executable.segment(b"__LINKEDIT")
    command = executable.command(LC_CODE_SIGNATURE)
    if command is not None:  # signed before
        (limit,) = struct.unpack_from("<I", executable.content, command + 8)
        del executable.content[limit:]
    else:
        limit = aligned(len(executable.content), 16)
        command = executable.HEADER_SIZE + executable.commands_size
        if command + 16 > executable.first_section_start() or any(executable.content[command : command + 16]):
            raise UnexpectedFile("no space for another load command")
        executable.count += 1
        executable.commands_size += 16
        struct.pack_into("<2I", executable.content, 16, executable.count, executable.commands_size)
        executable.content += bytes(limit - len(executable.content))
    return command, limit, link_edit, link_edit_start


def sign(executable, identifier):
    command, limit, link_edit, link_edit_start = add_signature_command(executable)
    pages = aligned(limit, PAGE) // PAGE
    name = identifier.encode() + b"\0"
    fixed = struct.calcsize(DIRECTORY_FORMAT)
    directory_size = fixed + len(name) + pages * hashlib.sha256().digest_size
    head = struct.pack(">5I", SIGNATURE_MAGIC, 20 + directory_size, 1, 0, 20)  # one blob, in slot 0
    size = aligned(len(head) + directory_size, 16)

    struct.pack_into("<4I", executable.content, command, LC_CODE_SIGNATURE, 16, limit, size)
    occupied = limit + size - link_edit_start
    struct.pack_into("<Q", executable.content, link_edit + 32, aligned(occupied, PAGE))
    struct.pack_into("<Q", executable.content, link_edit + 48, occupied)

    _, text_start, text_size = executable.segment(b"__TEXT")
    directory = struct.pack(
        DIRECTORY_FORMAT,
        DIRECTORY_MAGIC, directory_size, DIRECTORY_VERSION, AD_HOC_BY_LINKER,
        fixed + len(name), fixed, 0, pages, limit,  # offsets of hashes and name, special slots, slots, signed bytes
        hashlib.sha256().digest_size, HASH_SHA256, 0, PAGE_BITS,
        0, 0, 0, 0,  # no scatter list, no team
        0, text_start, text_size, MAIN_BINARY,
    ) + name
    for page in range(0, limit, PAGE):
        directory += hashlib.sha256(executable.content[page : min(page + PAGE, limit)]).digest()
    executable.content += (head + directory).ljust(size, b"\0")


def main():
    if len(sys.argv) != 2:
        print(f"usage: {sys.argv[0]} PROGRAM", file=sys.stderr)
        return 2
    path = sys.argv[1]
    with open(path, "rb") as file:
        executable = Executable(file.read())
    try:
        sort_weak_binds(executable)
        sign(executable, path.rsplit("/", 1)[-1])
    except UnexpectedFile as error:
        print(f"{path}: {error}", file=sys.stderr)
        return 1
    with open(path, "r+b") as file:
        file.write(executable.content)
        file.truncate()
    return 0


if __name__ == "__main__":
    sys.exit(main())
