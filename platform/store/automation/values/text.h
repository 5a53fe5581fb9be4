#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

namespace automation {

/// The characters of a BSTR, embedded zeros included; a null BSTR is the empty text. Holds as long as
/// the BSTR.
std::wstring_view viewOf(BSTR text);

/// UTF-8 of UTF-16, keeping unpaired surrogates and zeros. Throws std::bad_alloc.
std::string utf8Of(std::wstring_view text);
std::wstring wideOf(std::string_view utf8);

/// A new BSTR that the caller owns, never null. Throws std::bad_alloc.
BSTR newText(std::wstring_view text);
BSTR newText(std::string_view utf8);

/// Whether both are equal without regard to the case of ASCII letters.
bool equalIgnoringCase(std::wstring_view left, std::wstring_view right);

/// `text` without blanks at its ends.
std::wstring_view trimmed(std::wstring_view text);

}  // namespace automation
