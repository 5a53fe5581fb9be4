#include "tests/ui/support/dialog_script.h"

#include <utility>

namespace {

DialogScript* running = nullptr;
bool (*isLeftOut)(HWND) = nullptr;

}  // namespace

DialogScript::DialogScript(Step step) : step_(std::move(step)) {
  running = this;
  hook_ = SetWindowsHookExW(WH_CALLWNDPROCRET, hookProcedure, nullptr, GetCurrentThreadId());
}

DialogScript::~DialogScript() {
  UnhookWindowsHookEx(hook_);
  running = nullptr;
}

void DialogScript::leaveOut(bool (*isAnswered)(HWND dialog)) {
  isLeftOut = isAnswered;
}

HWND DialogScript::openedDialog(int code, LPARAM lParam) {
  const auto& done = *reinterpret_cast<const CWPRETSTRUCT*>(lParam);
  return code == HC_ACTION && done.message == WM_INITDIALOG ? done.hwnd : nullptr;
}

LRESULT CALLBACK DialogScript::hookProcedure(int code, WPARAM wParam, LPARAM lParam) {
  const HWND dialog = openedDialog(code, lParam);
  if (dialog && running && !(isLeftOut && isLeftOut(dialog))) {
    ++running->count_;
    running->step_(dialog);
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

void dispatchPosted() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}
