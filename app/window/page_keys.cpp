#include "app/window/page_keys.h"

#include "app/window/program_state.h"
#include "app/window/tab_pages.h"
#include "resources/command_ids.h"

namespace {

struct NamesKeyRow {
  int page;
  WORD key;
  int command;
};

/// The first table and the first query can't be made from the menus, which offer nothing on empty pages.
constexpr NamesKeyRow kNamesKeys[] = {
    {kTablesPageIndex, VK_INSERT, ID_TABLE_NEW},     {kTablesPageIndex, VK_DELETE, ID_TABLE_DELETE},
    {kQueriesPageIndex, VK_INSERT, ID_QUERY_NEW},    {kQueriesPageIndex, VK_F2, ID_QUERY_EDIT},
    {kQueriesPageIndex, VK_DELETE, ID_QUERY_DELETE},
};

}  // namespace

bool turnPageByKey(const MSG& message) {
  if (message.message != WM_KEYDOWN || message.wParam != VK_TAB || GetKeyState(VK_CONTROL) >= 0) return false;
  if (message.hwnd != mainWindow && !IsChild(mainWindow, message.hwnd)) return false;
  const int step = GetKeyState(VK_SHIFT) < 0 ? kPageCount - 1 : 1;
  showPage((selectedTab() + step) % kPageCount);
  return true;
}

int commandOfNamesKey(int page, WORD key) {
  for (const NamesKeyRow& row : kNamesKeys) {
    if (row.page == page && row.key == key) return row.command;
  }
  return 0;
}
