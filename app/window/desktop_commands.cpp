#include "app/window/desktop_commands.h"

#include <array>

#include "app/window/copies_commands.h"
#include "app/window/everywhere_commands.h"
#include "app/window/exchange_commands.h"
#include "app/window/history_commands.h"
#include "app/window/order_commands.h"
#include "app/window/page_layout.h"
#include "app/window/program_state.h"
#include "app/window/tab_pages.h"
#include "base/settings/app_colors.h"
#include "base/settings/app_settings.h"
#include "platform/pocketshell/desktop_entries.h"
#include "records/parts/look_ups.h"
#include "resources/command_ids.h"
#include "views/form/text_field_editor.h"

namespace {

struct EntryRow {
  WORD id;
  const wchar_t* group;  ///< the submenu, null for the menu itself
  const wchar_t* text;   ///< null for a separator
  void (*run)(WORD id);
  bool (*isChosen)(WORD id);                         ///< null for what is never marked
  const wchar_t* (*presentText)(UINT id) = nullptr;  ///< null for what is always called the same
};

constexpr wchar_t kColors[] = L"&Colors";
constexpr wchar_t kOrder[] = L"&Order and filter";

ColorSet colorSetOf(WORD id) {
  switch (id) {
    case ID_COLORS_SYSTEM:
      return ColorSet::system;
    case ID_COLORS_DARK:
      return ColorSet::dark;
    default:
      return ColorSet::own;
  }
}

void chooseColors(WORD id) {
  appColors = colorsOfSet(colorSetOf(id));
  theAppSettings->options().save();
  showColors();
}

bool areColorsChosen(WORD id) {
  return appColors == colorsOfSet(colorSetOf(id));
}

void import(WORD) {
  importChosenFile();
}

void exportRecords(WORD) {
  exportToChosenFile();
}

void copyRow(WORD) {
  copyChosenRow();
}

void pasteTable(WORD) {
  importPastedText();
}

/// The editor that has the keyboard opens it.
void lookUp(WORD) {
  if (const HWND editor = GetFocus()) PostMessageW(editor, kLookUpMessage, 0, 0);
}

void goToLookedUp(WORD) {
  theDocument->lookUps().goThere();
}

/// The record is shown on the Form page, whichever is shown now.
void goBack(WORD) {
  showPage(kFormPageIndex);
  if (currentPage == kFormPageIndex) theDocument->lookUps().goBack();
}

void arrangeColumn(WORD) {
  chooseColumnMenu();
}

void filterColumns(WORD) {
  filterAllColumns();
}

void showAll(WORD) {
  clearArrangement();
}

void keepAsQuery(WORD) {
  keepArrangementAsQuery();
}

void goBackTo(WORD) {
  goBackToCopy();
}

void findInAllTables(WORD) {
  findEverywhere();
}

constexpr EntryRow kEntries[] = {
    {ID_HISTORY_UNDO, nullptr, L"&Undo", takeHistoryStep, nullptr, historyText},
    {ID_HISTORY_REDO, nullptr, L"Re&do", takeHistoryStep, nullptr, historyText},
    {ID_GO_BACK_TO, nullptr, L"Go back &to...", goBackTo, nullptr},
    {0, nullptr, nullptr, nullptr, nullptr},
    {ID_IMPORT, nullptr, L"&Import...", import, nullptr},
    {ID_EXPORT, nullptr, L"&Export...", exportRecords, nullptr},
    {ID_ROW_COPY, nullptr, L"Copy &row", copyRow, nullptr},
    {ID_TABLE_PASTE, nullptr, L"&Paste...", pasteTable, nullptr},
    {0, nullptr, nullptr, nullptr, nullptr},
    {ID_LOOK_UP, nullptr, L"&Look-up...", lookUp, nullptr},
    {ID_GO_TO_LOOKED_UP, nullptr, L"&Go to its record", goToLookedUp, nullptr},
    {ID_GO_BACK, nullptr, L"&Back", goBack, nullptr},
    {0, nullptr, nullptr, nullptr, nullptr},
    {ID_FIND_EVERYWHERE, nullptr, L"&Find in all tables...", findInAllTables, nullptr},
    {ID_ORDER_COLUMN, kOrder, L"&Column...", arrangeColumn, nullptr},
    {ID_FILTER_ALL, kOrder, L"&Any column containing...", filterColumns, nullptr},
    {ID_ARRANGEMENT_CLEAR, kOrder, L"&Show all records", showAll, nullptr},
    {ID_ARRANGEMENT_KEEP, kOrder, L"&Keep as query...", keepAsQuery, nullptr},
    {0, nullptr, nullptr, nullptr, nullptr},
    {ID_COLORS_OWN, kColors, L"&Quivane's own", chooseColors, areColorsChosen},
    {ID_COLORS_SYSTEM, kColors, L"The &system's", chooseColors, areColorsChosen},
    {ID_COLORS_DARK, kColors, L"&Dark", chooseColors, areColorsChosen},
};

const EntryRow* rowOf(WORD id) {
  for (const EntryRow& row : kEntries) {
    if (row.text && row.id == id) return &row;
  }
  return nullptr;
}

HandheldEntryState stateOf(UINT command) {
  const EntryRow* const row = rowOf(static_cast<WORD>(command));
  if (!row || !theDocument || theDocument->isBusy() || !theDocument->isOffered(row->id)) {
    return HANDHELD_ENTRY_GREY;
  }
  return row->isChosen && row->isChosen(row->id) ? HANDHELD_ENTRY_CHOSEN : HANDHELD_ENTRY_AVAILABLE;
}

}  // namespace

void offerDesktopCommands() {
  std::array<HandheldMenuEntry, std::size(kEntries)> entries{};
  for (std::size_t i = 0; i < entries.size(); ++i) {
    entries[i] = {kEntries[i].id, kEntries[i].group, kEntries[i].text, stateOf, kEntries[i].presentText};
  }
  HandheldSetDesktopMenu(mainWindow, entries.data(), static_cast<UINT>(entries.size()));
}

void runDesktopCommand(WORD id) {
  const EntryRow* const row = rowOf(id);
  if (row && stateOf(id) != HANDHELD_ENTRY_GREY) row->run(id);
}
