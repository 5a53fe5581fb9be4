"""Reads the text files in facts/.

A fact file is tab-separated UTF-8 with a heading line. A cell in double
quotes may hold line breaks. An empty cell is Null; a cell with nothing but
"~" is the empty text.
"""

import csv
import pathlib

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "facts"


def read_table(name):
    """The rows of facts/NAME.tsv as dictionaries; ValueError for a row of the wrong width."""
    with open(FOLDER / f"{name}.tsv", encoding="utf-8", newline="") as file:
        lines = list(csv.reader(file, delimiter="\t", strict=True))
    heading = lines[0]
    rows = []
    for number, cells in enumerate(lines[1:], start=2):
        if len(cells) != len(heading):
            raise ValueError(f"{name}.tsv, row {number}: {len(cells)} cells, not {len(heading)}")
        rows.append(dict(zip(heading, map(_value, cells))))
    return rows


def _value(cell):
    if cell == "":
        return None
    if cell == "~":
        return ""
    # A multi-line edit control writes carriage return and line feed.
    return cell.replace("\r\n", "\n").replace("\n", "\r\n")


def read_text(name):
    return (FOLDER / name).read_text(encoding="utf-8")


def read_pictures(name):
    """The pictures of facts/NAME.txt: a dictionary from a picture's name to its rows of '#' and '.'."""
    pictures = {}
    for line in read_text(f"{name}.txt").splitlines():
        if line.startswith("# "):
            continue
        if set(line) <= {"#", "."}:
            pictures[current].append(line)
        else:
            current = line
            pictures[current] = []
    return pictures
