#include "views/grid/record_list_view.h"

#include <commctrl.h>

#include <set>
#include <string>

#include "base/settings/app_colors.h"
#include "gmock/gmock.h"
#include "owners/live_resources.h"
#include "tests/support/exclusive_lock.h"
#include "tests/ui/lists/record_list_fixture.h"
#include "views/shared/list_view.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

using RecordListViewTest = RecordListFixture;

TEST_F(RecordListViewTest, TheListIsMadeHiddenAboveTheBandAndTheTabs) {
  EXPECT_EQ(
      static_cast<DWORD>(GetWindowLongW(list(), GWL_STYLE)) & ~DWORD{WS_VISIBLE | WS_HSCROLL | WS_VSCROLL},
      0x5001900Du & ~DWORD{WS_VISIBLE});
  EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(list(), GWL_STYLE)) & WS_VISIBLE, 0u);
  EXPECT_EQ(SendMessageW(list(), LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0), LVS_EX_FULLROWSELECT);
  RECT place{};
  GetWindowRect(list(), &place);
  MapWindowPoints(nullptr, host(), reinterpret_cast<POINT*>(&place), 2);
  EXPECT_THAT((std::vector<LONG>{place.left, place.top, place.right, place.bottom}),
              ElementsAre(0, 0, 240, 219));
  EXPECT_FALSE(IsWindowVisible(window()));
  EXPECT_EQ(GetDlgCtrlID(window()), 5);
}

TEST_F(RecordListViewTest, TextsAreCutToTheBufferOfTheList) {
  showTable(L"CREATE TABLE 'T' (a Text)", L"INSERT INTO T VALUES ('abcde')");
  EXPECT_EQ(answer(0, 0, 8), std::wstring(L"abcde\0###", 9));
  EXPECT_EQ(answer(0, 0, 6), std::wstring(L"abcde\0#", 7));
  EXPECT_EQ(answer(0, 0, 5), std::wstring(L"abcd\0#", 6));
  EXPECT_EQ(answer(0, 0, 1), std::wstring(L"\0#", 2));
  EXPECT_EQ(answer(0, 0, 0), L"#");
}

TEST_F(RecordListViewTest, WhatIsNoCellIsNotAnswered) {
  showTable(L"CREATE TABLE 'T' (a Text)", L"INSERT INTO T VALUES ('abcde')");
  EXPECT_EQ(answer(0, 1, 3), L"####");
  EXPECT_EQ(answer(0, -1, 3), L"####");
  EXPECT_EQ(answer(-1, 0, 3), L"####");
  EXPECT_EQ(answer(0, 0, 3, LVIF_IMAGE), L"####");
}

TEST_F(RecordListViewTest, LaterColumnsAreReadFromTheirOwnRow) {
  showFiveFields();
  EXPECT_EQ(answer(0, 0, 3), std::wstring(L"0\0##", 4));
  EXPECT_EQ(answer(1, 2, 3), std::wstring(L"12\0#", 4));
  EXPECT_EQ(answer(0, 1, 3), std::wstring(L"1\0##", 4));
}

TEST_F(RecordListViewTest, AClearedGridIsFilledAgain) {
  showFiveFields();
  ASSERT_THAT(titles(), ElementsAre(L"f0", L"f1", L"f2"));
  ASSERT_EQ(document().closeDatabase(), 0);
  EXPECT_EQ(listview::itemCount(list()), 0);
  ASSERT_TRUE(document().openDatabase(path().c_str()));
  document().setViewMode(ViewMode::list);
  ASSERT_NE(list(), nullptr);
  EXPECT_THAT(titles(), ElementsAre(L"f0", L"f1", L"f2"));
  EXPECT_EQ(listview::itemCount(list()), 2);
  EXPECT_EQ(answer(1, 0, 3), std::wstring(L"10\0#", 4));
  // Visible but for its parent.
  EXPECT_NE(static_cast<DWORD>(GetWindowLongW(list(), GWL_STYLE)) & WS_VISIBLE, 0u);
}

TEST_F(RecordListViewTest, TheColoursAreThoseOfTheTable) {
  appColors[kListViewBackground] = 0x00123456;
  appColors[kListViewText] = 0x00654321;
  showFiveFields();
  EXPECT_EQ(SendMessageW(list(), LVM_GETBKCOLOR, 0, 0), 0x123456);
  EXPECT_EQ(SendMessageW(list(), LVM_GETTEXTBKCOLOR, 0, 0), 0x123456);
  EXPECT_EQ(SendMessageW(list(), LVM_GETTEXTCOLOR, 0, 0), 0x654321);
  resetAppColors();
}

