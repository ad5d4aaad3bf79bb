"""Mach-O images as they lie in a file: load commands, sections, and memory by its address. 64 bits only."""

import struct
from dataclasses import dataclass, field

FAT_MAGIC = 0xCAFEBABE
MAGIC_64 = 0xFEEDFACF
ARCHITECTURES = {0x01000007: "x86_64", 0x0100000C: "arm64"}
KINDS = {2: "execute", 6: "dylib", 8: "bundle"}
FLAG_TWOLEVEL, FLAG_PIE = 0x80, 0x200000

LC_SEGMENT_64, LC_SYMTAB, LC_MAIN, LC_RPATH = 0x19, 0x2, 0x80000028, 0x8000001C
LC_VERSION_MIN_MACOSX, LC_BUILD_VERSION = 0x24, 0x32
LC_LOAD_DYLIB, LC_LOAD_WEAK_DYLIB, LC_REEXPORT_DYLIB = 0xC, 0x80000018, 0x8000001F
PLATFORM_MACOS = 1


@dataclass
class Command:
    kind: int
    offset: int  # in the file
    size: int


@dataclass
class Segment:
    address: int
    size: int
    offset: int  # in the image


@dataclass
class Image:
    """One architecture of a file. `start` is where it begins there."""

    data: bytes
    start: int
    architecture: str
    kind: str
    flags: int
    commands: list = field(default_factory=list)
    segments: list = field(default_factory=list)
    sections: dict = field(default_factory=dict)  # (segment, section) -> (address, size)

    def of_kind(self, *kinds):
        return [command for command in self.commands if command.kind in kinds]

    def text_of(self, command, where=8):
        """The text whose offset in the command stands at `where`."""
        begin = command.offset + struct.unpack_from("<I", self.data, command.offset + where)[0]
        return self.data[begin : command.offset + command.size].split(b"\0")[0].decode()

    def libraries(self):
        return [self.text_of(c) for c in self.of_kind(LC_LOAD_DYLIB, LC_LOAD_WEAK_DYLIB, LC_REEXPORT_DYLIB)]

    def minimum_system(self):
        """(major, minor) of the oldest macOS that loads the image; None without one, or for another system."""
        for command in self.of_kind(LC_VERSION_MIN_MACOSX):
            version = struct.unpack_from("<I", self.data, command.offset + 8)[0]
            return version >> 16, version >> 8 & 0xFF
        for command in self.of_kind(LC_BUILD_VERSION):
            platform, version = struct.unpack_from("<II", self.data, command.offset + 8)
            return (version >> 16, version >> 8 & 0xFF) if platform == PLATFORM_MACOS else None
        return None

    def offset_of(self, address):
        """Where in the file the byte of this address is; KeyError for an address that the file does not fill."""
        for segment in self.segments:
            if segment.address <= address < segment.address + segment.size:
                return self.start + segment.offset + address - segment.address
        raise KeyError(hex(address))

    def unpack(self, form, address):
        return struct.unpack_from("<" + form, self.data, self.offset_of(address))

    def text_at(self, address):
        begin = self.offset_of(address)
        return self.data[begin : self.data.index(b"\0", begin)].decode()

    def pointers(self, section):
        """(address, value) of the pointers that the section of the data segments consists of."""
        for (_, name), (address, size) in self.sections.items():
            if name == section:
                for place in range(address, address + size, 8):
                    yield place, self.unpack("Q", place)[0]


def _image(data, start):
    _, cpu, _, kind, count, _, flags, _ = struct.unpack_from("<8I", data, start)
    image = Image(data, start, ARCHITECTURES.get(cpu, hex(cpu)), KINDS.get(kind, str(kind)), flags)
    place = start + 32
    for _ in range(count):
        command = Command(*struct.unpack_from("<I", data, place), place, *struct.unpack_from("<I", data, place + 4))
        image.commands.append(command)
        if command.kind == LC_SEGMENT_64:
            name, address, _, offset, size, _, _, sections, _ = struct.unpack_from("<16sQQQQIIII", data, place + 8)
            image.segments.append(Segment(address, size, offset))
            for index in range(sections):
                section, segment, begin, length = struct.unpack_from("<16s16sQQ", data, place + 72 + 80 * index)
                image.sections[segment.strip(b"\0").decode(), section.strip(b"\0").decode()] = begin, length
        place += command.size
    return image


def images(data):
    """The images of a file's contents, one for each architecture; none for another kind of file."""
    if len(data) >= 32 and struct.unpack_from("<I", data)[0] == MAGIC_64:
        return [_image(data, 0)]
    if len(data) >= 8 and struct.unpack_from(">I", data)[0] == FAT_MAGIC:
        count = struct.unpack_from(">I", data, 4)[0]
        starts = [struct.unpack_from(">5I", data, 8 + 20 * index)[2] for index in range(count)]
        return [_image(data, start) for start in starts]
    return []
