#include "platform/pocketshell/window/list_focus.h"

#include <commctrl.h>

#include <algorithm>
#include <array>

#include "owners/handles.h"

namespace pocketshell {

namespace {

/// Every other point, in the colours of the device context.
constexpr std::array<WORD, 8> kDots = {0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA};

/// What gives or takes the keyboard, an item or a place of it.
bool mayChangeFrame(UINT message) {
  constexpr std::array kChanging = {static_cast<UINT>(WM_SETFOCUS),
                                    static_cast<UINT>(WM_KILLFOCUS),
                                    static_cast<UINT>(WM_KEYDOWN),
                                    static_cast<UINT>(WM_LBUTTONDOWN),
                                    static_cast<UINT>(WM_RBUTTONDOWN),
                                    static_cast<UINT>(WM_HSCROLL),
                                    static_cast<UINT>(WM_VSCROLL),
                                    static_cast<UINT>(WM_MOUSEWHEEL),
                                    static_cast<UINT>(WM_SIZE),
                                    static_cast<UINT>(LVM_SETITEMSTATE),
                                    static_cast<UINT>(LVM_INSERTITEMW),
                                    static_cast<UINT>(LVM_DELETEITEM),
                                    static_cast<UINT>(LVM_DELETEALLITEMS),
                                    static_cast<UINT>(LVM_SETITEMCOUNT)};
  return std::ranges::find(kChanging, message) != kChanging.end();
}

/// Without the titles of columns.
RECT areaOfItems(HWND list) {
  RECT area{};
  GetClientRect(list, &area);
  const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
  if (header && IsWindowVisible(header)) {
    RECT titles{};
    GetClientRect(header, &titles);
    area.top = std::min(area.bottom, area.top + titles.bottom);
  }
  return area;
}

}  // namespace

bool ListFocus::needsFrame() const {
  return GetFocus() == window() && SendMessageW(window(), LVM_GETSELECTEDCOUNT, 0, 0) == 0 &&
         SendMessageW(window(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED) == -1;
}

void ListFocus::draw() {
  const UniqueWindowDc context(window());
  const UniqueBitmap dots(CreateBitmap(8, 8, 1, 1, kDots.data()));
  const UniqueBrush brush(CreatePatternBrush(dots.get()));
  if (!context.dc() || !brush) return;
  const RECT area = areaOfItems(window());
  FrameRect(context.dc(), &area, brush.get());
}

LRESULT ListFocus::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = passOn(message, wParam, lParam);
  if (message == WM_PAINT) {
    isFramed_ = needsFrame();
    if (isFramed_) draw();
  } else if (mayChangeFrame(message)) {
    // The list itself moves and keeps what is painted, the frame with it.
    if (isFramed_ || needsFrame()) InvalidateRect(window(), nullptr, TRUE);
  }
  return result;
}

void showFocusOf(HWND control) {
  wchar_t name[32];
  if (GetClassNameW(control, name, ARRAYSIZE(name)) == 0) return;
  if (lstrcmpiW(name, WC_LISTVIEWW) == 0) ListFocus::attach(control);
}

}  // namespace pocketshell
