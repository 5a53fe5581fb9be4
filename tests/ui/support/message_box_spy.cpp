#include "tests/ui/support/message_box_spy.h"

#include <utility>

// The import that the program calls through, as the compiler names it.
extern "C" decltype(&MessageBoxW) __imp_MessageBoxW;  // NOLINT(bugprone-reserved-identifier)

namespace {

std::vector<MessageBoxSpy::Box> seen;

int WINAPI answer(HWND owner, const wchar_t* text, const wchar_t* caption, UINT flags) {
  seen.push_back({owner, text, caption, flags});
  return IDOK;
}

}  // namespace

MessageBoxSpy::MessageBoxSpy() : swap_(__imp_MessageBoxW, answer) {
  seen.clear();
}

std::vector<MessageBoxSpy::Box> MessageBoxSpy::take() {
  return std::exchange(seen, {});
}
