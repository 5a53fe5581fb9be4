#pragma once

#include <cstdint>

#include "base/string.h"

/// What is searched for in the records, as the Find dialog left it. The Document owns it from its own
/// beginning to its end, so that a search without new input repeats the last one. The dialog writes all of
/// it; the search reads it and clears newSearch.
struct FindState {
  /// May be empty, of any length, and hold what is special in a format.
  String text;
  /// The field that is searched unless checkAllFields is set. Empty when the records have no fields.
  String fieldName;
  /// The place of that field among the fields, from 1; 0 when none was chosen.
  std::uint32_t fieldPosition = 0;
  std::uint32_t checkAllFields = 0;  ///< 1 = every field is searched
  std::uint32_t matchCase = 0;       ///< 1 = the case of letters counts
  /// Set when the dialog opens: the next search begins at the current record. Later ones go on behind the
  /// last match.
  bool newSearch = false;
};
