#pragma once

#include <array>
#include <sqlite3.h>

#include "platform/store/rows/case_folding.h"

namespace store {

inline constexpr std::array<const char*, 2> kTextFunctions = {"quivane_fold", "quivane_contains"};

/// Two functions for statements, in which letter case makes no difference for any letter, not only for those
/// of English:
///
///  - quivane_fold(value): a text with every letter replaced by the one that stands for it; any other value
///  as it
///    is. What is ordered by it or compared with it ignores letter case.
///  - quivane_contains(text, value, ...): 1 when the text occurs in one of the values as the user knows them
///    (TextTest; numbers that are not whole have six decimals), else 0; null when the text is null.
///
/// Both serve statements alone: nothing of a file's own structure may call them, so that every other program
/// can use the file.
///
/// `folding` is asked once, when one of them is called first; what it gives outlives the connection. Returns
/// SQLite's result code.
int addTextFunctions(sqlite3* connection, const CaseFolding& (*folding)());

}  // namespace store
