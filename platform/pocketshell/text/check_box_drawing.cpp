#include "platform/pocketshell/text/check_box_drawing.h"

#include <algorithm>
#include <array>
#include <string>

#include "owners/handles.h"
#include "platform/pocketshell/text/control_text.h"
#include "platform/pocketshell/text/text_line.h"

namespace pocketshell {

namespace {

constexpr int kNormalDotsPerInch = 96;
/// The box and what is between it and the text, at 96 dots per inch.
constexpr int kBoxWidth = 17;

bool hasBox(HWND button) {
  switch (GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK) {
    case BS_CHECKBOX:
    case BS_AUTOCHECKBOX:
    case BS_RADIOBUTTON:
    case BS_AUTORADIOBUTTON:
      return true;
    default:
      return false;
  }
}

/// Some systems' boxes draw at once when one of these comes.
bool isDrawnBy(UINT message) {
  constexpr std::array kDrawing = {
      static_cast<UINT>(WM_PAINT),    static_cast<UINT>(WM_SETFOCUS), static_cast<UINT>(WM_KILLFOCUS),
      static_cast<UINT>(WM_ENABLE),   static_cast<UINT>(WM_SETTEXT),  static_cast<UINT>(WM_SETFONT),
      static_cast<UINT>(BM_SETCHECK), static_cast<UINT>(BM_SETSTATE), static_cast<UINT>(BM_SETSTYLE)};
  return std::find(kDrawing.begin(), kDrawing.end(), message) != kDrawing.end();
}

}  // namespace

void CheckBoxDrawing::drawText(HDC dc) {
  if (!dc) return;
  const std::wstring text = withoutAccessMarks(windowText(window()));
  const ControlFont font(dc, window());
  if (!needsOtherFonts(dc, text)) return;
  RECT area{};
  GetClientRect(window(), &area);
  const int box = MulDiv(kBoxWidth, GetDeviceCaps(dc, LOGPIXELSY), kNormalDotsPerInch);
  const bool textFirst = (GetWindowLongPtrW(window(), GWL_STYLE) & BS_LEFTTEXT) != 0;
  (textFirst ? area.right : area.left) += textFirst ? -box : box;
  const auto brush = reinterpret_cast<HBRUSH>(SendMessageW(GetParent(window()), WM_CTLCOLORSTATIC,
                                                           reinterpret_cast<WPARAM>(dc),
                                                           reinterpret_cast<LPARAM>(window())));
  FillRect(dc, &area, brush ? brush : GetSysColorBrush(COLOR_BTNFACE));
  if (!IsWindowEnabled(window())) SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
  drawTextLine(dc, text, area, LinePlace::left);
  if (GetFocus() != window()) return;
  area.right = std::min(area.right, area.left + textLineWidth(dc, text));
  DrawFocusRect(dc, &area);
}

LRESULT CheckBoxDrawing::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT answered = passOn(message, wParam, lParam);
  if (!hasBox(window())) return answered;
  if (message == WM_PRINTCLIENT) {
    drawText(reinterpret_cast<HDC>(wParam));
  } else if (isDrawnBy(message) && IsWindowVisible(window())) {
    drawText(UniqueWindowDc(window()).dc());
  }
  return answered;
}

}  // namespace pocketshell
