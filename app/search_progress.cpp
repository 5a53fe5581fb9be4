#include "app/search_progress.h"

#include <algorithm>
#include <string>

namespace {

constexpr ULONGLONG kQuietMilliseconds = 500;
constexpr ULONGLONG kBetweenLines = 200;
// A window that does not validate itself would otherwise be painted for ever.
constexpr int kMostPaintings = 64;
constexpr int kLineMargin = 3;

std::wstring lineText(std::uint32_t tested, std::uint32_t all) {
  return std::to_wstring(tested) + L" of " + std::to_wstring(all) + L" records searched. Esc stops.";
}

/// Under the owner and as wide; over its lower edge where the screen ends there.
RECT linePlace(HWND owner, HFONT font) {
  RECT rect{};
  GetWindowRect(owner, &rect);
  TEXTMETRICW metrics{};
  const HDC context = GetDC(owner);
  const HGDIOBJ former = SelectObject(context, font);
  GetTextMetricsW(context, &metrics);
  SelectObject(context, former);
  ReleaseDC(owner, context);
  const int height = metrics.tmHeight + 2 * kLineMargin;
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  const bool isKnown = GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTONEAREST), &monitor) != FALSE;
  const LONG lowest = isKnown ? monitor.rcWork.bottom - height : rect.bottom;
  return {rect.left, std::min(rect.bottom, lowest), rect.right, std::min(rect.bottom, lowest) + height};
}

}  // namespace

bool SearchProgress::goesOn(HWND owner, std::uint32_t tested, std::uint32_t all) {
  const ULONGLONG now = GetTickCount64();
  if (begin_ == 0) begin_ = now;
  if (now - begin_ < kQuietMilliseconds) return true;
  if (!line_ || now - shown_ >= kBetweenLines) show(owner, tested, all);
  paintWindows();
  return !isStopAsked();
}

void SearchProgress::end() {
  if (line_) DestroyWindow(line_);
  line_ = nullptr;
  begin_ = 0;
}

void SearchProgress::show(HWND owner, std::uint32_t tested, std::uint32_t all) {
  const std::wstring text = lineText(tested, all);
  shown_ = GetTickCount64();
  if (line_) {
    SetWindowTextW(line_, text.c_str());
    return;
  }
  auto font = reinterpret_cast<HFONT>(SendMessageW(owner, WM_GETFONT, 0, 0));
  if (!font) font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
  const RECT place = linePlace(owner, font);
  // It is never activated: the keys stay with the dialog.
  line_ = CreateWindowExW(WS_EX_NOACTIVATE, L"STATIC", text.c_str(),
                          WS_POPUP | WS_BORDER | SS_CENTER | SS_CENTERIMAGE | SS_NOPREFIX, place.left,
                          place.top, place.right - place.left, place.bottom - place.top, owner, nullptr,
                          GetModuleHandleW(nullptr), nullptr);
  if (!line_) return;
  SendMessageW(line_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  ShowWindow(line_, SW_SHOWNOACTIVATE);
}

bool SearchProgress::isStopAsked() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE)) {
    // It comes whatever was asked for, and is the message loop's.
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return true;
    }
    if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) return true;
  }
  return false;
}

void SearchProgress::paintWindows() {
  MSG message{};
  for (int count = 0; count < kMostPaintings; ++count) {
    if (!PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE)) return;
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    DispatchMessageW(&message);
  }
}
