#include "views/grid/record_list_view.h"

#include <commctrl.h>

#include <set>
#include <string>
#include <utility>

#include "base/settings/app_colors.h"
#include "gmock/gmock.h"
#include "owners/live_resources.h"
#include "tests/support/exclusive_lock.h"
#include "tests/support/paths.h"
#include "tests/ui/support/fake_pages.h"
#include "tests/ui/support/host_window.h"
#include "tests/ui/support/test_database.h"
#include "views/shared/list_view.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class RecordListViewTest : public testing::Test {
 protected:
  void SetUp() override {
    RecordListView::registerClass(GetModuleHandleW(nullptr));  // fails but for the first test
    ASSERT_NE(host_.get(), nullptr);
    host_.onNotification([this](NMHDR& notification) { view_.handleNotification(notification); });
    window_ = view_.create(GetModuleHandleW(nullptr), host_.get(), RECT{2, 24, 242, 241});
    ASSERT_NE(window_, nullptr);
    ASSERT_NE(list(), nullptr);
  }
  void TearDown() override {
    view_.prepare(nullptr);
    document_.reset();
  }

  /// Opens a database with table T and shows the List page.
  void showTable(const wchar_t* createTable, const wchar_t* insert) {
    makeDatabase(path_, {createTable, insert});
    document_ = std::make_unique<Document>(DocumentPages{std::make_unique<FakeTables>(inSight_),
                                                         std::make_unique<FakeQueries>(inSight_), view_,
                                                         form_, bar_, prompts_});
    form_.document = document_.get();
    view_.prepare(document_.get());
    ASSERT_TRUE(document_->openDatabase(path_.c_str()));
    document_->setViewMode(ViewMode::list);
    ASSERT_TRUE(document_->isRecordsetOpen());
  }
  void showFiveFields() {
    showTable(L"CREATE TABLE 'T' (f0 Integer, f1 Integer, f2 Integer, f3 Integer, f4 Integer)",
              L"INSERT INTO T VALUES (0, 1, 2, 3, 4), (10, 11, 12, 13, 14)");
  }

  std::vector<std::wstring> titles() {
    std::vector<std::wstring> result;
    const HWND header = listview::header(list());
    for (int column = 0; column < SendMessageW(header, HDM_GETITEMCOUNT, 0, 0); ++column) {
      wchar_t text[80] = L"";
      LVCOLUMNW description{};
      description.mask = LVCF_TEXT;
      description.pszText = text;
      description.cchTextMax = ARRAYSIZE(text);
      SendMessageW(list(), LVM_GETCOLUMNW, static_cast<WPARAM>(column),
                   reinterpret_cast<LPARAM>(&description));
      result.emplace_back(text);
    }
    return result;
  }

  /// What the grid puts into a buffer of so many characters, the one behind it included, for a cell.
  /// The buffer holds '#' before.
  std::wstring answer(int row, int column, int capacity, UINT mask = LVIF_TEXT) {
    std::wstring buffer(64, L'#');
    NMLVDISPINFOW question{};
    question.hdr = {list(), RecordListView::kListId, LVN_GETDISPINFOW};
    question.item.mask = mask;
    question.item.iItem = row;
    question.item.iSubItem = column;
    question.item.pszText = buffer.data();
    question.item.cchTextMax = capacity;
    view_.handleNotification(question.hdr);
    EXPECT_EQ(question.item.pszText, buffer.data()) << "the buffer is the list's own";
    return buffer.substr(0, static_cast<std::size_t>(capacity) + 1);
  }

  RecordListView& view() { return view_; }
  Document& document() { return *document_; }
  const std::filesystem::path& path() const { return path_; }
  FakePrompts& prompts() { return prompts_; }
  HWND host() const { return host_.get(); }
  HostWindow& hostWindow() { return host_; }
  HWND window() const { return window_; }
  HWND list() const { return GetDlgItem(host(), RecordListView::kListId); }
  /// The first field of the record that was loaded.
  std::wstring shownOnForm() const { return form_.fields.empty() ? L"(none)" : form_.fields.front().shown; }
  std::wstring cell(int row, int column) { return answer(row, column, 32).c_str(); }
  /// What the grid has told since the last time, with the posted telling done.
  std::vector<std::wstring> told() {
    MSG message{};
    while (PeekMessageW(&message, list(), WM_APP, WM_APP, PM_REMOVE)) DispatchMessageW(&message);
    return prompts_.takeTexts();
  }

  PagesInSight inSight_;
  FakeForm form_{inSight_};

 private:
  testsupport::TempFolder folder_;
  std::filesystem::path path_ = folder_.file("grid.cdb");
  HostWindow host_;
  RecordListView view_;
  FakeBar bar_;
  FakePrompts prompts_;
  std::unique_ptr<Document> document_;
  HWND window_ = nullptr;
};

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

