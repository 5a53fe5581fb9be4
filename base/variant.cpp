#include "base/variant.h"

#include <new>
#include <utility>

#include "owners/live_resources.h"
#include "owners/ole_functions.h"

namespace {

/// The system's conversions only read their source, but mingw-w64 declares it without const.
VARIANT* source(const VARIANT& value) noexcept {
  return const_cast<VARIANT*>(&value);
}

}  // namespace

Variant::Variant() noexcept {
  LiveResources::add(ResourceKind::variant);
}

Variant::Variant(Variant&& other) noexcept : Variant() {
  std::swap(value_, other.value_);
}

Variant& Variant::operator=(Variant&& other) noexcept {
  Variant taken(std::move(other));
  std::swap(value_, taken.value_);
  return *this;
}

Variant::~Variant() {
  clear();
  LiveResources::remove(ResourceKind::variant);
}

Variant Variant::fromText(const wchar_t* text) {
  const BSTR copy = ole::sysAllocString(text ? text : L"");
  if (!copy) throw std::bad_alloc();
  Variant variant;
  variant.value_.vt = VT_BSTR;
  variant.value_.bstrVal = copy;
  return variant;
}

Variant Variant::fromLong(LONG value) noexcept {
  Variant variant;
  variant.value_.vt = VT_I4;
  variant.value_.lVal = value;
  return variant;
}

Variant Variant::fromDate(DATE value) noexcept {
  Variant variant;
  variant.value_.vt = VT_DATE;
  variant.value_.date = value;
  return variant;
}

Variant Variant::fromDispatch(IDispatch* object) noexcept {
  Variant variant;
  if (object) object->AddRef();
  variant.value_.vt = VT_DISPATCH;
  variant.value_.pdispVal = object;
  return variant;
}

void Variant::clear() noexcept {
  // The content leaves first: releasing an object can come back to this Variant. A content that
  // VariantClear refuses (a locked array) is not ours to free, so the result says nothing of use.
  VARIANT old = value_;
  value_ = {};
  ole::variantClear(&old);
}

VARIANT* Variant::put() noexcept {
  clear();
  return &value_;
}

HRESULT Variant::convertTo(VARTYPE type, Variant& target) const noexcept {
  Variant converted;
  const HRESULT result = ole::variantChangeType(&converted.value_, source(value_), 0, type);
  if (SUCCEEDED(result)) std::swap(target.value_, converted.value_);
  return result;
}
