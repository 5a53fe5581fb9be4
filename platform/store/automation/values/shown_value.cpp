#include <cmath>
#include <limits>
#include <string>

#include "platform/store/automation/values/variant_values.h"
#include "platform/store/rows/iso_date.h"

namespace automation {

namespace {

using store::Cell;
using store::CellKind;
using store::FieldType;
using store::TypeCode;

template <class T>
bool fits(std::int64_t number) {
  return number >= std::numeric_limits<T>::min() && number <= std::numeric_limits<T>::max();
}

OwnedVariant shownReal(double number) {
  OwnedVariant variant;
  V_VT(variant.get()) = VT_R8;
  V_R8(variant.get()) = number;
  return variant;
}

/// Whether a double holds the number exactly.
bool isExactReal(std::int64_t number) {
  constexpr std::int64_t kMostExact = std::int64_t{1} << 53;
  return number >= -kMostExact && number <= kMostExact;
}

OwnedVariant shownInteger(std::int64_t number, const FieldType& type) {
  OwnedVariant variant;
  switch (type.code) {
    case TypeCode::smallInt:
      if (!fits<SHORT>(number)) break;
      V_VT(variant.get()) = VT_I2;
      V_I2(variant.get()) = static_cast<SHORT>(number);
      return variant;
    case TypeCode::unsignedSmallInt:
      if (!fits<USHORT>(number)) break;
      V_VT(variant.get()) = VT_UI2;
      V_UI2(variant.get()) = static_cast<USHORT>(number);
      return variant;
    case TypeCode::unsignedInt:
      if (!fits<ULONG>(number)) break;
      V_VT(variant.get()) = VT_UI4;
      V_UI4(variant.get()) = static_cast<ULONG>(number);
      return variant;
    case TypeCode::boolean:
      V_VT(variant.get()) = VT_BOOL;
      V_BOOL(variant.get()) = number != 0 ? VARIANT_TRUE : VARIANT_FALSE;
      return variant;
    case TypeCode::real:
      if (isExactReal(number)) return shownReal(static_cast<double>(number));
      break;
    case TypeCode::varWChar:
    case TypeCode::longVarWChar:
      // Among them the columns of 64 bits, which have no VARIANT that every program understands.
      if (type.isTyped) return variantOf(std::to_string(number));
      break;
    case TypeCode::integer:
    case TypeCode::date:
    case TypeCode::varBinary:
    case TypeCode::longVarBinary:
      break;
  }
  return naturalInteger(number);
}

OwnedVariant shownText(std::string_view text, const FieldType& type) {
  if (type.code == TypeCode::date) {
    if (const std::optional<double> date = store::parseIsoDate(text)) {
      OwnedVariant variant;
      V_VT(variant.get()) = VT_DATE;
      V_DATE(variant.get()) = *date;
      return variant;
    }
  }
  return variantOf(text);
}

}  // namespace

OwnedVariant shownValue(const Cell& cell, const FieldType& type) {
  switch (cell.kind) {
    case CellKind::integer:
      return shownInteger(cell.integer, type);
    case CellKind::real:
      return shownReal(cell.real);
    case CellKind::text:
      return shownText(cell.bytes, type);
    case CellKind::blob:
      return arrayOf(cell.bytes);
    case CellKind::null:
      break;
  }
  OwnedVariant null;
  V_VT(null.get()) = VT_NULL;
  return null;
}

}  // namespace automation
