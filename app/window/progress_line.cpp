#include "app/window/progress_line.h"

#include <algorithm>
#include <utility>

#include "views/shared/typed_watch.h"

namespace {

constexpr ULONGLONG kLongestSilence = 250;
constexpr ULONGLONG kBetweenLines = 200;
// A window that does not validate itself would otherwise be painted for ever.
constexpr int kMostPaintings = 64;
constexpr int kLineMargin = 3;

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

bool ProgressLine::goesOn(HWND window, const std::wstring& text, ULONGLONG quietMilliseconds,
                          ULONGLONG lastedMilliseconds) {
  const ULONGLONG now = GetTickCount64();
  if (lastedMilliseconds != 0) {
    begin_ = now - lastedMilliseconds;
  } else if (!line_ && now - asked_ > kLongestSilence) {
    // What did not ask for a while was over, and this is another thing of the same command.
    begin_ = now;
  }
  asked_ = now;
  if (now - begin_ < quietMilliseconds) return true;
  if (!line_ || now - shown_ >= kBetweenLines) show(GetLastActivePopup(window), text);
  paintWindows();
  return !isStopAsked();
}

void ProgressLine::end() {
  asked_ = 0;
  if (!line_) return;
  DestroyWindow(std::exchange(line_, nullptr));
  MSG message{};
  while (takeKey(&message)) {
  }
}

void ProgressLine::show(HWND owner, const std::wstring& text) {
  shown_ = GetTickCount64();
  if (line_) {
    SetWindowTextW(line_, text.c_str());
    return;
  }
  tellTypedWatch();
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

/// The next key that waits. False when there is none, or when the program is to end: `*message` is then
/// WM_QUIT.
bool ProgressLine::takeKey(MSG* message) {
  if (!PeekMessageW(message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE)) return false;
  if (message->message != WM_QUIT) return true;
  // It comes whatever was asked for, and is the message loop's.
  PostQuitMessage(static_cast<int>(message->wParam));
  return false;
}

bool ProgressLine::isStopAsked() {
  MSG message{};
  while (takeKey(&message)) {
    if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) return true;
  }
  return message.message == WM_QUIT;
}

void ProgressLine::paintWindows() {
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
