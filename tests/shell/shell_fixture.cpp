#include "tests/shell/shell_fixture.h"

#include <algorithm>
#include <utility>

#include "tests/shell/shell_resources.h"
#include "tests/shell/shell_settings.h"

namespace {

constexpr wchar_t kClassName[] = L"Shell Test";
constexpr DWORD kPatience = 5000;

}  // namespace

ShellTest::ShellTest(bool handheldSize) {
  forgetShellSettings();
  setHandheldSize(handheldSize);
  HandheldSetZoom(100);
  WNDCLASSW description{};
  description.lpfnWndProc = procedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  description.lpszClassName = kClassName;
  RegisterClassW(&description);  // fails but for the first
  makeTopAnew();
}

void ShellTest::makeTopAnew() {
  if (IsWindow(top_)) DestroyWindow(top_);
  top_ =
      HandheldCreateWindow(0, kClassName, L"Shell", WS_VISIBLE, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                           CW_USEDEFAULT, nullptr, nullptr, GetModuleHandleW(nullptr), this);
}

ShellTest::~ShellTest() {
  if (IsWindow(top_)) DestroyWindow(top_);
  forgetShellSettings();
}

int ShellTest::countOf(UINT message, WPARAM wParam) const {
  return static_cast<int>(std::count_if(got_.begin(), got_.end(), [=](const Got& each) {
    return each.message == message && each.wParam == wParam;
  }));
}

SHMENUBARINFO ShellTest::barInfo(UINT id) const {
  SHMENUBARINFO info{};
  info.cbSize = sizeof(info);
  info.hwndParent = top_;
  info.nToolBarId = id;
  info.hInstRes = GetModuleHandleW(nullptr);
  info.nBmpId = IDB_STRIP;
  info.cBmpImages = 3;
  return info;
}

HWND ShellTest::makeBar() {
  SHMENUBARINFO info = barInfo(IDR_BAR);
  return SHCreateMenuBar(&info) ? info.hwndMB : nullptr;
}

void ShellTest::pump() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    HandheldTakeMenuKey(&message);
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

bool ShellTest::pumpUntil(const std::function<bool()>& condition) {
  const DWORD start = GetTickCount();
  while (!condition()) {
    pump();
    if (condition()) return true;
    const DWORD passed = GetTickCount() - start;
    if (passed >= kPatience) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kPatience - passed, QS_ALLINPUT);
  }
  return true;
}

RECT ShellTest::clientRect(HWND window) {
  RECT rectangle{};
  GetClientRect(window, &rectangle);
  return rectangle;
}

RECT ShellTest::placeInParent(HWND window) {
  RECT rectangle{};
  GetWindowRect(window, &rectangle);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rectangle), 2);
  return rectangle;
}

LRESULT CALLBACK ShellTest::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const auto& creation = *reinterpret_cast<const CREATESTRUCTW*>(lParam);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation.lpCreateParams));
  }
  if (auto* const test = reinterpret_cast<ShellTest*>(GetWindowLongPtrW(window, GWLP_USERDATA))) {
    test->got_.push_back({message, wParam, lParam});
    if (test->handler_) test->handler_({message, wParam, lParam});
  }
  return DefWindowProcW(window, message, wParam, lParam);
}
