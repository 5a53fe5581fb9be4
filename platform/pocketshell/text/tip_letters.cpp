#include "platform/pocketshell/text/tip_letters.h"

#include <commctrl.h>

#include <algorithm>

#include "owners/handles.h"
#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/text/control_text.h"
#include "platform/pocketshell/text/text_lines.h"
#include "platform/pocketshell/zoom/present_zoom.h"

namespace pocketshell {

namespace {

/// Around the text, in the monitor's pixels.
constexpr int kBeside = 3;
constexpr int kAbove = 2;

/// What is wider is broken into lines.
int mostWidth(HWND tip) {
  const auto told = static_cast<int>(SendMessageW(tip, TTM_GETMAXTIPWIDTH, 0, 0));
  return told > 0 ? told : GetSystemMetrics(SM_CXSCREEN) - 2 * kBeside;
}

}  // namespace

void TipLetters::takeFont() {
  SendMessageW(window(), WM_SETFONT, reinterpret_cast<WPARAM>(presentFont()), FALSE);
}

bool TipLetters::needsDrawing(const std::wstring& text) const {
  const UniqueWindowDc dc(window());
  const ControlFont font(dc.dc(), window());
  return needsOtherFonts(dc.dc(), text);
}

void TipLetters::fit(WINDOWPOS& place) const {
  const std::wstring text = windowText(window());
  if ((place.flags & SWP_NOSIZE) != 0 || !needsDrawing(text)) return;
  const UniqueWindowDc dc(window());
  const ControlFont font(dc.dc(), window());
  const int width = std::min(textLinesWidth(dc.dc(), text), mostWidth(window()));
  RECT outer = {0, 0, width + 2 * kBeside, textLinesHeight(dc.dc(), text, width) + 2 * kAbove};
  AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongPtrW(window(), GWL_STYLE)), FALSE,
                     static_cast<DWORD>(GetWindowLongPtrW(window(), GWL_EXSTYLE)));
  place.cx = static_cast<int>(outer.right - outer.left);
  place.cy = static_cast<int>(outer.bottom - outer.top);
}

void TipLetters::drawInto(HDC dc, const std::wstring& text) const {
  RECT area{};
  GetClientRect(window(), &area);
  fillArea(dc, area, static_cast<COLORREF>(SendMessageW(window(), TTM_GETTIPBKCOLOR, 0, 0)));
  InflateRect(&area, -kBeside, -kAbove);
  const ControlFont font(dc, window());
  const TextColor color(dc, static_cast<COLORREF>(SendMessageW(window(), TTM_GETTIPTEXTCOLOR, 0, 0)));
  drawTextLines(dc, text, area, LinePlace::left);
}

LRESULT TipLetters::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_WINDOWPOSCHANGING) fit(*reinterpret_cast<WINDOWPOS*>(lParam));
  if (message != WM_PAINT && message != WM_PRINTCLIENT) return passOn(message, wParam, lParam);
  const std::wstring text = windowText(window());
  if (!needsDrawing(text)) return passOn(message, wParam, lParam);
  if (const auto given = reinterpret_cast<HDC>(wParam)) {
    drawInto(given, text);
    return 0;
  }
  PAINTSTRUCT paint{};
  const HDC dc = BeginPaint(window(), &paint);
  if (dc) drawInto(dc, text);
  EndPaint(window(), &paint);
  return 0;
}

}  // namespace pocketshell

void HandheldEquipTip(HWND tip) {
  pocketshell::TipLetters::attach(tip).takeFont();
}
