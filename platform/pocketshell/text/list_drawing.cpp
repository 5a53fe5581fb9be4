#include "platform/pocketshell/text/list_drawing.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "platform/pocketshell/text/control_text.h"
#include "platform/pocketshell/text/header_drawing.h"
#include "platform/pocketshell/text/text_line.h"

namespace pocketshell {

namespace {

/// Lists draw no more of a text.
constexpr int kTextCapacity = 260;

/// Beside a text, as lists leave it, in the monitor's pixels.
constexpr int kCellMargin = 5;
constexpr int kLabelMargin = 2;

bool isListView(HWND window) {
  wchar_t name[32];
  const int length = GetClassNameW(window, name, ARRAYSIZE(name));
  return std::wstring_view(name, static_cast<std::size_t>(std::max(length, 0))) == WC_LISTVIEWW;
}

bool isReport(HWND list) {
  return (GetWindowLongPtrW(list, GWL_STYLE) & LVS_TYPEMASK) == LVS_REPORT;
}

std::wstring cellText(HWND list, int item, int column) {
  wchar_t text[kTextCapacity] = L"";
  LVITEMW cell{};
  cell.iSubItem = column;
  cell.pszText = text;
  cell.cchTextMax = kTextCapacity;
  SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&cell));
  return cell.pszText ? std::wstring(cell.pszText) : std::wstring();
}

struct Colors {
  COLORREF background;
  COLORREF text;
};

COLORREF askedColor(HWND list, UINT message, int systems) {
  const auto color = static_cast<COLORREF>(SendMessageW(list, message, 0, 0));
  return color == CLR_DEFAULT ? GetSysColor(systems) : color;
}

Colors colorsOf(const NMLVCUSTOMDRAW& state, bool wholeRowOrFirst) {
  const HWND list = state.nmcd.hdr.hwndFrom;
  const auto item = static_cast<WPARAM>(state.nmcd.dwItemSpec);
  const bool selected =
      wholeRowOrFirst && (SendMessageW(list, LVM_GETITEMSTATE, item, LVIS_SELECTED) & LVIS_SELECTED);
  if (selected && GetFocus() == list) return {GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_HIGHLIGHTTEXT)};
  const bool shownAlways = (GetWindowLongPtrW(list, GWL_STYLE) & LVS_SHOWSELALWAYS) != 0;
  if (selected && shownAlways) return {GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_BTNTEXT)};
  COLORREF background = askedColor(list, LVM_GETTEXTBKCOLOR, COLOR_WINDOW);
  if (background == CLR_NONE) background = askedColor(list, LVM_GETBKCOLOR, COLOR_WINDOW);
  return {background, askedColor(list, LVM_GETTEXTCOLOR, COLOR_WINDOWTEXT)};
}

/// True when the cell is drawn.
bool drawCell(const NMLVCUSTOMDRAW& state) {
  const HWND list = state.nmcd.hdr.hwndFrom;
  const HDC dc = state.nmcd.hdc;
  const auto item = static_cast<int>(state.nmcd.dwItemSpec);
  const std::wstring whole = cellText(list, item, state.iSubItem);
  const std::wstring text = onOneLine(whole);
  const ControlFont font(dc, list);
  if (text == whole && !needsOtherFonts(dc, text)) return false;
  RECT cell{};
  cell.left = LVIR_LABEL;
  cell.top = state.iSubItem;
  if (!SendMessageW(list, LVM_GETSUBITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&cell)))
    return false;
  const auto extended = static_cast<DWORD>(SendMessageW(list, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0));
  const Colors colors = colorsOf(state, state.iSubItem == 0 || (extended & LVS_EX_FULLROWSELECT) != 0);
  fillArea(dc, cell, colors.background);
  const TextColor color(dc, colors.text);
  drawTextLine(dc, text, {cell.left + kCellMargin, cell.top, cell.right - kCellMargin, cell.bottom},
               LinePlace::left);
  return true;
}

bool labelNeedsOtherFonts(const NMLVCUSTOMDRAW& state) {
  const HWND list = state.nmcd.hdr.hwndFrom;
  const ControlFont font(state.nmcd.hdc, list);
  return needsOtherFonts(state.nmcd.hdc, cellText(list, static_cast<int>(state.nmcd.dwItemSpec), 0));
}

