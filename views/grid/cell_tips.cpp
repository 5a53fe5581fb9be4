#include "views/grid/cell_tips.h"

#include <windowsx.h>

#include <utility>

#include "base/showable_text.h"
#include "platform/pocketshell/handheld_windows.h"

namespace {

TTTOOLINFOW toolOf(HWND list) {
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;
  tool.hwnd = list;
  tool.lpszText = LPSTR_TEXTCALLBACKW;
  return tool;
}

}  // namespace

CellTips::CellTips(TextOf textOf)
    : textOf_(std::move(textOf)), subclass_([this](HWND list, UINT message, WPARAM wParam, LPARAM lParam) {
        return answer(list, message, wParam, lParam);
      }) {}

void CellTips::attach(HWND list) {
  window_.reset();
  row_ = -1;
  column_ = -1;
  subclass_.attach(list);
}

/// With the first move of the mouse: a window of its own is dear, and few sessions need it.
void CellTips::create(HWND list) {
  window_.reset(CreateWindowExW(
      WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, CW_USEDEFAULT,
      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, list, nullptr, GetModuleHandleW(nullptr), nullptr));
  if (!window_) return;
  HandheldEquipTip(window_.get());
  TTTOOLINFOW tool = toolOf(list);
  SendMessageW(window_.get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

LRESULT CellTips::answer(HWND list, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) tellOfMouse(list, message, wParam, lParam);
  if (message == WM_NOTIFY) {
    auto& notification = *reinterpret_cast<NMHDR*>(lParam);
    if (notification.hwndFrom == window_.get() && notification.code == static_cast<UINT>(TTN_GETDISPINFOW)) {
      text_ = row_ < 0 ? std::wstring() : showableText(textOf_(row_, column_));
      reinterpret_cast<NMTTDISPINFOW&>(notification).lpszText = text_.data();
      return 0;
    }
  }
  return DefSubclassProc(list, message, wParam, lParam);
}

/// The cell is known before the tooltip looks where the mouse is.
void CellTips::tellOfMouse(HWND list, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_MOUSEMOVE && !window_) create(list);
  if (!window_) return;
  if (message == WM_MOUSEMOVE) moveTo(list, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
  MSG told{};
  told.hwnd = list;
  told.message = message;
  told.wParam = wParam;
  told.lParam = lParam;
  SendMessageW(window_.get(), TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&told));
}

/// The tooltip is that of the cell under the mouse.
void CellTips::moveTo(HWND list, POINT place) {
  LVHITTESTINFO test{};
  test.pt = place;
  const bool isOnCell = SendMessageW(list, LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&test)) >= 0;
  const int row = isOnCell ? test.iItem : -1;
  const int column = isOnCell ? test.iSubItem : -1;
  if (row == row_ && column == column_) return;
  row_ = row;
  column_ = column;
  SendMessageW(window_.get(), TTM_POP, 0, 0);
  TTTOOLINFOW tool = toolOf(list);
  if (isOnCell) {
    tool.rect.top = column;
    tool.rect.left = column == 0 ? LVIR_LABEL : LVIR_BOUNDS;
    SendMessageW(list, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&tool.rect));
  }
  SendMessageW(window_.get(), TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
}
