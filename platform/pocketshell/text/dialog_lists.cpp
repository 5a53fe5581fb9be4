#include "platform/pocketshell/text/dialog_lists.h"

#include <commctrl.h>

#include <string>

#include "owners/handles.h"
#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/text/control_text.h"
#include "platform/pocketshell/text/text_line.h"
#include "platform/pocketshell/window/window_class.h"
#include "platform/pocketshell/zoom/present_zoom.h"

namespace pocketshell {

namespace {

constexpr UINT kFieldOfCombo = static_cast<UINT>(-1);

int lineHeight(HDC dc) {
  TEXTMETRICW metrics{};
  return dc && GetTextMetricsW(dc, &metrics) ? static_cast<int>(metrics.tmHeight) : 0;
}

int lineHeight() {
  const UniqueWindowDc dc(nullptr);
  const HGDIOBJ former = SelectObject(dc.dc(), presentFont());
  const int height = lineHeight(dc.dc());
  SelectObject(dc.dc(), former);
  return height;
}

std::wstring entryText(const DRAWITEMSTRUCT& item) {
  const bool isCombo = item.CtlType == ODT_COMBOBOX;
  const LRESULT length =
      SendMessageW(item.hwndItem, isCombo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, item.itemID, 0);
  if (length <= 0) return {};
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  SendMessageW(item.hwndItem, isCombo ? CB_GETLBTEXT : LB_GETTEXT, item.itemID,
               reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

void drawText(HDC dc, const std::wstring& text, const RECT& line) {
  if (needsOtherFonts(dc, text)) {
    drawTextLine(dc, text, line, LinePlace::left);
    return;
  }
  const auto top = static_cast<int>(line.top + (line.bottom - line.top - lineHeight(dc)) / 2);
  ExtTextOutW(dc, static_cast<int>(line.left), top, ETO_CLIPPED, &line, text.c_str(),
              static_cast<UINT>(text.size()), nullptr);
}

/// In one column, or where there is a tab in two.
void drawColumns(HDC dc, const std::wstring& text, const RECT& area) {
  const std::size_t tab = text.find(L'\t');
  RECT line = {area.left + 1, area.top, area.right, area.bottom};
  if (tab == std::wstring::npos) {
    drawText(dc, text, line);
    return;
  }
  const LONG second = area.left + (area.right - area.left) * 2 / 3;
  line.right = second - 1;
  drawText(dc, text.substr(0, tab), line);
  drawText(dc, text.substr(tab + 1), {second, area.top, area.right, area.bottom});
}

void draw(const DRAWITEMSTRUCT& item) {
  const HDC dc = item.hDC;
  const bool chosen = (item.itemState & ODS_SELECTED) != 0;
  const bool disabled = (item.itemState & ODS_DISABLED) != 0;
  fillArea(dc, item.rcItem, GetSysColor(chosen ? COLOR_HIGHLIGHT : COLOR_WINDOW));
  if (item.itemID != kFieldOfCombo) {
    const ControlFont font(dc, item.hwndItem);
    const int ownColor = chosen ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT;
    const TextColor color(dc, GetSysColor(disabled ? COLOR_GRAYTEXT : ownColor));
    drawColumns(dc, entryText(item), item.rcItem);
  }
  if ((item.itemState & ODS_FOCUS) != 0 && (item.itemState & ODS_NOFOCUSRECT) == 0) {
    DrawFocusRect(dc, &item.rcItem);
  }
}

/// The system's own height follows the font, but not in proportion.
void fitCombo(HWND combo, LPARAM entryHeight) {
  constexpr auto kSelectionField = static_cast<WPARAM>(-1);
  constexpr int kHeightInside = 15;
  SendMessageW(combo, CB_SETITEMHEIGHT, kSelectionField, HandheldToMonitor(kHeightInside));
  const bool isOwnerDrawn = (GetWindowLongPtrW(combo, GWL_STYLE) & CBS_OWNERDRAWFIXED) != 0;
  if (isOwnerDrawn) SendMessageW(combo, CB_SETITEMHEIGHT, 0, entryHeight);
}

BOOL CALLBACK fitBox(HWND control, LPARAM entryHeight) {
  if (isOfClass(control, WC_COMBOBOXW)) {
    fitCombo(control, entryHeight);
  } else if (isOfClass(control, WC_LISTBOXW) &&
             (GetWindowLongPtrW(control, GWL_STYLE) & LBS_OWNERDRAWFIXED) != 0) {
    SendMessageW(control, LB_SETITEMHEIGHT, 0, entryHeight);
  }
  return TRUE;
}

}  // namespace

bool DialogLists::measure(MEASUREITEMSTRUCT& item) {
  if (item.CtlType != ODT_COMBOBOX && item.CtlType != ODT_LISTBOX) return false;
  item.itemHeight = static_cast<UINT>(lineHeight());
  return true;
}

void DialogLists::fit() const {
  EnumChildWindows(window(), fitBox, lineHeight());
}

LRESULT DialogLists::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_MEASUREITEM && measure(*reinterpret_cast<MEASUREITEMSTRUCT*>(lParam))) return TRUE;
  if (message == WM_DRAWITEM) {
    const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
    if (item.CtlType == ODT_COMBOBOX || item.CtlType == ODT_LISTBOX) {
      draw(item);
      return TRUE;
    }
  }
  if (message == HandheldZoomMessage()) fit();
  return passOn(message, wParam, lParam);
}

}  // namespace pocketshell
