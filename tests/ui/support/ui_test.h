#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "tests/support/paths.h"
#include "tests/ui/remote/remote_window.h"
#include "tests/ui/remote/running_program.h"
#include "tests/ui/support/test_database.h"

/// Tests of the real program: its databases lie in a folder of their own.
class UiTest : public testing::Test {
 protected:
  std::filesystem::path file(std::string_view name) const { return folder_.file(name); }

 private:
  testsupport::TempFolder folder_;
};

/// A running program with a database, ended before the database is removed.
class OpenedDatabase {
 public:
  explicit OpenedDatabase(const std::filesystem::path& path) : program_(quoted(path)) {
    main_ = program_.mainWindow();
    tables_ = program_.tablesList();
  }

  RunningProgram& program() { return program_; }
  HWND main() const { return main_; }
  /// The list of the Tables page. Null when the database was not opened.
  HWND tables() const { return tables_; }

  /// The record grid, shown with the records of the table at `index` of the Tables page. Null when one
  /// of the steps takes too long.
  HWND showRecords(int index) {
    if (!remote::switchToPage(main_, kTablesPage) || !remote::selectItem(tables_, index)) return nullptr;
    return remote::switchToPage(main_, kListPage) ? remote::recordGrid(main_) : nullptr;
  }

  static constexpr int kTablesPage = 0;
  static constexpr int kFormPage = 1;
  static constexpr int kListPage = 2;
  static constexpr int kQueriesPage = 3;

 private:
  RunningProgram program_;
  HWND main_ = nullptr;
  HWND tables_ = nullptr;
};

/// The titles of all columns, and the texts of one row of the grid.
inline std::vector<std::wstring> columnTitles(HWND grid) {
  std::vector<std::wstring> titles(static_cast<std::size_t>(remote::columnCount(grid)));
  for (std::size_t i = 0; i < titles.size(); ++i) titles[i] = remote::columnTitle(grid, static_cast<int>(i));
  return titles;
}
inline std::vector<std::wstring> rowTexts(HWND grid, int row) {
  std::vector<std::wstring> texts(static_cast<std::size_t>(remote::columnCount(grid)));
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = remote::itemText(grid, row, static_cast<int>(i));
  return texts;
}

/// Left, top, right and bottom of a window in another.
inline std::vector<LONG> place(HWND window, HWND parent) {
  const RECT in = remote::placeIn(window, parent);
  return {in.left, in.top, in.right, in.bottom};
}

/// Sends a command as a menu item would.
inline void sendCommand(HWND main, WORD id) {
  SendMessageW(main, WM_COMMAND, id, 0);
}
