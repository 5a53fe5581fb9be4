#!/usr/bin/env python3
"""Tests the built programs and modules: how they are hardened, and what they take from the system.

Usage: product_test.py FOLDER [unittest's arguments]; FOLDER is where they were built.
"""

import pathlib
import re
import sys
import unittest

import pe_file

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
KNOWN_IMPORTS = HERE / 'system_functions.txt'
SOURCES = ('app', 'base', 'data', 'dialogs', 'help', 'owners', 'platform', 'records', 'tools', 'views')
PRODUCT = ('Quivane Pocket PC.exe', 'adoce31.dll', 'aygshell.dll', 'peghelp.exe', 'cdbtool.exe')

# Set by main.
folder = None


def product():
    for name in PRODUCT:
        yield name, pe_file.PeFile((folder / name).read_bytes())


def functions_in(path):
    lines = path.read_text(encoding='utf-8').splitlines()
    return [tuple(line.split()) for line in lines if line and not line.startswith('#')]


def known_functions():
    return functions_in(KNOWN_IMPORTS)


def late_functions():
    """Those whose modules are loaded when they are first called, as the sources define them."""
    found = set()
    for name in SOURCES:
        for path in sorted((ROOT / name).rglob('*')):
            if path.suffix not in ('.cpp', '.h'):
                continue
            text = path.read_text(encoding='utf-8')
            definitions = re.findall(r'LateFunction<decltype\(\w+\)[^{};]*{\s*L"([^"]+)",\s*"(\w+)"};', text)
            if len(definitions) != text.count('LateFunction<decltype'):
                raise ValueError(f'{path}: a function is not defined as owners/late_function.h says')
            found.update(definitions)
    return found


class HardeningTest(unittest.TestCase):
    def test_each_is_loaded_at_an_address_that_nobody_can_guess(self):
        for name, module in product():
            self.assertTrue(module.marks & pe_file.MOVABLE, name)
            self.assertTrue(module.marks & pe_file.HIGH_ENTROPY_ADDRESSES, name)
            self.assertTrue(module.has_relocations(), name)

    def test_data_is_never_run(self):
        for name, module in product():
            self.assertTrue(module.marks & pe_file.NO_EXECUTABLE_DATA, name)

    def test_no_section_can_be_written_and_run(self):
        for name, module in product():
            for section in module.sections:
                both = pe_file.EXECUTABLE | pe_file.WRITABLE
                self.assertNotEqual(section.characteristics & both, both, f'{name}: {section.name}')


class LoadingTest(unittest.TestCase):
    def test_sections_are_mapped_from_the_file_and_not_read(self):
        for name, module in product():
            for section in module.sections:
                self.assertEqual(section.offset % 4096, 0, f'{name}: {section.name}')

    def test_the_modules_of_the_system_are_named_as_their_files_are(self):
        for name, module in product():
            modules = module.imported_modules()
            self.assertIn('kernel32.dll', modules, name)
            self.assertEqual(modules, [entry.lower() for entry in modules], name)

    def test_no_debugging_information_is_loaded(self):
        for name, module in product():
            self.assertEqual([section.name for section in module.sections if section.name.startswith(('.debug', '/'))],
                             [], name)


class ImportsTest(unittest.TestCase):
    def setUp(self):
        self.maxDiff = None

    def imports(self):
        own = {name.lower() for name in PRODUCT}
        passed_over = own | {'msvcrt.dll'}
        at_start = {entry for _, module in product() for entry in module.imports() if entry[0] not in passed_over}
        return at_start | late_functions()

    def test_nothing_but_what_windows_10_1809_has_is_taken_from_the_system(self):
        new = sorted(self.imports() - set(known_functions()))
        self.assertEqual(new, [], f'look up since when Windows has these, as {KNOWN_IMPORTS.name} says')

    def test_the_start_waits_for_no_module_that_is_loaded_later(self):
        late = {module for module, _ in late_functions()}
        self.assertLessEqual({'comdlg32.dll', 'ole32.dll', 'oleaut32.dll'}, late)
        for name in ('Quivane Pocket PC.exe', 'aygshell.dll'):
            at_start = {module for module, _ in pe_file.PeFile((folder / name).read_bytes()).imports()}
            self.assertEqual(at_start & late, set(), name)

    def test_the_list_is_in_order(self):
        self.assertEqual(known_functions(), sorted(set(known_functions())))

    def test_nothing_has_to_be_installed(self):
        # The compiler's own libraries are linked in; what stays are modules that every Windows has.
        compilers_own = ('libgcc', 'libstdc++', 'libwinpthread', 'libssp', 'vcruntime', 'msvcp')
        for module, function in self.imports():
            self.assertFalse(module.startswith(compilers_own), f'{module} {function}')


class TimeTest(unittest.TestCase):
    def test_the_type_library_does_not_tell_when_it_was_made(self):
        # Then no two packages of a commit would be the same.
        module = (folder / 'adoce31.dll').read_bytes()
        maker = module.find(b'Created by WIDL')
        self.assertNotEqual(maker, -1)
        self.assertIn(b' at Thu Jan  1 00:00:00 1970\n', module[maker:maker + 100])


class PeFileTest(unittest.TestCase):
    def test_what_is_no_program_is_refused(self):
        for data in (b'', b'MZ', b'MZ' + bytes(200), b'PK' + bytes(200)):
            with self.assertRaises(ValueError):
                pe_file.PeFile(data)

    def test_known_functions_of_the_program_are_found(self):
        imports = pe_file.PeFile((folder / PRODUCT[0]).read_bytes()).imports()
        self.assertIn(('user32.dll', 'GetMessageW'), imports)
        self.assertIn(('aygshell.dll', 'SHInitDialog'), imports)


if __name__ == '__main__':
    folder = pathlib.Path(sys.argv.pop(1))
    unittest.main()
