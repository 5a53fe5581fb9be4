#include "tests/automation/support/late_object.h"

#include <windows.h>

#include <objbase.h>

#include <algorithm>

#include "gtest/gtest.h"

namespace automationtest {

namespace {

std::wstring taken(BSTR value) {
  const UniqueBstr owner(value);
  return value == nullptr ? std::wstring() : std::wstring(value, SysStringLen(value));
}

}  // namespace

LateObject LateObject::create(const wchar_t* programId) {
  CLSID classId;
  ComPtr<IDispatch> object;
  EXPECT_EQ(CLSIDFromProgID(programId, &classId), S_OK);
  EXPECT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                             reinterpret_cast<void**>(object.put())),
            S_OK);
  return LateObject(object.get());
}

LateObject LateObject::of(const OwnedVariant& value) {
  EXPECT_EQ(V_VT(&*value), VT_DISPATCH);
  return LateObject(V_VT(&*value) == VT_DISPATCH ? V_DISPATCH(&*value) : nullptr);
}

DISPID LateObject::memberOf(const wchar_t* name) const {
  auto* mutableName = const_cast<wchar_t*>(name);
  DISPID member = DISPID_UNKNOWN;
  const HRESULT result = object_->GetIDsOfNames(IID_NULL, &mutableName, 1, LOCALE_USER_DEFAULT, &member);
  if (FAILED(result)) throw LateFailure{result, {}, {}};
  return member;
}

OwnedVariant LateObject::invoke(DISPID member, WORD flags, Arguments& arguments, bool isPut) const {
  std::vector<VARIANT> reversed;
  for (const OwnedVariant& argument : arguments) reversed.push_back(*argument);
  std::reverse(reversed.begin(), reversed.end());
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {reversed.data(), isPut ? &put : nullptr, static_cast<UINT>(reversed.size()),
                           isPut ? 1u : 0u};
  EXCEPINFO exception = {};
  UINT badArgument = 0;
  OwnedVariant result;
  const HRESULT outcome = object_->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                          isPut ? nullptr : result.get(), &exception, &badArgument);
  if (FAILED(outcome)) {
    SysFreeString(exception.bstrHelpFile);
    throw LateFailure{outcome == DISP_E_EXCEPTION ? exception.scode : outcome,
                      taken(exception.bstrDescription), taken(exception.bstrSource)};
  }
  return result;
}

OwnedVariant LateObject::get(const wchar_t* name, Arguments arguments) const {
  return invoke(memberOf(name), DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments, false);
}

OwnedVariant LateObject::call(const wchar_t* name, Arguments arguments) const {
  return invoke(memberOf(name), DISPATCH_METHOD, arguments, false);
}

void LateObject::put(const wchar_t* name, const OwnedVariant& value, Arguments arguments) const {
  OwnedVariant copy;
  EXPECT_TRUE(copy.copy(*value));
  arguments.push_back(std::move(copy));
  invoke(memberOf(name), DISPATCH_PROPERTYPUT, arguments, true);
}

void LateObject::putReference(const wchar_t* name, const OwnedVariant& value) const {
  Arguments only = automationtest::arguments(OwnedVariant());
  EXPECT_TRUE(only.front().copy(*value));
  invoke(memberOf(name), DISPATCH_PROPERTYPUTREF, only, true);
}

OwnedVariant LateObject::item(Arguments arguments) const {
  return invoke(DISPID_VALUE, DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments, false);
}

void LateObject::putItem(const OwnedVariant& value, Arguments arguments) const {
  OwnedVariant copy;
  EXPECT_TRUE(copy.copy(*value));
  arguments.push_back(std::move(copy));
  invoke(DISPID_VALUE, DISPATCH_PROPERTYPUT, arguments, true);
}

}  // namespace automationtest
