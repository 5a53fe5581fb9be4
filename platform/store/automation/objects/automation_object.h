#pragma once

#include <windows.h>

#include <oleauto.h>

#include <atomic>
#include <utility>

#include "platform/store/automation/module/module.h"
#include "platform/store/automation/objects/busy_question.h"
#include "platform/store/automation/objects/error_report.h"
#include "platform/store/automation/objects/outcome.h"
#include "platform/store/automation/values/com_values.h"

namespace automation {

/// What every automation object has: the count of its references, IDispatch forwarded to the type
/// information of `Interface`, and descriptions of its failures. An object begins with one reference,
/// which its maker holds, and ends with the last one.
template <class Interface>
class AutomationObject : public Interface, public ISupportErrorInfo {
 public:
  AutomationObject(const AutomationObject&) = delete;
  AutomationObject& operator=(const AutomationObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
    if (object == nullptr) return E_POINTER;
    void* found = findInterface(interfaceId);
    *object = found;  // null for an unknown interface, as COM demands
    if (found == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }

  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) {
      const ModuleLock lock;
      delete this;
    }
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    if (index != 0) return DISP_E_BADINDEX;
    return withTypeInfo([&](ComPtr<ITypeInfo> own) {
      *info = own.release();
      return S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    return withTypeInfo([&](const ComPtr<ITypeInfo>& own) { return own->GetIDsOfNames(names, count, ids); });
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override {
    if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    return withTypeInfo([&](const ComPtr<ITypeInfo>& own) {
      return own->Invoke(static_cast<Interface*>(this), member, flags, arguments, result, exception,
                         badArgument);
    });
  }

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID interfaceId) override {
    return interfaceId == __uuidof(Interface) ? S_OK : S_FALSE;
  }

 protected:
  /// `source` names the object in its failures' descriptions; it must live as long as the module.
  explicit AutomationObject(const wchar_t* source) : source_(source) { addModuleUse(); }
  virtual ~AutomationObject() { removeModuleUse(); }

  /// Runs the body of an interface's method, which returns an Outcome: under the module's lock, with
  /// exceptions turned into results, and with a description left behind for each failure.
  template <class Body>
  HRESULT call(Body&& body) noexcept {
    const ModuleLock lock;
    try {
      if (BusyQuestion::isBeingAsked()) {
        return reportFailure({objectModelError(3219), "The database is busy: it asks whether to go on."},
                             __uuidof(Interface), source_, nullptr);
      }
      const Outcome outcome = std::forward<Body>(body)();
      if (outcome) return outcome.result();
      return reportFailure(outcome, __uuidof(Interface), source_, errorsForReport());
    } catch (...) {
      return reportException(__uuidof(Interface), source_, errorsForReport());
    }
  }

  /// The collection that takes the failures of this object; null for none.
  virtual ErrorsObject* errorsForReport() { return nullptr; }

  /// An interface that only this object has; null for an unknown one.
  virtual void* findOwnInterface(REFIID) { return nullptr; }

  const wchar_t* source() const { return source_; }

  /// Runs `use` with the type information of an interface of this object.
  template <class Use>
  HRESULT withTypeInfo(Use&& use, REFIID interfaceId = __uuidof(Interface)) noexcept {
    try {
      ComPtr<ITypeInfo> own;
      const HRESULT result = typeInfoOf(interfaceId, &own);
      return FAILED(result) ? result : use(std::move(own));
    } catch (...) {
      return reportException(interfaceId, source_, nullptr);
    }
  }

 private:
  void* findInterface(REFIID interfaceId) {
    if (interfaceId == IID_IUnknown || interfaceId == IID_IDispatch || interfaceId == __uuidof(Interface)) {
      return static_cast<Interface*>(this);
    }
    if (interfaceId == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
    return findOwnInterface(interfaceId);
  }

  const wchar_t* source_;
  std::atomic<ULONG> references_ = 1;
};

/// A new object; std::bad_alloc when there is no memory.
template <class Object, class... Arguments>
ComPtr<Object> makeObject(Arguments&&... arguments) {
  return ComPtr<Object>(new Object(std::forward<Arguments>(arguments)...));
}

/// The names by which objects sign their failures.
inline constexpr wchar_t kConnectionSource[] = L"ADOCE.Connection.3.1";
inline constexpr wchar_t kRecordsetSource[] = L"ADOCE.Recordset.3.1";

}  // namespace automation
