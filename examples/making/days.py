"""Days and the form in which the file keeps them: ISO 8601 text."""

import datetime

# The day on which the example is set; books lent before it may still be out.
TODAY = datetime.date(2026, 1, 31)

# Day zero of the handheld's calendar, which it shows as no date.
_DAY_ZERO = datetime.date(1899, 12, 30)


def at_midnight(day):
    return f"{day.isoformat()} 00:00:00"


def at_end_of_day(day):
    return f"{day.isoformat()} 23:59:59"


def in_opening_hours(dice, day):
    return f"{day.isoformat()} {dice.between(9, 17):02}:{dice.between(0, 59):02}:{dice.between(0, 59):02}"


def random_day(dice, first, last):
    """A day from first to last, both included, but never the calendar's day zero."""
    day = first + datetime.timedelta(days=dice.between(0, (last - first).days))
    return day + datetime.timedelta(days=1) if day == _DAY_ZERO else day


def years_later(day, years):
    """The same day so many years on; 29 February becomes 1 March."""
    try:
        return day.replace(year=day.year + years)
    except ValueError:
        return datetime.date(day.year + years, 3, 1)
