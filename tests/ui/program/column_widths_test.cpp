// The widths of the grid's columns in the real program: dragged, fitted, and there again.
#include <windows.h>

#include <commctrl.h>

#include "base/settings/settings_store.h"
#include "tests/shell/shell_settings.h"
#include "tests/ui/support/ui_test.h"

namespace {

constexpr int kPreviousColumn = 40070;
constexpr int kNextColumn = 40071;
constexpr int kFitColumns = 40084;

class ColumnWidthsTest : public UiTest {
 protected:
  void TearDown() override {
    forgetShellSettings();
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  }

  static HWND header(HWND grid) { return reinterpret_cast<HWND>(SendMessageW(grid, LVM_GETHEADER, 0, 0)); }
  static LPARAM at(int x) { return MAKELPARAM(x, 8); }

  /// Drags the edge at the right of a column of the handheld's width, before which no other was changed.
  static void drag(HWND grid, int column, int by) {
    const int edge = 75 * (column + 1) - 1;
    const HWND window = header(grid);
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, at(edge));
    SendMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, at(edge + by / 2));
    SendMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, at(edge + by));
    SendMessageW(window, WM_LBUTTONUP, 0, at(edge + by));
  }
  static void doubleClick(HWND grid, int edge) {
    SendMessageW(header(grid), WM_LBUTTONDBLCLK, MK_LBUTTON, at(edge));
    SendMessageW(header(grid), WM_LBUTTONUP, 0, at(edge));
  }
  static std::vector<int> widths(HWND grid) {
    std::vector<int> all;
    for (int column = 0; column < remote::columnCount(grid); ++column) {
      all.push_back(remote::columnWidth(grid, column));
    }
    return all;
  }
  void makeTables() {
    makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (f0 Text, f1 Text, f2 Text, f3 Text, f4 Text)",
                                 L"INSERT INTO T VALUES ('a', 'b', 'c', 'd', 'e')",
                                 L"CREATE TABLE 'U' (f0 Text, f1 Text)", L"INSERT INTO U VALUES ('a', 'b')"});
  }
};

using testing::ElementsAre;

TEST_F(ColumnWidthsTest, AWidthStaysWithItsFieldAndIsThereAtTheNextStart) {
  makeTables();
  {
    OpenedDatabase opened(file("a.cdb"));
    const HWND grid = opened.showRecords(0);
    ASSERT_NE(grid, nullptr);
    ASSERT_THAT(widths(grid), ElementsAre(75, 75, 75));
    drag(grid, 1, 40);
    ASSERT_THAT(widths(grid), ElementsAre(75, 115, 75));
    sendCommand(opened.main(), kNextColumn);
    EXPECT_THAT(widths(grid), ElementsAre(75, 75, 75)) << "they show other fields";
    sendCommand(opened.main(), kPreviousColumn);
    EXPECT_THAT(widths(grid), ElementsAre(75, 115, 75));
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kTablesPage));
    EXPECT_THAT(widths(opened.showRecords(1)), ElementsAre(75, 75)) << "another table has its own";
    EXPECT_THAT(widths(opened.showRecords(0)), ElementsAre(75, 115, 75));
    drag(grid, 0, -30);
    // On the List page, too, they are kept at the end.
    EXPECT_EQ(remote::close(opened.main()), 0u);
  }
  OpenedDatabase opened(file("a.cdb"));
  EXPECT_THAT(widths(opened.showRecords(0)), ElementsAre(45, 115, 75));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

TEST_F(ColumnWidthsTest, AtAnotherZoomTheyAreTheSameInHandheldPixels) {
  makeTables();
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  drag(grid, 1, 40);
  SendMessageW(opened.main(), WM_SYSCOMMAND, kZoom200, 0);
  EXPECT_THAT(widths(grid), ElementsAre(150, 230, 150));
  SendMessageW(opened.main(), WM_SYSCOMMAND, kZoom100, 0);
  EXPECT_THAT(widths(grid), ElementsAre(75, 115, 75));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

TEST_F(ColumnWidthsTest, WhatNobodyChangedIsNotKept) {
  makeTables();
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.showRecords(0), nullptr);
  sendCommand(opened.main(), kNextColumn);
  EXPECT_EQ(remote::close(opened.main()), 0u);
  const std::wstring path = std::wstring(SettingsStore::kRoot) + L"\\ColumnWidths";
  DWORD size = 0;
  EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, path.c_str(), nullptr, RRF_RT_ANY, nullptr, nullptr, &size),
            ERROR_FILE_NOT_FOUND);
}

TEST_F(ColumnWidthsTest, ADoubleClickOnTheEdgeFitsWhatIsInView) {
  // Else the edge of the third column lies beyond the scroll bar.
  setHandheldSize(false);
  makeDatabase(file("a.cdb"),
               {L"CREATE TABLE 'T' (i Text, [a title that is wider than the texts] Text, c Text)",
                L"INSERT INTO T WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < "
                L"50000) SELECT i || '.', 'x', CASE i WHEN 49000 THEN 'far away and so wide, so very wide "
                L"indeed' ELSE 'near' END FROM n"});
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  doubleClick(grid, 75 * 3 - 1);
  const int ofNear = widths(grid)[2];
  EXPECT_LT(ofNear, 75);
  EXPECT_GT(ofNear, 20);
  doubleClick(grid, 75 * 2 - 1);
  EXPECT_GT(widths(grid)[1], 120) << "the title can be read, too";
  RECT client{};
  GetClientRect(grid, &client);
  EXPECT_LE(widths(grid)[1], client.right);
  doubleClick(grid, 74);
  const int ofNumbers = widths(grid)[0];
  EXPECT_LT(ofNumbers, 75);
  remote::ensureVisible(grid, 49000);
  doubleClick(grid, ofNumbers - 1);
  EXPECT_GT(widths(grid)[0], ofNumbers);
  EXPECT_EQ(remote::close(opened.main()), 0u);
  OpenedDatabase again(file("a.cdb"));
  EXPECT_EQ(widths(again.showRecords(0))[2], ofNear);
  EXPECT_EQ(remote::close(again.main()), 0u);
}

TEST_F(ColumnWidthsTest, ColumnsThatACommandFittedAreKeptToo) {
  makeTables();
  {
    OpenedDatabase opened(file("a.cdb"));
    const HWND grid = opened.showRecords(0);
    sendCommand(opened.main(), kFitColumns);
    ASSERT_LT(widths(grid)[0], 75);
    EXPECT_EQ(remote::close(opened.main()), 0u);
  }
  OpenedDatabase opened(file("a.cdb"));
  EXPECT_LT(widths(opened.showRecords(0))[0], 75);
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

}  // namespace
