#!/usr/bin/env python3
"""Packs a folder into a zip file whose bytes depend on nothing but names, contents and the given time.

Usage: pack_zip.py FOLDER OUTPUT.zip SECONDS

SECONDS, since 1970, is the time that every file gets. OUTPUT.zip gets its name when it is complete; the folder's own
name is the first part of each name in it.
"""

import os
import pathlib
import sys
import time
import zipfile

# Zip files know no earlier time.
EARLIEST = (1980, 1, 1, 0, 0, 0)
ORDINARY_FILE = 0o100644 << 16


def pack(folder, output, seconds):
    moment = max(time.gmtime(seconds)[:6], EARLIEST)
    temporary = output.with_name(output.name + '.new')
    try:
        with zipfile.ZipFile(temporary, 'w') as archive:
            for path in sorted(folder.rglob('*'), key=lambda path: path.relative_to(folder).as_posix()):
                if path.is_symlink() or not (path.is_file() or path.is_dir()):
                    raise ValueError(f'{path} is no ordinary file')
                if path.is_file():
                    add(archive, f'{folder.name}/{path.relative_to(folder).as_posix()}', path.read_bytes(), moment)
        os.replace(temporary, output)
    except BaseException:
        temporary.unlink(missing_ok=True)
        raise


def add(archive, name, content, moment):
    entry = zipfile.ZipInfo(name, moment)
    entry.create_system = 3
    entry.external_attr = ORDINARY_FILE
    entry.compress_type = zipfile.ZIP_DEFLATED
    archive.writestr(entry, content, compresslevel=9)


def main():
    if len(sys.argv) != 4:
        sys.exit('usage: pack_zip.py FOLDER OUTPUT.zip SECONDS')
    try:
        pack(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), int(sys.argv[3]))
    except (OSError, ValueError) as error:
        sys.exit(f'pack_zip: {error}')


if __name__ == '__main__':
    main()
