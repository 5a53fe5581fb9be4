#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <vector>

#include "platform/store/automation/values/com_values.h"
#include "tests/automation/support/values.h"

namespace automationtest {

/// What a script sees when a member of an object fails.
struct LateFailure {
  HRESULT result = S_OK;  ///< the member's own, out of EXCEPINFO where the call has one
  std::wstring description;
  std::wstring source;
};

/// An object used as a script uses it: by names alone.
class LateObject {
 public:
  explicit LateObject(IDispatch* object) : object_(ComPtr<IDispatch>::share(object)) {}
  /// Fails the running test when the object can't be made.
  static LateObject create(const wchar_t* programId);

  using Arguments = std::vector<OwnedVariant>;

  // Each throws LateFailure. Arguments stand in the order in which a script writes them; the arguments of
  // `put` are those in brackets.
  OwnedVariant get(const wchar_t* name, Arguments arguments = {}) const;
  OwnedVariant call(const wchar_t* name, Arguments arguments = {}) const;
  void put(const wchar_t* name, const OwnedVariant& value, Arguments arguments = {}) const;
  void putReference(const wchar_t* name, const OwnedVariant& value) const;
  /// The default member, with or without arguments.
  OwnedVariant item(Arguments arguments = {}) const;
  void putItem(const OwnedVariant& value, Arguments arguments) const;

  /// An object that a member returned.
  static LateObject of(const OwnedVariant& value);

  IDispatch* object() const { return object_.get(); }

 private:
  DISPID memberOf(const wchar_t* name) const;
  OwnedVariant invoke(DISPID member, WORD flags, Arguments& arguments, bool isPut) const;

  ComPtr<IDispatch> object_;
};

/// Arguments for the methods above, because a list in braces would copy.
template <class... Values>
LateObject::Arguments arguments(Values&&... values) {
  LateObject::Arguments list;
  (list.push_back(std::forward<Values>(values)), ...);
  return list;
}

/// What `action` throws; an S_OK result when it throws nothing.
template <class Action>
LateFailure failureOf(Action&& action) {
  try {
    action();
  } catch (const LateFailure& failure) {
    return failure;
  }
  return {};
}

}  // namespace automationtest
