"""The rows of Branches, Authors and Members."""

import datetime

from . import facts, pictures
from .dice import Dice
from .days import TODAY, at_midnight, at_end_of_day, random_day, years_later

LIFE_MEMBERS_CARD_ENDS = datetime.date(2100, 12, 31)


def _optional(convert, value):
    return None if value is None else convert(value)


def branches():
    stamps = facts.read_pictures("stamps")
    for number, fact in enumerate(facts.read_table("branches"), start=1):
        yield (number, fact["Branch"], fact["Street address"], fact["Opened"],
               _optional(float, fact["Latitude"]), _optional(float, fact["Longitude"]),
               _optional(int, fact["Height above sea"]), float(fact["Floor area"]),
               int(fact["Step-free"]), int(fact["Visitors since opening"]),
               fact["Opening hours"], pictures.packed(stamps[fact["Stamp"]]))


def _year(text):
    """A year of a fact file and whether it is an estimate ("c" before the number)."""
    if text is None:
        return None, False
    return int(text.removeprefix("c")), text.startswith("c")


def authors():
    for number, fact in enumerate(facts.read_table("authors"), start=1):
        birth, birth_uncertain = _year(fact["Birth year"])
        death, death_uncertain = _year(fact["Death year"])
        uncertain = None if birth is None else int(birth_uncertain or death_uncertain)
        # Free to print from the first day of the year after seventy full years.
        free = None if death is None or death < 1828 else f"{death + 71}-01-01 00:00:00"
        born = _optional(lambda day: f"{day} 00:00:00", fact["Born"])
        if born is not None and int(born[:4]) != birth:
            raise ValueError(f"{fact['Name']}: two birth years")
        yield (number, fact["Name"], fact["Own script"], fact["Country"], birth, death,
               uncertain, born, free, fact["Note"])


def author_numbers():
    return {fact["Key"]: number for number, fact in enumerate(facts.read_table("authors"), start=1)}


def members():
    for number, fact in enumerate(facts.read_table("members"), start=1):
        dice = Dice("member", number)
        kind = fact["Kind"]
        born, joined = _member_days(fact, dice)
        if kind == "life":
            ends, allowed = LIFE_MEMBERS_CARD_ENDS, 65535
        elif kind == "child":
            ends, allowed = years_later(born, 18), 6
        else:
            ends = years_later(joined, 2026 - joined.year)
            if ends < TODAY and not dice.chance(30):
                ends = years_later(ends, 1)
            allowed = 12
        balance = dice.between(-240, -1) / 20 if dice.chance(16) else dice.one_of((0.0, 0.0, 0.0, 2.5))
        if kind == "life":
            balance = 0.0
        yield (number, fact["Name"], 3141000000 + number * 1009 + dice.between(0, 999),
               int(fact["Home branch"]),
               None if dice.chance(6) and kind is None else at_midnight(born),
               at_midnight(joined), at_end_of_day(ends), allowed,
               None if dice.chance(4) else balance,
               None if dice.chance(8) else int(dice.chance(60)),
               fact["Remark"],
               None if kind == "child" or dice.chance(10) else pictures.signature(dice))


def _member_days(fact, dice):
    if fact["Kind"] == "child":
        born = random_day(dice, datetime.date(2013, 1, 1), datetime.date(2019, 6, 30))
    else:
        born = random_day(dice, datetime.date(1938, 1, 1), datetime.date(2007, 12, 31))
    if fact["Born"] is not None:
        born = datetime.date.fromisoformat(fact["Born"])
    first = max(years_later(born, 6), datetime.date(1962, 4, 23))
    joined = random_day(dice, first, datetime.date(2025, 11, 29))
    if fact["Joined"] is not None:
        joined = datetime.date.fromisoformat(fact["Joined"])
    return born, joined
