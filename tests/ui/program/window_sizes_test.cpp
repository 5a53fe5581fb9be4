// The real program at other sizes than the handheld's, and while it is sized.
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "base/settings/settings_store.h"
#include "tests/shell/shell_settings.h"
#include "tests/ui/support/ui_test.h"

using testing::ElementsAre;

namespace {

constexpr int kForm = 6;
constexpr int kRebar = 1000;
constexpr int kPositionBox = 1012;
constexpr int kFirstTextEditor = 1200;
constexpr int kFieldCount = 40;
constexpr int kNextPage = 32790;
constexpr int kNextColumn = 40071;

constexpr LONG kBorder = 1;  // of the tab control

constexpr SIZE kHandheld = {240, 294};
constexpr SIZE kSizes[] = {kHandheld, {480, 640}, {1280, 800}};

/// By its shell settings, a window that the user can size.
class SizesTest : public UiTest {
 protected:
  void SetUp() override {
    setHandheldSize(false);
    std::wstring fields;
    std::wstring values;
    for (int i = 0; i < kFieldCount; ++i) {
      fields += (i == 0 ? L"f" : L", f") + std::to_wstring(i) + L" Text";
      values += (i == 0 ? L"'v" : L", 'v") + std::to_wstring(i) + L"'";
    }
    makeDatabase(file("a.cdb"), {(L"CREATE TABLE 'T' (" + fields + L")").c_str(),
                                 (L"INSERT INTO T VALUES (" + values + L")").c_str()});
  }
  void TearDown() override {
    forgetShellSettings();
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  }

  static void setZoom(DWORD zoom) {
    EXPECT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kShellSettings, L"Zoom", REG_DWORD, &zoom, sizeof(zoom)),
              ERROR_SUCCESS);
  }

  static void size(HWND window, SIZE inside) { EXPECT_TRUE(remote::sizeInside(window, inside)); }

  static std::vector<int> shownEditors(HWND main) {
    std::vector<int> shown;
    for (int i = 0; i < kFieldCount; ++i) {
      if (IsWindowVisible(remote::control(main, kFirstTextEditor + i))) shown.push_back(i);
    }
    return shown;
  }
  static std::vector<int> numbers(int first, int end) {
    std::vector<int> all;
    for (int i = first; i < end; ++i) all.push_back(i);
    return all;
  }
  static std::vector<std::wstring> firstTitles(int count) {
    std::vector<std::wstring> titles;
    for (int i = 0; i < count; ++i) titles.push_back(L"f" + std::to_wstring(i));
    return titles;
  }
};

/// Where everything is in a window with this inside, in handheld pixels, at a zoom.
struct Figures {
  SIZE inside;
  int zoom;

  LONG of(LONG handheld) const { return (handheld * zoom + 50) / 100; }
  std::vector<LONG> box(LONG left, LONG top, LONG right, LONG bottom) const {
    return {of(left), of(top), of(right), of(bottom)};
  }
};

