#include <array>
#include <string>

#include "platform/pocketshell/shell_settings.h"
#include "platform/pocketshell/zoom/zoom_menu.h"
#include "tests/shell/shell_fixture.h"

namespace {

/// Windows in windows at uneven figures, that touch each other.
class ZoomTest : public ShellTest {
 protected:
  ZoomTest() {
    outer_ = make(WC_STATICW, top(), {3, 5, 201, 151});
    left_ = make(WC_STATICW, outer_, {1, 1, 8, 18});
    right_ = make(WC_STATICW, outer_, {8, 1, 77, 18});
    moved_ = make(WC_STATICW, outer_, {0, 0, 10, 10});
    HandheldMoveWindow(moved_, 13, 27, 31, 7, FALSE);
  }

  static HWND make(const wchar_t* className, HWND parent, RECT place) {
    return HandheldCreateWindow(0, className, L"", WS_CHILD | WS_VISIBLE, static_cast<int>(place.left),
                                static_cast<int>(place.top), static_cast<int>(place.right - place.left),
                                static_cast<int>(place.bottom - place.top), parent, nullptr, nullptr,
                                nullptr);
  }
  static RECT scaled(RECT handheld) {
    return {HandheldToMonitor(static_cast<int>(handheld.left)),
            HandheldToMonitor(static_cast<int>(handheld.top)),
            HandheldToMonitor(static_cast<int>(handheld.right)),
            HandheldToMonitor(static_cast<int>(handheld.bottom))};
  }
  static LONG heightOfFont(HWND window) {
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof(font), &font);
    return font.lfHeight;
  }

  HWND outer_ = nullptr;
  HWND left_ = nullptr;
  HWND right_ = nullptr;
  HWND moved_ = nullptr;
};

TEST_F(ZoomTest, EveryWindowHasItsFiguresAtEveryZoomAndBack) {
  const RECT frame = placeInParent(top());
  for (const int zoom : {150, 200, 125, 400, 333, 100}) {
    EXPECT_TRUE(HandheldSetZoom(zoom));
    EXPECT_EQ(HandheldGetZoom(), zoom);
    EXPECT_EQ(clientRect(top()), scaled({0, 0, 240, 294})) << zoom;
    EXPECT_EQ(placeInParent(outer_), scaled({3, 5, 201, 151})) << zoom;
    EXPECT_EQ(placeInParent(left_), scaled({1, 1, 8, 18})) << zoom;
    EXPECT_EQ(placeInParent(right_), scaled({8, 1, 77, 18})) << zoom;
    EXPECT_EQ(placeInParent(moved_), scaled({13, 27, 44, 34})) << zoom;
    EXPECT_EQ(placeInParent(left_).right, placeInParent(right_).left);
    RECT handheld{};
    EXPECT_TRUE(HandheldGetWindowRect(moved_, &handheld));
    EXPECT_EQ(handheld, (RECT{13, 27, 44, 34})) << zoom;
    EXPECT_TRUE(HandheldGetClientRect(moved_, &handheld));
    EXPECT_EQ(handheld, (RECT{0, 0, 31, 7})) << zoom;
    EXPECT_TRUE(HandheldGetClientRect(top(), &handheld));
    EXPECT_EQ(handheld, (RECT{0, 0, 240, 294})) << zoom;
  }
  RECT back = placeInParent(top());
  OffsetRect(&back, static_cast<int>(frame.left - back.left), static_cast<int>(frame.top - back.top));
  EXPECT_EQ(back, frame);
}

TEST_F(ZoomTest, WindowsThatComeAndGoTakeNoPlaceAway) {
  for (int i = 0; i < 1000; ++i) DestroyWindow(make(WC_STATICW, top(), {0, 0, 1, 1}));
  HandheldSetZoom(333);
  EXPECT_EQ(placeInParent(left_), scaled({1, 1, 8, 18}));
  EXPECT_EQ(placeInParent(moved_), scaled({13, 27, 44, 34}));
}

