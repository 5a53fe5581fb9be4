#include "platform/pocketshell/naming/named_accessible.h"

#include <algorithm>
#include <new>
#include <utility>

#include "owners/com_handles.h"
#include "owners/late_function.h"
#include "owners/ole_functions.h"

namespace pocketshell {

namespace {

constinit const LateFunction<decltype(CreateStdAccessibleObject), E_NOTIMPL> createStdAccessibleObject{
    L"oleacc.dll", "CreateStdAccessibleObject"};

/// Its names don't change; only the count of references does.
class NamedAccessible final : public IAccessible {
 public:
  NamedAccessible(ComPtr<IAccessible> systems, AccessibleNames names)
      : systems_(std::move(systems)), names_(std::move(names)) {}

  // IUnknown
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    if (!object) return E_POINTER;
    const bool known = IsEqualIID(wanted, __uuidof(IUnknown)) || IsEqualIID(wanted, __uuidof(IDispatch)) ||
                       IsEqualIID(wanted, __uuidof(IAccessible));
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

  // IDispatch
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    return systems_->GetTypeInfoCount(count);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** information) override {
    return systems_->GetTypeInfo(index, locale, information);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override {
    return systems_->GetIDsOfNames(reserved, names, count, locale, ids);
  }
  /// By the type's description, so that the names below are found this way too.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID locale, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception, UINT* argument) override {
    ITypeInfo* information = nullptr;
    const HRESULT found = systems_->GetTypeInfo(0, locale, &information);
    if (FAILED(found)) return found;
    const HRESULT answer = information->Invoke(static_cast<IAccessible*>(this), member, flags, arguments,
                                               result, exception, argument);
    information->Release();
    return answer;
  }

  // IAccessible
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
    if (!name) return E_POINTER;
    const auto found = child.vt == VT_I4 ? names_.find(child.lVal) : names_.end();
    if (found == names_.end()) return systems_->get_accName(child, name);
    *name = ole::sysAllocStringLen(found->second.data(), static_cast<UINT>(found->second.size()));
    return *name ? S_OK : E_OUTOFMEMORY;
  }
  /// What has a name is there, whether the system knows it or not.
  HRESULT STDMETHODCALLTYPE get_accChildCount(long* count) override {
    const HRESULT answer = systems_->get_accChildCount(count);
    if (FAILED(answer) || names_.empty()) return answer;
    *count = std::max(*count, names_.rbegin()->first);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
    return systems_->get_accParent(parent);
  }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
    return systems_->get_accChild(child, object);
  }
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override {
    return systems_->get_accValue(child, value);
  }
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* description) override {
    return systems_->get_accDescription(child, description);
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
    return systems_->get_accRole(child, role);
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
    return systems_->get_accState(child, state);
  }
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* help) override {
    return systems_->get_accHelp(child, help);
  }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, long* topic) override {
    return systems_->get_accHelpTopic(file, child, topic);
  }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) override {
    return systems_->get_accKeyboardShortcut(child, shortcut);
  }
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override { return systems_->get_accFocus(child); }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override {
    return systems_->get_accSelection(children);
  }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override {
    return systems_->get_accDefaultAction(child, action);
  }
  HRESULT STDMETHODCALLTYPE accSelect(long flags, VARIANT child) override {
    return systems_->accSelect(flags, child);
  }
  HRESULT STDMETHODCALLTYPE accLocation(long* left, long* top, long* width, long* height,
                                        VARIANT child) override {
    return systems_->accLocation(left, top, width, height, child);
  }
  HRESULT STDMETHODCALLTYPE accNavigate(long direction, VARIANT start, VARIANT* end) override {
    return systems_->accNavigate(direction, start, end);
  }
  HRESULT STDMETHODCALLTYPE accHitTest(long left, long top, VARIANT* child) override {
    return systems_->accHitTest(left, top, child);
  }
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override {
    return systems_->accDoDefaultAction(child);
  }
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT child, BSTR name) override {
    return systems_->put_accName(child, name);
  }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT child, BSTR value) override {
    return systems_->put_accValue(child, value);
  }

 private:
  ~NamedAccessible() = default;

  LONG references_ = 1;
  ComPtr<IAccessible> systems_;
  const AccessibleNames names_;
};

}  // namespace

IAccessible* describeWithNames(HWND control, const AccessibleNames& names) {
  ComPtr<IAccessible> systems;
  if (FAILED(createStdAccessibleObject(control, OBJID_CLIENT, __uuidof(IAccessible),
                                       reinterpret_cast<void**>(systems.put())))) {
    return nullptr;
  }
  return new (std::nothrow) NamedAccessible(std::move(systems), names);
}

}  // namespace pocketshell
