#include "app/bars/menu_bar.h"

#include "app/bars/toolbar.h"
#include "platform/pocketshell/handheld_windows.h"
#include "records/view_mode.h"
#include "resources/command_ids.h"
#include "resources/resource_ids.h"

namespace {

constexpr std::array<int, 3> kButtonCommands = {ID_RECORD_NEW, ID_RECORD_DELETE, ID_FIND};

/// By the place of the button: the three drop-down buttons come first.
constexpr std::array<const wchar_t*, 6> kTips = {
    nullptr,
    nullptr,
    nullptr,
    L"Add new record",
    L"Delete current record",
    L"Find a record with given content",
};

struct PopupRow {
  PopupMenu menu;
  int dropDownCommand;
};

constexpr PopupRow kPopups[] = {
    {PopupMenu::file, ID_FILE_MENU},       {PopupMenu::edit, ID_EDIT_MENU},
    {PopupMenu::record, ID_RECORD_MENU},   {PopupMenu::tables, ID_TABLES_MENU},
    {PopupMenu::queries, ID_QUERIES_MENU},
};

/// Those of submenus too.
void showItems(HMENU popup, PopupMenu menu, const CommandFacts& facts) {
  const int count = GetMenuItemCount(popup);
  for (int place = 0; place < count; ++place) {
    if (const HMENU below = GetSubMenu(popup, place)) {
      showItems(below, menu, facts);
      continue;
    }
    const UINT command = GetMenuItemID(popup, place);
    const bool isEnabled = isAvailable(static_cast<int>(command), menu, facts);
    EnableMenuItem(popup, static_cast<UINT>(place),
                   MF_BYPOSITION | static_cast<UINT>(isEnabled ? MF_ENABLED : MF_GRAYED));
  }
}

}  // namespace

MenuBarLayout menuBarLayout(const BarFacts& facts) {
  constexpr MenuBarLayout kClosed = {IDR_CLOSED_MENU_BAR, 0, 0};
  if (!facts.databaseOpen || facts.page < 0) return kClosed;
  const bool hasRecords = facts.recordsetOpen && facts.recordCount > 0;
  switch (static_cast<ViewMode>(facts.page)) {
    case ViewMode::tables:
      return {IDR_TABLES_MENU_BAR, 0, 0};
    case ViewMode::queries:
      return {IDR_QUERIES_MENU_BAR, 0, 0};
    case ViewMode::form:
      if (hasRecords) return {IDR_FORM_MENU_BAR, IDB_RECORD_NEW_DELETE_FIND, 3};
      if (facts.recordsetOpen) return {IDR_FORM_MENU_BAR, IDB_RECORD_NEW, 1};
      return {IDR_FORM_MENU_BAR, 0, 0};
    case ViewMode::list:
      if (hasRecords) return {IDR_LIST_MENU_BAR, IDB_RECORD_NEW_DELETE, 2};
      if (facts.recordsetOpen) return {IDR_LIST_MENU_BAR, IDB_RECORD_NEW, 1};
      return {IDR_LIST_MENU_BAR, 0, 0};
    case ViewMode::none:
      break;
  }
  return kClosed;
}

bool MenuBar::create(HINSTANCE instance, HWND mainWindow, const BarFacts& facts) {
  const MenuBarLayout layout = menuBarLayout(facts);
  if (window_ && layout == layout_) return true;
  destroy();
  SHMENUBARINFO info{};
  info.cbSize = sizeof(info);
  info.hwndParent = mainWindow;
  info.nToolBarId = layout.resource;
  info.hInstRes = instance;
  info.nBmpId = layout.bitmap;
  info.cBmpImages = layout.buttonCount;
  if (!SHCreateMenuBar(&info)) return false;
  window_.reset(info.hwndMB);
  layout_ = layout;
  if (layout.buttonCount > 0) addButtons(layout.buttonCount);
  fetchPopups();
  return true;
}

void MenuBar::destroy() {
  popups_.fill(nullptr);
  window_.reset();
}

void MenuBar::addButtons(int count) const {
  HandheldSetButtonTips(window(), static_cast<UINT>(kTips.size()), kTips.data());
  std::array<TBBUTTON, kButtonCommands.size()> buttons{};
  for (std::size_t i = 0; i < buttons.size(); ++i)
    buttons[i] = toolbar::plainButton(static_cast<int>(i), kButtonCommands[i]);
  toolbar::addButtons(window(), std::span(buttons).first(static_cast<std::size_t>(count)));
}

void MenuBar::fetchPopups() {
  for (const PopupRow& row : kPopups) {
    popups_[static_cast<std::size_t>(row.menu)] =
        reinterpret_cast<HMENU>(SendMessageW(window(), SHCMBM_GETSUBMENU, 0, row.dropDownCommand));
  }
}

void MenuBar::showCommands(const CommandFacts& facts) const {
  for (const PopupRow& row : kPopups) {
    if (const HMENU shown = popup(row.menu)) showItems(shown, row.menu, facts);
  }
}
