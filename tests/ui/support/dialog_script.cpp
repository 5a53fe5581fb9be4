#include "tests/ui/support/dialog_script.h"

#include <utility>

#include "tests/ui/support/window_reading.h"

namespace {

DialogScript* running = nullptr;

}  // namespace

DialogScript::DialogScript(Step step) : step_(std::move(step)) {
  running = this;
  hook_ = SetWindowsHookExW(WH_CALLWNDPROCRET, hookProcedure, nullptr, GetCurrentThreadId());
}

DialogScript::~DialogScript() {
  UnhookWindowsHookEx(hook_);
  running = nullptr;
}

LRESULT CALLBACK DialogScript::hookProcedure(int code, WPARAM wParam, LPARAM lParam) {
  const auto& done = *reinterpret_cast<const CWPRETSTRUCT*>(lParam);
  if (code == HC_ACTION && done.message == WM_INITDIALOG && running) {
    ++running->count_;
    running->step_(done.hwnd);
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

void MessageBoxes::answer(HWND dialog) {
  constexpr int kMessageTextId = 0xFFFF;
  seen_.push_back({textOf(dialog), textOf(GetDlgItem(dialog, kMessageTextId))});
  DialogScript::close(dialog, IDOK);
}

void dispatchPosted() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}
