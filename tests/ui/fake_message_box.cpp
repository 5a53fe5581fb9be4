#include "tests/ui/fake_message_box.h"

// The import that the program calls through, as the compiler names it.
extern "C" decltype(&MessageBoxW) __imp_MessageBoxW;  // NOLINT(bugprone-reserved-identifier)

namespace {

FakeMessageBoxes* present = nullptr;
decltype(&MessageBoxW) realMessageBox = nullptr;

void setImport(decltype(&MessageBoxW) function) {
  DWORD access = 0;
  VirtualProtect(&__imp_MessageBoxW, sizeof(__imp_MessageBoxW), PAGE_READWRITE, &access);
  __imp_MessageBoxW = function;
  VirtualProtect(&__imp_MessageBoxW, sizeof(__imp_MessageBoxW), access, &access);
}

}  // namespace

FakeMessageBoxes::FakeMessageBoxes() {
  present = this;
  realMessageBox = __imp_MessageBoxW;
  setImport(answer);
}

FakeMessageBoxes::~FakeMessageBoxes() {
  setImport(realMessageBox);
  present = nullptr;
}

int WINAPI FakeMessageBoxes::answer(HWND owner, const wchar_t* text, const wchar_t* caption, UINT flags) {
  present->seen_.push_back({owner, text, caption, flags});
  return IDOK;
}
