#pragma once

#include <windows.h>

#include <cstddef>
#include <string_view>

/// Where edit controls of many lines may end a line. Left to itself the system breaks a word that is wider
/// than the line anywhere, between a letter and its marks too, and some systems do not survive the layout of
/// a line that begins with a mark. Scripts without blanks (Thai, Lao, Khmer) have such words in every text.

/// Whether lines of `text` may only end where breakWords says: it has characters that are not to be parted.
bool needsWordBreaks(std::wstring_view text) noexcept;

/// The first place at or behind `place` that parts no pair of surrogates, no line end, and no letter from
/// its marks and joiners; the end of the text when there is none.
std::size_t wholeCharacterPlace(std::wstring_view text, std::size_t place) noexcept;

/// The word-break procedure of EM_SETWORDBREAKPROC: at the beginning of a word, and in a word that may be too
/// wide for a line before each whole character. `code` is WB_LEFT, WB_RIGHT or WB_ISDELIMITER.
int CALLBACK breakWords(wchar_t* text, int place, int count, int code);