TEST_F(RecordListViewTest, OnlyTheRowThatGainsTheSelectionBecomesCurrent) {
  showFiveFields();
  NMLISTVIEW change{};
  change.hdr = {list(), RecordListView::kListId, LVN_ITEMCHANGED};
  change.iItem = 1;
  change.uChanged = LVIF_STATE;
  change.uOldState = LVIS_SELECTED;
  view().handleNotification(change.hdr);
  EXPECT_EQ(currentRecord, 1u);
  change.iItem = -1;
  change.uNewState = LVIS_SELECTED;
  view().handleNotification(change.hdr);
  EXPECT_EQ(currentRecord, 1u);
  change.iItem = 1;
  view().handleNotification(change.hdr);
  EXPECT_EQ(currentRecord, 2u);
}

TEST_F(RecordListViewTest, UpAndDownStopAtBothEnds) {
  showFiveFields();
  NMLVKEYDOWN key{};
  key.hdr = {list(), RecordListView::kListId, LVN_KEYDOWN};
  const struct {
    WORD key;
    std::uint32_t record;
  } steps[] = {{VK_UP, 1}, {VK_DOWN, 2}, {VK_DOWN, 2}, {VK_HOME, 2}, {VK_UP, 1}, {VK_UP, 1}};
  for (const auto& step : steps) {
    key.wVKey = step.key;
    view().handleNotification(key.hdr);
    EXPECT_EQ(currentRecord, step.record) << step.key;
  }
}

TEST_F(RecordListViewTest, ReportsOfOtherControlsAndWithoutADocumentChangeNothing) {
  showFiveFields();
  NMLVKEYDOWN key{};
  key.hdr = {host(), RecordListView::kListId, LVN_KEYDOWN};
  key.wVKey = VK_DOWN;
  view().handleNotification(key.hdr);
  EXPECT_EQ(currentRecord, 1u);
  view().prepare(nullptr);
  key.hdr.hwndFrom = list();
  view().handleNotification(key.hdr);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(answer(0, 0, 3), L"####");
}

TEST_F(RecordListViewTest, FillingAgainAndAgainKeepsNothing) {
  showFiveFields();
  view().fill();
  const long before = LiveResources::countOfAll();
  for (int i = 0; i < 100; ++i) {
    view().fill();
    view().showNextColumn();
    view().showPreviousColumn();
  }
  EXPECT_EQ(LiveResources::countOfAll(), before);
}

TEST_F(RecordListViewTest, DrawingLeavesTheCurrentRecordWhereItIs) {
  showFiveFields();
  ASSERT_TRUE(document().moveToCurrentRecord());
  EXPECT_EQ(cell(1, 0), L"10");
  EXPECT_EQ(currentRecord, 1u);
  form_.build();
  document().loadRecord();
  EXPECT_EQ(shownOnForm(), L"0");
}

TEST_F(RecordListViewTest, ARecordThatIsGoneIsNotReadableAndThenNoLongerThereWithoutAWord) {
  showFiveFields();
  runStatements(path(), {L"DELETE FROM T WHERE f0 = 10"});
  EXPECT_EQ(cell(1, 0), L"<not readable>");
  EXPECT_EQ(cell(1, 2), L"<not readable>");
  EXPECT_EQ(cell(0, 0), L"0");
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_EQ(listview::itemCount(list()), 1);
  EXPECT_EQ(recordCount, 1u);
  runStatements(path(), {L"DELETE FROM T"});
  EXPECT_EQ(cell(0, 0), L"<not readable>");
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_EQ(listview::itemCount(list()), 0);
}

