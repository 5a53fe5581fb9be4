#include "platform/pocketshell/text/header_drawing.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <string>
#include <uxtheme.h>
#include <vsstyle.h>

#include "platform/pocketshell/text/control_text.h"
#include "platform/pocketshell/text/text_line.h"
#include "platform/pocketshell/zoom/present_zoom.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

namespace {

constexpr int kTitleCapacity = 260;
/// Beside a title, as headers leave it, in the monitor's pixels.
constexpr int kTitleMargin = 6;
/// Half the arrow's width and its height, in handheld pixels.
constexpr int kArrowSize = 4;

struct Title {
  std::wstring text;
  int format = 0;

  bool hasArrow() const { return (format & (HDF_SORTUP | HDF_SORTDOWN)) != 0; }
};

Title titleOf(const NMCUSTOMDRAW& state) {
  wchar_t text[kTitleCapacity] = L"";
  HDITEMW item{};
  item.mask = HDI_TEXT | HDI_FORMAT;
  item.pszText = text;
  item.cchTextMax = kTitleCapacity;
  SendMessageW(state.hdr.hwndFrom, HDM_GETITEMW, state.dwItemSpec, reinterpret_cast<LPARAM>(&item));
  return {text, item.fmt};
}

void drawBackground(const NMCUSTOMDRAW& state) {
  const bool pressed = (state.uItemState & CDIS_SELECTED) != 0;
  const HTHEME theme = OpenThemeData(state.hdr.hwndFrom, L"Header");
  if (theme) {
    DrawThemeBackground(theme, state.hdc, HP_HEADERITEM, pressed ? HIS_PRESSED : HIS_NORMAL, &state.rc,
                        nullptr);
    CloseThemeData(theme);
    return;
  }
  RECT area = state.rc;
  FillRect(state.hdc, &area, GetSysColorBrush(COLOR_BTNFACE));
  DrawEdge(state.hdc, &area, pressed ? BDR_SUNKENOUTER : EDGE_RAISED, BF_RECT | BF_SOFT);
}

/// At the right end of `line`, which it takes its room of.
void drawArrow(HDC dc, RECT& line, bool up) {
  const int size = toMonitor(kArrowSize, presentZoom());
  const auto x = static_cast<int>(line.right) - size;
  const auto y = static_cast<int>(line.top + line.bottom - size) / 2;
  const int base = up ? y + size : y;
  const int tip = up ? y : y + size;
  const std::array<POINT, 3> corners = {POINT{x - size, base}, POINT{x + size, base}, POINT{x, tip}};
  const HGDIOBJ brush = SelectObject(dc, GetSysColorBrush(COLOR_BTNSHADOW));
  const HGDIOBJ pen = SelectObject(dc, GetStockObject(NULL_PEN));
  Polygon(dc, corners.data(), static_cast<int>(corners.size()));
  SelectObject(dc, pen);
  SelectObject(dc, brush);
  line.right -= 2 * size + kTitleMargin;
}

/// True when the title is drawn.
bool drawTitle(const NMCUSTOMDRAW& state) {
  const HDC dc = state.hdc;
  const ControlFont font(dc, state.hdr.hwndFrom);
  const Title title = titleOf(state);
  if (!needsOtherFonts(dc, title.text)) return false;
  drawBackground(state);
  RECT line = {state.rc.left + kTitleMargin, state.rc.top, state.rc.right - kTitleMargin, state.rc.bottom};
  if (title.hasArrow()) drawArrow(dc, line, (title.format & HDF_SORTUP) != 0);
  const TextColor color(dc, GetSysColor(COLOR_BTNTEXT));
  drawTextLine(dc, title.text, line, LinePlace::left);
  return true;
}

LRESULT answerToHeader(const NMCUSTOMDRAW& state) {
  switch (state.dwDrawStage) {
    case CDDS_PREPAINT:
      return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
      return drawTitle(state) ? CDRF_SKIPDEFAULT : CDRF_DODEFAULT;
    default:
      return CDRF_DODEFAULT;
  }
}

}  // namespace

LRESULT HeaderDrawing::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT others = passOn(message, wParam, lParam);
  if (message != WM_NOTIFY || lParam == 0) return others;
  const auto& state = *reinterpret_cast<const NMCUSTOMDRAW*>(lParam);
  if (state.hdr.code != static_cast<UINT>(NM_CUSTOMDRAW)) return others;
  const auto header = reinterpret_cast<HWND>(SendMessageW(window(), LVM_GETHEADER, 0, 0));
  return state.hdr.hwndFrom == header ? others | answerToHeader(state) : others;
}

}  // namespace pocketshell
