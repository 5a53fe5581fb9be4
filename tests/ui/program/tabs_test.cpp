// The tabs of the real program, by mouse and keyboard.
#include <windows.h>

#include "tests/ui/support/ui_test.h"

namespace {

class TabsTest : public UiTest {
 protected:
  void SetUp() override {
    makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Text)", L"INSERT INTO T VALUES ('as it was')"});
  }

  /// Gives a control of the program the keyboard.
  static void focus(HWND control) {
    const DWORD thread = GetWindowThreadProcessId(control, nullptr);
    AttachThreadInput(GetCurrentThreadId(), thread, TRUE);
    SetFocus(control);
    AttachThreadInput(GetCurrentThreadId(), thread, FALSE);
  }
};

TEST_F(TabsTest, AfterAnArrowKeyHasSwitchedThePageATapStillDoes) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND main = opened.main();
  ASSERT_NE(opened.tables(), nullptr);
  const HWND tab = remote::tabControl(main);
  // Only a tab that was tapped is left by the arrow key in such a way that the control counts wrong.
  ASSERT_TRUE(remote::switchToPage(main, OpenedDatabase::kFormPage));
  focus(tab);
  ASSERT_TRUE(remote::waitUntil([=] { return remote::focus(main) == tab; }));
  remote::pressKey(tab, VK_RIGHT);
  ASSERT_TRUE(remote::waitUntil([=] { return remote::selectedTab(tab) == OpenedDatabase::kListPage; }));
  ASSERT_TRUE(remote::waitUntil([=] { return remote::isList(remote::shownPage(main)); }));
  for (const int page : {OpenedDatabase::kQueriesPage, OpenedDatabase::kTablesPage, OpenedDatabase::kListPage,
                         OpenedDatabase::kFormPage}) {
    EXPECT_TRUE(remote::switchToPage(main, page)) << page;
  }
  EXPECT_EQ(remote::close(main), 0u);
}

}  // namespace
