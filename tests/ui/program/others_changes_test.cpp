// What another process changes in the open file shows by itself in the real program.
#include <windows.h>

#include <commctrl.h>

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/window/messages.h"
#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/ui/support/ui_test.h"

using automationtest::SqliteFile;
using testing::ElementsAre;

namespace {

constexpr int kName = 1200;
constexpr int kTown = 1201;
constexpr int kPosition = 1012;

class OthersChangesTest : public UiTest {
 protected:
  void SetUp() override {
    SqliteFile(path_.wstring())
        .run(
            "CREATE TABLE People (Name Text, Town Text); INSERT INTO People VALUES ('Ada', 'London'), "
            "('Grace', 'New York'), ('Kurt', 'Brno')");
    opened_.emplace(path_);
    ASSERT_NE(opened_->tables(), nullptr);
  }
  void TearDown() override {
    const HWND box = remote::messageBox(opened_->program().processId());
    EXPECT_EQ(box, nullptr) << "nothing is ever told: "
                            << testing::PrintToString(remote::messageBoxText(box));
    EXPECT_EQ(remote::close(main()), 0u);
    opened_.reset();
  }

  HWND main() const { return opened_->main(); }
  HWND control(int id) const { return remote::control(main(), id); }
  OpenedDatabase& opened() { return *opened_; }
  /// As another program, which this one is.
  void change(const std::string& sql) const { SqliteFile(path_.wstring()).run(sql); }
  bool comesToShow(int id, const std::wstring& text) const {
    return remote::waitUntil([&] { return remote::text(control(id)) == text; });
  }
  static std::pair<DWORD, DWORD> selection(HWND edit) {
    const LRESULT both = SendMessageW(edit, EM_GETSEL, 0, 0);
    return {LOWORD(both), HIWORD(both)};
  }

 private:
  std::filesystem::path path_ = file("people.cdb");
  std::optional<OpenedDatabase> opened_;
};

TEST_F(OthersChangesTest, TheFormShowsThemAndTheUserStaysWhereHeIsInTheText) {
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kFormPage));
  const HWND town = control(kTown);
  SendMessageW(town, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
  SendMessageW(town, WM_LBUTTONUP, 0, MAKELPARAM(2, 2));
  ASSERT_TRUE(remote::waitUntil([&] { return remote::focus(main()) == town; }));
  SendMessageW(town, EM_SETSEL, 2, 4);
  change(
      "UPDATE People SET Town = 'Londinium' WHERE Name = 'Ada'; INSERT INTO People VALUES ('Emmy', 'Rome')");
  EXPECT_TRUE(comesToShow(kTown, L"Londinium"));
  EXPECT_TRUE(comesToShow(kPosition, L"    1 / 4"));
  EXPECT_EQ(selection(town), (std::pair<DWORD, DWORD>(2, 4)));
  EXPECT_EQ(remote::focus(main()), town);
}

TEST_F(OthersChangesTest, WhatIsTypedStaysAndIsStored) {
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kFormPage));
  SendMessageW(control(kName), EM_SETSEL, 0, -1);
  for (const wchar_t character : std::wstring(L"Typed")) SendMessageW(control(kName), WM_CHAR, character, 1);
  change("INSERT INTO People VALUES ('Emmy', 'Rome')");
  sendCommand(main(), ID_RECORD_NEXT);
  EXPECT_EQ(remote::text(control(kName)), L"Grace");
  EXPECT_TRUE(comesToShow(kPosition, L"    2 / 4"));
  EXPECT_THAT(SqliteFile(file("people.cdb").wstring()).column("SELECT Name FROM People"),
              ElementsAre("Typed", "Grace", "Kurt", "Emmy"));
}

