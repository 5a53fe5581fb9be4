#pragma once

#include <windows.h>

#include <oleauto.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/store/automation/objects/outcome.h"
#include "platform/store/automation/values/com_values.h"
#include "platform/store/rows/field_type.h"
#include "platform/store/rows/value.h"

namespace automation {

/// Values of the database as VARIANTs and back.

/// How a field of type `type` shows a value of the database: null as VT_NULL, a value that fits the
/// type as the type's own VARIANT, dates kept as ISO 8601 text as VT_DATE, whole numbers in a text
/// column as decimal text, and every value that does not fit as what it is (VT_I4, VT_DECIMAL for
/// whole numbers beyond 32 bits, VT_R8, VT_BSTR, VT_ARRAY|VT_UI1). Throws std::bad_alloc.
OwnedVariant shownValue(const store::Cell& cell, const store::FieldType& type);

/// What a field of type `type`, which holds `present`, stores for `given`; `given` comes from
/// plainVariant. VT_EMPTY and VT_NULL are null. Numbers, truth values, dates and texts are converted by
/// the automation's rules in the user's locale; true is stored as 1. A text into a binary field gives
/// its UTF-16 units in little-endian order, and bytes into a text field likewise. A column without a
/// type keeps the kind of the value; only a text that replaces a number and reads as one stays a number.
/// Whole numbers beyond the type's range, up to 64 bits with a sign, are taken where the field holds one or a
/// number that is not whole, and by an Integer column from VT_DECIMAL, VT_I8 and VT_UI8. A column of whole
/// numbers takes a double or float that is not whole as it is where it holds such a number, and rounds it
/// elsewhere.
/// kConversion, with `*value` untouched, for what the field can't take. Throws std::bad_alloc.
Outcome storedValue(const VARIANT& given, const store::FieldType& type, const store::Cell& present,
                    store::Value* value);

/// Whether `given` (from plainVariant) says the same as `shown`, which is a field's value: the same
/// type and value, truth for truth, or the text as which the automation writes the value.
bool saysTheSame(const VARIANT& shown, const VARIANT& given);

/// Follows references and default properties until there is a value: stores in `*plain` where it is,
/// which may be `*holder`. `given` and `*holder` must outlive the use of it. kConversion for a value
/// that can't be had.
Outcome plainVariant(const VARIANT& given, OwnedVariant* holder, const VARIANT** plain);

/// The VARIANT at the end of references to VARIANTs, `variant` itself when it is none. Null for references
/// that lead nowhere: to null, of any type, or round in a circle.
VARIANT* referredVariant(VARIANT* variant);

/// Whether the VARIANT is an argument that was left out: VT_EMPTY or a missing optional one.
bool isMissing(const VARIANT& variant);

/// The bytes of a one-dimensional VT_ARRAY|VT_UI1, copied. Empty for every other VARIANT. Throws
/// std::bad_alloc.
std::optional<std::string> bytesOf(const VARIANT& variant);
/// A VT_ARRAY|VT_UI1 of the bytes. Throws std::bad_alloc.
OwnedVariant arrayOf(std::string_view bytes);

OwnedVariant variantOf(std::int32_t number);
/// VT_BSTR. Throws std::bad_alloc.
OwnedVariant variantOf(std::string_view utf8);
/// VT_I4 where the number fits, else VT_DECIMAL.
OwnedVariant naturalInteger(std::int64_t number);

}  // namespace automation
