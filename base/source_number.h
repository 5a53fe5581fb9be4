#pragma once

#include <cstdint>
#include <string>

/// A number made of a text, the same at every start and mostly another one for another text.
std::uint64_t numberOf(const std::wstring& text);

/// The same of a table or query of a file: what the program keeps for it is found by that. Never 0. A file is
/// the same whatever the case of its path's letters.
std::uint64_t numberOfSource(const wchar_t* file, bool isQuery, const wchar_t* name);
