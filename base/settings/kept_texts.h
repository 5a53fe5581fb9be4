#pragma once

#include <string>

/// A short text that is kept for a table or query of a file, among the program's settings and not in the
/// file: for the latest 32 tables and queries that have one.
namespace kepttexts {

/// A longer text is not kept.
inline constexpr std::size_t kMostCount = 2000;

/// The empty text when none is kept.
std::wstring read(const wchar_t* file, bool isQuery, const wchar_t* name);
/// Keeps `text`, which has no character below the blank and no "|", as that of the latest; forgets what is
/// kept with an empty text or one that is too long. What is kept already is not written anew.
void write(const wchar_t* file, bool isQuery, const wchar_t* name, const std::wstring& text);

}  // namespace kepttexts
