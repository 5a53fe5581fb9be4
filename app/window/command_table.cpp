#include "app/window/command_table.h"

#include "app/window/desktop_commands.h"
#include "app/window/help.h"
#include "app/window/page_layout.h"
#include "app/window/program_state.h"
#include "app/window/tab_pages.h"
#include "base/settings/app_settings.h"
#include "dialogs/options/show_options.h"
#include "dialogs/password/password_lock.h"
#include "dialogs/query/query_dialog.h"
#include "dialogs/small/about.h"
#include "dialogs/small/database_info.h"
#include "dialogs/table/new_table.h"
#include "platform/pocketshell/aygshell.h"
#include "resources/command_ids.h"
#include "views/shared/focused_edit.h"

namespace {

using CommandHandler = LRESULT (*)(HWND window, WORD id, LPARAM lParam, WORD notification);

struct CommandRow {
  WORD id;
  CommandHandler handler;
};

/// The Tables page of a database that was opened. Where none could be, the page stays.
LRESULT showOpened(CommandResult result) {
  if (result == CommandResult::done) {
    showDatabasePage();
  } else if (!theDocument->isDatabaseOpen()) {
    showNoDatabase();
  }
  return 0;
}

LRESULT openDatabase(HWND, WORD, LPARAM, WORD) {
  showOpened(theDocument->openDatabaseCommand());
  theDocument->layOutForm(true);
  return 0;
}

LRESULT newDatabase(HWND, WORD, LPARAM, WORD) {
  return showOpened(theDocument->newDatabaseCommand());
}

LRESULT deleteDatabase(HWND, WORD, LPARAM, WORD) {
  theDocument->deleteDatabaseCommand();
  return 0;
}

LRESULT closeDatabase(HWND, WORD, LPARAM, WORD) {
  if (theDocument->canLeaveRecord() && theDocument->closeDatabase() == 0) switchPage(kNoPage);
  return 0;
}

LRESULT showDatabaseInfo(HWND, WORD, LPARAM, WORD) {
  DatabaseInfoDialog dialog;
  dialog.databasePath = theDocument->databasePath();
  dialog.serverText = theDocument->serverText();
  dialog.tableName = theDocument->tableName();
  dialog.queryName = theDocument->queryName();
  dialog.sqlText = theDocument->sqlText();
  dialog.run(mainWindow);
  return 0;
}

LRESULT showAbout(HWND, WORD, LPARAM, WORD) {
  AboutDialog().run(mainWindow);
  return 0;
}

LRESULT changeOptions(HWND, WORD, LPARAM, WORD) {
  showOptions(mainWindow, theAppSettings->options(), applyOptions);
  return 0;
}

LRESULT changeStartPassword(HWND, WORD, LPARAM, WORD) {
  return changePassword(mainWindow);
}

/// Runs a dialog until its user cancels or what he confirmed is stored: a design that the database refuses
/// is shown again, so that nothing of it is lost. Who has confirmed has nothing more to type.
template <typename Dialog, typename Store>
void runUntilStored(Dialog& dialog, Store store) {
  bool stored = false;
  while (!stored && dialog.run(mainWindow) == IDOK) {
    stored = store();
    SHSipPreference(mainWindow, SIP_DOWN);
  }
}

LRESULT newTable(HWND, WORD, LPARAM, WORD) {
  if (!theDocument->isDatabaseOpen() || currentPage != kTablesPageIndex) return 0;
  NewTableDialog dialog(theDocument->tableNames());
  runUntilStored(dialog, [&] { return theDocument->createTable(dialog.name, dialog.columns); });
  return 0;
}

LRESULT deleteTable(HWND, WORD, LPARAM, WORD) {
  theDocument->deleteTableCommand();
  return 0;
}

QueryDialogHost queryDialogHost() {
  return {theDocument->tableNames(),
          [](const String& sql, NameList& names) { theDocument->listFieldNames(sql, names); },
          [](const String& sql, String& reason) { return theDocument->returnsRecords(sql, reason); },
          showHelp};
}

LRESULT newQuery(HWND, WORD, LPARAM, WORD) {
  if (!theDocument->isDatabaseOpen() || currentPage != kQueriesPageIndex) return 0;
  QueryDialog dialog(queryDialogHost());
  runUntilStored(dialog, [&] { return theDocument->addQuery({dialog.name, dialog.sql}); });
  return 0;
}

LRESULT editQuery(HWND, WORD, LPARAM, WORD) {
  SavedQuery query;
  if (!theDocument->chosenQuery(query)) return 0;
  QueryDialog dialog(queryDialogHost());
  dialog.name = query.name;
  dialog.sql = query.sql;
  runUntilStored(dialog, [&] { return theDocument->changeChosenQuery({dialog.name, dialog.sql}); });
  return 0;
}

LRESULT findText(HWND, WORD, LPARAM, WORD) {
  return theDocument->openFind();
}

LRESULT deleteQuery(HWND, WORD, LPARAM, WORD) {
  theDocument->deleteQueryCommand();
  return 0;
}

LRESULT newRecord(HWND, WORD, LPARAM, WORD) {
  return theDocument->newRecord();
}

LRESULT deleteRecord(HWND, WORD, LPARAM, WORD) {
  return theDocument->deleteRecord();
}

LRESULT goToRecordNumber(HWND, WORD, LPARAM, WORD) {
  return theDocument->goToRecordNumber();
}

LRESULT showPreviousFormPage(HWND, WORD, LPARAM, WORD) {
  return theDocument->previousFormPage();
}

LRESULT showNextFormPage(HWND, WORD, LPARAM, WORD) {
  return theDocument->nextFormPage();
}

LRESULT editRecord(HWND, WORD, LPARAM, WORD) {
  showPage(kFormPageIndex);
  return 0;
}

LRESULT copySelection(HWND, WORD, LPARAM, WORD) {
  focusededit::copy();
  return 0;
}

LRESULT cutSelection(HWND, WORD, LPARAM, WORD) {
  focusededit::cut();
  return 0;
}

LRESULT pasteClipboard(HWND, WORD, LPARAM, WORD) {
  focusededit::paste();
  return 0;
}

LRESULT undoEdit(HWND, WORD, LPARAM, WORD) {
  if (focusededit::canUndo()) focusededit::undo();
  return 0;
}

LRESULT toggleFormScroll(HWND, WORD, LPARAM, WORD) {
  constexpr int kScrolledMax = 4;
  static bool scrolls = false;
  scrolls = !scrolls;
  SetScrollRange(formWrapperWindow, SB_VERT, 0, scrolls ? kScrolledMax : 0, TRUE);
  return 0;
}

LRESULT exitProgram(HWND, WORD, LPARAM, WORD) {
  if (theDocument->canLeaveRecord()) PostQuitMessage(0);
  return 0;
}

LRESULT moveFirstRecord(HWND, WORD, LPARAM, WORD) {
  return theDocument->moveFirstRecord();
}

LRESULT moveLastRecord(HWND, WORD, LPARAM, WORD) {
  return theDocument->moveLastRecord();
}

LRESULT moveNextRecord(HWND, WORD, LPARAM, WORD) {
  return theDocument->moveNextRecord();
}

LRESULT movePreviousRecord(HWND, WORD, LPARAM, WORD) {
  return theDocument->movePreviousRecord();
}

LRESULT showLargeIcons(HWND, WORD, LPARAM, WORD) {
  theDocument->setNameStyle(NameStyle::largeIcons);
  return 0;
}

LRESULT showSmallIcons(HWND, WORD, LPARAM, WORD) {
  theDocument->setNameStyle(NameStyle::smallIcons);
  return 0;
}

LRESULT showList(HWND, WORD, LPARAM, WORD) {
  theDocument->setNameStyle(NameStyle::list);
  return 0;
}

LRESULT showReport(HWND, WORD, LPARAM, WORD) {
  theDocument->setNameStyle(NameStyle::report);
  return 0;
}

LRESULT fitColumns(HWND, WORD, LPARAM, WORD) {
  theDocument->fitColumns();
  return 0;
}

LRESULT showPreviousColumn(HWND, WORD, LPARAM, WORD) {
  theDocument->showPreviousColumn();
  return 0;
}

LRESULT showNextColumn(HWND, WORD, LPARAM, WORD) {
  theDocument->showNextColumn();
  return 0;
}

constexpr CommandRow kCommands[] = {
    {ID_OPTIONS, changeOptions},
    {ID_PASSWORD_CHANGE, changeStartPassword},
    {ID_EXIT, exitProgram},
    {ID_ABOUT, showAbout},
    {ID_DATABASE_OPEN, openDatabase},
    {ID_DATABASE_CLOSE, closeDatabase},
    {ID_DATABASE_INFO, showDatabaseInfo},
    {ID_PAGE_PREVIOUS, showPreviousFormPage},
    {ID_PAGE_NEXT, showNextFormPage},
    {ID_RECORD_FIRST, moveFirstRecord},
    {ID_RECORD_LAST, moveLastRecord},
    {ID_RECORD_NEXT, moveNextRecord},
    {ID_RECORD_PREVIOUS, movePreviousRecord},
    {ID_RECORD_NUMBER, goToRecordNumber},
    {ID_RECORD_NEW, newRecord},
    {ID_RECORD_DELETE, deleteRecord},
    {ID_FIND, findText},
    {ID_RECORD_EDIT, editRecord},
    {ID_COPY, copySelection},
    {ID_CUT, cutSelection},
    {ID_PASTE, pasteClipboard},
    {ID_UNDO, undoEdit},
    {ID_VIEW_LARGE_ICONS, showLargeIcons},
    {ID_VIEW_SMALL_ICONS, showSmallIcons},
    {ID_VIEW_LIST, showList},
    {ID_VIEW_REPORT, showReport},
    {ID_COLUMNS_FIT, fitColumns},
    {ID_TABLE_NEW, newTable},
    {ID_TABLE_DELETE, deleteTable},
    {ID_QUERY_NEW, newQuery},
    {ID_QUERY_EDIT, editQuery},
    {ID_QUERY_DELETE, deleteQuery},
    {ID_COLUMN_PREVIOUS, showPreviousColumn},
    {ID_COLUMN_NEXT, showNextColumn},
    {ID_DATABASE_NEW, newDatabase},
    {ID_DATABASE_DELETE, deleteDatabase},
    {ID_FORM_SCROLL_RANGE, toggleFormScroll},
};

}  // namespace

LRESULT runCommand(HWND window, WORD id, LPARAM lParam, WORD notification) {
  // Before the Document exists and after its end there is nothing that a command could act on.
  if (!theDocument || theDocument->isBusy()) return 0;
  // Under a dialog the user can give none, but another program can, and no command is made for that: the
  // system's own file dialog does not live through a second one.
  if (!IsWindowEnabled(mainWindow) || thePrompts.isChoosingFile()) return 0;
  for (const CommandRow& row : kCommands) {
    if (row.id == id) return row.handler(window, id, lParam, notification);
  }
  runDesktopCommand(id);
  return 0;
}
