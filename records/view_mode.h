#pragma once

#include <cstdint>

/// The page that the Document serves. The numbers are those of the window's tab pages.
enum class ViewMode : std::uint32_t {
  tables = 0,
  form = 1,
  list = 2,
  queries = 3,
  none = 4,  ///< no page yet: a database was just opened, or closed
};

constexpr bool showsRecords(ViewMode mode) {
  return mode == ViewMode::form || mode == ViewMode::list;
}
