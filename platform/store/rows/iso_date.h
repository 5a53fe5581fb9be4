#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace store {

/// Dates live in the file as ISO 8601 text, so that other programs read and sort them, and travel as
/// automation dates: days since 30 December 1899, the fraction being the time of day, counted away
/// from zero for the integral part and forwards for the fraction (-1.25 is 29 December 1899, 06:00).

/// Which parts a column's text has.
enum class DateShape { dateTime, date, time };

/// The automation date of "YYYY-MM-DD", "YYYY-MM-DD HH:MM", "YYYY-MM-DD HH:MM:SS[.fraction]" (a T may
/// stand for the blank; a trailing Z is allowed) or "HH:MM[:SS[.fraction]]" (a time on the day 0).
/// The year is 100 to 9999, the range of an automation date. Empty for any other text, days and times
/// that don't exist included; blanks around it are not allowed. A fraction counts to the nearest
/// millisecond, and may so carry to the next day, but not past the end of 9999.
std::optional<double> parseIsoDate(std::string_view text);

/// The text of an automation date, to the nearest millisecond: "2001-03-09 14:05:07", with ".250" only
/// when there is a part of a second. DateShape::date leaves the time out when it is midnight,
/// DateShape::time leaves the date out on the day 0. Empty when `date` is not a number or lies outside
/// 1 January 100 to 31 December 9999, where the last millisecond is not rounded up to the year 10000.
std::optional<std::string> formatIsoDate(double date, DateShape shape);

}  // namespace store
