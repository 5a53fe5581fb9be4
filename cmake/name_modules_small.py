#!/usr/bin/python3
"""name_modules_small.py LIBRARY COPY: copies an import library, with the names of its modules in small letters."""
import pathlib
import re
import sys

library, copy = map(pathlib.Path, sys.argv[1:])
copy.write_bytes(re.sub(rb'\w+\.dll\b', lambda name: name[0].lower(), library.read_bytes(), flags=re.IGNORECASE))
