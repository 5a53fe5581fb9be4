#pragma once

#include <string>

namespace outside {

/// The search for texts that no record holds, beside the bare statements; and the memory that it takes.
void measureFind(const std::wstring& program, const std::wstring& database, const std::string& bareDatabase);

/// The memory that it takes where the records are in an order of their own, and in a table without row ids.
/// Adds to the database what prepareFind() does.
void measureMemory(const std::wstring& program, const std::wstring& database,
                   const std::string& bareDatabase);

/// The search beside that of a database with ten times as many records.
void measureLarge(const std::wstring& program, const std::wstring& database, const std::wstring& large);

/// Next, pressed again and again where every record holds the text.
void measureMatches(const std::wstring& program, const std::wstring& database,
                    const std::string& bareDatabase);

/// How soon a search is told of and can be stopped, and the window painted meanwhile. A search that ends
/// before that is over the limit: nothing was measured.
void measureStop(const std::wstring& program, const std::wstring& database);

}  // namespace outside