TEST_F(SizesTest, EveryPageFillsTheWindowAtEverySizeAndZoom) {
  for (const int zoom : {100, 150, 200}) {
    setZoom(static_cast<DWORD>(zoom));
    OpenedDatabase opened(file("a.cdb"));
    const HWND main = opened.main();
    ASSERT_NE(opened.tables(), nullptr);
    const HWND tab = remote::tabControl(main);
    // The tab control's border is one of the monitor's pixels at every zoom.
    const LONG rounding = zoom == 100 ? 0 : 1 + zoom / 100;
    for (const SIZE& inside : kSizes) {
      SCOPED_TRACE(std::to_string(inside.cx) + " at " + std::to_string(zoom));
      const Figures figures{inside, zoom};
      const LONG width = inside.cx;
      const LONG height = inside.cy;
      ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kTablesPage));
      size(main, {figures.of(width), figures.of(height)});
      EXPECT_EQ(place(tab, main), figures.box(0, 0, width, height - 25));
      EXPECT_EQ(place(opened.tables(), main), figures.box(0, 0, width, height - 76));
      EXPECT_EQ(place(remote::control(main, kForm), tab), figures.box(0, 0, width, height - 49));
      const std::vector<LONG> onTables = place(remote::control(main, kRebar), main);
      EXPECT_EQ(onTables[0], kBorder);
      EXPECT_NEAR(onTables[2], figures.of(width) - kBorder, rounding);
      EXPECT_GE(onTables[1], figures.of(height - 76)) << "the list must not cover the bands";

      ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kFormPage));
      EXPECT_NEAR(place(remote::control(main, kRebar), main)[1], onTables[1], rounding);
      const int fields = static_cast<int>(height - 25) / 28;
      EXPECT_EQ(shownEditors(main), numbers(0, std::min(fields, kFieldCount)));
      const HWND first = remote::control(main, kFirstTextEditor);
      const std::vector<LONG> editor = place(first, remote::control(main, kForm));
      EXPECT_EQ(editor, figures.box(41, 2, 41 + width - 45, 20));
      const HWND last = remote::control(main, kFirstTextEditor + fields - 1);
      EXPECT_LE(place(last, main)[3], onTables[1]) << "the last row lies above the bands";

      ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kListPage));
      const HWND grid = remote::recordGrid(main);
      RECT client{};
      GetClientRect(tab, &client);
      const std::vector<LONG> gridPlace = place(grid, tab);
      EXPECT_NEAR(gridPlace[2], client.right, rounding);
      EXPECT_NEAR(gridPlace[3], client.bottom - figures.of(50), rounding);
      const int scrollBar = (GetSystemMetrics(SM_CXVSCROLL) * 100 + zoom / 2) / zoom;
      const int columns = std::max(3, (static_cast<int>(width) - scrollBar) / 75);
      EXPECT_EQ(columnTitles(grid), firstTitles(columns));
      EXPECT_NEAR(place(remote::control(main, kRebar), main)[1], onTables[1], rounding);
    }
    EXPECT_EQ(remote::close(main), 0u);
  }
}

