#include "app/window/context_menus.h"

#include "owners/handles.h"
#include "records/view_mode.h"
#include "resources/resource_ids.h"

namespace {

/// 0 for none.
WORD namesMenu(int page) {
  switch (static_cast<ViewMode>(page)) {
    case ViewMode::tables:
      return IDR_TABLE_CONTEXT;
    case ViewMode::queries:
      return IDR_QUERY_CONTEXT;
    case ViewMode::form:
      return IDR_FORM_CONTEXT;
    case ViewMode::list:
    case ViewMode::none:
      break;
  }
  return 0;
}

void showMenu(HINSTANCE instance, HWND owner, WORD resource, POINT where) {
  const UniqueMenu menu(LoadMenuW(instance, MAKEINTRESOURCEW(resource)));
  if (menu) TrackPopupMenuEx(GetSubMenu(menu.get(), 0), 0, where.x, where.y, owner, nullptr);
}

}  // namespace

void showNamesContextMenu(HINSTANCE instance, HWND owner, int page, POINT where) {
  if (const WORD resource = namesMenu(page)) showMenu(instance, owner, resource, where);
}

void showGridContextMenu(HINSTANCE instance, HWND owner, POINT where) {
  showMenu(instance, owner, IDR_GRID_CONTEXT, where);
}
