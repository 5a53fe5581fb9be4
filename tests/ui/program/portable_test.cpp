// A program with a file "Quivane.portable" beside it.
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "base/settings/settings_file.h"
#include "base/settings/settings_store.h"
#include "dialogs/copies/go_back_ids.h"
#include "owners/handles.h"
#include "resources/command_ids.h"
#include "tests/shell/shell_settings.h"
#include "tests/ui/support/kept_copies.h"
#include "tests/ui/support/ui_test.h"
#include "views/form/form_ids.h"

namespace {

namespace fs = std::filesystem;

constexpr wchar_t kCompany[] = L"Software\\MorvaleSoftware";

class PortableTest : public UiTest {
 protected:
  void SetUp() override {
    makeDatabase(database(), {L"CREATE TABLE 'One' (a Integer)", L"INSERT INTO One VALUES (1)",
                              L"CREATE TABLE 'Two' (b Integer)", L"INSERT INTO Two VALUES (2)"});
    // The program may find nothing that was left in the registry, whoever left it.
    ASSERT_TRUE(unregisterBinComponents());
    forgetAll();
    fs::create_directory(folder());
    for (const wchar_t* name : {L"Quivane Pocket PC.exe", L"adoce31.dll", L"aygshell.dll"}) {
      fs::copy_file(testsupport::binFolder() / name, folder() / name);
    }
    std::ofstream(folder() / L"Quivane.portable");
  }
  void TearDown() override {
    forgetAll();
    forgetShellSettings();
    EXPECT_TRUE(registerBinComponents());
  }

  static void forgetAll() {
    RegDeleteTreeW(HKEY_CURRENT_USER, kCompany);
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L".cdb");
    RegDeleteTreeW(HKEY_CLASSES_ROOT, L"Quivane");
  }

  static bool isKeyThere(HKEY root, const wchar_t* path) {
    UniqueRegistryKey key;
    return RegOpenKeyExW(root, path, 0, KEY_READ, key.put()) == ERROR_SUCCESS;
  }
  static void expectNothingInTheRegistry() {
    EXPECT_FALSE(isKeyThere(HKEY_CURRENT_USER, kCompany));
    EXPECT_FALSE(isKeyThere(HKEY_CLASSES_ROOT, L".cdb"));
    EXPECT_FALSE(isKeyThere(HKEY_CLASSES_ROOT, L"Quivane"));
    EXPECT_EQ(registeredComponents(), L"");
  }

  fs::path folder() const { return file("a folder"); }
  fs::path program() const { return folder() / L"Quivane Pocket PC.exe"; }
  fs::path database() const { return file("portable.cdb"); }
  SettingsFile settingsFile() const { return SettingsFile(folder() / L"Quivane.settings"); }

  DWORD storedNumber(const std::wstring& key, const wchar_t* name) const {
    settings::Value value;
    if (settingsFile().read(key.c_str(), name, value) != SettingsFile::Found::value) return 0xFFFFFFFF;
    return value.bytes.empty() ? 0 : value.bytes[0];
  }
  static std::wstring optionsKey() { return std::wstring(SettingsStore::kRoot) + L"\\Options"; }

  static int widthOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place.right - place.left;
  }
};

TEST_F(PortableTest, ItFindsItsComponentsAndLeavesNothingInTheRegistry) {
  const RunningProgram running(program(), quoted(database()));
  ASSERT_NE(running.mainWindow(), nullptr);
  const HWND tables = running.tablesList();
  ASSERT_NE(tables, nullptr) << "the database was not opened";
  EXPECT_EQ(remote::itemText(tables, 0), L"One");
  EXPECT_EQ(remote::close(running.mainWindow()), 0u);
  expectNothingInTheRegistry();
  EXPECT_TRUE(fs::exists(folder() / L"Quivane.settings"));
}

TEST_F(PortableTest, TheSessionGoesOnFromTheFile) {
  const DWORD on = 1;
  ASSERT_TRUE(
      settingsFile().write(optionsKey().c_str(), L"OpenLastTableOnStartup", REG_DWORD, &on, sizeof(on)));
  {
    const RunningProgram running(program(), quoted(database()));
    ASSERT_NE(running.mainWindow(), nullptr);
    ASSERT_NE(running.tablesList(), nullptr);
    ASSERT_TRUE(remote::selectItem(running.tablesList(), 1));
    ASSERT_TRUE(remote::switchToPage(running.mainWindow(), OpenedDatabase::kFormPage));
    ASSERT_EQ(remote::close(running.mainWindow()), 0u);
  }
  const RunningProgram again(program(), L"");
  const HWND main = again.mainWindow();
  EXPECT_TRUE(remote::waitUntil([&] {
    const HWND editor = remote::control(main, 1200);
    return editor != nullptr && remote::text(editor) == L"2";
  }));
  EXPECT_EQ(remote::close(main), 0u);
  expectNothingInTheRegistry();
}

