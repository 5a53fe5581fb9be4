#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Texts as the system's controls can show them. Some systems lay out a run of one script by looking at
/// the character in front of a combining mark without asking whether there is one: a mark that begins
/// such a run ends the program. Whatever may come out of a file passes through here on its way into a
/// control.

/// The text with U+FFFD in the place of each mark that does not follow a letter which it can stand on,
/// unit for unit, so that the length stays. Texts as people write them come back unchanged, in every
/// script. Throws std::bad_alloc.
std::wstring showableText(std::wstring_view text);

/// Whether showableText changes nothing. Never throws.
bool isShowable(std::wstring_view text) noexcept;

/// Behind the marks that begin at `place` and stand on what is in front of it; `place` when there are none.
std::size_t endOfMarks(std::wstring_view text, std::size_t place) noexcept;
