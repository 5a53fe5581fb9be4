"""Refuses a value that its field's declared type cannot hold on the handheld."""

import datetime
import re

_INTEGER_RANGES = {
    "SMALLINT": (-0x8000, 0x7FFF),
    "INTEGER": (-0x80000000, 0x7FFFFFFF),
    "UNSIGNED SMALLINT": (0, 0xFFFF),
    "INTEGER UNSIGNED": (0, 0xFFFFFFFF),
    "BIT": (0, 1),
}


def fits(declared, value):
    """Whether the value is Null or one that a field declared so holds."""
    if value is None:
        return True
    kind, limit = re.fullmatch(r"(.*?)(?: \((\d+)\))?", declared.upper()).groups()
    if kind in _INTEGER_RANGES:
        low, high = _INTEGER_RANGES[kind]
        return type(value) is int and low <= value <= high
    if kind in ("DOUBLE", "FLOAT"):
        return type(value) is float
    if kind == "DATETIME":
        return type(value) is str and _is_date(value)
    if kind == "TEXT":
        return type(value) is str and len(value) <= 32000
    if kind == "VARCHAR":
        # The handheld counts 16-bit units: an emoji takes two.
        return type(value) is str and len(value.encode("utf-16-le")) // 2 <= int(limit)
    if kind == "VARBINARY":
        return type(value) is bytes and len(value) <= int(limit)
    if kind == "LONG VARBINARY":
        return type(value) is bytes
    raise ValueError(f"an unknown type: {declared}")


def _is_date(text):
    try:
        moment = datetime.datetime.strptime(text, "%Y-%m-%d %H:%M:%S")
    except ValueError:
        return False
    # 30 December 1899 is day zero, which the handheld shows as no date at all.
    return 1899 <= moment.year <= 2100 and moment.date() != datetime.date(1899, 12, 30)