TEST_F(OthersChangesTest, TheGridKeepsItsRowsInView) {
  change(
      "WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s LIMIT 1000) "
      "INSERT INTO People SELECT 'n' || i, 't' FROM s");
  const HWND grid = opened().showRecords(0);
  ASSERT_NE(grid, nullptr);
  ASSERT_TRUE(remote::waitUntil([=] { return remote::itemCount(grid) == 1003; }));
  remote::ensureVisible(grid, 700);
  ASSERT_TRUE(remote::selectItem(grid, 695));
  const int top = remote::topRow(grid);
  const std::wstring first = remote::itemText(grid, top);
  const std::wstring chosen = remote::itemText(grid, 695);
  change("DELETE FROM People WHERE rowid <= 100; INSERT INTO People VALUES ('last', 'x')");
  EXPECT_TRUE(remote::waitUntil([=] { return remote::itemCount(grid) == 904; }));
  EXPECT_TRUE(remote::waitUntil([=] { return remote::selectedItem(grid) == 595; }));
  EXPECT_EQ(remote::topRow(grid), top - 100);
  EXPECT_EQ(remote::itemText(grid, top - 100), first);
  EXPECT_EQ(remote::itemText(grid, 595), chosen);
  EXPECT_TRUE(comesToShow(kPosition, L"  596 / 904"));
  change("UPDATE People SET Name = 'renamed' WHERE Name = '" + std::filesystem::path(chosen).string() + "'");
  EXPECT_TRUE(remote::waitUntil([=] { return remote::itemText(grid, 595) == L"renamed"; }));
  EXPECT_EQ(remote::selectedItem(grid), 595);
  EXPECT_EQ(remote::topRow(grid), top - 100);
}

TEST_F(OthersChangesTest, AnEmptiedGridAndItsFirstRowAreShown) {
  const HWND grid = opened().showRecords(0);
  ASSERT_NE(grid, nullptr);
  change("DELETE FROM People");
  EXPECT_TRUE(remote::waitUntil([=] { return remote::itemCount(grid) == 0; }));
  EXPECT_TRUE(comesToShow(kPosition, L"No Records"));
  change("INSERT INTO People VALUES ('Emmy', 'Rome')");
  EXPECT_TRUE(remote::waitUntil([=] { return remote::itemCount(grid) == 1; }));
  EXPECT_TRUE(remote::waitUntil([=] { return remote::itemText(grid, 0) == L"Emmy"; }));
  EXPECT_TRUE(comesToShow(kPosition, L"    1 / 1"));
}

TEST_F(OthersChangesTest, TheListsOfTablesAndQueriesFollow) {
  change("CREATE TABLE Towns (Name Text)");
  EXPECT_TRUE(remote::waitUntil([&] {
    return remote::itemTexts(opened().tables()) == std::vector<std::wstring>{L"People", L"Towns"};
  }));
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kQueriesPage));
  const HWND queries = remote::shownPage(main());
  change(
      "CREATE TABLE QuivaneQueries (QueryName Text, SQL Text); INSERT INTO QuivaneQueries VALUES ('all', "
      "'Select * from People')");
  EXPECT_TRUE(
      remote::waitUntil([=] { return remote::itemTexts(queries) == std::vector<std::wstring>{L"all"}; }));
}

TEST_F(OthersChangesTest, AMinimisedWindowShowsThemWhenItComesBack) {
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kFormPage));
  ShowWindow(main(), SW_SHOWMINNOACTIVE);
  ASSERT_TRUE(remote::waitUntil([&] { return IsIconic(main()) != FALSE; }));
  change("UPDATE People SET Name = 'Augusta Ada' WHERE Name = 'Ada'");
  ShowWindow(main(), SW_RESTORE);
  EXPECT_TRUE(comesToShow(kName, L"Augusta Ada"));
}

TEST_F(OthersChangesTest, BehindALockTheyAreShownWhenItIsOver) {
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kFormPage));
  change("UPDATE People SET Name = 'Augusta Ada' WHERE Name = 'Ada'");
  {
    SqliteFile other(file("people.cdb").wstring());
    if (!other.tryRun("BEGIN EXCLUSIVE", 5000)) FAIL() << "the file is in use";
    // A window that comes to the front looks at once, and nobody waits for the lock.
    const ULONGLONG begin = GetTickCount64();
    PostMessageW(main(), kCameToFrontMessage, 1, 0);
    EXPECT_TRUE(remote::awaitPosted(remote::recordGrid(main())));
    EXPECT_LT(GetTickCount64() - begin, 4000u);
    EXPECT_EQ(remote::text(control(kName)), L"Ada");
    other.run("COMMIT");
  }
  EXPECT_TRUE(comesToShow(kName, L"Augusta Ada"));
}

}  // namespace
