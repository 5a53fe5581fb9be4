#include "views/shared/unowned_box.h"

#include <string>
#include <utility>

#include "base/showable_text.h"
#include "owners/handles.h"
#include "views/shared/boxes_over_window.h"
#include "views/shared/typed_watch.h"

namespace {

bool isLifted = false;

/// The first window to be activated is the box. MB_TOPMOST does not lift it on every system.
LRESULT CALLBACK liftBox(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HCBT_ACTIVATE && !std::exchange(isLifted, true)) {
    constexpr UINT kFlags = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
    SetWindowPos(reinterpret_cast<HWND>(wParam), HWND_TOPMOST, 0, 0, 0, 0, kFlags);
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

int showBoxOver(HWND window, HWND owner, const wchar_t* text, const wchar_t* caption, UINT flags) {
  const std::wstring shown = showableText(text);
  tellTypedWatch();
  const BoxesOverWindow place(window);
  return MessageBoxW(owner, shown.c_str(), caption, flags);
}

}  // namespace

int showBox(HWND owner, const wchar_t* text, const wchar_t* caption, UINT flags) {
  return showBoxOver(GetAncestor(owner, GA_ROOT), owner, text, caption, flags);
}

int showUnownedBox(HWND next, const wchar_t* text, const wchar_t* caption, UINT flags) {
  int answer = 0;
  {
    isLifted = false;
    const UniqueHook hook(SetWindowsHookExW(WH_CBT, liftBox, nullptr, GetCurrentThreadId()));
    answer = showBoxOver(next, nullptr, text, caption, flags | MB_TASKMODAL);
  }
  // The box ends while every other window is disabled, so the system finds none to go on with.
  SetForegroundWindow(next);
  return answer;
}
