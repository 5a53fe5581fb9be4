#include "tests/automation/support/values.h"

#include <cstdio>
#include <cstring>
#include <utility>

namespace automationtest {

namespace {

OwnedVariant ofType(VARTYPE type) {
  OwnedVariant variant;
  V_VT(variant.get()) = type;
  return variant;
}

std::string hex(std::string_view data) {
  std::string digits;
  for (const char byte : data) {
    char two[3];
    std::snprintf(two, sizeof two, "%02x", static_cast<unsigned char>(byte));
    digits += two;
  }
  return digits;
}

std::string exact(double number) {
  char digits[40];
  std::snprintf(digits, sizeof digits, "%.17g", number);
  return digits;
}

std::string escaped(std::wstring_view value) {
  std::string result;
  for (const wchar_t unit : value) {
    char code[8];
    if (unit >= L' ' && unit < 0x7F) {
      result += static_cast<char>(unit);
    } else {
      std::snprintf(code, sizeof code, "\\x%04x", static_cast<unsigned>(unit));
      result += code;
    }
  }
  return result;
}

std::string describedBytes(SAFEARRAY* array) {
  void* data = nullptr;
  if (SafeArrayGetDim(array) != 1 || FAILED(SafeArrayAccessData(array, &data))) return "UI1[] (unreadable)";
  const std::string content(static_cast<const char*>(data), array->rgsabound[0].cElements);
  SafeArrayUnaccessData(array);
  return "UI1[] " + hex(content);
}

}  // namespace

UniqueBstr text(std::wstring_view value) {
  return UniqueBstr(SysAllocStringLen(value.data(), static_cast<UINT>(value.size())));
}

OwnedVariant empty() {
  return {};
}
OwnedVariant null() {
  return ofType(VT_NULL);
}

OwnedVariant missing() {
  OwnedVariant result = ofType(VT_ERROR);
  V_ERROR(result.get()) = DISP_E_PARAMNOTFOUND;
  return result;
}

OwnedVariant variant(std::wstring_view value) {
  OwnedVariant result = ofType(VT_BSTR);
  V_BSTR(result.get()) = text(value).release();
  return result;
}

OwnedVariant variant(long value) {
  OwnedVariant result = ofType(VT_I4);
  V_I4(result.get()) = value;
  return result;
}

OwnedVariant variant(IDispatch* value) {
  OwnedVariant result = ofType(VT_DISPATCH);
  if (value != nullptr) value->AddRef();
  V_DISPATCH(result.get()) = value;
  return result;
}

OwnedVariant int8(signed char value) {
  OwnedVariant result = ofType(VT_I1);
  V_I1(result.get()) = static_cast<CHAR>(value);
  return result;
}

OwnedVariant uint8(unsigned char value) {
  OwnedVariant result = ofType(VT_UI1);
  V_UI1(result.get()) = value;
  return result;
}

OwnedVariant int16(short value) {
  OwnedVariant result = ofType(VT_I2);
  V_I2(result.get()) = value;
  return result;
}

OwnedVariant uint16(unsigned short value) {
  OwnedVariant result = ofType(VT_UI2);
  V_UI2(result.get()) = value;
  return result;
}

OwnedVariant uint32(unsigned long value) {
  OwnedVariant result = ofType(VT_UI4);
  V_UI4(result.get()) = value;
  return result;
}

OwnedVariant int64(std::int64_t value) {
  OwnedVariant result = ofType(VT_I8);
  V_I8(result.get()) = value;
  return result;
}

OwnedVariant uint64(std::uint64_t value) {
  OwnedVariant result = ofType(VT_UI8);
  V_UI8(result.get()) = value;
  return result;
}

OwnedVariant real32(float value) {
  OwnedVariant result = ofType(VT_R4);
  V_R4(result.get()) = value;
  return result;
}

OwnedVariant real64(double value) {
  OwnedVariant result = ofType(VT_R8);
  V_R8(result.get()) = value;
  return result;
}

OwnedVariant date(double value) {
  OwnedVariant result = ofType(VT_DATE);
  V_DATE(result.get()) = value;
  return result;
}

OwnedVariant boolean(short value) {
  OwnedVariant result = ofType(VT_BOOL);
  V_BOOL(result.get()) = value;
  return result;
}

OwnedVariant currency(std::int64_t tenThousandths) {
  OwnedVariant result = ofType(VT_CY);
  V_CY(result.get()).int64 = tenThousandths;
  return result;
}

OwnedVariant decimal(std::int64_t value) {
  OwnedVariant result;
  VarDecFromI8(value, &V_DECIMAL(result.get()));
  V_VT(result.get()) = VT_DECIMAL;
  return result;
}

OwnedVariant bytes(std::string_view value) {
  OwnedVariant result;
  V_ARRAY(result.get()) = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(value.size()));
  V_VT(result.get()) = VT_ARRAY | VT_UI1;
  void* data = nullptr;
  SafeArrayAccessData(V_ARRAY(result.get()), &data);
  std::memcpy(data, value.data(), value.size());
  SafeArrayUnaccessData(V_ARRAY(result.get()));
  return result;
}

OwnedVariant list(std::vector<OwnedVariant> elements) {
  OwnedVariant result;
  V_ARRAY(result.get()) = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(elements.size()));
  V_VT(result.get()) = VT_ARRAY | VT_VARIANT;
  void* data = nullptr;
  SafeArrayAccessData(V_ARRAY(result.get()), &data);
  auto* target = static_cast<VARIANT*>(data);
  for (OwnedVariant& element : elements) *target++ = element.release();
  SafeArrayUnaccessData(V_ARRAY(result.get()));
  return result;
}

std::string described(const VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_EMPTY:
      return "EMPTY";
    case VT_NULL:
      return "NULL";
    case VT_I2:
      return "I2 " + std::to_string(V_I2(&value));
    case VT_I4:
      return "I4 " + std::to_string(V_I4(&value));
    case VT_UI2:
      return "UI2 " + std::to_string(V_UI2(&value));
    case VT_UI4:
      return "UI4 " + std::to_string(V_UI4(&value));
    case VT_R8:
      return "R8 " + exact(V_R8(&value));
    case VT_DATE:
      return "DATE " + exact(V_DATE(&value));
    case VT_BOOL:
      return "BOOL " + std::to_string(V_BOOL(&value));
    case VT_BSTR:
      return "BSTR " + escaped(std::wstring_view(V_BSTR(&value), SysStringLen(V_BSTR(&value))));
    case VT_DECIMAL:
      return "DECIMAL " + escaped(textOf(value));
    case VT_ARRAY | VT_UI1:
      return describedBytes(V_ARRAY(&value));
    case VT_ERROR: {
      char code[24];
      std::snprintf(code, sizeof code, "ERROR %08lx", static_cast<unsigned long>(V_ERROR(&value)));
      return code;
    }
    default:
      return "VARIANT type " + std::to_string(V_VT(&value));
  }
}

std::wstring textOf(const VARIANT& value) {
  OwnedVariant converted;
  if (!converted.convert(value, VT_BSTR)) return L"(none)";
  return std::wstring(V_BSTR(converted.get()), SysStringLen(V_BSTR(converted.get())));
}

}  // namespace automationtest
