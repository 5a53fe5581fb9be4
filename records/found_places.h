#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "base/string.h"

/// Where a text was found in a search through all tables.
struct FoundPlace {
  String table;
  std::uint32_t record = 0;  ///< from 1; 0 for a table that could not be searched
  String field;
  std::wstring excerpt;  ///< of the value; of a table that could not be searched, why
};

/// Called for each as it is found; false to end the search.
using FoundListener = std::function<bool(const FoundPlace& place)>;
