// What the dialogs of the real program make of a window larger than the handheld's.
#include <windows.h>

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "base/settings/settings_store.h"
#include "tests/shell/shell_settings.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/support/ui_test.h"

namespace {

constexpr SIZE kHandheld = {240, 294};
constexpr SIZE kLarger = {611, 523};
constexpr LONG kWider = kLarger.cx - kHandheld.cx;
constexpr LONG kHigher = kLarger.cy - kHandheld.cy;

/// By how much the edges of a control move with a larger window.
struct Move {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};
constexpr Move kStays = {0, 0, 0, 0};
constexpr Move kGetsWider = {0, 0, kWider, 0};
constexpr Move kGrows = {0, 0, kWider, kHigher};
constexpr Move kGoesRight = {kWider, 0, kWider, 0};
constexpr Move kGoesDown = {0, kHigher, 0, kHigher};
constexpr Move kGoesAlong = {kWider, kHigher, kWider, kHigher};

using Moves = std::map<int, Move>;

class DialogSizesTest : public UiTest {
 protected:
  void SetUp() override {
    setHandheldSize(false);
    makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Text)", L"INSERT INTO T VALUES ('one')"});
  }
  void TearDown() override {
    forgetShellSettings();
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  }

  static HWND open(HWND main, int command, const wchar_t* title) {
    PostMessageW(main, WM_COMMAND, static_cast<WPARAM>(command), 0);
    return remote::waitForDialog(main, title) ? remote::frontWindow(main) : nullptr;
  }
  static void leave(HWND main, HWND dialog) {
    PostMessageW(dialog, WM_CLOSE, 0, 0);
    EXPECT_TRUE(remote::waitForMain(main));
  }

  static std::map<int, RECT> places(HWND dialog, const Moves& moves) {
    std::map<int, RECT> all;
    for (const auto& [id, move] : moves) {
      const HWND control = remote::control(dialog, id);
      EXPECT_NE(control, nullptr) << id;
      all[id] = remote::placeIn(control, dialog);
    }
    return all;
  }

  static void expectMoved(const std::map<int, RECT>& from, const std::map<int, RECT>& to,
                          const Moves& moves) {
    for (const auto& [id, move] : moves) {
      const RECT& before = from.at(id);
      const RECT& after = to.at(id);
      EXPECT_EQ(after.left - before.left, move.left) << id;
      EXPECT_EQ(after.top - before.top, move.top) << id;
      EXPECT_EQ(after.right - before.right, move.right) << id;
      EXPECT_EQ(after.bottom - before.bottom, move.bottom) << id;
    }
  }
  static void expectCovers(HWND dialog, HWND main) {
    RECT inside{};
    RECT covered{};
    GetClientRect(main, &inside);
    GetClientRect(dialog, &covered);
    MapWindowPoints(dialog, main, reinterpret_cast<POINT*>(&covered), 2);
    EXPECT_TRUE(EqualRect(&inside, &covered)) << covered.right << " x " << covered.bottom;
  }
  static void size(HWND main, SIZE inside) { ASSERT_TRUE(remote::sizeInside(main, inside)); }

  /// A full-screen dialog follows the window there and back while it is open.
  static void expectFollows(HWND main, HWND dialog, const Moves& moves) {
    expectCovers(dialog, main);
    const auto atHandhelds = places(dialog, moves);
    size(main, kLarger);
    expectCovers(dialog, main);
    expectMoved(atHandhelds, places(dialog, moves), moves);
    SetWindowPos(main, nullptr, 33, 44, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    expectCovers(dialog, main);
    size(main, kHandheld);
    expectCovers(dialog, main);
    const auto again = places(dialog, moves);
    for (const auto& [id, before] : atHandhelds) EXPECT_TRUE(EqualRect(&before, &again.at(id))) << id;
  }
};

TEST_F(DialogSizesTest, NewTableGivesTheRoomToItsNameAndItsFields) {
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  size(opened.main(), kHandheld);
  const HWND dialog = open(opened.main(), 40065, L"New Table");
  ASSERT_NE(dialog, nullptr);
  expectFollows(opened.main(), dialog,
                {{1024, kGetsWider},
                 {1025, kGrows},
                 {1027, kGoesDown},
                 {1028, kGoesDown},
                 {1036, kGoesDown},
                 {1037, kGoesDown},
                 {IDCANCEL, kGoesAlong},
                 {IDOK, kGoesAlong}});
  leave(opened.main(), dialog);
}

TEST_F(DialogSizesTest, AQueryGivesTheRoomToItsText) {
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  size(opened.main(), kHandheld);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  const HWND dialog = open(opened.main(), 40078, L"Query");
  ASSERT_NE(dialog, nullptr);
  const RECT sql = remote::placeIn(remote::control(dialog, 1050), dialog);
  EXPECT_EQ(sql.bottom - sql.top, 140);
  EXPECT_EQ(sql.right - sql.left, 234);
  SendMessageW(remote::control(dialog, 1050), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"SELECT a"));
  expectFollows(opened.main(), dialog,
                {{1049, kGetsWider},
                 {1050, kGrows},
                 {1055, kGetsWider},
                 {1057, kGoesRight},
                 {1054, kGetsWider},
                 {1028, kGoesRight},
                 {1071, kStays},
                 {IDCANCEL, kStays},
                 {IDOK, kGoesAlong}});
  EXPECT_EQ(remote::text(remote::control(dialog, 1050)), L"SELECT a");
  leave(opened.main(), dialog);
}

