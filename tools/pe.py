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
    sections: list  # (address, size, size in the file, offset in the file, whether it holds code)

    def offset(self, address):
        for start, _, size, offset, _ in self.sections:
            if start <= address < start + size:
                return offset + address - start
        raise NotAnImage(f"address {address:#x} is not in the file")

    def is_code(self, address):
        return any(code and start <= address < start + size for start, size, _, _, code in self.sections)

    def unpack(self, layout, address):
        return struct.unpack_from("<" + layout, self.data, self.offset(address))

    def text(self, address):
        start = self.offset(address)
        return self.data[start : self.data.index(b"\0", start)].decode("ascii")


EXPORTS, IMPORTS, RESOURCES = 0, 1, 2
EXECUTABLE = 0x20000000


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
            header = optional + optional_size + 40 * i
            size, address, file_size, offset = struct.unpack_from("<4I", data, header + 8)
            (flags,) = struct.unpack_from("<I", data, header + 36)
            sections.append((address, size, file_size, offset, bool(flags & EXECUTABLE)))
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


def exported_variables(image):
    """Those of the names that stand for data rather than code."""
    address, _ = image.directories[EXPORTS]
    (functions,) = image.unpack("I", address + 28)
    (numbers,) = image.unpack("I", address + 36)
    names = exported_names(image)
    places = [image.unpack("I", functions + 4 * image.unpack("H", numbers + 2 * i)[0])[0] for i in range(len(names))]
    return {name for name, place in zip(names, places) if not image.is_code(place)}


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
