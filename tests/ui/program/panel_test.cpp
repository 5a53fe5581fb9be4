// What the pages of the real program do when the input panel is raised and put down.
#include <windows.h>

#include "base/settings/options.h"
#include "base/settings/settings_store.h"
#include "tests/shell/shell_settings.h"
#include "tests/ui/support/ui_test.h"

using testing::ElementsAre;

namespace {

constexpr int kRebar = 1000;
constexpr int kFirstTextEditor = 1200;

class PanelTest : public UiTest {
 protected:
  void SetUp() override {
    setPanelPolicy(kPanelAlways);
    makeDatabase(
        file("a.cdb"),
        {L"CREATE TABLE 'T' (f0 Integer, f1 Integer, f2 Integer, f3 Integer, f4 Integer, f5 Integer, "
         L"f6 Integer, f7 Integer, f8 Integer)",
         L"INSERT INTO T VALUES (0, 1, 2, 3, 4, 5, 6, 7, 8)"});
  }
  void TearDown() override {
    forgetShellSettings();
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  }

  /// Presses the button in the menu bar; the pages have followed when it returns.
  static void pressPanelButton(HWND main) {
    HWND button = nullptr;
    EnumChildWindows(
        main,
        [](HWND child, LPARAM found) -> BOOL {
          wchar_t name[64] = L"";
          GetClassNameW(child, name, ARRAYSIZE(name));
          if (std::wstring(name) != L"Pocket Shell Panel Button") return TRUE;
          *reinterpret_cast<HWND*>(found) = child;
          return FALSE;
        },
        reinterpret_cast<LPARAM>(&button));
    ASSERT_NE(button, nullptr);
    SendMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, 0);
  }
};

TEST_F(PanelTest, EveryPageEndsAboveThePanel) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  ASSERT_NE(opened.tables(), nullptr);
  const HWND tab = remote::tabControl(main);
  ASSERT_NO_FATAL_FAILURE(pressPanelButton(main));
  EXPECT_THAT(place(tab, main), ElementsAre(0, 0, 240, 189));
  EXPECT_THAT(place(opened.tables(), main), ElementsAre(0, 0, 240, 138));
  const std::vector<LONG> bar = place(remote::control(main, kRebar), main);
  EXPECT_GE(bar[1], 138) << "the list must not cover the bands";
  EXPECT_LE(bar[3], 189 - 22) << "the bands must not cover the tabs";

  // Both lie within the tab control's border, as before the panel came.
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kListPage));
  EXPECT_THAT(place(remote::recordGrid(main), main), ElementsAre(1, 1, 239, 138));

  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kFormPage));
  EXPECT_THAT(place(remote::shownPage(main), main), ElementsAre(1, 1, 241, 166));
  for (int field = 0; field < 9; ++field) {
    EXPECT_EQ(IsWindowVisible(remote::control(main, kFirstTextEditor + field)) != FALSE, field < 6) << field;
  }
  pressPanelButton(main);
  EXPECT_THAT(place(tab, main), ElementsAre(0, 0, 240, 269));
  EXPECT_THAT(place(remote::shownPage(main), main), ElementsAre(1, 1, 241, 246));
  for (int field = 0; field < 9; ++field) {
    EXPECT_TRUE(IsWindowVisible(remote::control(main, kFirstTextEditor + field))) << field;
  }
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kTablesPage));
  EXPECT_THAT(place(opened.tables(), main), ElementsAre(0, 0, 240, 218));
}

TEST_F(PanelTest, WithTheBandsAtTheTopThePagesEndAtTheTabs) {
  ASSERT_TRUE(SettingsStore::writeDword(SettingsStore::kOptions, L"RebarsAtTop", 1));
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_NO_FATAL_FAILURE(pressPanelButton(main));
  EXPECT_THAT(place(opened.tables(), main), ElementsAre(0, 28, 240, 138));
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kFormPage));
  const HWND editor = remote::control(main, kFirstTextEditor);
  RECT inForm{};
  GetWindowRect(editor, &inForm);
  MapWindowPoints(nullptr, remote::shownPage(main), reinterpret_cast<POINT*>(&inForm), 2);
  EXPECT_EQ(inForm.top, 30);
  EXPECT_THAT(place(remote::control(main, kRebar), main)[1], place(remote::shownPage(main), main)[1]);
}

TEST_F(PanelTest, AfterANewQueryThePanelIsDown) {
  constexpr int kNewQuery = 40078;
  constexpr int kName = 1049;
  constexpr int kSql = 1050;
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kQueriesPage));
  const HWND tab = remote::tabControl(main);
  ASSERT_NO_FATAL_FAILURE(pressPanelButton(main));
  ASSERT_EQ(place(tab, main)[3], 189);

  PostMessageW(main, WM_COMMAND, kNewQuery, 0);
  HWND dialog = nullptr;
  ASSERT_TRUE(remote::waitUntil([&] {
    dialog = GetLastActivePopup(main);
    return dialog != main && IsWindowVisible(dialog) && remote::text(dialog) == L"Query";
  }));
  for (const auto& [id, text] : {std::pair{kName, L"all"}, std::pair{kSql, L"Select * from T"}}) {
    SendDlgItemMessageW(dialog, id, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
  }
  SendMessageW(dialog, WM_COMMAND, IDOK, 0);
  ASSERT_TRUE(remote::waitUntil([&] { return !IsWindow(dialog); }));
  EXPECT_TRUE(remote::waitUntil([&] { return place(tab, main)[3] == 269; }));
  EXPECT_THAT(remote::itemTexts(remote::shownPage(main)), ElementsAre(L"all"));
}

}  // namespace
