// What the program reopens at its next start.
#include <windows.h>

#include "base/settings/settings_store.h"
#include "resources/command_ids.h"
#include "tests/ui/support/ui_test.h"

namespace {

constexpr int kFirstTextEditor = 1200;
constexpr int kPositionBox = 1012;
constexpr int kNamesList = 61206;

class SessionTest : public UiTest {
 protected:
  void SetUp() override {
    forgetAll();
    SettingsStore::writeDword(SettingsStore::kOptions, L"OpenLastTableOnStartup", 1);
    makeDatabase(path(), {L"CREATE TABLE 'One' (a Integer)", L"INSERT INTO One VALUES (1)",
                          L"CREATE TABLE 'Two' (b Integer)", L"INSERT INTO Two VALUES (2)"});
  }
  void TearDown() override { forgetAll(); }

  static void forgetAll() { RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot); }
  std::filesystem::path path() const { return file("session.cdb"); }

  /// A session that ends with the second table on the form.
  void useSecondTable() {
    OpenedDatabase opened(path());
    ASSERT_NE(opened.tables(), nullptr);
    ASSERT_TRUE(remote::selectItem(opened.tables(), 1));
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
    ASSERT_EQ(remote::close(opened.main()), 0u);
  }
};

TEST_F(SessionTest, TheTableIsOnTheFormAgain) {
  useSecondTable();
  RunningProgram program(L"");
  const HWND main = program.mainWindow();
  HWND editor = nullptr;
  ASSERT_TRUE(remote::waitUntil([&] {
    editor = remote::control(main, kFirstTextEditor);
    return editor != nullptr && remote::text(editor) == L"2";
  }));
  EXPECT_EQ(remote::selectedTab(remote::tabControl(main)), OpenedDatabase::kFormPage);
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kTablesPage));
  EXPECT_EQ(remote::selectedItem(remote::shownPage(main)), 1);
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(SessionTest, TheQueryStaysInUseUntilATableIsTapped) {
  runStatements(path(), {L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)",
                         L"INSERT INTO QuivaneQueries VALUES ('q', 'Select b + 40 as c from Two')"});
  {
    OpenedDatabase opened(path());
    ASSERT_NE(opened.tables(), nullptr);
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
    ASSERT_TRUE(remote::clickItem(remote::shownPage(opened.main()), 0));
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
    ASSERT_EQ(remote::close(opened.main()), 0u);
  }
  RunningProgram program(L"");
  const HWND main = program.mainWindow();
  const auto firstRow = [&] { return remote::itemText(remote::recordGrid(main), 0); };
  HWND editor = nullptr;
  ASSERT_TRUE(
      remote::waitUntil([&] { return (editor = remote::control(main, kFirstTextEditor)) != nullptr; }));
  ASSERT_EQ(remote::text(editor), L"42");
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kTablesPage));
  const HWND tables = remote::shownPage(main);
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kListPage));
  EXPECT_EQ(firstRow(), L"42");
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kTablesPage));
  ASSERT_TRUE(remote::clickItem(tables, 0));
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kListPage));
  EXPECT_EQ(firstRow(), L"1");
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(SessionTest, WithTheOptionOffNothingIsOpened) {
  useSecondTable();
  SettingsStore::writeDword(SettingsStore::kOptions, L"OpenLastTableOnStartup", 0);
  RunningProgram program(L"");
  const HWND main = program.mainWindow();
  ASSERT_NE(main, nullptr);
  ASSERT_TRUE(remote::awaitStarted(main));
  sendCommand(main, ID_RECORD_NEXT);
  EXPECT_EQ(remote::shownPage(main), nullptr);
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(SessionTest, ADatabaseThatHasGoneOpensNothingAndSaysNothing) {
  useSecondTable();
  std::filesystem::remove(path());
  RunningProgram program(L"");
  const HWND main = program.mainWindow();
  ASSERT_NE(main, nullptr);
  ASSERT_TRUE(remote::awaitStarted(main));
  sendCommand(main, ID_RECORD_NEXT);
  EXPECT_EQ(remote::shownPage(main), nullptr);
  EXPECT_EQ(remote::messageBox(program.processId()), nullptr);
  EXPECT_FALSE(std::filesystem::exists(path()));
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(SessionTest, ADatabaseOfTheCommandLineComesInItsPlace) {
  useSecondTable();
  makeDatabase(file("other.cdb"), {L"CREATE TABLE 'Other' (c Integer)"});
  RunningProgram program(quoted(file("other.cdb")));
  const HWND tables = program.tablesList();
  ASSERT_NE(tables, nullptr);
  ASSERT_TRUE(remote::waitUntil([&] { return remote::itemText(tables, 0) == L"Other"; }));
  EXPECT_EQ(remote::selectedTab(remote::tabControl(program.mainWindow())), OpenedDatabase::kTablesPage);
  EXPECT_EQ(remote::close(program.mainWindow()), 0u);
}

/// The message that restores comes first: what it has opened makes room for the file that was asked for.
TEST_F(SessionTest, ADatabaseOfTheCommandLineThatDoesNotOpenLeavesNoneOpen) {
  useSecondTable();
  RunningProgram program(quoted(file("missing.cdb")));
  const HWND box = program.messageBox();
  ASSERT_NE(box, nullptr);
  const HWND main = program.mainWindow();
  const auto tables = [&] { return remote::itemTexts(GetDlgItem(main, kNamesList)); };
  EXPECT_TRUE(tables().empty()) << "under the message";
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  ASSERT_TRUE(remote::waitUntil([&] { return remote::messageBox(program.processId()) == nullptr; }));
  sendCommand(main, ID_RECORD_NEXT);
  EXPECT_TRUE(tables().empty());
  EXPECT_EQ(remote::control(main, kPositionBox), nullptr) << "the bars of the restored one have gone";
  EXPECT_EQ(remote::control(main, kFirstTextEditor), nullptr);
  EXPECT_EQ(remote::close(main), 0u);
}

}  // namespace
