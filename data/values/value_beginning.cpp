#include "data/values/value_beginning.h"

#include <windows.h>

#include <oleauto.h>

#include <cstring>

#include "owners/ole_functions.h"

namespace {

bool sameBytes(const void* one, const void* other, std::size_t length) {
  return length == 0 || std::memcmp(one, other, length) == 0;
}

bool sameTexts(BSTR one, BSTR other) {
  const UINT length = ole::sysStringByteLen(one);
  return length == ole::sysStringByteLen(other) && sameBytes(one, other, length);
}

/// One-dimensional arrays of bytes; null for an array of none.
bool sameArrays(SAFEARRAY* one, SAFEARRAY* other) {
  const ULONG length = one ? one->rgsabound[0].cElements : 0;
  if (length != (other ? other->rgsabound[0].cElements : 0)) return false;
  return length == 0 || sameBytes(one->pvData, other->pvData, length);
}

/// How many bytes of a VARIANT's value a type takes; 0 for types whose value lies elsewhere.
std::size_t sizeInPlace(VARTYPE type) {
  switch (type) {
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return sizeof(SHORT);
    case VT_I4:
    case VT_UI4:
    case VT_R4:
      return sizeof(LONG);
    case VT_I8:
    case VT_UI8:
    case VT_CY:
    case VT_R8:
    case VT_DATE:
      return sizeof(LONGLONG);
    default:
      return 0;
  }
}

}  // namespace

bool isSameBeginning(const ValueBeginning& one, const ValueBeginning& other) {
  return one.length == other.length && one.fingerprint == other.fingerprint &&
         isSameValue(one.value, other.value);
}

bool isSameValue(const Variant& one, const Variant& other) {
  if (one.type() != other.type()) return false;
  const VARIANT& left = one.get();
  const VARIANT& right = other.get();
  switch (one.type()) {
    case VT_EMPTY:
    case VT_NULL:
      return true;
    case VT_BSTR:
      return sameTexts(left.bstrVal, right.bstrVal);
    case VT_ARRAY | VT_UI1:
      return sameArrays(left.parray, right.parray);
    case VT_DECIMAL:
      return left.decVal.signscale == right.decVal.signscale && left.decVal.Hi32 == right.decVal.Hi32 &&
             left.decVal.Lo64 == right.decVal.Lo64;
    default: {
      const std::size_t size = sizeInPlace(one.type());
      return size != 0 && sameBytes(&left.llVal, &right.llVal, size);
    }
  }
}
