"""Reads what an object file (ELF, 64 bits, little-endian) defines for all files, and of what each of it is made."""
import hashlib
import struct

SECTION = struct.Struct("<IIQQQQIIQQ")
SYMBOL = struct.Struct("<IBBHQQ")
RELOCATION = struct.Struct("<QQq")
RELOCATIONS, NO_CONTENT, SYMBOLS = 4, 8, 2  # kinds of section
GLOBAL, WEAK, UNIQUE = 1, 2, 10             # bindings that other files see
FUNCTION = 2
FIRST_RESERVED = 0xff00                     # section numbers from here on are none


def text_at(table, start):
    return table[start:table.index(b"\0", start)].decode()


class ObjectFile:
    def __init__(self, path):
        self.data = path.read_bytes()
        if self.data[:6] != b"\x7fELF\x02\x01":
            raise ValueError(f"{path} is no ELF object of 64 bits, little-endian")
        start, = struct.unpack_from("<Q", self.data, 40)
        size, count, names = struct.unpack_from("<HHH", self.data, 58)
        first = SECTION.unpack_from(self.data, start)
        count, names = count or first[5], first[6] if names == 0xffff else names  # more sections than two bytes count
        self.sections = [SECTION.unpack_from(self.data, start + index * size) for index in range(count)]
        self.section_names = self.content(names)
        table = next((section for section in self.sections if section[1] == SYMBOLS), None)
        self.symbols = list(SYMBOL.iter_unpack(self.data[table[4]:table[4] + table[5]])) if table else []
        self.symbol_names = self.content(table[6]) if table else b""
        self.relocations_of = {section[7]: section for section in self.sections if section[1] == RELOCATIONS}

    def content(self, index):
        section = self.sections[index]
        return b"" if section[1] == NO_CONTENT else self.data[section[4]:section[4] + section[5]]

    def target(self, index, addend):
        """What a relocation points at, said so that it means the same in every file."""
        name, info, _, section, _, _ = self.symbols[index]
        if info >> 4:
            return f"{text_at(self.symbol_names, name)}+{addend}"
        if section >= FIRST_RESERVED:
            return "local"
        return text_at(self.section_names, self.sections[section][0]).split(".")[1]  # texts stand elsewhere in each file

    def body(self, section, start, size):
        digest = hashlib.sha1(self.content(section)[start:start + size])
        if section in self.relocations_of:
            _, _, _, _, offset, length, *_ = self.relocations_of[section]
            for at, info, addend in RELOCATION.iter_unpack(self.data[offset:offset + length]):
                if start <= at < start + size:
                    digest.update(f"{at - start} {info & 0xffffffff} {self.target(info >> 32, addend)}".encode())
        return digest.hexdigest()

    def definitions(self, wanted):
        """(name, whether it is a function, digest of what it is made of) of all that other files see, if wanted(name)."""
        for name, info, _, section, start, size in self.symbols:
            if info >> 4 in (GLOBAL, WEAK, UNIQUE) and 0 < section < FIRST_RESERVED:
                text = text_at(self.symbol_names, name)
                if wanted(text):
                    yield text, info & 15 == FUNCTION, self.body(section, start, size)
