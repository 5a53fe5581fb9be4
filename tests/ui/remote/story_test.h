#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/settings/settings_store.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/ui/remote/user.h"
#include "tests/ui/support/ui_test.h"

/// What someone does with the real program from its start to its end, once with the mouse alone and once
/// with the keyboard alone. A story that can't go on ends with an exception.
class StoryTest : public UiTest, public testing::WithParamInterface<User::Hand> {
 protected:
  void SetUp() override { forgetSettings(); }
  void TearDown() override {
    user_.reset();
    program_.reset();
    forgetSettings();
  }

  std::filesystem::path path() const { return file("story.cdb"); }

  /// Starts the program, without a database or with one that it will open.
  User& launch(const std::filesystem::path& database = {}) {
    user_.reset();
    program_.reset();
    program_.emplace(database.empty() ? std::wstring() : quoted(database));
    user_.emplace(GetParam(), *program_);
    return *user_;
  }
  /// Starts the program with the database of the story and waits until it is open.
  User& start() {
    launch(path());
    awaitDatabase();
    return *user_;
  }
  void awaitDatabase() const {
    constexpr int kRebar = 1000;
    ASSERT_TRUE(remote::waitUntil([this] { return remote::control(user_->main(), kRebar) != nullptr; }));
    // What has made it goes on to make the menu bar anew, under a click that comes too early.
    constexpr UINT kPatience = 10'000;
    DWORD_PTR result = 0;
    ASSERT_NE(SendMessageTimeoutW(user_->main(), WM_NULL, 0, 0, SMTO_NORMAL, kPatience, &result), 0);
  }
  RunningProgram& program() { return *program_; }
  const RunningProgram& program() const { return *program_; }

  /// Leaves the program by its menu; it ends without an error, and the file is whole.
  void end() {
    user_->exit();
    EXPECT_EQ(program_->exitCode(), 0u);
    if (std::filesystem::exists(path())) {
      EXPECT_THAT(stored("PRAGMA integrity_check"), testing::ElementsAre("ok"));
    }
  }

  /// What another SQLite program reads of the file.
  std::vector<std::string> stored(const std::string& sql) const {
    return automationtest::sqliteColumn(path().wstring(), sql);
  }

  static std::uint32_t setting(const wchar_t* name) {
    std::uint32_t value = 0;
    SettingsStore::readDword(SettingsStore::kOptions, name, 0, value);
    return value;
  }

 private:
  std::optional<RunningProgram> program_;
  std::optional<User> user_;

  static void forgetSettings() { RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot); }
};

/// Runs every story of a suite with both hands.
#define TELL_WITH_BOTH_HANDS(Suite)                                                               \
  INSTANTIATE_TEST_SUITE_P(With, Suite, testing::Values(User::Hand::mouse, User::Hand::keyboard), \
                           [](const testing::TestParamInfo<User::Hand>& each) {                   \
                             return each.param == User::Hand::mouse ? "TheMouse" : "TheKeyboard"; \
                           })
