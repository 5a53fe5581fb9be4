// A frame that the user can size.
#include "platform/pocketshell/panel/panel_keys.h"
#include "platform/pocketshell/window/kept_places.h"
#include "platform/pocketshell/zoom/zoom_figures.h"
#include "tests/shell/shell_fixture.h"
#include "tests/shell/shell_resources.h"
#include "tests/shell/shell_settings.h"

namespace {

using pocketshell::FramePlace;

class FrameSizeTest : public ShellTest {
 protected:
  FrameSizeTest() : ShellTest(false) {}

  /// Gives the window this much inside, in the monitor's pixels.
  void size(LONG width, LONG height) const {
    RECT outer{};
    GetWindowRect(top(), &outer);
    const RECT inside = clientRect(top());
    SetWindowPos(top(), nullptr, 0, 0, static_cast<int>(outer.right - outer.left - inside.right + width),
                 static_cast<int>(outer.bottom - outer.top - inside.bottom + height),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
  static RECT handheldClient(HWND window) {
    RECT client{};
    EXPECT_TRUE(HandheldGetClientRect(window, &client));
    return client;
  }
  static void expectScreen(int width, int height) {
    EXPECT_EQ(HandheldGetSystemMetrics(SM_CXSCREEN), width);
    EXPECT_EQ(HandheldGetSystemMetrics(SM_CYSCREEN), height + 26);
    EXPECT_EQ(HandheldGetPageArea().cx, width);
    EXPECT_EQ(HandheldGetPageArea().cy, height - 25);
  }
  RECT outerRect() const {
    RECT outer{};
    GetWindowRect(top(), &outer);
    return outer;
  }
};

TEST_F(FrameSizeTest, ItCanBeSizedAndMaximisedAndIsComfortableAtFirst) {
  constexpr LONG_PTR kWanted = WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX | WS_THICKFRAME;
  EXPECT_EQ(GetWindowLongPtrW(top(), GWL_STYLE) & kWanted, kWanted);
  EXPECT_EQ(clientRect(top()), (RECT{0, 0, 400, 480}));
  expectScreen(400, 480);
}

TEST_F(FrameSizeTest, TheScreenIsTheInsideAndTheWindowFindsItWhenItIsTold) {
  SIZE told{};
  onMessage([&](const Got& got) {
    if (got.message == WM_SIZE) told = HandheldGetPageArea();
  });
  size(640, 500);
  EXPECT_EQ(told.cx, 640);
  EXPECT_EQ(told.cy, 475);
  EXPECT_EQ(handheldClient(top()), (RECT{0, 0, 640, 500}));
  expectScreen(640, 500);
  SendMessageW(top(), WM_SYSCOMMAND, SC_MINIMIZE, 0);
  expectScreen(640, 500);
  SendMessageW(top(), WM_SYSCOMMAND, SC_RESTORE, 0);
  expectScreen(640, 500);
  DestroyWindow(top());
  expectScreen(240, 294);
}

TEST_F(FrameSizeTest, ItIsNeverSmallerThanTheHandhelds) {
  for (const int zoom : {100, 150, 200}) {
    HandheldSetZoom(zoom);
    size(10, 10);
    EXPECT_EQ(clientRect(top()), (RECT{0, 0, HandheldToMonitor(240), HandheldToMonitor(294)})) << zoom;
    expectScreen(240, 294);
  }
}

TEST_F(FrameSizeTest, TheZoomKeepsTheFiguresInsideAsFarAsTheMonitorHasRoom) {
  size(300, 320);
  HandheldSetZoom(200);
  EXPECT_EQ(clientRect(top()), (RECT{0, 0, 600, 640}));
  expectScreen(300, 320);
  HandheldSetZoom(100);
  EXPECT_EQ(clientRect(top()), (RECT{0, 0, 300, 320}));
  HandheldSetZoom(400);
  EXPECT_EQ(clientRect(top()).bottom, 4 * 294) << "less than that it never is";
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(top(), MONITOR_DEFAULTTOPRIMARY), &monitor);
  EXPECT_LE(outerRect().right - outerRect().left, monitor.rcWork.right - monitor.rcWork.left);
}

TEST_F(FrameSizeTest, WhatALargeZoomHadNoRoomForComesBackWithASmallerOne) {
  size(400, 480);
  SetWindowPos(top(), nullptr, 90, 40, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  const RECT before = outerRect();
  HandheldSetZoom(200);
  ASSERT_LT(clientRect(top()).bottom, 2 * 480) << "the monitor of the test is too large";
  HandheldSetZoom(300);
  HandheldSetZoom(100);
  EXPECT_EQ(outerRect(), before);

  HandheldSetZoom(200);
  size(560, 640);
  HandheldSetZoom(100);
  EXPECT_EQ(clientRect(top()), (RECT{0, 0, 280, 320})) << "the user has chosen another size";
}

TEST_F(FrameSizeTest, NoGapIsLeftAtSizesThatAreNoWholeFigures) {
  const HWND bar = makeBar();
  HandheldSetZoom(200);
  size(601, 701);
  expectScreen(301, 351);
  EXPECT_EQ(handheldClient(top()), (RECT{0, 0, 301, 351}));
  EXPECT_EQ(placeInParent(bar), (RECT{0, 650, 601, 701}));
  HandheldSetZoom(150);
  size(512, 512);
  EXPECT_GE(HandheldToMonitor(HandheldGetSystemMetrics(SM_CXSCREEN)), 512);
}

TEST_F(FrameSizeTest, TheMenuBarStaysAtTheBottom) {
  const HWND bar = makeBar();
  size(640, 500);
  EXPECT_EQ(placeInParent(bar), (RECT{0, 474, 640, 500}));
  size(240, 294);
  EXPECT_EQ(placeInParent(bar), (RECT{0, 268, 240, 294}));
}

TEST_F(FrameSizeTest, ThePanelLiesAboveTheMenuBarAndItsKeysFillIt) {
  setPanelPolicy(kPanelAlways);
  size(500, 400);
  SHSipPreference(top(), SIP_UP);
  SIPINFO info{};
  info.cbSize = sizeof(info);
  SHSipInfo(SPI_GETSIPINFO, 0, &info, 0);
  EXPECT_EQ(info.rcSipRect, (RECT{0, 320, 500, 400}));
  EXPECT_EQ(info.rcVisibleDesktop, (RECT{0, 26, 500, 320}));
  for (const int width : {240, 500, 1281}) {
    for (LONG x = 0; x < width; ++x) {
      int count = 0;
      for (const pocketshell::PanelKey& key : pocketshell::panelKeys()) {
        const RECT place = pocketshell::keyPlace(key, width);
        count += PtInRect(&place, {x, 40}) ? 1 : 0;
      }
      ASSERT_EQ(count, 1) << x << " of " << width;
    }
  }
  const HWND edit = HandheldCreateWindow(0, WC_EDITW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20, top(),
                                         nullptr, nullptr, nullptr);
  SetFocus(edit);
  const HWND panel = FindWindowW(L"Pocket Shell Input Panel", nullptr);
  // The upper right corner: on the handheld's width no key is that far.
  SendMessageW(panel, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(400, 8));
  SendMessageW(panel, WM_LBUTTONUP, 0, MAKELPARAM(400, 8));
  pump();
  wchar_t text[8] = L"";
  GetWindowTextW(edit, text, ARRAYSIZE(text));
  EXPECT_STREQ(text, L"=");
}

TEST_F(FrameSizeTest, ItStandsWhereTheUserLeftIt) {
  size(320, 400);
  SetWindowPos(top(), nullptr, 37, 41, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  const RECT left = outerRect();
  makeTopAnew();
  EXPECT_EQ(outerRect(), left);
  expectScreen(320, 400);
}

TEST_F(FrameSizeTest, LeftMaximisedItIsMaximisedAgainAndStillKnowsItsSize) {
  size(320, 400);
  const RECT left = outerRect();
  ShowWindow(top(), SW_SHOWMAXIMIZED);
  const RECT maximised = clientRect(top());
  EXPECT_GT(maximised.right, 320);
  expectScreen(static_cast<int>(maximised.right), static_cast<int>(maximised.bottom));
  makeTopAnew();
  EXPECT_TRUE(IsZoomed(top()));
  EXPECT_EQ(clientRect(top()), maximised);
  ShowWindow(top(), SW_RESTORE);
  EXPECT_EQ(outerRect(), left);
  expectScreen(320, 400);
}

TEST_F(FrameSizeTest, LeftMinimisedItComesBackAsItWasBefore) {
  size(320, 400);
  const RECT left = outerRect();
  SendMessageW(top(), WM_SYSCOMMAND, SC_MINIMIZE, 0);
  makeTopAnew();
  EXPECT_FALSE(IsIconic(top()));
  EXPECT_EQ(outerRect(), left);
}

TEST_F(FrameSizeTest, WhereverItWasKeptItComesOntoAMonitor) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(top(), MONITOR_DEFAULTTOPRIMARY), &monitor);
  for (const FramePlace& kept :
       {FramePlace{{-9000, 5000}, {400, 480}, false}, FramePlace{{20000, -20000}, {30000, 30000}, false}}) {
    DestroyWindow(top());
    pocketshell::writeKeptPlace(pocketshell::presentArrangement(), kept);
    makeTopAnew();
    RECT both{};
    const RECT outer = outerRect();
    UnionRect(&both, &outer, &monitor.rcWork);
    EXPECT_EQ(both, monitor.rcWork) << kept.corner.x;
  }
}

TEST_F(FrameSizeTest, AtTheHandheldsSizeNothingIsKept) {
  DestroyWindow(top());
  forgetShellSettings();
  makeTopAnew();
  EXPECT_EQ(clientRect(top()), (RECT{0, 0, 240, 294}));
  SetWindowPos(top(), nullptr, 37, 41, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  DestroyWindow(top());
  EXPECT_FALSE(pocketshell::readKeptPlace(pocketshell::presentArrangement()));
}

// ---- Dialogs

INT_PTR CALLBACK sizeTheOwner(HWND dialog, UINT message, WPARAM, LPARAM look) {
  if (message != WM_INITDIALOG) return FALSE;
  SHINITDLGINFO info = {SHIDIM_FLAGS, dialog, SHIDIF_DONEBUTTON | SHIDIF_SIZEDLGFULLSCREEN};
  EXPECT_TRUE(SHInitDialog(&info));
  (*reinterpret_cast<std::function<void(HWND)>*>(look))(dialog);
  EndDialog(dialog, 1);
  return TRUE;
}

TEST_F(FrameSizeTest, AFullScreenDialogFollowsItsOkToo) {
  std::function<void(HWND)> look = [this](HWND dialog) {
    for (const SIZE inside : {SIZE{400, 480}, SIZE{641, 503}, SIZE{240, 294}}) {
      size(inside.cx, inside.cy);
      SetWindowPos(top(), nullptr, static_cast<int>(inside.cx / 10), 30, 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
      RECT covered = clientRect(dialog);
      MapWindowPoints(dialog, top(), reinterpret_cast<POINT*>(&covered), 2);
      EXPECT_EQ(covered, clientRect(top()));
      EXPECT_EQ(placeInParent(GetDlgItem(dialog, IDOK)),
                (RECT{inside.cx - 53, inside.cy - 23, inside.cx - 3, inside.cy - 3}));
    }
  };
  EXPECT_EQ(HandheldDialogBox(GetModuleHandleW(nullptr), IDD_PLAIN, top(), sizeTheOwner,
                              reinterpret_cast<LPARAM>(&look)),
            1);
}

// ---- Layout without drawing

TEST_F(FrameSizeTest, WhatIsLaidOutIsDrawnOnceAndAtOnce) {
  const HWND child = HandheldCreateWindow(0, WC_STATICW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, top(),
                                          nullptr, nullptr, nullptr);
  UpdateWindow(child);
  ValidateRect(child, nullptr);
  HandheldBeginLayout();
  HandheldMoveWindow(child, 5, 5, 50, 50, TRUE);
  EXPECT_FALSE(GetUpdateRect(child, nullptr, FALSE));
  EXPECT_EQ(placeInParent(child), (RECT{5, 5, 55, 55}));
  HandheldEndLayout(top());
  EXPECT_FALSE(GetUpdateRect(child, nullptr, FALSE)) << "it is drawn already";
  HandheldMoveWindow(child, 5, 5, 60, 60, TRUE);
  EXPECT_TRUE(GetUpdateRect(child, nullptr, FALSE));
}

TEST_F(FrameSizeTest, WhatIsShownStaysWhereItIsUntilItIsLaidOut) {
  // For all windows of the class, and the next one is told of it.
  SetClassLongPtrW(top(), GCL_STYLE, CS_HREDRAW | CS_VREDRAW);
  makeTopAnew();
  ShowWindow(top(), SW_SHOWNA);
  size(300, 300);
  RedrawWindow(top(), nullptr, nullptr, RDW_VALIDATE | RDW_ALLCHILDREN);
  size(400, 400);
  const HRGN undrawn = CreateRectRgn(0, 0, 0, 0);
  GetUpdateRgn(top(), undrawn, FALSE);
  EXPECT_FALSE(PtInRegion(undrawn, 100, 100));
  EXPECT_TRUE(PtInRegion(undrawn, 350, 350)) << "what is new is to be drawn";
  DeleteObject(undrawn);
}

TEST_F(FrameSizeTest, ALayoutThatFailsIsOverToo) {
  const HWND child = HandheldCreateWindow(0, WC_STATICW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, top(),
                                          nullptr, nullptr, nullptr);
  const auto failing = [this] {
    const HandheldLayout layout(top());
    throw std::bad_alloc();
  };
  EXPECT_THROW(failing(), std::bad_alloc);
  ValidateRect(child, nullptr);
  HandheldMoveWindow(child, 5, 5, 60, 60, TRUE);
  EXPECT_TRUE(GetUpdateRect(child, nullptr, FALSE));
}

}  // namespace
