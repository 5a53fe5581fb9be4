#include "app/window/history_commands.h"

#include <optional>
#include <string>

#include "app/window/program_state.h"
#include "app/window/tab_pages.h"
#include "records/parts/record_history.h"
#include "resources/command_ids.h"
#include "views/shared/access_marks.h"
#include "views/shared/focused_edit.h"

namespace {

HistoryWay wayOf(UINT id) {
  return id == ID_HISTORY_UNDO ? HistoryWay::back : HistoryWay::again;
}

int pageOf(ViewMode mode) {
  switch (mode) {
    case ViewMode::form:
      return kFormPageIndex;
    case ViewMode::list:
      return kListPageIndex;
    case ViewMode::queries:
      return kQueriesPageIndex;
    default:
      return kTablesPageIndex;
  }
}

/// With the access key of the entry, the key that does the same, and no other ampersand taken for one.
std::wstring menuText(const std::wstring& text, HistoryWay way) {
  std::wstring shown = withPlainAmpersands(text);
  shown.insert(way == HistoryWay::back ? 0 : 2, 1, L'&');
  return shown + (way == HistoryWay::back ? L"\tCtrl+Z" : L"\tCtrl+Y");
}

}  // namespace

void takeHistoryStep(WORD id) {
  const std::optional<ViewMode> page = theDocument->history().take(wayOf(id));
  if (!page) return;
  showPage(pageOf(*page));
  theDocument->history().showTaken();
}

const wchar_t* historyText(UINT id) {
  static std::wstring text;
  const HistoryWay way = wayOf(id);
  text = menuText(theDocument ? theDocument->history().text(way) : std::wstring(), way);
  return text.c_str();
}

bool takeHistoryStepByKey(const MSG& message) {
  if (message.message != WM_KEYDOWN || (message.wParam != 'Z' && message.wParam != 'Y')) return false;
  if (GetKeyState(VK_CONTROL) >= 0 || GetKeyState(VK_SHIFT) < 0 || GetKeyState(VK_MENU) < 0) return false;
  if (message.hwnd != mainWindow && !IsChild(mainWindow, message.hwnd)) return false;
  const bool isBack = message.wParam == 'Z';
  if (isBack && focusededit::canUndo()) return false;
  SendMessageW(mainWindow, WM_COMMAND, isBack ? ID_HISTORY_UNDO : ID_HISTORY_REDO, 0);
  return true;
}
