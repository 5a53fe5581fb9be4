// The pages of names: the tables and the saved queries.
#include <windows.h>

#include <commctrl.h>

#include "tests/shell/shell_settings.h"
#include "tests/ui/support/ui_test.h"

using testing::ElementsAre;

namespace {

constexpr int kNamesListId = 61206;
constexpr WORD kLargeIcons = 40061;
constexpr WORD kSmallIcons = 40062;
constexpr WORD kList = 40063;
constexpr WORD kReport = 40064;

DWORD listStyle(HWND list) {
  return static_cast<DWORD>(GetWindowLongW(list, GWL_STYLE)) & static_cast<DWORD>(LVS_TYPEMASK);
}

class TablesPageTest : public UiTest {};

TEST_F(TablesPageTest, ListsTheTablesInTheOrderOfTheCatalogue) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'Zebras' (a Integer)", L"CREATE TABLE 'Apples' (a Integer)",
                               L"CREATE TABLE 'My Table' (a Integer)"});
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  EXPECT_THAT(remote::itemTexts(opened.tables()), ElementsAre(L"Zebras", L"Apples", L"My Table"));
  EXPECT_EQ(remote::selectedItem(opened.tables()), 0);
  EXPECT_EQ(remote::selectedTab(remote::tabControl(opened.main())), 0);
}

