#include "platform/pocketshell/naming/control_names.h"

#include <utility>

#include "owners/com_handles.h"
#include "owners/late_function.h"
#include "owners/ole_functions.h"
#include "platform/pocketshell/handheld_windows.h"

namespace pocketshell {

namespace {

/// The system's service that adds properties to what it tells of a control by itself: PROPID_ACC_NAME, and
/// its class and interface, for which the import libraries have no symbols.
constexpr MSAAPROPID kNameProperty = {
    0x608D3DF8, 0x8128, 0x4AA7, {0xA4, 0x28, 0xF5, 0x5E, 0x49, 0x26, 0x72, 0x91}};
constexpr CLSID kServicesClass = {
    0xB5F8350B, 0x0548, 0x48B1, {0xA6, 0xEE, 0x88, 0xBD, 0x00, 0xB4, 0xA5, 0xE7}};
constexpr IID kServicesInterface = {
    0x6E26E776, 0x04F0, 0x495D, {0x80, 0xE4, 0x33, 0x30, 0x35, 0x2E, 0x31, 0x69}};

constinit const LateFunction<decltype(LresultFromObject), E_NOTIMPL> lresultFromObject{L"oleacc.dll",
                                                                                       "LresultFromObject"};

constexpr DWORD kClientObject = static_cast<DWORD>(OBJID_CLIENT);
/// What UI Automation asks for before anything else.
constexpr DWORD kAutomationRoot = static_cast<DWORD>(-25);

ComPtr<IAccPropServices> services() {
  ComPtr<IAccPropServices> found;
  void* object = nullptr;
  if (SUCCEEDED(ole::coCreateInstance(kServicesClass, nullptr, CLSCTX_INPROC_SERVER, kServicesInterface,
                                      &object))) {
    found.reset(static_cast<IAccPropServices*>(object));
  }
  return found;
}

}  // namespace

void ControlNames::setName(LONG child, std::wstring name) {
  takeFromSystem();
  if (name.empty()) {
    names_.erase(child);
  } else {
    names_.insert_or_assign(child, std::move(name));
  }
}

/// False where the system has no such service or not for this thread; the control is then described here.
bool ControlNames::handToSystem() {
  if (systemHasThem_) return true;
  const ComPtr<IAccPropServices> service = services();
  if (!service) return false;
  for (const auto& [child, name] : names_) {
    if (FAILED(service->SetHwndPropStr(window(), kClientObject, static_cast<DWORD>(child), kNameProperty,
                                       name.c_str()))) {
      return false;
    }
    systemHasThem_ = true;
  }
  return systemHasThem_;
}

void ControlNames::takeFromSystem() {
  if (!std::exchange(systemHasThem_, false)) return;
  const ComPtr<IAccPropServices> service = services();
  if (!service) return;
  for (const auto& each : names_) {
    service->ClearHwndProps(window(), kClientObject, static_cast<DWORD>(each.first), &kNameProperty, 1);
  }
}

LRESULT ControlNames::describe(WPARAM wParam, LPARAM lParam) {
  const auto wanted = static_cast<DWORD>(lParam);
  const bool concerned = !names_.empty() && (wanted == kClientObject || wanted == kAutomationRoot);
  if (!concerned || handToSystem() || wanted != kClientObject) return passOn(WM_GETOBJECT, wParam, lParam);
  const ComPtr<IAccessible> description(describeWithNames(window(), names_));
  if (!description) return passOn(WM_GETOBJECT, wParam, lParam);
  return lresultFromObject(__uuidof(IAccessible), wParam, description.get());
}

LRESULT ControlNames::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_GETOBJECT) return describe(wParam, lParam);
  if (message == WM_DESTROY) takeFromSystem();
  return passOn(message, wParam, lParam);
}

}  // namespace pocketshell

BOOL HandheldNameControl(HWND control, LONG child, const wchar_t* name) {
  if (!IsWindow(control)) return FALSE;
  pocketshell::ControlNames::attach(control).setName(child, name ? name : L"");
  return TRUE;
}