TEST_F(DialogSizesTest, OverAMaximisedWindowAQueryCoversItAtEveryZoom) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  ASSERT_NE(opened.tables(), nullptr);
  SendMessageW(main, WM_SYSCOMMAND, SC_MAXIMIZE, 0);
  ASSERT_TRUE(IsZoomed(main));
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kQueriesPage));
  const Moves controls = {{1049, kStays}, {1050, kStays}, {1055, kStays}, {1057, kStays}, {IDOK, kStays}};
  const auto openedAt = [&](WPARAM zoom) {
    SendMessageW(main, WM_SYSCOMMAND, zoom, 0);
    const HWND dialog = open(main, 40078, L"Query");
    const auto found = places(dialog, controls);
    leave(main, dialog);
    return found;
  };
  const std::map<WPARAM, std::map<int, RECT>> wanted = {{kZoom200, openedAt(kZoom200)},
                                                        {kZoom100, openedAt(kZoom100)}};
  const HWND dialog = open(main, 40078, L"Query");
  ASSERT_NE(dialog, nullptr);
  for (const WPARAM zoom : {kZoom200, kZoom100}) {
    SendMessageW(main, WM_SYSCOMMAND, zoom, 0);
    expectCovers(dialog, main);
    const auto found = places(dialog, controls);
    for (const auto& [id, place] : wanted.at(zoom)) {
      EXPECT_TRUE(EqualRect(&place, &found.at(id))) << id << " at " << std::hex << zoom;
    }
  }
  leave(main, dialog);
}

TEST_F(DialogSizesTest, AnImportSharesTheHeightBetweenItsColumnsAndItsRecords) {
  constexpr int kImport = 53296;
  constexpr int kFileName = 1148;
  constexpr LONG kHalf = kHigher / 2;
  testsupport::writeFile(file("a.csv"), "one,two\n1,2\n");
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  size(opened.main(), kHandheld);
  const HWND files = open(opened.main(), kImport, L"Open");
  ASSERT_NE(files, nullptr);
  const std::wstring path = file("a.csv").wstring();
  SendMessageW(remote::control(files, kFileName), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
  PostMessageW(files, WM_COMMAND, IDOK, 0);
  ASSERT_TRUE(remote::waitForDialog(opened.main(), L"Import"));
  const HWND dialog = remote::frontWindow(opened.main());
  expectFollows(opened.main(), dialog,
                {{1100, kGetsWider},
                 {1105, kStays},
                 {1106, {0, 0, kWider, kHalf}},
                 {1115, {0, kHalf, 0, kHalf}},
                 {1107, {0, kHalf, kWider, kHalf}},
                 {1116, {0, kHalf, 0, kHalf}},
                 {1109, {0, kHalf, kWider, kHalf}},
                 {1108, {0, kHalf, kWider, kHigher}},
                 {1113, kGoesDown},
                 {IDCANCEL, kGoesAlong},
                 {IDOK, kGoesAlong}});
  leave(opened.main(), dialog);
}

TEST_F(DialogSizesTest, TheOptionsGiveTheRoomToTheListOfColours) {
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  size(opened.main(), kHandheld);
  const HWND sheet = open(opened.main(), 32775, L"Options");
  ASSERT_NE(sheet, nullptr);
  ASSERT_TRUE(remote::turnSheet(sheet, 3));
  const Moves moves = {{1063, kGoesDown}, {1064, kGoesDown}, {1065, kGoesDown}, {IDOK, kGoesAlong}};
  const RECT list = remote::placeIn(remote::control(sheet, 1062), sheet);
  expectFollows(opened.main(), sheet, moves);
  size(opened.main(), kLarger);
  const RECT larger = remote::placeIn(remote::control(sheet, 1062), sheet);
  EXPECT_EQ(larger.right - list.right, kWider);
  // The list shows whole lines.
  EXPECT_GT(larger.bottom - list.bottom, kHigher - 20);
  EXPECT_LE(larger.bottom - list.bottom, kHigher);
  const RECT page = remote::placeIn(GetParent(remote::control(sheet, 1062)), sheet);
  EXPECT_EQ(page.right, kLarger.cx);
  EXPECT_EQ(page.bottom, kLarger.cy - 48);
  ASSERT_TRUE(remote::turnSheet(sheet, 0));
  const HWND general = GetParent(remote::control(sheet, 1046));
  const RECT other = remote::placeIn(general, sheet);
  EXPECT_TRUE(EqualRect(&page, &other)) << "a page that was not shown yet";
  leave(opened.main(), sheet);
}

TEST_F(DialogSizesTest, TheZoomOfAFieldGrowsByWhatTheWindowHasMore) {
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
  const Moves moves = {{1015, kGrows}, {IDOK, kGoesAlong}, {IDCANCEL, kGoesAlong}};
  std::vector<std::map<int, RECT>> found;
  for (const SIZE& inside : {kHandheld, kLarger}) {
    size(opened.main(), inside);
    const HWND editor = remote::control(opened.main(), 1200);
    PostMessageW(editor, WM_USER + 202, 0, 0);
    ASSERT_TRUE(remote::waitForDialog(opened.main(), L"a"));
    const HWND dialog = remote::frontWindow(opened.main());
    found.push_back(places(dialog, moves));
    const RECT over = remote::placeIn(dialog, opened.main());
    EXPECT_GE(over.left, 0);
    EXPECT_LE(over.right, inside.cx);
    EXPECT_LE(over.bottom, inside.cy);
    leave(opened.main(), dialog);
  }
  expectMoved(found[0], found[1], moves);
}

TEST_F(DialogSizesTest, TheDatabaseInformationGrowsByWhatTheWindowHasMore) {
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  const Moves moves = {
      {1011, kGetsWider}, {1020, kGetsWider}, {1023, kGetsWider}, {1021, kGrows}, {IDOK, kGoesAlong}};
  std::vector<std::map<int, RECT>> found;
  for (const SIZE& inside : {kHandheld, kLarger}) {
    size(opened.main(), inside);
    const HWND dialog = open(opened.main(), 32782, L"Database Information");
    ASSERT_NE(dialog, nullptr);
    found.push_back(places(dialog, moves));
    const RECT over = remote::placeIn(dialog, opened.main());
    EXPECT_GE(over.left, 0);
    EXPECT_LE(over.right, inside.cx);
    EXPECT_LE(over.bottom, inside.cy);
    leave(opened.main(), dialog);
  }
  expectMoved(found[0], found[1], moves);
}

TEST_F(DialogSizesTest, AListOfTheQueryOpensAsFarAsBeforeInALargerWindow) {
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  std::vector<LONG> heights;
  for (const SIZE& inside : {kHandheld, kLarger}) {
    size(opened.main(), inside);
    const HWND dialog = open(opened.main(), 40078, L"Query");
    ASSERT_NE(dialog, nullptr);
    RECT list{};
    SendMessageW(remote::control(dialog, 1055), CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&list));
    heights.push_back(list.bottom - list.top);
    leave(opened.main(), dialog);
  }
  EXPECT_EQ(heights[0], heights[1]);
  EXPECT_GT(heights[0], 100);
}