TEST_F(TablesPageTest, AnEmptyDatabaseHasAnEmptyPage) {
  makeDatabase(file("a.cdb"), {});
  RunningProgram program(quoted(file("a.cdb")));
  const HWND main = program.mainWindow();
  ASSERT_NE(main, nullptr);
  // Before that the grid is shown for a moment.
  ASSERT_TRUE(remote::awaitStarted(main));
  HWND page = nullptr;
  ASSERT_TRUE(remote::waitUntil([&] { return (page = remote::shownPage(main)) != nullptr; }));
  EXPECT_EQ(GetDlgCtrlID(page), kNamesListId);
  EXPECT_EQ(remote::itemCount(page), 0);
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(TablesPageTest, TheMainWindowWaitsForAMessageThatHasNoOwner) {
  constexpr WORD kDeleteRecord = 40001;
  RunningProgram program(L"");
  const HWND main = program.mainWindow();
  ASSERT_NE(main, nullptr);
  ASSERT_TRUE(remote::waitUntil([&] { return remote::tabControl(main) != nullptr; }));
  PostMessageW(main, WM_COMMAND, kDeleteRecord, 0);
  const HWND box = program.messageBox();
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(remote::messageBoxText(box), L"Cannot delete a record when a database is not open!");
  EXPECT_EQ(GetWindow(box, GW_OWNER), nullptr);
  EXPECT_FALSE(IsWindowEnabled(main));
  SendMessageW(box, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(remote::waitUntil([&] { return IsWindowEnabled(main) != FALSE; }));
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(TablesPageTest, TheStyleCommandsChangeTheView) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'One' (a Integer)"});
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  EXPECT_EQ(listStyle(opened.tables()), DWORD{LVS_ICON});
  sendCommand(opened.main(), kSmallIcons);
  EXPECT_EQ(listStyle(opened.tables()), DWORD{LVS_SMALLICON});
  sendCommand(opened.main(), kSmallIcons);
  EXPECT_EQ(listStyle(opened.tables()), DWORD{LVS_SMALLICON});
  sendCommand(opened.main(), kList);
  EXPECT_EQ(listStyle(opened.tables()), DWORD{LVS_LIST});
  sendCommand(opened.main(), kReport);
  EXPECT_EQ(listStyle(opened.tables()), DWORD{LVS_REPORT});
  sendCommand(opened.main(), kLargeIcons);
  EXPECT_EQ(listStyle(opened.tables()), DWORD{LVS_ICON});
}

TEST_F(TablesPageTest, TheStyleCommandsChangeNothingOnOtherPages) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'One' (a Integer)"});
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
  sendCommand(opened.main(), kList);
  EXPECT_EQ(listStyle(opened.tables()), DWORD{LVS_ICON});
}

TEST_F(TablesPageTest, NoScrollBarAcrossStaysAfterAZoomAndBack) {
  makeDatabase(file("many.cdb"), {L"CREATE TABLE 'A' (a Integer)", L"CREATE TABLE 'B' (a Integer)",
                                  L"CREATE TABLE 'C' (a Integer)", L"CREATE TABLE 'D' (a Integer)",
                                  L"CREATE TABLE 'E' (a Integer)", L"CREATE TABLE 'F' (a Integer)",
                                  L"CREATE TABLE 'G' (a Integer)", L"CREATE TABLE 'H' (a Integer)"});
  OpenedDatabase opened(file("many.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  const auto scrollBars = [&] {
    return GetWindowLongW(opened.tables(), GWL_STYLE) & (WS_HSCROLL | WS_VSCROLL);
  };
  EXPECT_EQ(scrollBars(), WS_VSCROLL);
  for (const WPARAM zoom : {kZoom200, kZoom100}) {
    SendMessageW(opened.main(), WM_SYSCOMMAND, zoom, 0);
    EXPECT_EQ(scrollBars() & WS_HSCROLL, 0) << std::hex << zoom;
  }
}

class QueriesPageTest : public UiTest {
 protected:
  void SetUp() override {
    makeDatabase(file("q.cdb"),
                 {L"CREATE TABLE 'T' (a Integer)", L"INSERT INTO T VALUES (1)", L"INSERT INTO T VALUES (2)",
                  L"INSERT INTO T VALUES (3)", L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)",
                  L"INSERT INTO QuivaneQueries VALUES ('second', 'Select * from T where a > 2')",
                  L"INSERT INTO QuivaneQueries VALUES ('first', 'Select * from T where a < 3')",
                  L"INSERT INTO QuivaneQueries VALUES ('unreadable', 'Select from where')"});
  }
};

TEST_F(QueriesPageTest, ListsTheSavedQueriesByName) {
  OpenedDatabase opened(file("q.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  const HWND queries = remote::shownPage(opened.main());
  EXPECT_NE(queries, opened.tables());
  EXPECT_THAT(remote::itemTexts(queries), ElementsAre(L"first", L"second", L"unreadable"));
  EXPECT_EQ(remote::selectedItem(queries), 0);
}

TEST_F(QueriesPageTest, AChosenQuerysRowsBecomeTheRecords) {
  OpenedDatabase opened(file("q.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  ASSERT_TRUE(remote::selectItem(remote::shownPage(opened.main()), 1));
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  EXPECT_THAT(remote::itemTexts(remote::recordGrid(opened.main())), ElementsAre(L"3"));
}

TEST_F(QueriesPageTest, ATapOnTheQueryThatIsSelectedAlreadyChoosesIt) {
  OpenedDatabase opened(file("q.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  ASSERT_TRUE(remote::clickItem(remote::shownPage(opened.main()), 0));
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  EXPECT_THAT(remote::itemTexts(remote::recordGrid(opened.main())), ElementsAre(L"1", L"2"));
}

TEST_F(QueriesPageTest, AKeyThatGoesToTheQueryThatIsSelectedAlreadyChoosesIt) {
  OpenedDatabase opened(file("q.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  const HWND queries = remote::shownPage(opened.main());
  remote::pressKey(queries, VK_HOME);
  constexpr WPARAM kFromTheBeginning = static_cast<WPARAM>(-1);
  ASSERT_TRUE(remote::waitUntil(
      [&] { return SendMessageW(queries, LVM_GETNEXTITEM, kFromTheBeginning, LVNI_FOCUSED) == 0; }));
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  EXPECT_THAT(remote::itemTexts(remote::recordGrid(opened.main())), ElementsAre(L"1", L"2"));
}

TEST_F(QueriesPageTest, SpaceChoosesTheTableThatIsSelectedAndFocusedAlready) {
  OpenedDatabase opened(file("q.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  remote::pressKey(opened.tables(), VK_HOME);
  constexpr WPARAM kFromTheBeginning = static_cast<WPARAM>(-1);
  ASSERT_TRUE(remote::waitUntil(
      [&] { return SendMessageW(opened.tables(), LVM_GETNEXTITEM, kFromTheBeginning, LVNI_FOCUSED) == 0; }));
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  ASSERT_TRUE(remote::selectItem(remote::shownPage(opened.main()), 1));
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kTablesPage));
  remote::pressKey(opened.tables(), VK_SPACE);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  EXPECT_THAT(remote::itemTexts(remote::recordGrid(opened.main())), ElementsAre(L"1", L"2", L"3"));
}

TEST_F(QueriesPageTest, ATapOnTheSelectedTableLeadsBackToItsRecords) {
  OpenedDatabase opened(file("q.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  ASSERT_TRUE(remote::selectItem(remote::shownPage(opened.main()), 1));
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kTablesPage));
  ASSERT_TRUE(remote::clickItem(opened.tables(), 0));
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  EXPECT_THAT(remote::itemTexts(remote::recordGrid(opened.main())), ElementsAre(L"1", L"2", L"3"));
}

TEST_F(QueriesPageTest, AQueryThatDoesNotRunLeavesTheListPageEmpty) {
  OpenedDatabase opened(file("q.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  ASSERT_TRUE(remote::selectItem(remote::shownPage(opened.main()), 2));
  const HWND tab = remote::tabControl(opened.main());
  ASSERT_TRUE(remote::clickTab(tab, OpenedDatabase::kListPage));
  EXPECT_TRUE(remote::waitUntil([&] { return remote::shownPage(opened.main()) == nullptr; }));
  // And back at a table everything is as ever.
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kTablesPage));
  ASSERT_TRUE(remote::clickItem(opened.tables(), 0));
  EXPECT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
}

}  // namespace
