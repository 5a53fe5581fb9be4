// The real program with settings that another program, or a hand, has spoilt: it starts with its defaults,
// and what it writes is mended.
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "base/settings/settings_store.h"
#include "base/settings/settings_table.h"
#include "resources/command_ids.h"
#include "tests/shell/shell_settings.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/support/ui_test.h"

namespace fs = std::filesystem;

namespace {

constexpr const wchar_t* kShellValues[] = {L"Zoom", L"InputPanel", L"Size"};

struct Spoilt {
  const char* name;
  DWORD type;
  std::size_t length;
  BYTE content;
};

/// Such as leave no number that would ask for the password.
constexpr Spoilt kSpoilt[] = {
    {"TextsForNumbers", REG_SZ, 40, 0x41},      {"BytesOfAnyLength", REG_BINARY, 61, 0xFF},
    {"NumbersForTexts", REG_QWORD, 8, 0},       {"EmptyValues", REG_NONE, 0, 0},
    {"OneMegabyte", REG_SZ, 1024 * 1024, 0x41},
};

class HostileSettingsTest : public UiTest, public testing::WithParamInterface<Spoilt> {
 protected:
  void SetUp() override {
    makeDatabase(database(), {L"CREATE TABLE 'T' (Name Text)", L"INSERT INTO T VALUES ('Ada')"});
    forget();
  }
  void TearDown() override {
    forget();
    forgetShellSettings();
  }

  static void forget() {
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
    RegDeleteTreeW(HKEY_CURRENT_USER, kShellSettings);
  }
  static std::wstring pathOf(const SettingRow& row) {
    return std::wstring(SettingsStore::kRoot) + L"\\" + row.subkey;
  }

  fs::path database() const { return file("settings.cdb"); }

  /// All that the program does with its settings, from its start to its end.
  void useAll(const RunningProgram& program) {
    const HWND main = program.mainWindow();
    ASSERT_NE(main, nullptr);
    ASSERT_NE(program.tablesList(), nullptr);
    ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kFormPage));
    EXPECT_EQ(remote::text(remote::control(main, 1200)), L"Ada");
    for (const int command : {ID_OPTIONS, ID_FIND}) {
      PostMessageW(main, WM_COMMAND, static_cast<WPARAM>(command), 0);
      HWND dialog = nullptr;
      ASSERT_TRUE(remote::waitUntil([&] { return (dialog = remote::frontWindow(main)) != main; })) << command;
      PostMessageW(dialog, WM_COMMAND, command == ID_OPTIONS ? IDOK : IDCANCEL, 0);
      ASSERT_TRUE(remote::waitForMain(main)) << command;
    }
    EXPECT_EQ(remote::close(main), 0u);
  }
};

TEST_P(HostileSettingsTest, TheProgramStartsAndMendsThem) {
  const std::vector<BYTE> bytes(GetParam().length, GetParam().content);
  const auto spoil = [&](const std::wstring& key, const wchar_t* name) {
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), name, GetParam().type, bytes.data(),
                              static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
  };
  for (const SettingRow& row : settings::kTable) spoil(pathOf(row), row.name);
  for (const wchar_t* name : kShellValues) spoil(kShellSettings, name);
  ASSERT_NO_FATAL_FAILURE(useAll(RunningProgram(quoted(database()))));
  String last;
  EXPECT_TRUE(SettingsStore::read(Setting::lastDatabase, last));
  EXPECT_EQ(last.text(), database().wstring());
  std::uint32_t rights = 99;
  EXPECT_TRUE(SettingsStore::read(Setting::updateRights, rights)) << "written by the options";
  EXPECT_EQ(rights, 0u);
}

INSTANTIATE_TEST_SUITE_P(, HostileSettingsTest, testing::ValuesIn(kSpoilt),
                         [](const testing::TestParamInfo<Spoilt>& each) { return each.param.name; });

// ---- A password that is none

class HostilePasswordTest : public HostileSettingsTest {
 protected:
  static constexpr int kPassword = 1001;