TEST_F(ZoomTest, EveryWindowHasTheFontOfTheZoom) {
  struct Height {
    int zoom;
    LONG height;
  };
  for (const Height& each : {Height{150, -16}, {200, -21}, {400, -43}, {100, -11}}) {
    HandheldSetZoom(each.zoom);
    EXPECT_EQ(heightOfFont(left_), each.height);
    EXPECT_EQ(reinterpret_cast<HFONT>(SendMessageW(moved_, WM_GETFONT, 0, 0)), HandheldGetFont());
  }
}

TEST_F(ZoomTest, TooltipsHaveItsFont) {
  HandheldSetZoom(200);
  const HWND tip = CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, WS_POPUP, 0, 0, 0, 0, top(), nullptr,
                                   GetModuleHandleW(nullptr), nullptr);
  HandheldEquipTip(tip);
  const HWND bar = HandheldCreateWindow(0, TOOLBARCLASSNAMEW, L"", WS_CHILD | TBSTYLE_TOOLTIPS, 0, 0, 100, 26,
                                        top(), nullptr, GetModuleHandleW(nullptr), nullptr);
  const wchar_t* const text = L"New";
  HandheldSetButtonTips(bar, 1, &text);
  const auto tipOfBar = reinterpret_cast<HWND>(SendMessageW(bar, TB_GETTOOLTIPS, 0, 0));
  ASSERT_TRUE(tipOfBar);
  for (const HWND each : {tip, tipOfBar}) EXPECT_EQ(heightOfFont(each), -21);
  HandheldSetZoom(150);
  for (const HWND each : {tip, tipOfBar}) EXPECT_EQ(heightOfFont(each), -16);
}

TEST_F(ZoomTest, TheWindowIsToldOnceAndAfterTheLayout) {
  RECT then{};
  onMessage([&](const Got& got) {
    if (got.message == HandheldZoomMessage()) then = placeInParent(outer_);
  });
  HandheldSetZoom(200);
  EXPECT_EQ(countOf(HandheldZoomMessage(), 0), 1);
  EXPECT_EQ(then, (RECT{6, 10, 402, 302}));
  HandheldSetZoom(200);
  EXPECT_EQ(countOf(HandheldZoomMessage(), 0), 1);
}

TEST_F(ZoomTest, TheMenuBarGrowsWithIt) {
  const HWND bar = makeBar();
  ASSERT_NE(bar, nullptr);
  for (const int zoom : {150, 200, 100}) {
    HandheldSetZoom(zoom);
    EXPECT_EQ(placeInParent(bar), scaled({0, 268, 240, 294}));
    RECT client{};
    HandheldGetClientRect(top(), &client);
    EXPECT_EQ(client, (RECT{0, 0, 240, 294}));
    RECT button{};
    SendMessageW(bar, TB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&button));
    EXPECT_EQ(button.bottom, HandheldToMonitor(26));
  }
}

