#include "platform/pocketshell/menu/menu_bar.h"

#include <array>

#include "owners/live_resources.h"
#include "tests/shell/shell_fixture.h"
#include "tests/shell/shell_resources.h"

namespace {

class MenuBarTest : public ShellTest {};

TEST_F(MenuBarTest, TheFrameHoldsTheWorkArea) {
  EXPECT_EQ(clientRect(top()), (RECT{0, 0, 240, 294}));
}

TEST_F(MenuBarTest, LiesAtTheBottomEdge) {
  const HWND bar = makeBar();
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(placeInParent(bar), (RECT{0, 268, 240, 294}));
  RECT client{};
  EXPECT_TRUE(HandheldGetClientRect(top(), &client));
  EXPECT_EQ(client, (RECT{0, 0, 240, 294})) << "the bar lies over it and takes nothing away";
}

TEST_F(MenuBarTest, HandsOutItsPopups) {
  const HWND bar = makeBar();
  ASSERT_NE(bar, nullptr);
  const auto popup = [&](int command) {
    return reinterpret_cast<HMENU>(SendMessageW(bar, SHCMBM_GETSUBMENU, 0, command));
  };
  EXPECT_EQ(GetMenuItemID(popup(ID_FILE_BUTTON), 1), static_cast<UINT>(ID_OPEN));
  EXPECT_EQ(GetMenuItemID(popup(ID_RECORD_BUTTON), 0), static_cast<UINT>(ID_DELETE));
  EXPECT_EQ(popup(ID_OPEN), nullptr);
}

TEST_F(MenuBarTest, TakesButtonsBehindItsOwn) {
  const HWND bar = makeBar();
  ASSERT_NE(bar, nullptr);
  std::array<TBBUTTON, 3> added{};
  for (int i = 0; i < 3; ++i) {
    TBBUTTON& button = added[static_cast<std::size_t>(i)];
    button.iBitmap = i;
    button.idCommand = ID_IMAGE_NEW + i;
    button.fsState = TBSTATE_ENABLED;
  }
  EXPECT_TRUE(SendMessageW(bar, TB_ADDBUTTONSW, added.size(), reinterpret_cast<LPARAM>(added.data())));
  RECT record{};
  RECT first{};
  SendMessageW(bar, TB_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&record));
  SendMessageW(bar, TB_GETITEMRECT, 3, reinterpret_cast<LPARAM>(&first));
  EXPECT_GE(first.left, record.right);
  EXPECT_EQ(first.right - first.left, 24);
  EXPECT_EQ(first.top, 0);
  EXPECT_EQ(first.bottom, 26);
  EXPECT_EQ(placeInParent(bar), (RECT{0, 268, 240, 294}));
}

TEST_F(MenuBarTest, IsAboveASiblingThatOverlaps) {
  const HWND sibling = HandheldCreateWindow(0, WC_STATICW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 240, 269, top(),
                                            nullptr, nullptr, nullptr);
  const HWND bar = makeBar();
  EXPECT_EQ(GetWindow(top(), GW_CHILD), bar);
  EXPECT_EQ(GetWindow(bar, GW_HWNDNEXT), sibling);
}

TEST_F(MenuBarTest, LeavesNothingBehindAfterManyRounds) {
  DestroyWindow(makeBar());
  const long handles = LiveResources::countOfAll();
  for (int i = 0; i < 200; ++i) {
    const HWND bar = makeBar();
    ASSERT_NE(bar, nullptr);
    ASSERT_TRUE(DestroyWindow(bar));
  }
  EXPECT_EQ(LiveResources::countOfAll(), handles);
  EXPECT_EQ(pocketshell::MenuBar::count(), 0U);
}

class MalformedBarTest : public ShellTest, public testing::WithParamInterface<UINT> {};

TEST_P(MalformedBarTest, IsRefusedAndLeavesNothingBehind) {
  const long handles = LiveResources::countOfAll();
  SHMENUBARINFO info = barInfo(GetParam());
  info.hwndMB = top();
  EXPECT_FALSE(SHCreateMenuBar(&info));
  EXPECT_EQ(info.hwndMB, top());
  EXPECT_EQ(GetWindow(top(), GW_CHILD), nullptr);
  EXPECT_EQ(LiveResources::countOfAll(), handles);
}

INSTANTIATE_TEST_SUITE_P(Resources, MalformedBarTest,
                         testing::Values(IDR_BAR_SHORT, IDR_BAR_NO_MENU, IDR_BAR_NO_POPUP, IDR_BAR_NO_LABEL,
                                         IDR_BAR_NO_ZERO, 999));

TEST_F(MenuBarTest, IsRefusedWithoutItsImages) {
  SHMENUBARINFO info = barInfo(IDR_BAR);
  info.nBmpId = 999;
  EXPECT_FALSE(SHCreateMenuBar(&info));
  info.nBmpId = IDB_BAD_STRIP;
  EXPECT_FALSE(SHCreateMenuBar(&info));
  info.nBmpId = IDB_STRIP;
  info.cBmpImages = 4;
  EXPECT_FALSE(SHCreateMenuBar(&info));
  EXPECT_EQ(GetWindow(top(), GW_CHILD), nullptr);
}

}  // namespace
