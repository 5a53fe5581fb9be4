#pragma once

#include <cstdint>

#include "base/string.h"

/// What kind of values a field has: ADO's DataTypeEnum numbers, as the data-access components report
/// them in Field.Type. A field may report any other number. What each is to the program is in field_kinds.h.
enum class FieldType : std::int32_t {
  smallInt = 2,
  integer = 3,
  single = 4,
  real = 5,  ///< a double
  currency = 6,
  date = 7,
  bit = 11,  ///< a boolean
  unsignedSmallInt = 18,
  unsignedInt = 19,
  varWChar = 202,
  longVarWChar = 203,
  varBinary = 204,
  longVarBinary = 205,
};

/// A field of a table that is being designed.
struct NewField {
  String name;
  String sqlType;           ///< from FieldKind::sqlType (field_kinds.h)
  bool isUndecided = true;  ///< the field dialog clears it
};
