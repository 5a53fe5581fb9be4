#pragma once

#include <functional>
#include <utility>

#include "gtest/gtest.h"
#include "tests/automation/support/values.h"

namespace automationtest {

/// A script's function or object: who calls it, or asks for its value, gets what the test says. It lives as
/// long as its test, whoever holds references.
class ScriptFunction : public IDispatch {
 public:
  using Call = std::function<OwnedVariant(const DISPPARAMS& arguments)>;
  explicit ScriptFunction(Call call) : call_(std::move(call)) {}
  virtual ~ScriptFunction() = default;
  ScriptFunction(const ScriptFunction&) = delete;
  ScriptFunction& operator=(const ScriptFunction&) = delete;

  OwnedVariant asVariant() { return variant(static_cast<IDispatch*>(this)); }
  int callCount() const { return callCount_; }
  long references() const { return references_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
    const bool known = interfaceId == IID_IUnknown || interfaceId == IID_IDispatch;
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
  ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references_); }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    EXPECT_EQ(member, DISPID_VALUE);
    ++callCount_;
    *result = call_(*arguments).release();
    return S_OK;
  }

 private:
  Call call_;
  int callCount_ = 0;
  long references_ = 1;
};

}  // namespace automationtest
