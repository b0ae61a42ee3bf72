"""What a Windows library (PE32 or PE32+) exports, imports and says of its version. Reads no more than its tables."""

import dataclasses
import struct


class NotAnImage(Exception):
    """The file is no PE image, or its tables lead outside it."""


@dataclasses.dataclass
class Image:
    """An image's tables, and where its sections lie in the file."""

    data: bytes
    machine: int
    is_64_bit: bool
    subsystem: int
    directories: list  # (address, size), both relative to the image's base
    sections: list  # (address, size in the file, offset in the file)

    def offset(self, address):
        for start, size, offset in self.sections:
            if start <= address < start + size:
                return offset + address - start
        raise NotAnImage(f"address {address:#x} lies in no section")

    def unpack(self, layout, address):
        return struct.unpack_from("<" + layout, self.data, self.offset(address))

    def text(self, address):
        start = self.offset(address)
        return self.data[start : self.data.index(b"\0", start)].decode("ascii")


EXPORTS, IMPORTS, RESOURCES = 0, 1, 2


def read(path):
    with open(path, "rb") as file:
        data = file.read()
    try:
        (header,) = struct.unpack_from("<I", data, 0x3C)
        if data[:2] != b"MZ" or data[header : header + 4] != b"PE\0\0":
            raise NotAnImage(f"{path} is no PE image")
        machine, section_count = struct.unpack_from("<HH", data, header + 4)
        (optional_size,) = struct.unpack_from("<H", data, header + 20)
        optional = header + 24
        (magic,) = struct.unpack_from("<H", data, optional)
        is_64_bit = magic == 0x20B
        (subsystem,) = struct.unpack_from("<H", data, optional + 68)
        tables = optional + (108 if is_64_bit else 92)
        (count,) = struct.unpack_from("<I", data, tables)
        directories = [struct.unpack_from("<II", data, tables + 4 + 8 * i) for i in range(min(count, 16))]
        sections = []
        for i in range(section_count):
            _, address, size, offset = struct.unpack_from("<4I", data, optional + optional_size + 40 * i + 8)
            sections.append((address, size, offset))
    except struct.error as error:
        raise NotAnImage(f"{path} is cut short") from error
    return Image(data, machine, is_64_bit, subsystem, directories, sections)


def exported_names(image):
    """The names, in the table's order."""
    address, size = image.directories[EXPORTS]
    if not size:
        return []
    (count,) = image.unpack("I", address + 24)
    (names,) = image.unpack("I", address + 32)
    return [image.text(image.unpack("I", names + 4 * i)[0]) for i in range(count)]


def imported_names(image):
    """{library: [name, ...]}; a function that is imported by number is "#NUMBER"."""
    address, size = image.directories[IMPORTS]
    imports = {}
    width, layout = (8, "Q") if image.is_64_bit else (4, "I")
    while size:
        lookup, _, _, name, slots = image.unpack("5I", address)
        if not name:
            break
        functions = imports.setdefault(image.text(name), [])
        entry = lookup or slots
        while True:
            (value,) = image.unpack(layout, entry)
            if not value:
                break
            by_number = value >> (8 * width - 1)
            functions.append(f"#{value & 0xFFFF}" if by_number else image.text(value + 2))
            entry += width
        address += 20
    return imports


def version_strings(image):
    """The texts of the version resource, {key: value}; empty without one."""
    address, size = image.directories[RESOURCES]
    if not size:
        return {}
    start = image.offset(address)
    block = image.data[start : start + size].decode("utf-16-le", "replace")
    strings = {}
    for key in ("CompanyName", "FileDescription", "FileVersion", "InternalName", "OriginalFilename", "ProductName", "ProductVersion"):
        at = block.find(key + "\0")
        if at >= 0:
            strings[key] = block[at + len(key) + 1 :].lstrip("\0").split("\0")[0]
    return strings
