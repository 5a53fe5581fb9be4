#pragma once

#include <windows.h>

#include <oleauto.h>

#include <utility>

#include "owners/com_handles.h"

namespace automation {

/// Owns a VARIANT and what it holds.
class OwnedVariant {
 public:
  OwnedVariant() = default;
  OwnedVariant(OwnedVariant&& other) noexcept : value_(other.release()) {}
  OwnedVariant& operator=(OwnedVariant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant() { VariantClear(&value_); }

  // Each of these returns whether it could take over the value of `source`. The system's
  // functions take sources that they don't change as changeable.

  bool copy(const VARIANT& source) { return SUCCEEDED(VariantCopy(&value_, const_cast<VARIANT*>(&source))); }
  /// Follows a reference.
  bool copyTarget(const VARIANT& source) {
    return SUCCEEDED(VariantCopyInd(&value_, const_cast<VARIANT*>(&source)));
  }
  /// Converts by the automation's rules, in the user's locale.
  bool convert(const VARIANT& source, VARTYPE type) {
    return SUCCEEDED(VariantChangeType(&value_, const_cast<VARIANT*>(&source), 0, type));
  }

  VARIANT& operator*() { return value_; }
  const VARIANT& operator*() const { return value_; }
  VARIANT* operator->() { return &value_; }
  const VARIANT* operator->() const { return &value_; }
  VARIANT* get() { return &value_; }
  /// Hands the value to the caller; this one is empty afterwards.
  [[nodiscard]] VARIANT release() {
    const VARIANT value = value_;
    VariantInit(&value_);
    return value;
  }

 private:
  VARIANT value_{};  // VT_EMPTY
};

}  // namespace automation
