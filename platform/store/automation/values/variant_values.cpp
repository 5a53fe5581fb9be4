#include "platform/store/automation/values/variant_values.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

#include "platform/store/automation/values/text.h"

namespace automation {

namespace {

constexpr VARTYPE kByteArray = VT_ARRAY | VT_UI1;

// An object may have an object as its default property, and a VARIANT may refer to itself; a circle must end.
constexpr int kMostSteps = 8;

/// Gives access to the bytes of an array as long as it lives.
class ArrayBytes {
 public:
  explicit ArrayBytes(SAFEARRAY* array) : array_(array) {
    if (FAILED(SafeArrayAccessData(array_, &data_))) data_ = nullptr;
  }
  ~ArrayBytes() {
    if (data_ != nullptr) SafeArrayUnaccessData(array_);
  }
  ArrayBytes(const ArrayBytes&) = delete;
  ArrayBytes& operator=(const ArrayBytes&) = delete;

  char* data() const { return static_cast<char*>(data_); }

 private:
  SAFEARRAY* array_;
  void* data_ = nullptr;
};

bool sameDecimal(const DECIMAL& left, const DECIMAL& right) {
  DECIMAL first = left;
  DECIMAL second = right;
  return VarDecCmp(&first, &second) == static_cast<HRESULT>(VARCMP_EQ);
}

bool sameBits(double left, double right) {
  return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

bool sameValueOfSameType(const VARIANT& left, const VARIANT& right) {
  switch (V_VT(&left)) {
    case VT_NULL:
      return true;
    case VT_I2:
      return V_I2(&left) == V_I2(&right);
    case VT_I4:
      return V_I4(&left) == V_I4(&right);
    case VT_UI2:
      return V_UI2(&left) == V_UI2(&right);
    case VT_UI4:
      return V_UI4(&left) == V_UI4(&right);
    case VT_R8:
      return sameBits(V_R8(&left), V_R8(&right));
    case VT_DATE:
      return sameBits(V_DATE(&left), V_DATE(&right));
    case VT_BOOL:
      return (V_BOOL(&left) != 0) == (V_BOOL(&right) != 0);
    case VT_DECIMAL:
      return sameDecimal(V_DECIMAL(&left), V_DECIMAL(&right));
    case VT_BSTR:
      return viewOf(V_BSTR(&left)) == viewOf(V_BSTR(&right));
    case kByteArray:
      return bytesOf(left) == bytesOf(right);
    default:
      return false;
  }
}

}  // namespace

bool saysTheSame(const VARIANT& shown, const VARIANT& given) {
  if (V_VT(&shown) == V_VT(&given)) return sameValueOfSameType(shown, given);
  if (V_VT(&given) == VT_EMPTY) return V_VT(&shown) == VT_NULL;
  if (V_VT(&given) != VT_BSTR || V_VT(&shown) == VT_NULL) return false;
  // A program that shows the value as text writes this text back when the user has left it alone. The
  // text may say less than the value (15 digits, no parts of a second), so the value must stay.
  OwnedVariant text;
  if (!text.convert(shown, VT_BSTR)) return false;
  return viewOf(V_BSTR(text.get())) == viewOf(V_BSTR(&given));
}

Outcome plainVariant(const VARIANT& given, OwnedVariant* holder, const VARIANT** plain) {
  const VARIANT* source = &given;
  for (int step = 0; step < kMostSteps; ++step) {
    if ((V_VT(source) & VT_BYREF) != 0) {
      OwnedVariant target;
      const VARIANT* referred = referredVariant(const_cast<VARIANT*>(source));
      if (referred == nullptr || !target.copyTarget(*referred)) break;
      *holder = std::move(target);
      source = holder->get();
    } else if (V_VT(source) == VT_DISPATCH && V_DISPATCH(source) != nullptr) {
      DISPPARAMS none = {nullptr, nullptr, 0, 0};
      OwnedVariant value;
      const ComPtr<IDispatch> object = ComPtr<IDispatch>::share(V_DISPATCH(source));
      const HRESULT result = object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                            &none, value.get(), nullptr, nullptr);
      if (FAILED(result)) break;
      *holder = std::move(value);
      source = holder->get();
    } else {
      *plain = source;
      return {};
    }
  }
  return {kConversion, "The value can't be read."};
}

VARIANT* referredVariant(VARIANT* variant) {
  for (int step = 0; step < kMostSteps; ++step) {
    if ((V_VT(variant) & VT_BYREF) == 0) return variant;
    if (V_BYREF(variant) == nullptr) return nullptr;
    if (V_VT(variant) != (VT_BYREF | VT_VARIANT)) return variant;
    variant = V_VARIANTREF(variant);
  }
  return nullptr;
}

bool isMissing(const VARIANT& variant) {
  return V_VT(&variant) == VT_EMPTY ||
         (V_VT(&variant) == VT_ERROR && V_ERROR(&variant) == DISP_E_PARAMNOTFOUND);
}

std::optional<std::string> bytesOf(const VARIANT& variant) {
  if (V_VT(&variant) != kByteArray) return std::nullopt;
  SAFEARRAY* array = V_ARRAY(&variant);
  if (array == nullptr) return std::string();
  if (SafeArrayGetDim(array) != 1) return std::nullopt;
  const ArrayBytes bytes(array);
  if (bytes.data() == nullptr) return std::nullopt;
  return std::string(bytes.data(), array->rgsabound[0].cElements);
}

OwnedVariant arrayOf(std::string_view bytes) {
  if (bytes.size() > std::numeric_limits<ULONG>::max()) throw std::bad_alloc();
  OwnedVariant variant;
  SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  if (array == nullptr) throw std::bad_alloc();
  V_VT(variant.get()) = kByteArray;
  V_ARRAY(variant.get()) = array;
  const ArrayBytes target(array);
  if (target.data() == nullptr) throw std::bad_alloc();
  std::memcpy(target.data(), bytes.data(), bytes.size());
  return variant;
}

OwnedVariant variantOf(std::int32_t number) {
  OwnedVariant variant;
  V_VT(variant.get()) = VT_I4;
  V_I4(variant.get()) = number;
  return variant;
}

OwnedVariant variantOf(std::string_view utf8) {
  OwnedVariant variant;
  V_BSTR(variant.get()) = newText(utf8);
  V_VT(variant.get()) = VT_BSTR;
  return variant;
}

OwnedVariant naturalInteger(std::int64_t number) {
  if (number >= std::numeric_limits<std::int32_t>::min() &&
      number <= std::numeric_limits<std::int32_t>::max()) {
    return variantOf(static_cast<std::int32_t>(number));
  }
  OwnedVariant variant;
  DECIMAL decimal;
  if (FAILED(VarDecFromI8(number, &decimal))) throw std::bad_alloc();
  V_DECIMAL(variant.get()) = decimal;
  V_VT(variant.get()) = VT_DECIMAL;  // shares its place with a member of DECIMAL
  return variant;
}

}  // namespace automation