  /// A dialog or message box with that title, once it takes input.
  static HWND awaitDialog(const RunningProgram& program, const wchar_t* title,
                          const wchar_t* text = nullptr) {
    HWND dialog = nullptr;
    EXPECT_TRUE(remote::waitUntil([&] {
      dialog = remote::dialog(program.processId(), title);
      return dialog != nullptr && (text == nullptr || remote::messageBoxText(dialog) == text);
    })) << testing::PrintToString(std::wstring(title));
    return dialog;
  }
  static void answer(HWND dialog, int id) {
    PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id), 0);
    EXPECT_TRUE(remote::waitUntil([=] { return !IsWindow(dialog); }));
  }
};

TEST_F(HostilePasswordTest, NobodyIsLockedOutForGood) {
  constexpr DWORD kNumber = 5;
  const std::vector<BYTE> megabyte(1024 * 1024, 0x41);
  const std::wstring key = std::wstring(SettingsStore::kRoot) + L"\\Password";
  for (const bool isNumber : {true, false}) {
    SettingsStore::write(Setting::usePassword, std::uint32_t{1});
    const void* const value = isNumber ? static_cast<const void*>(&kNumber) : megabyte.data();
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"PasswordItem", isNumber ? REG_DWORD : REG_SZ,
                              value, isNumber ? sizeof(kNumber) : static_cast<DWORD>(megabyte.size())),
              ERROR_SUCCESS);
    {
      const RunningProgram locked(quoted(database()));
      const HWND first = awaitDialog(locked, L"Enter Password");
      SetDlgItemTextW(first, kPassword, L"any");
      answer(first, IDOK);
      answer(awaitDialog(locked, L"Incorrect Password!",
                         L"You have entered the incorrect Password,\nplease try again"),
             IDOK);
      answer(awaitDialog(locked, L"Incorrect Password!",
                         L"The password among the settings can't be typed: another program has changed it.\n"
                         L"Delete its value PasswordItem, and every password is right."),
             IDOK);
      answer(awaitDialog(locked, L"Enter Password"), IDCANCEL);
      EXPECT_EQ(locked.exitCode(), 0u);
    }
    // As it says.
    ASSERT_EQ(RegDeleteKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"PasswordItem"), ERROR_SUCCESS);
    const RunningProgram open(quoted(database()));
    answer(awaitDialog(open, L"Enter Password"), IDOK);
    EXPECT_NE(open.tablesList(), nullptr);
    EXPECT_EQ(remote::close(open.mainWindow()), 0u);
  }
}

using HostileNumbersTest = HostileSettingsTest;

TEST_F(HostileNumbersTest, NumbersOutOfTheirRangeAreHarmless) {
  for (const std::uint32_t number : {3u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
    for (const SettingRow& row : settings::kTable) {
      if (row.kind == SettingKind::number && row.setting != Setting::usePassword)
        SettingsStore::writeDword(row.subkey, row.name, number);
    }
    for (const wchar_t* name : kShellValues)
      RegSetKeyValueW(HKEY_CURRENT_USER, kShellSettings, name, REG_DWORD, &number, sizeof(number));
    ASSERT_NO_FATAL_FAILURE(useAll(RunningProgram(quoted(database())))) << number;
  }
}

// A session whose texts are megabytes long is one that can't be reopened.
TEST_F(HostileNumbersTest, ASessionOfMegabytesIsLeftAlone) {
  const std::wstring text(512 * 1024, L'x');
  for (const SettingRow& row : settings::kTable) {
    if (row.kind == SettingKind::text) SettingsStore::write(row.setting, String(text.c_str()));
  }
  SettingsStore::write(Setting::openLastTable, std::uint32_t{1});
  SettingsStore::write(Setting::openQuery, std::uint32_t{1});
  {
    const RunningProgram program(L"");
    ASSERT_NE(program.mainWindow(), nullptr);
    EXPECT_EQ(remote::close(program.mainWindow()), 0u);
  }
  // The file is there, but nothing of what was looked at in it.
  SettingsStore::write(Setting::lastDatabase, String(database().c_str()));
  const RunningProgram program(L"");
  ASSERT_NE(program.mainWindow(), nullptr);
  ASSERT_NE(program.tablesList(), nullptr);
  EXPECT_EQ(remote::close(program.mainWindow()), 0u);
}

}  // namespace
