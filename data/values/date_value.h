#pragma once

#include <windows.h>

#include <optional>

#include "base/string.h"

/// Dates as OLE Automation keeps them: days since 30 December 1899, the time of day as the fraction.

/// What a field shows that holds no date.
inline constexpr wchar_t kNoDateText[] = L"None";

/// The date that a text names in the user's language. Empty for a text that names none, as the empty
/// text and "None".
std::optional<double> dateFromText(const String& text);

/// The calendar fields of a date (years 100 to 9999). Empty for a number outside of these, infinities
/// and NaN.
std::optional<SYSTEMTIME> calendarFromDate(double date);
