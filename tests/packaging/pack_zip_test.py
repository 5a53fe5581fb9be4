#!/usr/bin/env python3
"""Tests that a zip has the same bytes for the same contents, and holds them."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import zipfile

PACK = pathlib.Path(__file__).resolve().parents[2] / 'packaging' / 'pack_zip.py'
SECONDS = 1_700_000_001


class PackZipTest(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.place = pathlib.Path(place.name)

    def make_folder(self, parent, names):
        folder = self.place / parent / 'Quivane'
        for name in names:
            path = folder / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(name.encode() * 1000)
        return folder

    def pack(self, folder, output, seconds=SECONDS):
        return subprocess.run([sys.executable, '-B', PACK, folder, self.place / output, str(seconds)],
                              capture_output=True, text=True)

    def test_the_same_contents_give_the_same_bytes(self):
        names = ['b.dll', 'a b.exe', 'pictures/\u00fc.png', 'pictures/a.png', 'Z.htm']
        first = self.make_folder('first', names)
        second = self.make_folder('second', reversed(names))
        os.utime(second / 'b.dll', (1, 1))
        (second / 'a b.exe').chmod(0o700)
        self.assertEqual(self.pack(first, 'first.zip').returncode, 0)
        self.assertEqual(self.pack(second, 'second.zip').returncode, 0)
        self.assertEqual((self.place / 'first.zip').read_bytes(), (self.place / 'second.zip').read_bytes())

    def test_another_content_or_time_gives_others(self):
        folder = self.make_folder('first', ['a', 'b'])
        self.pack(folder, 'first.zip')
        self.pack(folder, 'later.zip', SECONDS + 2)
        (folder / 'a').write_bytes(b'other')
        self.pack(folder, 'other.zip')
        packed = {(self.place / name).read_bytes() for name in ('first.zip', 'later.zip', 'other.zip')}
        self.assertEqual(len(packed), 3)

    def test_all_is_in_it_in_one_folder(self):
        folder = self.make_folder('first', ['a b.exe', 'pictures/\u00fc.png'])
        self.pack(folder, 'first.zip')
        with zipfile.ZipFile(self.place / 'first.zip') as archive:
            self.assertIsNone(archive.testzip())
            self.assertEqual(archive.namelist(), ['Quivane/a b.exe', 'Quivane/pictures/\u00fc.png'])
            self.assertEqual(archive.read('Quivane/a b.exe'), (folder / 'a b.exe').read_bytes())

    def test_a_link_is_refused_and_leaves_nothing(self):
        folder = self.make_folder('first', ['a'])
        (folder / 'link').symlink_to('/etc/passwd')
        result = self.pack(folder, 'first.zip')
        self.assertEqual(result.returncode, 1)
        self.assertIn('is no ordinary file', result.stderr)
        self.assertEqual([path.name for path in self.place.iterdir()], ['first'])

    def test_a_folder_that_can_not_be_written_is_told_in_one_line(self):
        result = self.pack(self.make_folder('first', ['a']), 'not there/first.zip')
        self.assertEqual(result.returncode, 1)
        self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)


if __name__ == '__main__':
    unittest.main()
