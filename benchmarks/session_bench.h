#pragma once

#include <string>

namespace outside {

/// Measures a filter, the search of all tables, undo, a look at other programs' changes, and the narrowing of
/// a look-up's list, on a database of tools/make-data that is written to; `bareDatabase` is its path in
/// UTF-8.
void measureSession(const std::wstring& program, const std::wstring& database,
                    const std::string& bareDatabase);

}  // namespace outside
