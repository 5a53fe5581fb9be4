// What the bands of the pages offer in the real program, and how the lists of names begin.
#include <windows.h>

#include <commctrl.h>

#include "tests/ui/support/ui_test.h"

namespace {

constexpr int kMainToolbar = 2001;
constexpr int kOtherToolbar = 2000;
constexpr WORD kNewTable = 40065;
constexpr WORD kDeleteTable = 40074;
constexpr WORD kNewQuery = 40078;
constexpr WORD kDeleteQuery = 40079;
constexpr WORD kEditQuery = 40083;
constexpr WORD kSmallIcons = 40062;
constexpr WORD kListStyle = 40063;
constexpr WORD kPreviousColumn = 40070;
constexpr WORD kNextColumn = 40071;

constexpr LRESULT kEnabled = TBSTATE_ENABLED;
constexpr LRESULT kGrey = TBSTATE_INDETERMINATE;

class NameBarsTest : public UiTest {
 protected:
  static HWND toolbar(HWND main, int id) {
    HWND found = nullptr;
    remote::waitUntil([&] { return (found = remote::control(main, id)) != nullptr; });
    return found;
  }
  static LRESULT state(HWND bar, WORD command) { return SendMessageW(bar, TB_GETSTATE, command, 0); }
  static LONG listStyle(HWND list) { return GetWindowLongW(list, GWL_STYLE) & LVS_TYPEMASK; }
};

TEST_F(NameBarsTest, OfAnEmptyDatabaseNothingCanBeDeletedOrEdited) {
  makeDatabase(file("empty.cdb"), {});
  RunningProgram program(quoted(file("empty.cdb")));
  const HWND main = program.mainWindow();
  const HWND tables = toolbar(main, kMainToolbar);
  ASSERT_NE(tables, nullptr);
  EXPECT_EQ(state(tables, kNewTable), kEnabled);
  EXPECT_EQ(state(tables, kDeleteTable), kGrey);
  EXPECT_EQ(remote::selectedItem(remote::shownPage(main)), -1);

  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kQueriesPage));
  const HWND queries = toolbar(main, kMainToolbar);
  EXPECT_EQ(state(queries, kNewQuery), kEnabled);
  EXPECT_EQ(state(queries, kEditQuery), kGrey);
  EXPECT_EQ(state(queries, kDeleteQuery), kGrey);
  EXPECT_EQ(remote::selectedItem(remote::shownPage(main)), -1);
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(NameBarsTest, OfANamedTableAndAQueryEverythingIsOffered) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer)",
                               L"CREATE TABLE 'QuivaneQueries' (QueryName Varchar (255), QuerySQL Text)",
                               L"INSERT INTO QuivaneQueries VALUES ('all', 'Select * from T')"});
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  EXPECT_EQ(state(toolbar(opened.main(), kMainToolbar), kDeleteTable), kEnabled);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  const HWND queries = toolbar(opened.main(), kMainToolbar);
  for (const WORD command : {kNewQuery, kEditQuery, kDeleteQuery})
    EXPECT_EQ(state(queries, command), kEnabled);
}

/// The controls show U+FFFD in the place of a mark that stands on no letter.
TEST_F(NameBarsTest, ATableWhoseNameCanNotBeShownIsUsedAndDeletedLikeAnyOther) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer)", L"CREATE TABLE '\x05B0' (a Integer)",
                               L"INSERT INTO [\x05B0] VALUES (42)"});
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_EQ(remote::itemText(opened.tables(), 1), L"\xFFFD");
  const HWND grid = opened.showRecords(1);
  ASSERT_NE(grid, nullptr);
  EXPECT_EQ(remote::itemTexts(grid), std::vector<std::wstring>{L"42"});
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kTablesPage));
  PostMessageW(opened.main(), WM_COMMAND, kDeleteTable, 0);
  const HWND question = opened.program().messageBox();
  ASSERT_NE(question, nullptr);
  PostMessageW(question, WM_COMMAND, IDYES, 0);
  EXPECT_TRUE(remote::waitUntil(
      [&] { return remote::itemTexts(opened.tables()) == std::vector<std::wstring>{L"T"}; }));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

TEST_F(NameBarsTest, TheColumnButtonsFollowTheColumnsThatAreShown) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer, b Integer, c Integer, d Integer)",
                               L"INSERT INTO T VALUES (1, 2, 3, 4)"});
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.showRecords(0), nullptr);
  const HWND bar = toolbar(opened.main(), kOtherToolbar);
  EXPECT_EQ(state(bar, kNextColumn), kEnabled);
  EXPECT_EQ(state(bar, kPreviousColumn), kGrey);
  sendCommand(opened.main(), kNextColumn);
  EXPECT_EQ(state(bar, kNextColumn), kGrey);
  EXPECT_EQ(state(bar, kPreviousColumn), kEnabled);
  sendCommand(opened.main(), kPreviousColumn);
  EXPECT_EQ(state(bar, kNextColumn), kEnabled);
  EXPECT_EQ(state(bar, kPreviousColumn), kGrey);
}

TEST_F(NameBarsTest, WithoutColumnsTheirButtonsAreGrey) {
  makeDatabase(file("empty.cdb"), {});
  RunningProgram program(quoted(file("empty.cdb")));
  const HWND main = program.mainWindow();
  ASSERT_NE(toolbar(main, kMainToolbar), nullptr);
  // Without records the page shows nothing but its bands, where the former page's had the same number.
  ASSERT_TRUE(remote::clickTab(remote::tabControl(main), OpenedDatabase::kListPage));
  for (const WORD command : {kNextColumn, kPreviousColumn}) {
    EXPECT_TRUE(remote::waitUntil([=] {
      return state(remote::control(main, kOtherToolbar), command) == kGrey;
    })) << command
        << ": " << state(remote::control(main, kOtherToolbar), command);
  }
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(NameBarsTest, TheListsAreInLargeIconsAgainAtTheNextStart) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer)"});
  {
    OpenedDatabase opened(file("a.cdb"));
    ASSERT_NE(opened.tables(), nullptr);
    sendCommand(opened.main(), kListStyle);
    EXPECT_EQ(listStyle(opened.tables()), LVS_LIST);
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
    sendCommand(opened.main(), kSmallIcons);
    EXPECT_EQ(listStyle(remote::shownPage(opened.main())), LVS_SMALLICON);
    EXPECT_EQ(remote::close(opened.main()), 0u);
  }
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  EXPECT_EQ(listStyle(opened.tables()), LVS_ICON);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  EXPECT_EQ(listStyle(remote::shownPage(opened.main())), LVS_ICON);
}

}  // namespace
