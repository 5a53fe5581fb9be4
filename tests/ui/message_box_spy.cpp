#include "tests/ui/message_box_spy.h"

#include <utility>

// The import that the program calls through, as the compiler names it.
extern "C" decltype(&MessageBoxW) __imp_MessageBoxW;  // NOLINT(bugprone-reserved-identifier)

namespace {

decltype(&MessageBoxW) realMessageBox = nullptr;
std::vector<MessageBoxSpy::Box> seen;

int WINAPI answer(HWND owner, const wchar_t* text, const wchar_t* caption, UINT flags) {
  seen.push_back({owner, text, caption, flags});
  return IDOK;
}

void setImport(decltype(&MessageBoxW) function) {
  DWORD access = 0;
  VirtualProtect(&__imp_MessageBoxW, sizeof(__imp_MessageBoxW), PAGE_READWRITE, &access);
  __imp_MessageBoxW = function;
  VirtualProtect(&__imp_MessageBoxW, sizeof(__imp_MessageBoxW), access, &access);
}

}  // namespace

MessageBoxSpy::MessageBoxSpy() {
  seen.clear();
  realMessageBox = __imp_MessageBoxW;
  setImport(answer);
}

MessageBoxSpy::~MessageBoxSpy() {
  setImport(realMessageBox);
}

std::vector<MessageBoxSpy::Box> MessageBoxSpy::take() {
  return std::exchange(seen, {});
}
