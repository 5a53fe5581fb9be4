#pragma once

#include <array>
#include <cstdint>

#include "base/string.h"

/// What kind of values a field has: ADO's DataTypeEnum numbers, as the data-access components report
/// them in Field.Type. A field may report any other number; its values are shown as not recognised.
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

/// Whole numbers: 2, 3, 18 and 19. Their editors take digits only.
constexpr bool isNumericType(FieldType type) {
  return type == FieldType::smallInt || type == FieldType::integer || type == FieldType::unsignedSmallInt ||
         type == FieldType::unsignedInt;
}

/// Whole numbers that may be negative: 2 and 3.
constexpr bool isSignedIntegerType(FieldType type) {
  return type == FieldType::smallInt || type == FieldType::integer;
}

/// A type that is offered when a table is designed.
struct FieldTypeRow {
  const wchar_t* label;    ///< what the user reads
  const wchar_t* sqlType;  ///< how CREATE TABLE spells it
};

/// In the order in which they are offered, which is also the alphabetical order of the labels. The
/// labels are the system's own, with the doubled parenthesis and the ranges that they name.
inline constexpr std::array<FieldTypeRow, 7> kFieldTypeRows = {{
    {L"Boolean (True/False))", L"Bit"},
    {L"Date", L"Datetime"},
    {L"Float", L"Float"},
    {L"Integer (-128 to +127)", L"SmallInt"},
    {L"Integer (-32768 to +32767)", L"Integer"},
    {L"Text (to 255 characters)", L"Varchar (255)"},
    {L"Text (to 32000 characters)", L"Text"},
}};

/// A field of a table that is being designed.
struct NewField {
  String name;
  String sqlType;           ///< from FieldTypeRow::sqlType
  bool isUndecided = true;  ///< the field dialog clears it
};