void drawLabel(const NMLVCUSTOMDRAW& state) {
  const HWND list = state.nmcd.hdr.hwndFrom;
  const HDC dc = state.nmcd.hdc;
  const auto item = static_cast<int>(state.nmcd.dwItemSpec);
  const ControlFont font(dc, list);
  RECT label{};
  label.left = LVIR_LABEL;
  if (!SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&label)))
    return;
  const Colors colors = colorsOf(state, true);
  fillArea(dc, label, colors.background);
  TEXTMETRICW metrics{};
  GetTextMetricsW(dc, &metrics);
  const bool underIcon = (GetWindowLongPtrW(list, GWL_STYLE) & LVS_TYPEMASK) == LVS_ICON;
  RECT line = {label.left + kLabelMargin, label.top, label.right - kLabelMargin, label.bottom};
  if (underIcon) line.bottom = std::min(line.bottom, line.top + metrics.tmHeight);
  const TextColor color(dc, colors.text);
  drawTextLine(dc, cellText(list, item, 0), line, underIcon ? LinePlace::centre : LinePlace::left);
  const bool hasFocus =
      GetFocus() == list &&
      (SendMessageW(list, LVM_GETITEMSTATE, static_cast<WPARAM>(item), LVIS_FOCUSED) & LVIS_FOCUSED) != 0;
  if (hasFocus) DrawFocusRect(dc, &label);
}

bool isDrawing(UINT message, LPARAM lParam) {
  return message == WM_NOTIFY && lParam != 0 &&
         reinterpret_cast<const NMHDR*>(lParam)->code == static_cast<UINT>(NM_CUSTOMDRAW);
}

}  // namespace

/// Some systems' lists draw the boxes for missing letters beyond the place of the label, where nobody would
/// draw over them, nor take them away again.
void ListDrawing::beginLabel(const NMLVCUSTOMDRAW& state) {
  RECT icon{};
  icon.left = LVIR_ICON;
  if (!SendMessageW(state.nmcd.hdr.hwndFrom, LVM_GETITEMRECT, static_cast<WPARAM>(state.nmcd.dwItemSpec),
                    reinterpret_cast<LPARAM>(&icon))) {
    return;
  }
  beforeLabel_ = SaveDC(state.nmcd.hdc);
  IntersectClipRect(state.nmcd.hdc, static_cast<int>(icon.left), static_cast<int>(icon.top),
                    static_cast<int>(icon.right), static_cast<int>(icon.bottom));
}

void ListDrawing::endLabel(const NMLVCUSTOMDRAW& state) {
  if (const int saved = std::exchange(beforeLabel_, 0)) RestoreDC(state.nmcd.hdc, saved);
  drawLabel(state);
}

/// What is added to the answer of whoever else draws.
LRESULT ListDrawing::answerToList(const NMLVCUSTOMDRAW& state) {
  const bool report = isReport(state.nmcd.hdr.hwndFrom);
  switch (state.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
      return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
      if (report) return CDRF_NOTIFYSUBITEMDRAW;
      if (!labelNeedsOtherFonts(state)) return CDRF_DODEFAULT;
      beginLabel(state);
      return CDRF_NOTIFYPOSTPAINT;
    case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
      return drawCell(state) ? CDRF_SKIPDEFAULT : CDRF_DODEFAULT;
    case CDDS_ITEMPOSTPAINT:
      if (!report && labelNeedsOtherFonts(state)) endLabel(state);
      return CDRF_DODEFAULT;
    default:
      return CDRF_DODEFAULT;
  }
}

LRESULT ListDrawing::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT others = passOn(message, wParam, lParam);
  if (!isDrawing(message, lParam)) return others;
  const auto& state = *reinterpret_cast<const NMLVCUSTOMDRAW*>(lParam);
  return isListView(state.nmcd.hdr.hwndFrom) ? others | answerToList(state) : others;
}

void drawLettersOf(HWND list) {
  HeaderDrawing::attach(list);
  ListDrawing::attach(GetParent(list));
}

}  // namespace pocketshell
