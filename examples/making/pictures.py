"""The few bytes of binary data: covers, stamps, signatures."""

import struct
import unicodedata

COVER_WIDTH = 32
COVER_HEIGHT = 40


def packed(rows):
    """Rows of '#' and '.' as bits, the leftmost pixel in the highest bit, '#' as 1."""
    return b"".join(
        int(row.replace("#", "1").replace(".", "0"), 2).to_bytes(len(row) // 8, "big")
        for row in rows)


def bitmap(rows):
    """A whole bitmap file of two colours; the width must be a multiple of 32."""
    pixels = packed(reversed(rows))
    heading = struct.pack("<IiiHHIIiiII", 40, len(rows[0]), len(rows), 1, 1, 0, len(pixels), 2835, 2835, 2, 2)
    palette = bytes((255, 255, 255, 0, 96, 48, 16, 0))
    start = 14 + len(heading) + len(palette)
    return struct.pack("<2sIHHI", b"BM", start + len(pixels), 0, 0, start) + heading + palette + pixels


_PATTERNS = (
    lambda x, y: (x + y) % 4 == 0,
    lambda x, y: (x - y) % 4 == 0,
    lambda x, y: y % 3 == 0,
    lambda x, y: x % 3 == 0,
    lambda x, y: x % 4 == 0 and y % 4 == 0,
    lambda x, y: (x // 2 + y // 2) % 2 == 0,
    lambda x, y: (x * x + y * y) // 24 % 2 == 0,
    lambda x, y: x % 4 == 0 or y % 4 == 0,
)


def letter_of(name):
    """The capital that a name is filed under, without its accent."""
    return unicodedata.normalize("NFD", name)[0].upper()


def cover(letter_rows, pattern_index):
    """A cover: a frame, a pattern, and the letter, twice its size, on a white label."""
    pattern = _PATTERNS[pattern_index % len(_PATTERNS)]
    left, top = 11, 6
    rows = []
    for y in range(COVER_HEIGHT):
        row = ""
        for x in range(COVER_WIDTH):
            column, line = (x - left) // 2, (y - top) // 2
            if x in (0, COVER_WIDTH - 1) or y in (0, COVER_HEIGHT - 1):
                ink = True
            elif 0 <= column < 5 and 0 <= line < 7:
                ink = letter_rows[line][column] == "#"
            elif left - 4 <= x < left + 14 and top - 3 <= y < top + 17:
                ink = False
            else:
                ink = pattern(x, y)
            row += "#" if ink else "."
        rows.append(row)
    return bitmap(rows)


def signature(dice):
    """A pen's way over a field of 256 by 64 points: two bytes, x and y, for each point."""
    x, y = 8, 40
    points = bytearray()
    for _ in range(dice.between(14, 60)):
        points += bytes((x, y))
        x = min(255, x + dice.between(0, 8))
        y = max(0, min(63, y + dice.between(-14, 14)))
    return bytes(points)