TEST_F(RecordListViewTest, ARecordThatIsGoneIsToldOnceWhereTheOthersCanNotBeHadNow) {
  showFiveFields();
  runStatements(path(), {L"DELETE FROM T WHERE f0 = 10"});
  EXPECT_EQ(cell(1, 0), L"<not readable>");
  const auto lock = lockExclusively(path().wstring());
  ASSERT_TRUE(lock->isHeld());
  EXPECT_THAT(told(), ElementsAre(StartsWith(L"Records could not be read.\n")));
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(RecordListViewTest, OfATableThatIsGoneNoRowIsReadable) {
  showFiveFields();
  runStatements(path(), {L"DROP TABLE T"});
  for (const int row : {0, 1, 0}) {
    for (const int column : {0, 1, 2}) EXPECT_EQ(cell(row, column), L"<not readable>") << row;
  }
  EXPECT_EQ(told().size(), 1u);
  EXPECT_EQ(cell(1, 2), L"<not readable>");
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(RecordListViewTest, OfATableWithARenamedColumnNoRowIsReadable) {
  showFiveFields();
  EXPECT_EQ(cell(0, 0), L"0");
  runStatements(path(), {L"ALTER TABLE T RENAME COLUMN f1 TO other"});
  EXPECT_EQ(cell(1, 0), L"<not readable>");
  EXPECT_EQ(cell(1, 1), L"<not readable>");
  EXPECT_EQ(told().size(), 1u);
}

TEST_F(RecordListViewTest, WhereOnlyAnotherTableChangedTheRecordsAreOpenedAnew) {
  showFiveFields();
  runStatements(path(), {L"CREATE TABLE 'Other' (a Integer)", L"INSERT INTO T VALUES (20, 21, 22, 23, 24)"});
  cell(0, 0);
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_EQ(cell(0, 0), L"0");
  EXPECT_EQ(cell(1, 1), L"11");
}

TEST_F(RecordListViewTest, BehindALockOneRowIsWaitedForAndNoneIsEmpty) {
  showFiveFields();
  {
    const auto lock = lockExclusively(path().wstring());
    ASSERT_TRUE(lock->isHeld());
    const ULONGLONG before = GetTickCount64();
    EXPECT_EQ(cell(0, 0), L"<not readable>");
    const ULONGLONG oneWait = GetTickCount64() - before;
    EXPECT_GT(oneWait, 1000u);
    for (const int row : {0, 1}) {
      for (const int column : {0, 1, 2}) EXPECT_EQ(cell(row, column), L"<not readable>") << row;
    }
    EXPECT_LT(GetTickCount64() - before, oneWait + 1000);
  }
  // Told, it is tried again at once.
  EXPECT_THAT(told(), ElementsAre(StartsWith(L"Records could not be read.\n")));
  EXPECT_EQ(cell(0, 0), L"0");
  EXPECT_EQ(cell(1, 2), L"12");
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(RecordListViewTest, AHiddenGridTellsNothing) {
  showFiveFields();
  view().hide();
  runStatements(path(), {L"DROP TABLE T"});
  EXPECT_EQ(cell(0, 0), L"<not readable>");
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(RecordListViewTest, AHiddenGridMovesNoRecord) {
  showFiveFields();
  view().hide();
  NMLVKEYDOWN key{};
  key.hdr = {list(), RecordListView::kListId, LVN_KEYDOWN};
  key.wVKey = VK_DOWN;
  view().handleNotification(key.hdr);
  EXPECT_EQ(currentRecord, 1u);
  listview::setItemState(list(), 1, LVIS_SELECTED, LVIS_SELECTED);
  EXPECT_EQ(currentRecord, 1u);
}

TEST_F(RecordListViewTest, AtAnotherZoomAHiddenGridLeavesTheKeyboardWhereItIs) {
  showFiveFields();
  view().hide();
  const HWND other = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, host(), nullptr,
                                     nullptr, nullptr);
  SetFocus(other);
  ASSERT_EQ(GetFocus(), other);
  view().zoomChanged();
  EXPECT_EQ(GetFocus(), other);
}

TEST_F(RecordListViewTest, OfAMillionRowsThoseInViewAreRead) {
  showTable(
      L"CREATE TABLE 'T' (id Integer, name Varchar (255), b Bit)",
      L"INSERT INTO T WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000000) "
      L"SELECT i, 'row ' || i, i % 2 FROM n");
  ASSERT_EQ(listview::itemCount(list()), 1'000'000);
  std::set<int> rowsRead;
  hostWindow().onNotification([&](NMHDR& notification) {
    if (notification.code == LVN_GETDISPINFOW)
      rowsRead.insert(reinterpret_cast<const NMLVDISPINFOW&>(notification).item.iItem);
    view().handleNotification(notification);
  });
  ShowWindow(host(), SW_SHOW);
  const auto inView = static_cast<std::size_t>(SendMessageW(list(), LVM_GETCOUNTPERPAGE, 0, 0));
  for (const int row : {999'999, 0, 500'000, 123'456, 999'990, 1}) {
    rowsRead.clear();
    currentRecord = static_cast<std::uint32_t>(row) + 1;
    view().selectCurrent();
    RedrawWindow(list(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    EXPECT_EQ(rowsRead.count(row), 1u) << row;
    // A row that is cut at the bottom, and what was in view before.
    EXPECT_LE(rowsRead.size(), 2 * inView + 2) << row;
    const std::wstring number = std::to_wstring(row + 1);
    EXPECT_STREQ(answer(row, 0, 32).c_str(), number.c_str());
    EXPECT_STREQ(answer(row, 1, 32).c_str(), (L"row " + number).c_str());
    EXPECT_STREQ(answer(row, 2, 32).c_str(), row % 2 == 0 ? L"True" : L"False");
  }
}

}  // namespace
