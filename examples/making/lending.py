"""The rows of Loans: invented, but such as a lending desk could have written."""

import datetime

from . import facts
from .days import TODAY, in_opening_hours, random_day
from .dice import Dice

_LOAN_COUNT = 1600
_FIRST_DAY = datetime.date(2019, 1, 2)
_DAYS_LENT = 28
_CHARGE_PER_DAY = 0.15
_HIGHEST_CHARGE = 7.5
_BRANCH_COUNT = 6
# Central Library and St Piran's Quay have lending machines.
_MACHINE_BRANCHES = (1, 5)


def loans(books, members):
    """The loans in the order of lending; books and members are the rows of those tables."""
    titles = {row[1]: row[0] for row in books}
    ledger = [
        (titles["Robinson Crusoe"], None, 1, "1899-05-06 12:15:00", "1899-05-20 00:00:00", None, None,
         0, None, 0, "The first loan in the first ledger. Never brought back."),
        (titles["Treasure Island"], None, 1, "1937-02-13 16:40:00", "1937-02-27 00:00:00",
         "2019-01-08 10:05:00", 29900, 0, 0.0, 0, "Carried out before the fire; found in an attic. Nothing was charged 🙂"),
    ]
    ledger += _desk(books, members)
    for number, row in enumerate(ledger, start=1):
        yield (number, *row)


def _desk(books, members):
    dice = Dice("lending desk")
    remarks = [fact["Remark"] for fact in facts.read_table("loan_remarks")]
    lendable = [row for row in books if not row[11]]
    copies_out = {row[0]: [] for row in lendable}
    days = sorted(random_day(dice, _FIRST_DAY, TODAY - datetime.timedelta(days=1)) for _ in range(_LOAN_COUNT))
    for day in days:
        while True:
            book = lendable[_popular(dice, len(lendable))]
            member = dice.one_of(members)
            out = [back for back in copies_out[book[0]] if back >= day]
            if book[10] < day.isoformat() and member[5] < day.isoformat() and len(out) < book[8]:
                break
        renewals = dice.one_of((0, 0, 0, 0, 0, 1, 1, 2, 3))
        due = day + datetime.timedelta(days=_DAYS_LENT * (renewals + 1))
        back = _brought_back(dice, day, due)
        copies_out[book[0]] = out + [back]
        branch = member[3] if dice.chance(80) else dice.between(1, _BRANCH_COUNT)
        yield (book[0], member[0], branch, in_opening_hours(dice, day), f"{due.isoformat()} 00:00:00",
               *_return(dice, due, back), renewals, *_charge(dice, due, back),
               int(branch in _MACHINE_BRANCHES and dice.chance(65)),
               dice.one_of(remarks) if dice.chance(5) else None)


def _popular(dice, count):
    """An index below count; a few books, scattered over the shelves, are lent much more often."""
    place = min(dice.between(0, count - 1), dice.between(0, count - 1), dice.between(0, count - 1))
    return place * 251 % count


def _brought_back(dice, lent, due):
    if dice.chance(1):
        return datetime.date.max
    if dice.chance(18):
        return due + datetime.timedelta(days=dice.between(1, 90))
    return random_day(dice, lent + datetime.timedelta(days=1), due)


def _return(dice, due, back):
    if back >= TODAY:
        return None, None
    return in_opening_hours(dice, back), (back - due).days


def _charge(dice, due, back):
    if back >= TODAY:
        return (None,)
    late = max(0, (back - due).days)
    return (0.0 if dice.chance(20) else min(_HIGHEST_CHARGE, late * _CHARGE_PER_DAY),)
