#include "app/bars/position_box.h"

#include <commctrl.h>

#include <algorithm>

#include "platform/pocketshell/handheld_windows.h"
#include "views/shared/edit_guard.h"

namespace {

/// The frame, and what the system leaves free between it and the text, in the monitor's pixels.
constexpr int kEdge = 2;

/// Of the system's class, so the same for each box.
WNDPROC oldProc = nullptr;

int lineHeight(HWND box) {
  const UniqueWindowDc dc(box);
  const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(box, WM_GETFONT, 0, 0));
  const HGDIOBJ former = font ? SelectObject(dc.dc(), font) : nullptr;
  TEXTMETRICW metrics{};
  GetTextMetricsW(dc.dc(), &metrics);
  if (former) SelectObject(dc.dc(), former);
  return static_cast<int>(metrics.tmHeight);
}

/// The client area is the line of the text alone: an edit control of one line begins at its top.
void shrinkToLine(HWND box, RECT& place) {
  const int height = static_cast<int>(place.bottom - place.top);
  const int line = std::clamp(lineHeight(box), 0, std::max(height - 2 * kEdge, 0));
  InflateRect(&place, -kEdge, 0);
  place.top += (height - line) / 2;
  place.bottom = place.top + line;
}

void paintAroundLine(HWND box) {
  RECT whole{};
  RECT line{};
  GetWindowRect(box, &whole);
  GetClientRect(box, &line);
  MapWindowPoints(box, nullptr, reinterpret_cast<POINT*>(&line), 2);
  OffsetRect(&line, static_cast<int>(-whole.left), static_cast<int>(-whole.top));
  OffsetRect(&whole, static_cast<int>(-whole.left), static_cast<int>(-whole.top));
  UniqueWindowDc dc;
  if (const HDC lent = GetWindowDC(box)) dc.reset({box, lent});
  const HDC target = dc.dc();
  ExcludeClipRect(target, static_cast<int>(line.left), static_cast<int>(line.top),
                  static_cast<int>(line.right), static_cast<int>(line.bottom));
  const auto background = reinterpret_cast<HBRUSH>(SendMessageW(
      GetParent(box), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(target), reinterpret_cast<LPARAM>(box)));
  FillRect(target, &whole, background ? background : GetSysColorBrush(COLOR_3DFACE));
  FrameRect(target, &whole, GetSysColorBrush(COLOR_WINDOWFRAME));
}

LRESULT CALLBACK positionProcedure(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_NCCALCSIZE:
      // Both of what the message may bring begin with the place of the window.
      shrinkToLine(box, *reinterpret_cast<RECT*>(lParam));
      return 0;
    case WM_NCPAINT:
      paintAroundLine(box);
      return 0;
    case WM_NCHITTEST:
      // What is around the line is the box's as well.
      return HTCLIENT;
    default:
      return CallWindowProcW(oldProc, box, message, wParam, lParam);
  }
}

}  // namespace

UniqueWindow makePositionBox(HINSTANCE instance, HWND parent, int identifier, SIZE size) {
  guardEditControls();
  // Not with WS_BORDER, for which the control would draw a frame around the line; it takes that style away.
  UniqueWindow box(HandheldCreateWindow(0, WC_EDITW, L"", WS_CHILD | WS_VISIBLE | ES_READONLY, 0, 0,
                                        static_cast<int>(size.cx), static_cast<int>(size.cy), parent,
                                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(identifier)), instance,
                                        nullptr));
  if (!box) return box;
  oldProc = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(box.get(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(positionProcedure)));
  SetWindowPos(box.get(), nullptr, 0, 0, 0, 0,
               SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  return box;
}
