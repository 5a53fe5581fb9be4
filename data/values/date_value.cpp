#include "data/values/date_value.h"

#include <cmath>

#include "base/variant.h"
#include "owners/ole_functions.h"

std::optional<double> dateFromText(const String& text) {
  Variant date;
  if (FAILED(Variant::fromText(text.text()).convertTo(VT_DATE, date))) return std::nullopt;
  return date.get().date;
}

std::optional<SYSTEMTIME> calendarFromDate(double date) {
  SYSTEMTIME calendar = {};
  if (!std::isfinite(date) || !ole::variantTimeToSystemTime(date, &calendar)) return std::nullopt;
  return calendar;
}
