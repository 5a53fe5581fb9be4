#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace store {

/// Text is UTF-16 at the interface and UTF-8 in the file. Every sequence of UTF-16 units survives the
/// way to the file and back: an unpaired surrogate is kept as its three-byte form, a zero character
/// as a zero byte. Source of the formats: The Unicode Standard, chapter 3.9.

/// UTF-8 of `text`. Pairs of surrogates become one four-byte sequence, an unpaired one its three-byte
/// form. Never fails but for memory (std::bad_alloc).
std::string toUtf8(std::u16string_view text);

/// UTF-16 of `text` into the caller's buffer, which has room for text.size() units (a byte never yields
/// more than one unit). Three-byte forms of surrogates become these units; each maximal ill-formed
/// subsequence becomes one U+FFFD, so that damaged text can be shown. Returns the number of units written;
/// no terminator is written.
std::size_t decodeUtf8(std::string_view text, char16_t* units);

/// The front of `text`, a text of UTF-8: at most `most` bytes, not ending inside a character. What is no
/// UTF-8 is cut anywhere.
std::string_view beginningOf(std::string_view text, std::size_t most);

}  // namespace store
