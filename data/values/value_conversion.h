#pragma once

#include <windows.h>

#include <oleauto.h>

#include <optional>

#include "base/string.h"
#include "base/variant.h"
#include "owners/com_handles.h"

/// What automation values say as text and as numbers, converted as the system does in the user's
/// language. Numbers that are not finite, which the system's conversions don't take, are kept from them.

/// A text in the form that COM calls take; null gives the empty text. Throws std::bad_alloc.
UniqueBstr makeBstr(const wchar_t* text);

/// `text` may be null. Zero characters within it, at which a String would end, become U+2400.
String textOfBstr(BSTR text);

/// A text as it is, bytes as pairs of digits (data/values/binary_text.h), any other value converted. Empty
/// for a value that can't be converted, as a null.
String textOf(const Variant& value);

/// Empty for a value that can't be converted or needs more than 32 bits.
std::optional<LONG> integerOf(const Variant& value);

/// Formats as printf does with "%f": six decimals, a point before them, no exponent; "inf", "nan".
String textOfDouble(double value);

/// Reads a number with a point before its decimals, as textOfDouble writes it, in every language;
/// otherwise as the user's language writes numbers. VT_EMPTY for a text that is no number.
Variant doubleFromText(const wchar_t* text);
