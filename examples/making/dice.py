"""Numbers that look thrown and are always the same.

Python's own generator may change from one version to the next; this one is
written out (splitmix64), so that the library is the same file everywhere.
"""

import zlib

_MASK = (1 << 64) - 1


class Dice:
    """Throws that depend on nothing but the words given, so that a new book changes no member."""

    def __init__(self, *words):
        self._state = zlib.crc32(" ".join(map(str, words)).encode("utf-8"))

    def _next(self):
        self._state = (self._state + 0x9E3779B97F4A7C15) & _MASK
        mixed = self._state
        mixed = ((mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9) & _MASK
        mixed = ((mixed ^ (mixed >> 27)) * 0x94D049BB133111EB) & _MASK
        return mixed ^ (mixed >> 31)

    def between(self, low, high):
        """A whole number from low to high, both included."""
        return low + self._next() % (high - low + 1)

    def chance(self, percent):
        return self.between(0, 99) < percent

    def one_of(self, things):
        return things[self.between(0, len(things) - 1)]
