"""Reads what a Windows program says of itself: its marks, sections and the functions that it takes from the system."""

import struct

# Bits of the optional header's DllCharacteristics.
HIGH_ENTROPY_ADDRESSES = 0x0020
MOVABLE = 0x0040
NO_EXECUTABLE_DATA = 0x0100

# Bits of a section's characteristics.
EXECUTABLE = 0x20000000
WRITABLE = 0x80000000

_DIRECTORY_IMPORTS = 1
_DIRECTORY_RELOCATIONS = 5
_DIRECTORY_DELAYED_IMPORTS = 13


class PeFile:
    """A 64-bit program or module. Raises ValueError for any other file."""

    def __init__(self, data):
        self._data = data
        header = self._number('<I', 0x3C) if len(data) > 0x40 and data[:2] == b'MZ' else None
        if header is None or data[header:header + 4] != b'PE\0\0':
            raise ValueError('this is no Windows program')
        section_count = self._number('<H', header + 6)
        self.timestamp = self._number('<I', header + 8)
        optional = header + 24
        if self._number('<H', optional) != 0x20B:
            raise ValueError('this is no 64-bit program')
        self.marks = self._number('<H', optional + 70)
        self._directories = optional + 112
        table = optional + self._number('<H', header + 20)
        self.sections = [Section(data, table + 40 * index) for index in range(section_count)]

    def has_relocations(self):
        """Without them a movable program stays where it is after all."""
        return self._directory(_DIRECTORY_RELOCATIONS)[1] > 0

    def imports(self):
        """The pairs of a module's name, in small letters, and a function's name or number."""
        return {(module.lower(), function) for module, names in self._import_table() for function in self._functions(names)}

    def imported_modules(self):
        """Their names as they are written."""
        return [module for module, _ in self._import_table()]

    def _import_table(self):
        if self._directory(_DIRECTORY_DELAYED_IMPORTS)[1] > 0:
            raise ValueError('delayed imports are not read')
        descriptor, size = self._directory(_DIRECTORY_IMPORTS)
        while size > 0:
            names, _, _, module, addresses = struct.unpack_from('<5I', self._data, self._offset(descriptor))
            if module == 0:
                break
            yield self._text(module), names or addresses
            descriptor += 20

    def _functions(self, address):
        at = self._offset(address)
        while (entry := self._number('<Q', at)) != 0:
            yield f'#{entry & 0xFFFF}' if entry >> 63 else self._text(entry + 2)
            at += 8

    def _directory(self, index):
        return struct.unpack_from('<II', self._data, self._directories + 8 * index)

    def _offset(self, address):
        for section in self.sections:
            if section.address <= address < section.address + section.length:
                return address - section.address + section.offset
        raise ValueError(f'no section has the address {address:#x}')

    def _text(self, address):
        at = self._offset(address)
        return self._data[at:self._data.index(b'\0', at)].decode('ascii')

    def _number(self, form, at):
        return struct.unpack_from(form, self._data, at)[0]


class Section:
    def __init__(self, data, at):
        name, _, self.address, self.length, self.offset = struct.unpack_from('<8s4I', data, at)
        self.name = name.rstrip(b'\0').decode('ascii')
        self.characteristics = struct.unpack_from('<I', data, at + 36)[0]
