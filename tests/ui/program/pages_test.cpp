// The pages of the window and what they show.
#include <windows.h>

#include <commctrl.h>

#include "base/settings/app_colors.h"
#include "base/settings/options.h"
#include "base/settings/settings_store.h"
#include "owners/handles.h"
#include "tests/shell/shell_settings.h"
#include "tests/ui/support/ui_test.h"

using testing::ElementsAre;

namespace {

constexpr int kNamesListId = 61206;
constexpr WORD kFirst = 32778;
constexpr WORD kLast = 32779;
constexpr WORD kPrevious = 32780;
constexpr WORD kNext = 32781;
constexpr WORD kLargeIcons = 40061;
constexpr WORD kSmallIcons = 40062;
constexpr WORD kList = 40063;
constexpr WORD kReport = 40064;
constexpr WORD kPreviousColumn = 40070;
constexpr WORD kNextColumn = 40071;
constexpr WORD kFitColumns = 40084;

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

class ListPageTest : public UiTest {};

TEST_F(ListPageTest, ATapOnATableAndOnTheListTabShowsItsRecords) {
  makeDatabase(file("a.cdb"),
               {L"CREATE TABLE 'One' (a Integer)", L"CREATE TABLE 'Two' (Name Varchar (255), Age Integer)",
                L"INSERT INTO Two VALUES ('Ada', 36)", L"INSERT INTO Two VALUES ('Kurt', 71)"});
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::clickItem(opened.tables(), 1));
  ASSERT_TRUE(remote::waitUntil([&] { return remote::selectedItem(opened.tables()) == 1; }));
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  const HWND grid = remote::recordGrid(opened.main());
  ASSERT_TRUE(IsWindowVisible(grid));
  EXPECT_FALSE(IsWindowVisible(opened.tables()));
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"Name", L"Age"));
  ASSERT_EQ(remote::itemCount(grid), 2);
  EXPECT_THAT(rowTexts(grid, 0), ElementsAre(L"Ada", L"36"));
  EXPECT_THAT(rowTexts(grid, 1), ElementsAre(L"Kurt", L"71"));
  EXPECT_EQ(remote::selectedItem(grid), 0);
}

TEST_F(ListPageTest, ATableWithOneFieldShowsOneColumn) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer)", L"INSERT INTO T VALUES (7)"});
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"a"));
  EXPECT_THAT(rowTexts(grid, 0), ElementsAre(L"7"));
  sendCommand(opened.main(), kNextColumn);
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"a"));
}

TEST_F(ListPageTest, ATableWithTwoFieldsShowsTwoColumnsThatDoNotSlide) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer, b Integer)"});
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"a", L"b"));
  sendCommand(opened.main(), kNextColumn);
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"a", L"b"));
}

TEST_F(ListPageTest, OfFiveFieldsTwoSlideBehindTheFirst) {
  makeDatabase(file("a.cdb"),
               {L"CREATE TABLE 'T' (f0 Integer, f1 Integer, f2 Integer, f3 Integer, f4 Integer)",
                L"INSERT INTO T VALUES (0, 1, 2, 3, 4)"});
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  sendCommand(opened.main(), kPreviousColumn);
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"f0", L"f1", L"f2"));
  sendCommand(opened.main(), kNextColumn);
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"f0", L"f2", L"f3"));
  EXPECT_THAT(rowTexts(grid, 0), ElementsAre(L"0", L"2", L"3"));
  sendCommand(opened.main(), kNextColumn);
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"f0", L"f3", L"f4"));
  sendCommand(opened.main(), kNextColumn);
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"f0", L"f3", L"f4"));
  sendCommand(opened.main(), kPreviousColumn);
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"f0", L"f2", L"f3"));
  EXPECT_THAT(rowTexts(grid, 0), ElementsAre(L"0", L"2", L"3"));
}

TEST_F(ListPageTest, AnotherTableStartsWithItsFirstFields) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (f0 Integer, f1 Integer, f2 Integer, f3 Integer)",
                               L"CREATE TABLE 'U' (g0 Integer, g1 Integer, g2 Integer, g3 Integer)"});
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  sendCommand(opened.main(), kNextColumn);
  ASSERT_THAT(columnTitles(grid), ElementsAre(L"f0", L"f2", L"f3"));
  ASSERT_NE(opened.showRecords(1), nullptr);
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"g0", L"g1", L"g2"));
}

