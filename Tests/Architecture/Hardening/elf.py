"""Reads what the loader reads of a program or library: 64-bit little-endian ELF. Numbers are those of elf.h."""
import struct

LOAD, DYNAMIC, INTERPRETER = 1, 2, 3
STACK, RELRO, PROPERTY = 0x6474E551, 0x6474E552, 0x6474E553
EXECUTE, WRITE = 1, 2
NEEDED, STRINGS, RUN_PATH_OLD, TEXT_RELOCATIONS, RUN_PATH, FLAGS, FLAGS_1 = 1, 5, 15, 22, 29, 30, 0x6FFFFFFB
DYNAMIC_SYMBOLS = 11
BIND_NOW, NOW, PIE = 8, 1, 0x08000000
X86_FEATURES, BRANCHES, SHADOW_STACK = 0xC0000002, 1, 2
ENDBR64 = b"\xf3\x0f\x1e\xfa"
SHARED_OBJECT, X86_64 = 3, 62
FUNCTION = 2


class Elf:
    """One file: `segments` as (type, flags, offset, address, size in the file), `dynamic` as tag -> values."""

    def __init__(self, path):
        self.data = path.read_bytes()
        if self.data[:6] != b"\x7fELF\x02\x01":
            raise ValueError(f"{path} is no 64-bit little-endian ELF file")
        self.kind, self.machine = struct.unpack_from("<HH", self.data, 16)
        start, = struct.unpack_from("<Q", self.data, 32)
        size, count = struct.unpack_from("<HH", self.data, 54)
        self.segments = []
        for index in range(count):
            kind, flags, offset, address, _, length = struct.unpack_from("<IIQQQQ", self.data, start + index * size)
            self.segments.append((kind, flags, offset, address, length))
        self.dynamic = {}
        for _, _, offset, _, length in self.of_kind(DYNAMIC):
            for tag, value in struct.iter_unpack("<QQ", self.data[offset:offset + length]):
                if tag == 0:
                    break
                self.dynamic.setdefault(tag, []).append(value)

    def of_kind(self, kind):
        return [segment for segment in self.segments if segment[0] == kind]

    def at(self, address):
        """Where in the file lies what is loaded to `address`; None where nothing does."""
        for _, _, offset, begin, size in self.of_kind(LOAD):
            if begin <= address < begin + size:
                return offset + address - begin
        return None

    def flag(self, tag, bit):
        return any(value & bit for value in self.dynamic.get(tag, []))

    def text(self, index):
        begin = self.at(self.dynamic[STRINGS][0]) + index
        return self.data[begin:self.data.index(b"\0", begin)].decode()

    def texts(self, tag):
        return [self.text(index) for index in self.dynamic.get(tag, [])]

    def symbols(self):
        """What it takes from others as (name, None), and its own functions as (name, place in the file)."""
        start, = struct.unpack_from("<Q", self.data, 40)
        section_size, sections = struct.unpack_from("<HH", self.data, 58)
        for index in range(sections):
            kind, _, _, begin, size = struct.unpack_from("<IQQQQ", self.data, start + index * section_size + 4)
            table = self.data[begin:begin + size] if kind == DYNAMIC_SYMBOLS else b""
            for name, info, _, section, value, _ in list(struct.iter_unpack("<IBBHQQ", table))[1:]:
                if section == 0:
                    yield self.text(name), None
                elif info & 15 == FUNCTION:
                    yield self.text(name), self.at(value)

    def features(self):
        """What its notes say of the processor's guards, as bits."""
        for _, _, offset, _, size in self.of_kind(PROPERTY):
            end, offset = offset + size, offset + 16  # behind the note's head and its name
            while offset + 8 <= end:
                kind, length = struct.unpack_from("<II", self.data, offset)
                if kind == X86_FEATURES:
                    return struct.unpack_from("<I", self.data, offset + 8)[0]
                offset += 8 + (length + 7) // 8 * 8
        return 0
