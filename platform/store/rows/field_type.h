#pragma once

#include <cstdint>
#include <string_view>

#include "platform/store/rows/iso_date.h"

namespace store {

/// What kind of values a field has, as the automation face reports it in Field.Type.
enum class TypeCode : std::int32_t {
  smallInt = 2,
  integer = 3,
  real = 5,
  date = 7,
  boolean = 11,
  unsignedSmallInt = 18,
  unsignedInt = 19,
  varWChar = 202,
  longVarWChar = 203,
  varBinary = 204,
  longVarBinary = 205,
};

struct FieldType {
  TypeCode code = TypeCode::longVarWChar;
  std::int32_t definedSize = 0;  ///< bytes of a fixed type, characters of a text, bytes of a binary
  DateShape dateShape = DateShape::dateTime;
  bool fixedSize = false;
  bool isLong = false;  ///< long text or long binary
  bool isTyped = true;  ///< false for a column without a declared type: values keep the type they have
};

/// The handheld's type of a declared column type, in any letter case and spacing. Types of the
/// handheld's vocabulary and their synonyms map onto their codes; other programs' types onto the
/// nearest code that shows every value; 64-bit integer types onto a text of 20 characters, which holds
/// each of them exactly.
FieldType fieldTypeOf(std::string_view declaredType);

}  // namespace store
