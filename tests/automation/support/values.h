#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/automation/values/com_values.h"

namespace automationtest {
using automation::OwnedVariant;

UniqueBstr text(std::wstring_view value);

/// VARIANTs of the types that their names say. `variant` makes VT_BSTR, VT_I4 and VT_DISPATCH.
OwnedVariant empty();
OwnedVariant null();
OwnedVariant missing();
OwnedVariant variant(std::wstring_view value);
OwnedVariant variant(long value);
OwnedVariant variant(IDispatch* value);
OwnedVariant int8(signed char value);
OwnedVariant uint8(unsigned char value);
OwnedVariant int16(short value);
OwnedVariant uint16(unsigned short value);
OwnedVariant uint32(unsigned long value);
OwnedVariant int64(std::int64_t value);
OwnedVariant uint64(std::uint64_t value);
OwnedVariant real32(float value);
OwnedVariant real64(double value);
OwnedVariant date(double value);
/// As given, so that 1 is a true that is not the automation's own.
OwnedVariant boolean(short value);
OwnedVariant currency(std::int64_t tenThousandths);
OwnedVariant decimal(std::int64_t value);
OwnedVariant bytes(std::string_view value);
OwnedVariant list(std::vector<OwnedVariant> elements);

/// Type and value in words, for comparisons that tell what differs: "I4 5", "BSTR abc", "UI1[] 00ff",
/// "BOOL -1", "NULL". Dates and reals with 17 digits; units beyond ASCII as \xHHHH.
std::string described(const VARIANT& value);
inline std::string described(const OwnedVariant& value) {
  return described(*value);
}

/// The value as the automation writes it (flags 0); "(none)" when it can't.
std::wstring textOf(const VARIANT& value);

}  // namespace automationtest