TEST_F(ListPageTest, EveryColumnIs75WideWhateverItsTitle) {
  makeDatabase(file("a.cdb"),
               {L"CREATE TABLE 'T' (a Integer, ThirtyCharactersLongFieldName0 Integer, c Integer)"});
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  ASSERT_EQ(remote::columnCount(grid), 3);
  for (int column = 0; column < 3; ++column) EXPECT_EQ(remote::columnWidth(grid, column), 75);
}

TEST_F(ListPageTest, ColumnsAreFittedToTheirTexts) {
  makeDatabase(file("a.cdb"),
               {L"CREATE TABLE 'T' (a Varchar (255), b Integer)",
                L"INSERT INTO T VALUES ('a text that is much longer than a column is wide', 1)"});
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  sendCommand(opened.main(), kFitColumns);
  EXPECT_GT(remote::columnWidth(grid, 0), 150);
  EXPECT_LT(remote::columnWidth(grid, 1), 75);
}

TEST_F(ListPageTest, BooleansReadTrueAndFalse) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (id Integer, b Bit)", L"INSERT INTO T VALUES (1, 1)",
                               L"INSERT INTO T VALUES (2, 0)", L"INSERT INTO T VALUES (3, NULL)"});
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  EXPECT_THAT(remote::itemTexts(grid, 1), ElementsAre(L"True", L"False", L"False"));
}

TEST_F(ListPageTest, ATextLongerThanTheCellIsCut) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Text)",
                               L"INSERT INTO T VALUES (replace(hex(zeroblob(10000)), '00', 'xy'))"});
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  const std::wstring text = remote::itemText(grid, 0);
  EXPECT_GE(text.size(), 100u);
  EXPECT_LT(text.size(), 20000u);
  EXPECT_EQ(text.substr(0, 6), L"xyxyxy");
}

TEST_F(ListPageTest, AnEmptyTableShowsColumnsAndNoRows) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer, b Integer)"});
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  EXPECT_EQ(remote::itemCount(grid), 0);
  for (const WORD move : {kFirst, kLast, kNext, kPrevious}) {
    sendCommand(opened.main(), move);
    EXPECT_EQ(remote::selectedItem(grid), -1);
  }
}

class GridMoveTest : public UiTest {
 protected:
  void SetUp() override {
    makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer)", L"INSERT INTO T VALUES (10)",
                                 L"INSERT INTO T VALUES (20)", L"INSERT INTO T VALUES (30)",
                                 L"CREATE TABLE 'U' (u Integer)", L"INSERT INTO U VALUES (1)"});
  }

  /// Presses a key in the grid. Keys are answered in order, so that the row is that behind all of them.
  static void press(HWND grid, WORD key) { remote::pressKey(grid, key); }
  static bool comesTo(HWND grid, int row) {
    return remote::waitUntil([=] { return remote::selectedItem(grid) == row; });
  }
};

TEST_F(GridMoveTest, TheMoveCommandsChooseRows) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  const struct {
    WORD command;
    int row;
  } steps[] = {{kPrevious, 0}, {kNext, 1}, {kNext, 2}, {kNext, 2}, {kPrevious, 1}, {kFirst, 0}, {kLast, 2}};
  for (const auto& step : steps) {
    sendCommand(opened.main(), step.command);
    EXPECT_EQ(remote::selectedItem(grid), step.row) << step.command;
  }
}

TEST_F(GridMoveTest, TheMoveCommandsChangeNothingOnOtherPages) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kTablesPage));
  sendCommand(opened.main(), kNext);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  EXPECT_EQ(remote::selectedItem(grid), 0);
}

TEST_F(GridMoveTest, TheArrowKeysChooseRowsAndStopAtBothEnds) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  press(grid, VK_UP);
  press(grid, VK_DOWN);
  EXPECT_TRUE(comesTo(grid, 1));
  press(grid, VK_DOWN);
  EXPECT_TRUE(comesTo(grid, 2));
  press(grid, VK_DOWN);
  press(grid, VK_UP);
  EXPECT_TRUE(comesTo(grid, 1));
  // The commands go on from where the keys have led.
  sendCommand(opened.main(), kNext);
  EXPECT_EQ(remote::selectedItem(grid), 2);
}

TEST_F(GridMoveTest, ATapChoosesTheRowThatTheCommandsGoOnFrom) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  ASSERT_TRUE(remote::clickItem(grid, 1));
  EXPECT_TRUE(comesTo(grid, 1));
  sendCommand(opened.main(), kNext);
  EXPECT_EQ(remote::selectedItem(grid), 2);
}

