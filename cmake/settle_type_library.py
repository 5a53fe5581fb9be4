#!/usr/bin/python3
"""settle_type_library.py FILE.tlb

Takes the time of the making out of a type library made by widl, so that the same description always gives the same
bytes. It is there twice in the library's custom data: in words behind the name of the compiler, and right after these,
padded to whole words with "W", as seconds since 1970 behind the number of their VARIANT's type.
"""
import re
import struct
import sys

VT_UI4 = 0x13
WORDS = re.compile(rb"Created by WIDL version [^\n]* at ([^\n]{24})\n")
SETTLED = b"Thu Jan  1 00:00:00 1970"


def settled(library):
    """The library's bytes without the time; as they are when widl has put none in."""
    words = WORDS.search(library)
    if not words:
        return library
    seconds = words.end()
    while library[seconds : seconds + 1] == b"W":
        seconds += 1
    (kind,) = struct.unpack_from("<H", library, seconds)
    if kind != VT_UI4:
        raise SystemExit(f"settle_type_library: behind the name of the compiler is no number but the kind {kind}")
    return b"".join(
        (library[: words.start(1)], SETTLED, library[words.end(1) : seconds + 2], bytes(4), library[seconds + 6 :])
    )


def main():
    if len(sys.argv) != 2:
        raise SystemExit("usage: settle_type_library.py FILE.tlb")
    with open(sys.argv[1], "rb") as file:
        library = file.read()
    with open(sys.argv[1], "wb") as file:
        file.write(settled(library))


main()
