"""The rows of Shelf Marks, Books and What's On."""

import datetime

from . import facts, pictures
from .days import at_midnight, random_day
from .dice import Dice
from .people import author_numbers

FOUNDED = datetime.date(1899, 5, 6)
_LAST_PURCHASE = datetime.date(2025, 12, 12)
_DECIMAL_DAY = datetime.date(1971, 2, 15)
# Before printing, a year is when the work was probably made.
_FIRST_PRINTING = 1450

_PAGES_BY_SIZE = {"XL": (720, 1320), "L": (440, 700), "S": (64, 150)}
_PAGES_BY_SHELF = {"POE": (88, 260), "PLA": (92, 190), "STO": (140, 340), "CHI": (96, 320)}
_PAGES = (180, 430)


def shelf_marks():
    for fact in facts.read_table("shelf_marks"):
        yield (fact["Shelf mark"], fact["Subject"], fact["Room"], float(fact["Metres"]),
               None if fact["Label colour"] is None else int(fact["Label colour"]), fact["Note"])


def books():
    authors = author_numbers()
    names = {fact["Key"]: fact["Name"] for fact in facts.read_table("authors")}
    marks = [fact["Shelf mark"] for fact in facts.read_table("shelf_marks")]
    letters = facts.read_pictures("letters")
    copies = {(fact["Author"], fact["Title"]): fact for fact in facts.read_table("copies")}
    for number, fact in enumerate(facts.read_table("books"), start=1):
        key, shelf = fact["Author"], fact["Shelf mark"]
        dice = Dice("book", key, fact["Title"])
        known = copies.pop((key, fact["Title"]), {})
        year = None if fact["First appeared"] is None else int(fact["First appeared"])
        pages = dice.between(*_PAGES_BY_SIZE.get(fact["Size"], _PAGES_BY_SHELF.get(shelf, _PAGES)))
        acquired = _acquired(dice, year)
        if known.get("Acquired on"):
            acquired = datetime.date.fromisoformat(known["Acquired on"])
        count = dice.one_of((1, 1, 1, 2, 2, 3, 4, 6))
        yield (number, fact["Title"], fact["Original title"], authors[key], year, fact["Language"],
               shelf, pages, int(known.get("Copies") or count), _price(dice, acquired),
               at_midnight(acquired), int(acquired.year < 1950 and dice.chance(25)),
               3990000000 + number * 100 + dice.between(0, 99),
               known.get("Summary"), known.get("Librarian's note"),
               _cover(dice, letters[pictures.letter_of(names[key])], marks.index(shelf)))
    if copies:
        raise ValueError(f"copies.tsv: no such books: {sorted(copies)}")


def _acquired(dice, year):
    if year is None or year < FOUNDED.year:
        if dice.chance(8):
            return FOUNDED
        return random_day(dice, FOUNDED, _LAST_PURCHASE)
    return random_day(dice, datetime.date(year + 1, 1, 2), _LAST_PURCHASE)


def _price(dice, acquired):
    if dice.chance(7):
        return None
    if acquired < _DECIMAL_DAY:
        # Shillings and pence, as the ledgers have them, in pounds: many decimals.
        return dice.between(1, 30) / 20 + dice.between(0, 11) / 240
    return dice.between(299, 4999) / 100


def _cover(dice, letter, pattern_index):
    if dice.chance(14):
        return None
    if dice.chance(2):
        return b""
    return pictures.cover(letter, pattern_index)


def whats_on():
    for number, fact in enumerate(facts.read_table("events"), start=1):
        yield (number, fact["Title"], int(fact["Branch"]), fact["Starts at"],
               None if fact["Minutes"] is None else int(fact["Minutes"]),
               None if fact["Places"] is None else int(fact["Places"]),
               int(fact["Cancelled"]), None if fact["Fee"] is None else float(fact["Fee"]),
               fact["Description"])