TEST_F(SizesTest, WhileItIsSizedEveryStepIsLaidOut) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  ASSERT_NE(opened.tables(), nullptr);
  const HWND tab = remote::tabControl(main);
  for (const int page : {OpenedDatabase::kTablesPage, OpenedDatabase::kFormPage, OpenedDatabase::kListPage,
                         OpenedDatabase::kQueriesPage}) {
    ASSERT_TRUE(remote::switchToPage(main, page));
    const HWND shown = remote::shownPage(main);
    constexpr LONG kSteps = 14;
    for (LONG step = 0; step <= kSteps; ++step) {
      const SIZE inside = {240 + 47 * step, 294 + 31 * (kSteps - step)};
      size(main, inside);
      ASSERT_THAT(place(tab, main), ElementsAre(0, 0, inside.cx, inside.cy - 25)) << step;
      ASSERT_GE(place(shown, main)[2], inside.cx - kBorder) << page;
      ASSERT_GE(place(remote::control(main, kRebar), main)[2], inside.cx - kBorder) << page;
      if (page == OpenedDatabase::kFormPage) {
        ASSERT_EQ(shownEditors(main).size(), static_cast<std::size_t>((inside.cy - 25) / 28)) << step;
      }
    }
  }
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(SizesTest, TheBandsShareTheWidth) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  ASSERT_NE(opened.tables(), nullptr);
  size(main, kHandheld);
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kFormPage));
  const HWND box = remote::control(main, kPositionBox);
  const HWND buttons = remote::control(main, 2000);
  const std::vector<LONG> boxThen = place(box, main);
  const std::vector<LONG> buttonsThen = place(buttons, main);
  size(main, {700, 500});
  const std::vector<LONG> wide = place(buttons, main);
  EXPECT_EQ(place(box, main)[2] - place(box, main)[0], boxThen[2] - boxThen[0]);
  EXPECT_EQ(wide[0], buttonsThen[0]);
  EXPECT_EQ(wide[2], buttonsThen[2] + 700 - 240);
  size(main, kHandheld);
  EXPECT_EQ(place(box, main), boxThen);
  EXPECT_EQ(place(buttons, main), buttonsThen);
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(SizesTest, TheFormKeepsTheFieldWithTheKeyboardAndWhatIsTyped) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  ASSERT_NE(opened.tables(), nullptr);
  size(main, {400, 480});
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kFormPage));
  ASSERT_EQ(shownEditors(main), numbers(0, 16));
  const HWND editor = remote::control(main, kFirstTextEditor + 13);
  SendMessageW(editor, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
  SendMessageW(editor, WM_LBUTTONUP, 0, MAKELPARAM(2, 2));
  ASSERT_EQ(remote::focus(main), editor);
  SendMessageW(editor, EM_SETSEL, 3, 3);
  SendMessageW(editor, WM_CHAR, L'x', 1);
  ASSERT_EQ(remote::text(editor), L"v13x");

  size(main, kHandheld);
  EXPECT_EQ(shownEditors(main), numbers(9, 18)) << "none of another page";
  EXPECT_EQ(remote::focus(main), editor);
  EXPECT_EQ(remote::text(editor), L"v13x");
  size(main, {240, 294 + 28 * 40});
  EXPECT_EQ(shownEditors(main), numbers(0, kFieldCount));
  EXPECT_EQ(remote::focus(main), editor);
  EXPECT_EQ(remote::text(editor), L"v13x");

  size(main, kHandheld);
  sendCommand(main, kNextPage);
  ASSERT_EQ(shownEditors(main), numbers(18, 27));
  size(main, {300, 480});
  EXPECT_EQ(shownEditors(main), numbers(16, 32)) << "the first field that was shown is on the page";
  EXPECT_EQ(remote::close(main), 0u);

  OpenedDatabase again(file("a.cdb"));
  ASSERT_TRUE(remote::switchToPage(again.main(), OpenedDatabase::kFormPage));
  EXPECT_EQ(remote::text(remote::control(again.main(), kFirstTextEditor + 13)), L"v13x");
  EXPECT_EQ(remote::close(again.main()), 0u);
}

