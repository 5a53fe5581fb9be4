#pragma once

#include <string>

namespace outside {

/// Measures a filter, the search of all tables, undo, and a look at other programs' changes, on a database of
/// tools/make-data that is written to; `bareDatabase` is its path in UTF-8.
void measureSession(const std::wstring& program, const std::wstring& database,
                    const std::string& bareDatabase);

/// Measures the narrowing of a look-up's list of so many records, in a new database at this path.
void measureLookUp(const std::wstring& program, const std::wstring& database, const std::string& bareDatabase,
                   int rows);

}  // namespace outside