TEST_F(GridMoveTest, AWindowThatGetsTheKeyboardBeforeItIsRestoredGivesItToTheGrid) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  const UniqueWindow other(CreateWindowExW(0, L"STATIC", L"another program", WS_OVERLAPPED | WS_VISIBLE, 0, 0,
                                           50, 50, nullptr, nullptr, nullptr, nullptr));
  SetForegroundWindow(other.get());
  ASSERT_TRUE(remote::waitUntil([&] { return remote::focus(opened.main()) == nullptr; }));
  ShowWindow(opened.main(), SW_SHOWMINNOACTIVE);
  ASSERT_TRUE(remote::waitUntil([&] { return IsIconic(opened.main()) != FALSE; }));
  SetForegroundWindow(opened.main());
  ASSERT_TRUE(remote::waitUntil([&] { return remote::focus(opened.main()) == opened.main(); }));
  ShowWindow(opened.main(), SW_RESTORE);
  EXPECT_TRUE(remote::waitUntil([&] { return remote::focus(opened.main()) == grid; }));
}

TEST_F(GridMoveTest, WhoComesBackToTheWindowGoesOnInTheGrid) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  ASSERT_EQ(remote::focus(opened.main()), grid);
  const UniqueWindow other(CreateWindowExW(0, L"STATIC", L"another program", WS_OVERLAPPED | WS_VISIBLE, 0, 0,
                                           50, 50, nullptr, nullptr, nullptr, nullptr));
  SetForegroundWindow(other.get());
  ASSERT_TRUE(remote::waitUntil([&] { return remote::focus(opened.main()) == nullptr; }));
  SetForegroundWindow(opened.main());
  EXPECT_TRUE(remote::waitUntil([&] { return remote::focus(opened.main()) == grid; }));
}

TEST_F(GridMoveTest, ThePlaceIsKeptWhileTheSameTableIsShown) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  sendCommand(opened.main(), kLast);
  ASSERT_NE(opened.showRecords(0), nullptr);
  EXPECT_EQ(remote::selectedItem(grid), 2);
}

TEST_F(GridMoveTest, AnotherTableStartsAtItsFirstRecord) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  sendCommand(opened.main(), kLast);
  ASSERT_NE(opened.showRecords(1), nullptr);
  EXPECT_THAT(remote::itemTexts(grid), ElementsAre(L"1"));
  EXPECT_EQ(remote::selectedItem(grid), 0);
}

class LongTableTest : public UiTest {
 protected:
  static constexpr int kRowCount = 100'000;

  void SetUp() override {
    makeDatabase(
        file("long.cdb"),
        {L"CREATE TABLE 'T' (id Integer, name Varchar (255), b Bit, x Float)",
         L"INSERT INTO T WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000) "
         L"SELECT i, 'row ' || i, i % 2, i / 4.0 FROM n"});
  }
};

TEST_F(LongTableTest, TheLastOfAHundredThousandRowsIsShown) {
  OpenedDatabase opened(file("long.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  ASSERT_EQ(remote::itemCount(grid), kRowCount);
  remote::ensureVisible(grid, kRowCount - 1);
  EXPECT_TRUE(remote::isRowInView(grid, kRowCount - 1));
  EXPECT_THAT(rowTexts(grid, kRowCount - 1), ElementsAre(L"100000", L"row 100000", L"False"));
  EXPECT_THAT(rowTexts(grid, 0), ElementsAre(L"1", L"row 1", L"True"));
}

TEST_F(LongTableTest, RowsAreReadInAnyOrderAndColumnByColumn) {
  OpenedDatabase opened(file("long.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  for (const int row : {99'999, 0, 50'000, 49'999, 50'001, 1, 12'345}) {
    // The later column first: it must not show the row that was read before.
    EXPECT_EQ(remote::itemText(grid, row, 1), L"row " + std::to_wstring(row + 1));
    EXPECT_EQ(remote::itemText(grid, row, 0), std::to_wstring(row + 1));
  }
}

TEST_F(LongTableTest, TheLastCommandScrollsToTheEnd) {
  OpenedDatabase opened(file("long.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  sendCommand(opened.main(), kLast);
  EXPECT_EQ(remote::selectedItem(grid), kRowCount - 1);
  EXPECT_TRUE(remote::isRowInView(grid, kRowCount - 1));
  sendCommand(opened.main(), kFirst);
  EXPECT_EQ(remote::selectedItem(grid), 0);
  EXPECT_TRUE(remote::isRowInView(grid, 0));
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
