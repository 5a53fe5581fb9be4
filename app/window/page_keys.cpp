#include "app/window/page_keys.h"

#include "app/window/program_state.h"
#include "app/window/tab_pages.h"
#include "resources/command_ids.h"

namespace {

struct ListKeyRow {
  int page;
  WORD key;
  int command;
  bool withControl = false;
};

/// The first table and the first query can't be made from the menus, which offer nothing on empty pages.
constexpr ListKeyRow kListKeys[] = {
    {kTablesPageIndex, VK_INSERT, ID_TABLE_NEW},     {kTablesPageIndex, VK_DELETE, ID_TABLE_DELETE},
    {kQueriesPageIndex, VK_INSERT, ID_QUERY_NEW},    {kQueriesPageIndex, VK_F2, ID_QUERY_EDIT},
    {kQueriesPageIndex, VK_DELETE, ID_QUERY_DELETE}, {kTablesPageIndex, 'V', ID_TABLE_PASTE, true},
    {kListPageIndex, 'C', ID_ROW_COPY, true},
};

}  // namespace

bool turnPageByKey(const MSG& message) {
  if (message.message != WM_KEYDOWN || message.wParam != VK_TAB || GetKeyState(VK_CONTROL) >= 0) return false;
  if (message.hwnd != mainWindow && !IsChild(mainWindow, message.hwnd)) return false;
  const int step = GetKeyState(VK_SHIFT) < 0 ? kPageCount - 1 : 1;
  showPage((selectedTab() + step) % kPageCount);
  return true;
}

int commandOfListKey(int page, WORD key) {
  for (const ListKeyRow& row : kListKeys) {
    if (row.page != page || row.key != key) continue;
    if (!row.withControl || GetKeyState(VK_CONTROL) < 0) return row.command;
  }
  return 0;
}