TEST_F(SizesTest, AFormThatWasSizedOnAnotherPageFitsWhenItIsEntered) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  ASSERT_NE(opened.tables(), nullptr);
  size(main, {400, 480});
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kFormPage));
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kListPage));
  size(main, {300, 294});
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kFormPage));
  EXPECT_EQ(shownEditors(main), numbers(0, 9));
  const HWND first = remote::control(main, kFirstTextEditor);
  EXPECT_EQ(place(first, main)[2] - place(first, main)[0], 255);
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(SizesTest, TheGridKeepsItsRowAndTheColumnsThatWereMovedTo) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  size(main, kHandheld);
  ASSERT_THAT(columnTitles(grid), ElementsAre(L"f0", L"f1", L"f2"));
  for (int i = 0; i < 37; ++i) sendCommand(main, kNextColumn);
  ASSERT_THAT(columnTitles(grid), ElementsAre(L"f0", L"f38", L"f39"));
  size(main, {400, 480});
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"f0", L"f36", L"f37", L"f38", L"f39"));
  EXPECT_THAT(rowTexts(grid, 0), ElementsAre(L"v0", L"v36", L"v37", L"v38", L"v39"));
  sendCommand(main, kNextColumn);
  EXPECT_EQ(columnTitles(grid)[1], L"f36") << "there is none behind the last";
  EXPECT_EQ(remote::selectedItem(grid), 0);
  size(main, kHandheld);
  EXPECT_THAT(columnTitles(grid), ElementsAre(L"f0", L"f36", L"f37"));
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(SizesTest, TheIconsOfTheTablesGoOnInTheRowsThatHaveRoom) {
  std::vector<std::wstring> statements;
  for (int i = 0; i < 12; ++i) statements.push_back(L"CREATE TABLE 'T" + std::to_wstring(i) + L"' (a Text)");
  for (const std::wstring& statement : statements) runStatements(file("a.cdb"), {statement.c_str()});
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  ASSERT_NE(opened.tables(), nullptr);
  const auto itemsInFirstRow = [&] {
    int count = 0;
    const LONG top = remote::itemPlace(opened.tables(), 0)->top;
    while (count < 13 && remote::itemPlace(opened.tables(), count)->top == top) ++count;
    return count;
  };
  size(main, kHandheld);
  EXPECT_EQ(itemsInFirstRow(), 2 + (240 - 2 * 75 >= 75 + GetSystemMetrics(SM_CXVSCROLL) ? 1 : 0));
  size(main, {700, 400});
  EXPECT_GE(itemsInFirstRow(), 8);
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(SizesTest, ItOpensAsItWasLeftMaximisedToo) {
  RECT left{};
  {
    OpenedDatabase opened(file("a.cdb"));
    ASSERT_NE(opened.tables(), nullptr);
    size(opened.main(), {500, 450});
    GetWindowRect(opened.main(), &left);
    EXPECT_EQ(remote::close(opened.main()), 0u);
  }
  {
    OpenedDatabase opened(file("a.cdb"));
    ASSERT_NE(opened.tables(), nullptr);
    RECT place{};
    GetWindowRect(opened.main(), &place);
    EXPECT_TRUE(EqualRect(&place, &left));
    SendMessageW(opened.main(), WM_SYSCOMMAND, SC_MAXIMIZE, 0);
    ASSERT_TRUE(IsZoomed(opened.main()));
    EXPECT_EQ(remote::close(opened.main()), 0u);
  }
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  EXPECT_TRUE(IsZoomed(opened.main()));
  RECT client{};
  GetClientRect(opened.main(), &client);
  EXPECT_THAT(place(remote::tabControl(opened.main()), opened.main()),
              ElementsAre(0, 0, client.right, client.bottom - 25));
  SendMessageW(opened.main(), WM_SYSCOMMAND, SC_RESTORE, 0);
  RECT restored{};
  GetWindowRect(opened.main(), &restored);
  EXPECT_TRUE(EqualRect(&restored, &left));
  EXPECT_THAT(place(remote::tabControl(opened.main()), opened.main()), ElementsAre(0, 0, 500, 425));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

TEST_F(SizesTest, TheZoomOfAMaximisedWindowChangesWhatFits) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  ASSERT_NE(opened.tables(), nullptr);
  SendMessageW(main, WM_SYSCOMMAND, SC_MAXIMIZE, 0);
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kFormPage));
  RECT client{};
  GetClientRect(main, &client);
  ASSERT_EQ(shownEditors(main).size(), static_cast<std::size_t>((client.bottom - 25) / 28));
  SendMessageW(main, WM_SYSCOMMAND, kZoom200, 0);
  RECT after{};
  GetClientRect(main, &after);
  EXPECT_TRUE(EqualRect(&client, &after));
  EXPECT_EQ(shownEditors(main).size(), static_cast<std::size_t>(((client.bottom + 1) / 2 - 25) / 28));
  EXPECT_GE(place(remote::tabControl(main), main)[2], client.right);
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(SizesTest, AtTheHandheldsSizeItCanNotBeSized) {
  setHandheldSize(true);
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  EXPECT_EQ(GetWindowLongPtrW(opened.main(), GWL_STYLE) & (WS_THICKFRAME | WS_MAXIMIZEBOX), 0);
  EXPECT_THAT(place(remote::tabControl(opened.main()), opened.main()), ElementsAre(0, 0, 240, 269));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

}  // namespace
