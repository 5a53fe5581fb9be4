#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>

#include "base/string.h"
#include "base/variant.h"
#include "data/values/bytes.h"

/// Bytes as the user reads and types them: pairs of hexadecimal digits, "89 50 4E".

/// The most bytes that are shown; of more the pairs of these, an ellipsis and the number of all.
inline constexpr unsigned kMostShownByteCount = 256;

/// Whether a value is an array of bytes.
bool isBytes(const Variant& value);

/// The empty text for an array of none, and for a value that isBytes denies.
String textOfBytes(const Variant& value);
/// The same of the beginning, at least kMostShownByteCount, of so many bytes.
String textOfBytes(const Variant& beginning, std::uint64_t wholeCount);

/// What textOfBytes gives for a value of these.
String textOfBytes(const Bytes& bytes);

/// None of a value that isBytes denies.
Bytes bytesOf(const Variant& value);
/// VT_ARRAY | VT_UI1, also of none. Throws std::bad_alloc.
Variant variantOfBytes(const Bytes& bytes);

/// Pairs of digits in either case, with or without blanks between them. VT_EMPTY for the empty text and
/// for any other. Throws std::bad_alloc.
Variant bytesFromText(const wchar_t* text);
