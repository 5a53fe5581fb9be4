#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/store/rows/iso_date.h"

namespace store {

/// In what order the user's locale writes the parts of a date.
enum class DateOrder { monthDayYear, dayMonthYear, yearMonthDay };

/// A date as the user writes it, in ISO 8601 as formatIsoDate writes values of that `shape` (dateTime or
/// date): "yyyy/m/d", "yyyy-m-d" and, by `order`, "m/d/y", "d/m/y" or "y/m/d" (these also with "." or "-"
/// between the parts). Month and day have one or two digits, the year four, or two in the user's order: 00
/// to 29 are 2000 to 2029, 30 to 99 are 1930 to 1999. A time "h:mm" or "h:mm:ss" may follow after blanks,
/// with AM or PM or by 24 hours. Empty for any other text and for days that don't exist.
std::optional<std::string> isoOfLocalDate(std::string_view text, DateOrder order, DateShape shape);

}  // namespace store
