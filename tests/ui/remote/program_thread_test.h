#pragma once

#include <windows.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/settings/settings_store.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/support/paths.h"
#include "tests/ui/remote/program_thread.h"
#include "tests/ui/remote/remote_window.h"
#include "tests/ui/support/test_database.h"

/// The whole program on a thread of the test, with a database of its own and no settings of another test.
class ProgramThreadTest : public testing::Test {
 protected:
  static constexpr int kTablesPage = 0;
  static constexpr int kFormPage = 1;
  static constexpr int kListPage = 2;
  static constexpr int kQueriesPage = 3;
  static constexpr int kPages = 4;

  /// `statements` make the database, with which the program begins.
  void start(std::initializer_list<const wchar_t*> statements) {
    makeDatabase(path_, statements);
    program_ = std::make_unique<ProgramThread>(path_.wstring());
    main_ = program_->waitForPage();
    ASSERT_NE(main_, nullptr);
  }
  void TearDown() override {
    program_.reset();
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  }

  HWND main() const { return main_; }
  HWND control(int id) const { return remote::control(main_, id); }
  LRESULT send(UINT message, WPARAM wParam, LPARAM lParam) const {
    return SendMessageW(main_, message, wParam, lParam);
  }
  /// A command, as a menu item would.
  void give(int command) const { send(WM_COMMAND, static_cast<WPARAM>(command), 0); }
  const std::filesystem::path& database() const { return path_; }
  std::filesystem::path file(std::string_view name) const { return folder_.file(name); }
  /// The first column of what another SQLite program reads.
  std::vector<std::string> stored(const std::string& sql) const {
    return automationtest::sqliteColumn(path_.wstring(), sql);
  }

 private:
  testsupport::TempFolder folder_;
  std::filesystem::path path_ = folder_.file("program.cdb");
  std::unique_ptr<ProgramThread> program_;
  HWND main_ = nullptr;
};
