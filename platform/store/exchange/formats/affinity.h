#pragma once

#include <string_view>

#include "platform/store/rows/value.h"

namespace store::exchange {

/// What SQLite makes of the values that are stored in a column. Source: "Datatypes In SQLite", chapter 3.
enum class Affinity { text, none, integer, real, numeric };

Affinity affinityOf(std::string_view declaredType);

/// Whether a column of the affinity holds `wanted`, to the bit, when `value` is stored in it. May say no of a
/// value that would be the same, where only SQLite itself knows what it makes of a number's text.
bool isStoredAs(const Cell& value, Affinity affinity, const Cell& wanted);

}  // namespace store::exchange
