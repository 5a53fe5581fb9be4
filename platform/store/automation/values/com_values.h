#pragma once

#include <windows.h>

#include <oleauto.h>

#include <new>
#include <utility>

namespace automation {

/// Holds one reference to a COM object, or none.
template <class T>
class ComPtr {
 public:
  ComPtr() = default;
  /// Takes over a reference that the caller has.
  static ComPtr adopt(T* object) {
    ComPtr result;
    result.object_ = object;
    return result;
  }
  /// Adds a reference of its own; `object` may be null.
  static ComPtr share(T* object) {
    if (object != nullptr) object->AddRef();
    return adopt(object);
  }
  ComPtr(const ComPtr& other) : object_(other.object_) {
    if (object_ != nullptr) object_->AddRef();
  }
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPtr& operator=(const ComPtr& other) {
    ComPtr copy(other);
    std::swap(object_, copy.object_);
    return *this;
  }
  ComPtr& operator=(ComPtr&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() {
    if (object_ != nullptr) object_->Release();
  }

  T* get() const { return object_; }
  T* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  /// Hands the reference to the caller.
  T* detach() { return std::exchange(object_, nullptr); }
  /// Where a function stores a reference; only for an empty pointer.
  T** receive() { return &object_; }

 private:
  T* object_ = nullptr;
};

/// Owns a BSTR.
class OwnedText {
 public:
  OwnedText() = default;
  explicit OwnedText(BSTR text) : text_(text) {}
  OwnedText(OwnedText&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  OwnedText& operator=(OwnedText&& other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  OwnedText(const OwnedText&) = delete;
  OwnedText& operator=(const OwnedText&) = delete;
  ~OwnedText() { SysFreeString(text_); }

  BSTR get() const { return text_; }
  BSTR detach() { return std::exchange(text_, nullptr); }
  BSTR* receive() { return &text_; }

 private:
  BSTR text_ = nullptr;
};

/// Owns a VARIANT and what it holds.
class OwnedVariant {
 public:
  OwnedVariant() = default;
  OwnedVariant(OwnedVariant&& other) noexcept : value_(other.detach()) {}
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
  VARIANT detach() {
    const VARIANT value = value_;
    VariantInit(&value_);
    return value;
  }

 private:
  VARIANT value_{};  // VT_EMPTY
};

}  // namespace automation