// ---- The system's own

class SystemBoxesTest : public DialogSizesTest {
 protected:
  /// How far the middle of a box is from that of the window below it.
  static POINT offMiddle(HWND box, HWND window) {
    RECT upper{};
    RECT lower{};
    GetWindowRect(box, &upper);
    GetWindowRect(window, &lower);
    return {(upper.left + upper.right - lower.left - lower.right) / 2,
            (upper.top + upper.bottom - lower.top - lower.bottom) / 2};
  }
  static void expectOver(HWND box, HWND window) {
    ASSERT_NE(box, nullptr);
    const POINT off = offMiddle(box, window);
    EXPECT_LE(std::abs(off.x), 1);
    EXPECT_LE(std::abs(off.y), 1);
  }
  static RECT freeArea(HWND window) {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
  }
  static void moveTo(HWND window, LONG x, LONG y) {
    SetWindowPos(window, nullptr, static_cast<int>(x), static_cast<int>(y), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  }

  static constexpr int kDeleteTable = 40074;
  static constexpr int kOpenDatabase = 32772;
};

TEST_F(SystemBoxesTest, StandOverTheMiddleOfTheWindow) {
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  size(opened.main(), kHandheld);
  for (const POINT corner : {POINT{300, 200}, POINT{210, 150}}) {
    moveTo(opened.main(), corner.x, corner.y);
    const HWND question = open(opened.main(), kDeleteTable, L"Quivane");
    expectOver(question, opened.main());
    leave(opened.main(), question);
  }
}

TEST_F(SystemBoxesTest, StayOnTheMonitorBesideItsEdge) {
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  size(opened.main(), kHandheld);
  const RECT free = freeArea(opened.main());
  moveTo(opened.main(), free.right - 60, free.bottom - 60);
  const HWND question = open(opened.main(), kDeleteTable, L"Quivane");
  ASSERT_NE(question, nullptr);
  RECT place{};
  GetWindowRect(question, &place);
  EXPECT_EQ(place.right, free.right);
  EXPECT_EQ(place.bottom, free.bottom);
  leave(opened.main(), question);
}

TEST_F(SystemBoxesTest, AFileDialogStandsOverTheWindowToo) {
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  size(opened.main(), kLarger);
  const RECT free = freeArea(opened.main());
  moveTo(opened.main(), free.left + 90, free.top + 60);
  const HWND dialog = open(opened.main(), kOpenDatabase, L"Open");
  expectOver(dialog, opened.main());
  leave(opened.main(), dialog);
}

}  // namespace
