// The List page: its columns and rows, and how its row is chosen.
#include <windows.h>

#include <commctrl.h>

#include "owners/handles.h"
#include "tests/ui/support/ui_test.h"

using testing::ElementsAre;

namespace {

constexpr WORD kFirst = 32778;
constexpr WORD kLast = 32779;
constexpr WORD kPrevious = 32780;
constexpr WORD kNext = 32781;
constexpr WORD kPreviousColumn = 40070;
constexpr WORD kNextColumn = 40071;
constexpr WORD kFitColumns = 40084;

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

}  // namespace
