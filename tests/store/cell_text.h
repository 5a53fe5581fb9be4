#pragma once

#include <string>

#include "platform/store/rows/value.h"

namespace store {

/// A cell as tests compare it: (null), numbers in decimal, texts as they are, bytes in front of "x:".
inline std::string plainTextOf(const Cell& cell) {
  switch (cell.kind) {
    case CellKind::null:
      return "(null)";
    case CellKind::integer:
      return std::to_string(cell.integer);
    case CellKind::real:
      return std::to_string(cell.real);
    case CellKind::text:
      return std::string(cell.bytes);
    default:
      return "x:" + std::string(cell.bytes);
  }
}

}  // namespace store