// ---- What a cell refers to

class CellTipsTest : public RecordListViewTest {
 protected:
  /// The tooltip window of the list; null when there is none.
  HWND tipWindow() const {
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, TOOLTIPS_CLASSW, nullptr)) != nullptr) {
      DWORD process = 0;
      GetWindowThreadProcessId(window, &process);
      TTTOOLINFOW tool{};
      tool.cbSize = TTTOOLINFOW_V1_SIZE;
      if (process != GetCurrentProcessId()) continue;
      if (SendMessageW(window, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool)) && tool.hwnd == list()) {
        return window;
      }
    }
    return nullptr;
  }
  RECT placeOf(int row, int column) const {
    RECT place{};
    place.top = column;
    place.left = column == 0 ? LVIR_LABEL : LVIR_BOUNDS;
    SendMessageW(list(), LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    return place;
  }
  std::wstring tipAt(POINT place) const {
    SendMessageW(list(), WM_MOUSEMOVE, 0, MAKELPARAM(place.x, place.y));
    NMTTDISPINFOW question{};
    question.hdr = {tipWindow(), 0, static_cast<UINT>(TTN_GETDISPINFOW)};
    SendMessageW(list(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&question));
    return question.lpszText ? question.lpszText : L"(none)";
  }
  std::wstring tipOf(int row, int column) const {
    const RECT place = placeOf(row, column);
    return tipAt({(place.left + place.right) / 2, (place.top + place.bottom) / 2});
  }
};

TEST_F(CellTipsTest, ACellTellsTheNameOfTheRecordToWhichItRefers) {
  showTable(L"CREATE TABLE 'T' (Id Integer PRIMARY KEY, Up Integer REFERENCES T, Name Text)",
            L"INSERT INTO T VALUES (1, NULL, 'root'), (2, 1, 'leaf')");
  ASSERT_NE(tipWindow(), nullptr);
  EXPECT_EQ(tipOf(1, 1), L"root");
  EXPECT_EQ(cell(1, 1), L"1") << "never in its place";
  EXPECT_EQ(tipOf(0, 1), L"") << "it refers to none";
  EXPECT_EQ(tipOf(1, 0), L"");
  EXPECT_EQ(tipOf(1, 2), L"");
  EXPECT_EQ(tipOf(1, 1), L"root");
  EXPECT_EQ(tipAt({placeOf(1, 1).left + 2, 5000}), L"") << "below the rows";
  view().prepare(nullptr);
  EXPECT_EQ(tipOf(1, 1), L"") << "the document has ended";
}

TEST_F(CellTipsTest, TheTooltipIsThatOfTheCellUnderTheMouseAlone) {
  showTable(L"CREATE TABLE 'T' (Id Integer PRIMARY KEY, Up Integer REFERENCES T, Name Text)",
            L"INSERT INTO T VALUES (1, NULL, 'root'), (2, 1, 'leaf')");
  tipOf(1, 1);
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;
  tool.hwnd = list();
  ASSERT_TRUE(SendMessageW(tipWindow(), TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&tool)));
  const RECT place = placeOf(1, 1);
  EXPECT_TRUE(EqualRect(&tool.rect, &place));
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

// ---- What is typed

class TypedRowTest : public RecordListViewTest {
 protected:
  void showNames() {
    showTable(L"CREATE TABLE 'T' (t Text, n Integer)",
              L"INSERT INTO T VALUES ('Ada', 7), ('nobody', 40), ('Bob', 41), ('\u00C9mile', 5), "
              L"('bo', 6), (NULL, 400)");
  }
  int find(const wchar_t* typed, int first, UINT flags = LVFI_PARTIAL | LVFI_WRAP) {
    NMLVFINDITEMW search{};
    search.hdr = {list(), RecordListView::kListId, LVN_ODFINDITEMW};
    search.iStart = first;
    search.lvfi.flags = flags;
    search.lvfi.psz = typed;
    return static_cast<int>(view().handleNotification(search.hdr));
  }
};