TEST_F(PortableTest, TheShellsSettingsAreInTheFileToo) {
  int narrow = 0;
  {
    const RunningProgram running(program(), L"");
    const HWND main = running.mainWindow();
    ASSERT_NE(main, nullptr);
    narrow = widthOf(main);
    SendMessageW(main, WM_SYSCOMMAND, kZoom150, 0);
    EXPECT_GT(widthOf(main), narrow);
    EXPECT_EQ(remote::close(main), 0u);
  }
  EXPECT_EQ(storedNumber(kShellSettings, L"Zoom"), 150u);
  expectNothingInTheRegistry();
  const RunningProgram again(program(), L"");
  const HWND main = again.mainWindow();
  ASSERT_NE(main, nullptr);
  EXPECT_GT(widthOf(main), narrow);
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(PortableTest, ItsCopiesAreBesideItAndFoundAgainWhereverItIsMoved) {
  fs::copy_file(database(), folder() / "moved.cdb");
  {
    const RunningProgram running(program(), quoted(folder() / "moved.cdb"));
    const HWND main = running.mainWindow();
    ASSERT_NE(running.tablesList(), nullptr);
    ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kFormPage));
    remote::typeText(remote::control(main, kFirstTextEditorId), L"7");
    ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kTablesPage));
    EXPECT_EQ(remote::close(main), 0u);
  }
  EXPECT_EQ(keptCopies(folder() / "Quivane copies").size(), 1u);
  EXPECT_FALSE(fs::exists(keptCopiesPath()));

  const fs::path elsewhere = file("elsewhere");
  fs::rename(folder(), elsewhere);
  const RunningProgram again(elsewhere / L"Quivane Pocket PC.exe", quoted(elsewhere / "moved.cdb"));
  const HWND main = again.mainWindow();
  ASSERT_NE(again.tablesList(), nullptr);
  PostMessageW(main, WM_COMMAND, ID_GO_BACK_TO, 0);
  HWND dialog = nullptr;
  ASSERT_TRUE(remote::waitUntil(
      [&] { return (dialog = remote::dialog(again.processId(), L"Go Back To")) != nullptr; }));
  EXPECT_TRUE(
      remote::waitUntil([&] { return remote::itemCount(remote::control(dialog, IDC_GO_BACK_COPIES)) == 1; }));
  EXPECT_EQ(SendDlgItemMessageW(dialog, IDC_GO_BACK_FILE, CB_GETCOUNT, 0, 0), 1)
      << "under its present path alone";
  PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  ASSERT_TRUE(remote::waitUntil([&] { return !IsWindow(dialog); }));
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(PortableTest, WhatIsInTheRegistryIsNotRead) {
  const DWORD zoom = 200;
  RegSetKeyValueW(HKEY_CURRENT_USER, kShellSettings, L"Zoom", REG_DWORD, &zoom, sizeof(zoom));
  const DWORD on = 1;
  RegSetKeyValueW(HKEY_CURRENT_USER, optionsKey().c_str(), L"UsePassword", REG_DWORD, &on, sizeof(on));
  const RunningProgram running(program(), quoted(database()));
  ASSERT_NE(running.tablesList(), nullptr) << "the password was asked for";
  EXPECT_EQ(remote::close(running.mainWindow()), 0u);
}

TEST_F(PortableTest, MissingComponentsAreTold) {
  fs::remove(folder() / L"adoce31.dll");
  const RunningProgram running(program(), quoted(database()));
  const HWND main = running.mainWindow();
  ASSERT_NE(main, nullptr);
  const HWND box = running.messageBox();
  ASSERT_NE(box, nullptr);
  EXPECT_THAT(remote::messageBoxText(box), testing::HasSubstr(L"adoce31.dll"));
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  EXPECT_EQ(remote::close(main), 0u);
  expectNothingInTheRegistry();
}

TEST_F(PortableTest, WithoutTheFileTheRegistryIsUsed) {
  fs::remove(folder() / L"Quivane.portable");
  const RunningProgram running(program(), quoted(database()));
  ASSERT_NE(running.tablesList(), nullptr);
  EXPECT_EQ(remote::close(running.mainWindow()), 0u);
  EXPECT_TRUE(isKeyThere(HKEY_CURRENT_USER, kCompany));
  EXPECT_NE(registeredComponents(), L"");
  EXPECT_FALSE(fs::exists(folder() / L"Quivane.settings"));
}

}  // namespace
