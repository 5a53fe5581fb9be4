#pragma once

#include <string_view>

namespace store::exchange {

/// What the values of a column are to be, as far as the exchange is concerned: by the handheld's types and by
/// what SQLite makes of a value that it stores in such a column.
enum class ValueKind {
  any,          ///< no declared type: each value keeps its own
  text,         ///< stored as it stands
  numericText,  ///< a text, but SQLite stores one that looks like a number as that number
  integer,
  real,     ///< always a double
  numeric,  ///< whole numbers as such, others as doubles
  boolean,
  date,  ///< a day, a time of day or both, as ISO text
  bytes,
};

ValueKind kindOf(std::string_view declaredType);

}  // namespace store::exchange