TEST_F(TypedRowTest, IsTheNextOneWhoseFirstFieldBeginsWithIt) {
  showNames();
  EXPECT_EQ(find(L"b", 0), 2);
  EXPECT_EQ(find(L"B", 2), 2);
  EXPECT_EQ(find(L"b", 3), 4);
  EXPECT_EQ(find(L"bob", 0), 2);
  EXPECT_EQ(find(L"\u00E9", 0), 3) << "another letter case";
}

TEST_F(TypedRowTest, IsLookedForFromTheFirstOneOnAfterTheLast) {
  showNames();
  EXPECT_EQ(find(L"a", 1), 0);
  EXPECT_EQ(find(L"bob", 3), 2);
  EXPECT_EQ(find(L"n", 6), 1) << "behind the last row";
}

TEST_F(TypedRowTest, IsNoneWhereNothingBeginsWithIt) {
  showNames();
  EXPECT_EQ(find(L"ob", 0), -1) << "in the midst of texts";
  EXPECT_EQ(find(L"7", 0), -1) << "in another field";
  EXPECT_EQ(find(L"", 0), -1);
  EXPECT_EQ(find(L"b", 0, LVFI_PARAM), -1) << "not by text";
}

TEST_F(TypedRowTest, LeavesTheCurrentRecordWhereItIs) {
  showNames();
  const auto current = currentRecord;
  EXPECT_EQ(find(L"bo", 3), 4);
  EXPECT_EQ(currentRecord, current);
  EXPECT_EQ(cell(0, 0), L"Ada");
}

TEST_F(TypedRowTest, IsFoundByWhatIsShownOfNumbersToo) {
  showTable(L"CREATE TABLE 'T' (n Integer, t Text)",
            L"INSERT INTO T VALUES (7, 'x'), (40, 'x'), (-4, 'x'), (4, 'x')");
  EXPECT_EQ(find(L"4", 0), 1);
  EXPECT_EQ(find(L"4", 2), 3);
  EXPECT_EQ(find(L"-", 0), 2);
}

TEST_F(TypedRowTest, IsNotTakenForMissingWhereRowsCantBeRead) {
  showNames();
  bool isFirst = true;
  prompts().goesOnSearching = [&](std::uint32_t, std::uint32_t) {
    if (std::exchange(isFirst, false)) runStatements(path(), {L"DROP TABLE T"});
    return true;
  };
  EXPECT_EQ(find(L"b", 0), -1);
  EXPECT_FALSE(isFirst);
  EXPECT_THAT(told(), ElementsAre(StartsWith(L"Records could not be read.\n")));
}

TEST_F(TypedRowTest, IsFoundBehindOneThatIsGone) {
  showNames();
  runStatements(path(), {L"DELETE FROM T WHERE t = 'Ada'"});
  EXPECT_EQ(find(L"b", 0), 2);
}

TEST_F(TypedRowTest, IsFoundAmongVeryManyAndTheUserCanStopThat) {
  showTable(L"CREATE TABLE 'T' (t Text)",
            L"WITH RECURSIVE s(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM s LIMIT 30000) "
            L"INSERT INTO T SELECT CASE n WHEN 29000 THEN 'zebra' ELSE 'a zoo ' || n END FROM s");
  EXPECT_EQ(find(L"ze", 1), 28'999);
  std::uint32_t furthest = 0;
  prompts().goesOnSearching = [&](std::uint32_t tested, std::uint32_t all) {
    EXPECT_EQ(all, 30'000u);
    furthest = tested;
    return tested < 100;
  };
  EXPECT_EQ(find(L"zo", 0), -1) << "it is in each, but at no beginning";
  EXPECT_EQ(furthest, 100u);
  // The store may be the one that hears of the key, in the midst of a statement.
  furthest = 0;
  bool isPressed = false;
  prompts().goesOnSearching = [&](std::uint32_t tested, std::uint32_t) {
    furthest = tested;
    return true;
  };
  prompts().goesOnBusy = [&](Progress::What) { return std::exchange(isPressed, true); };
  EXPECT_EQ(find(L"zo", 0), -1);
  EXPECT_TRUE(isPressed) << "the store did not ask";
  EXPECT_LT(furthest, 30'000u);
}

}  // namespace
