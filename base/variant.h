#pragma once

#include <windows.h>

#include <oleauto.h>

/// The owner of a VARIANT and of what lies in it. Move-only; what is moved from is VT_EMPTY. Each
/// object counts as one live resource, whatever it holds.
class Variant {
 public:
  /// VT_EMPTY.
  Variant() noexcept;
  Variant(Variant&& other) noexcept;
  Variant& operator=(Variant&& other) noexcept;
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant();

  /// VT_BSTR, a copy of `text` (null gives the empty text). Throws std::bad_alloc.
  static Variant fromText(const wchar_t* text);
  /// VT_I4.
  static Variant fromLong(LONG value) noexcept;
  /// VT_DATE: days since 30 December 1899.
  static Variant fromDate(DATE value) noexcept;
  /// VT_DISPATCH with a reference of its own to `object`, which may be null.
  static Variant fromDispatch(IDispatch* object) noexcept;

  VARTYPE type() const noexcept { return value_.vt; }
  /// To pass by value to a call, which does not own it, or to read. Valid while this lives unchanged.
  const VARIANT& get() const noexcept { return value_; }

  /// Frees the content and becomes VT_EMPTY.
  void clear() noexcept;
  /// Clears, and gives the place where a call of the system stores a value, which is then owned.
  VARIANT* put() noexcept;

  /// Puts this value, converted with VariantChangeType and flags 0, into `target`, which may be this.
  /// A failure leaves `target` untouched.
  HRESULT convertTo(VARTYPE type, Variant& target) const noexcept;

 private:
  VARIANT value_ = {};
};
