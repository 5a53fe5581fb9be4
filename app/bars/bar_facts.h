#pragma once

#include <cstdint>

/// What the menu bar and the bands follow.
struct BarFacts {
  int page = -1;  ///< 0 Tables, 1 Form, 2 List, 3 Queries, any other number for none
  bool databaseOpen = false;
  bool recordsetOpen = false;
  std::uint32_t recordCount = 0;
};