TEST_F(ZoomTest, AMoveKeepsTheSizeAndASizeThePosition) {
  HandheldSetZoom(150);
  HandheldSetWindowPos(moved_, nullptr, 20, 30, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  EXPECT_EQ(placeInParent(moved_), scaled({20, 30, 51, 37}));
  HandheldSetWindowPos(moved_, nullptr, 0, 0, 11, 13, SWP_NOMOVE | SWP_NOZORDER);
  EXPECT_EQ(placeInParent(moved_), scaled({20, 30, 31, 43}));
  HandheldSetZoom(200);
  EXPECT_EQ(placeInParent(moved_), (RECT{40, 60, 62, 86}));
}

TEST_F(ZoomTest, AWindowThatTheShellDidNotMakeStaysUntilItIsMoved) {
  const HWND foreign =
      CreateWindowExW(0, WC_STATICW, L"", WS_CHILD, 7, 9, 20, 30, top(), nullptr, nullptr, nullptr);
  HandheldSetZoom(200);
  EXPECT_EQ(placeInParent(foreign), (RECT{7, 9, 27, 39}));
  HandheldMoveWindow(foreign, 7, 9, 20, 30, FALSE);
  EXPECT_EQ(placeInParent(foreign), (RECT{14, 18, 54, 78}));
  HandheldSetZoom(100);
  EXPECT_EQ(placeInParent(foreign), (RECT{7, 9, 27, 39}));
}

TEST_F(ZoomTest, OnlyTheRangeIsTakenAndRemembered) {
  EXPECT_TRUE(HandheldSetZoom(150));
  for (const int zoom : {99, 401, -1, 1}) EXPECT_FALSE(HandheldSetZoom(zoom)) << zoom;
  EXPECT_EQ(HandheldGetZoom(), 150);
  EXPECT_EQ(pocketshell::readZoomSetting(), 150);
  EXPECT_TRUE(HandheldSetZoom(0));
  EXPECT_EQ(pocketshell::readZoomSetting(), 0);
}

TEST_F(ZoomTest, TheSystemMenuChoosesAndMarks) {
  const HMENU system = GetSystemMenu(top(), FALSE);
  const HMENU zooms = GetSubMenu(system, GetMenuItemCount(system) - 1);
  ASSERT_EQ(GetMenuItemCount(zooms), 6);
  constexpr std::array kZooms = {100, 150, 200, 300, 400};
  for (int i = 0; i < 5; ++i) {
    const UINT command = GetMenuItemID(zooms, i);
    EXPECT_LT(command, 0xF000U);
    EXPECT_EQ(command & 0xFU, 0U);
    SendMessageW(top(), WM_SYSCOMMAND, command, 0);
    EXPECT_EQ(HandheldGetZoom(), kZooms[static_cast<std::size_t>(i)]);
    SendMessageW(top(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(zooms), MAKELPARAM(0, TRUE));
    for (int other = 0; other < 6; ++other) {
      EXPECT_EQ(GetMenuState(zooms, static_cast<UINT>(other), MF_BYPOSITION) & MF_CHECKED,
                other == i ? UINT{MF_CHECKED} : 0U);
    }
  }
  SendMessageW(top(), WM_SYSCOMMAND, GetMenuItemID(zooms, 5), 0);
  EXPECT_EQ(pocketshell::readZoomSetting(), 0);
}

TEST_F(ZoomTest, TheChoiceOfTheSystemMenuMayComeAsAnOrdinaryCommand) {
  const HMENU system = GetSystemMenu(top(), FALSE);
  const HMENU zooms = GetSubMenu(system, GetMenuItemCount(system) - 1);
  SendMessageW(top(), WM_COMMAND, GetMenuItemID(zooms, 2), 0);
  EXPECT_EQ(HandheldGetZoom(), 200);
  // From a control, not from a menu.
  SendMessageW(top(), WM_COMMAND, GetMenuItemID(zooms, 0), reinterpret_cast<LPARAM>(top()));
  EXPECT_EQ(HandheldGetZoom(), 200);
  SendMessageW(top(), WM_COMMAND, GetMenuItemID(zooms, 0), 0);
  EXPECT_EQ(HandheldGetZoom(), 100);
}

TEST_F(ZoomTest, AResolutionChangesTheZoomOnlyWhenNoneWasChosen) {
  RECT suggested{};
  GetWindowRect(top(), &suggested);
  const auto change = [&] {
    SendMessageW(top(), WM_DPICHANGED, MAKEWPARAM(96, 96), reinterpret_cast<LPARAM>(&suggested));
  };
  HandheldSetZoom(0);
  const int automatic = HandheldGetZoom();
  HandheldSetZoom(300);
  change();
  EXPECT_EQ(HandheldGetZoom(), 300);
  HKEY key = nullptr;
  RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\MorvaleSoftware\\Pocket Shell", 0, KEY_SET_VALUE, &key);
  RegDeleteValueW(key, L"Zoom");
  RegCloseKey(key);
  change();
  EXPECT_EQ(HandheldGetZoom(), automatic);
}

TEST_F(ZoomTest, TheScreenIsTheHandhelds) {
  const int scrollBar = GetSystemMetrics(SM_CXVSCROLL);
  const int monitors = GetSystemMetrics(SM_CMONITORS);
  HandheldSetZoom(200);
  EXPECT_EQ(HandheldGetSystemMetrics(SM_CXSCREEN), 240);
  EXPECT_EQ(HandheldGetSystemMetrics(SM_CYSCREEN), 320);
  EXPECT_EQ(HandheldGetSystemMetrics(SM_CXVSCROLL), HandheldFromMonitor(scrollBar));
  EXPECT_EQ(HandheldGetSystemMetrics(SM_CMONITORS), monitors);
}

TEST_F(ZoomTest, FailuresLeaveTheRectangleAlone) {
  RECT rectangle = {1, 2, 3, 4};
  EXPECT_FALSE(HandheldGetClientRect(nullptr, &rectangle));
  EXPECT_FALSE(HandheldGetWindowRect(nullptr, &rectangle));
  EXPECT_FALSE(HandheldMoveWindow(nullptr, 0, 0, 1, 1, FALSE));
  EXPECT_EQ(rectangle, (RECT{1, 2, 3, 4}));
}

TEST_F(ZoomTest, AFrameOfTheHandheldsSizeCanNotBeSized) {
  const LONG_PTR style = GetWindowLongPtrW(top(), GWL_STYLE);
  constexpr LONG_PTR kWanted = WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_VISIBLE;
  EXPECT_EQ(style & kWanted, kWanted);
  EXPECT_EQ(style & (WS_THICKFRAME | WS_MAXIMIZEBOX), 0);
}

class ButtonTipsTest : public ShellTest {
 protected:
  static std::wstring tipOf(HWND toolbar, int command) {
    NMTTDISPINFOW wanted{};
    wanted.hdr.hwndFrom = reinterpret_cast<HWND>(SendMessageW(toolbar, TB_GETTOOLTIPS, 0, 0));
    wanted.hdr.idFrom = static_cast<UINT_PTR>(command);
    wanted.hdr.code = TTN_GETDISPINFOW;
    wanted.lpszText = wanted.szText;
    SendMessageW(toolbar, WM_NOTIFY, wanted.hdr.idFrom, reinterpret_cast<LPARAM>(&wanted));
    return wanted.lpszText ? wanted.lpszText : L"";
  }
};

TEST_F(ButtonTipsTest, AreGivenInTheOrderOfTheButtons) {
  const HWND bar = makeBar();
  constexpr std::array<const wchar_t*, 4> kTips = {nullptr, L"Second", nullptr, L"Later"};
  EXPECT_TRUE(HandheldSetButtonTips(bar, 4, kTips.data()));
  TBBUTTON later{};
  later.idCommand = 900;
  later.fsState = TBSTATE_ENABLED;
  SendMessageW(bar, TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&later));
  TBBUTTON second{};
  SendMessageW(bar, TB_GETBUTTON, 1, reinterpret_cast<LPARAM>(&second));
  EXPECT_EQ(tipOf(bar, second.idCommand), L"Second");
  EXPECT_EQ(tipOf(bar, 900), L"Later");
  constexpr std::array<const wchar_t*, 2> kOthers = {L"First", nullptr};
  EXPECT_TRUE(HandheldSetButtonTips(bar, 2, kOthers.data()));
  EXPECT_EQ(tipOf(bar, second.idCommand), L"");
  EXPECT_FALSE(HandheldSetButtonTips(nullptr, 2, kOthers.data()));
}

}  // namespace
