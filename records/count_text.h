#pragma once

#include <cstdint>
#include <string>

/// "1 record", "17 records".
inline std::wstring countOfRecords(std::int64_t count) {
  return std::to_wstring(count) + (count == 1 ? L" record" : L" records");
}
