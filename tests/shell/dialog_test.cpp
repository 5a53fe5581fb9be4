#include <windows.h>

#include <commctrl.h>

#include <functional>

#include "tests/shell/shell_fixture.h"
#include "tests/shell/shell_resources.h"
#include "tests/shell/shell_settings.h"

namespace {

/// What is done with a dialog once it is shown; the dialog ends with the answer.
using Look = std::function<void(HWND)>;

constexpr UINT kLookMessage = WM_APP + 1;

struct Visit {
  DWORD initFlags = 0;
  Look look;
  LPARAM parameter = 0;
};

INT_PTR CALLBACK visited(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    const auto& visit = *reinterpret_cast<const Visit*>(lParam);
    if (visit.initFlags != 0) {
      SHINITDLGINFO info = {SHIDIM_FLAGS, dialog, visit.initFlags};
      EXPECT_TRUE(SHInitDialog(&info));
    }
    PostMessageW(dialog, kLookMessage, 0, 0);
    return TRUE;
  }
  if (message == kLookMessage) {
    reinterpret_cast<const Visit*>(GetWindowLongPtrW(dialog, DWLP_USER))->look(dialog);
    return TRUE;
  }
  if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
    EndDialog(dialog, LOWORD(wParam));
    return TRUE;
  }
  return FALSE;
}

class DialogTest : public ShellTest {
 protected:
  INT_PTR visit(WORD id, DWORD initFlags, Look look) const {
    Visit visit{initFlags, std::move(look)};
    return HandheldDialogBox(GetModuleHandleW(nullptr), id, top(), visited, reinterpret_cast<LPARAM>(&visit));
  }

  static Look closing(const Look& look = {}) {
    return [=](HWND dialog) {
      if (look) look(dialog);
      EndDialog(dialog, 1);
    };
  }
};

TEST_F(DialogTest, ControlsHaveTheHandheldsFigures) {
  RECT edit{};
  RECT inside{};
  EXPECT_EQ(visit(IDD_OLD, 0, closing([&](HWND dialog) {
                    edit = placeInParent(GetDlgItem(dialog, IDC_NAME));
                    inside = clientRect(dialog);
                  })),
            1);
  EXPECT_EQ(inside, (RECT{0, 0, 210, 130}));
  EXPECT_EQ(edit, (RECT{62, 11, 197, 31}));
}

TEST_F(DialogTest, AtEveryZoomTheyAreTheSameFiguresWithTheFontOfTheZoom) {
  for (const WORD id : {WORD{IDD_OLD}, WORD{IDD_EXTENDED}}) {
    for (const int zoom : {150, 200, 400}) {
      HandheldSetZoom(zoom);
      visit(id, 0, closing([&](HWND dialog) {
              const HWND control = GetDlgItem(dialog, IDC_NAME);
              const int inside = id == IDD_OLD ? 210 : 227;
              EXPECT_EQ(clientRect(dialog).right, HandheldToMonitor(inside));
              EXPECT_EQ(placeInParent(control), (RECT{HandheldToMonitor(62), HandheldToMonitor(11),
                                                      HandheldToMonitor(197), HandheldToMonitor(31)}));
              EXPECT_EQ(reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)), HandheldGetFont());
              RECT handheld{};
              HandheldGetWindowRect(control, &handheld);
              EXPECT_EQ(handheld, (RECT{62, 11, 197, 31}));
            }));
    }
  }
}

TEST_F(DialogTest, TheZoomMayChangeWhileItIsOpen) {
  visit(IDD_OLD, 0, closing([&](HWND dialog) {
          HandheldSetZoom(200);
          EXPECT_EQ(clientRect(dialog), (RECT{0, 0, 420, 260}));
          EXPECT_EQ(placeInParent(GetDlgItem(dialog, IDC_NAME)), (RECT{124, 22, 394, 62}));
          HandheldSetZoom(100);
          EXPECT_EQ(clientRect(dialog), (RECT{0, 0, 210, 130}));
        }));
}

TEST_F(DialogTest, TheColumnsOfAListKeepTheirShareOfItAtEveryZoom) {
  visit(IDD_EXTENDED, 0, closing([&](HWND dialog) {
          const HWND list = GetDlgItem(dialog, IDC_LIST);
          for (const int width : {50, 71}) {
            LVCOLUMNW column{};
            column.mask = LVCF_WIDTH;
            column.cx = width;
            SendMessageW(list, LVM_INSERTCOLUMNW, 9, reinterpret_cast<LPARAM>(&column));
          }
          for (const int zoom : {200, 150, 100}) {
            HandheldSetZoom(zoom);
            EXPECT_EQ(SendMessageW(list, LVM_GETCOLUMNWIDTH, 0, 0), HandheldToMonitor(50));
            EXPECT_EQ(SendMessageW(list, LVM_GETCOLUMNWIDTH, 1, 0), HandheldToMonitor(71));
          }
        }));
}

TEST_F(DialogTest, AFullScreenDialogCoversTheClientArea) {
  for (const int zoom : {100, 200}) {
    HandheldSetZoom(zoom);
    visit(IDD_PLAIN, SHIDIF_DONEBUTTON | SHIDIF_SIZEDLGFULLSCREEN, closing([&](HWND dialog) {
            RECT inside = clientRect(dialog);
            MapWindowPoints(dialog, top(), reinterpret_cast<POINT*>(&inside), 2);
            EXPECT_EQ(inside, clientRect(top()));
            EXPECT_EQ(GetWindowLongPtrW(dialog, GWL_STYLE) & WS_CAPTION, WS_CAPTION);
            wchar_t title[20] = L"";
            GetWindowTextW(dialog, title, 20);
            EXPECT_STREQ(title, L"Plain");
            const HWND ok = GetDlgItem(dialog, IDOK);
            ASSERT_NE(ok, nullptr);
            EXPECT_NE(GetWindowLongPtrW(ok, GWL_STYLE) & WS_VISIBLE, 0);
          }));
  }
}

TEST_F(DialogTest, AFullScreenDialogHasNoIconInItsCaption) {
  visit(IDD_PLAIN, SHIDIF_SIZEDLGFULLSCREEN, closing([](HWND dialog) {
          EXPECT_NE(GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_DLGMODALFRAME, 0);
        }));
}

TEST_F(DialogTest, ASizedDialogLeavesMenuBarAndPanelFree) {
  setPanelPolicy(kPanelAlways);
  visit(IDD_PLAIN, SHIDIF_SIZEDLG, closing([](HWND dialog) {
          EXPECT_EQ(clientRect(dialog), (RECT{0, 0, 240, 268}));
        }));
  SHSipPreference(top(), SIP_UP);
  visit(IDD_PLAIN, SHIDIF_SIZEDLG, closing([](HWND dialog) {
          EXPECT_EQ(clientRect(dialog), (RECT{0, 0, 240, 188}));
        }));
  visit(IDD_PLAIN, SHIDIF_SIZEDLG | SHIDIF_SIPDOWN, closing([](HWND dialog) {
          EXPECT_EQ(clientRect(dialog), (RECT{0, 0, 240, 268}));
        }));
}

TEST_F(DialogTest, ADialogWithAnOkGetsNoSecond) {
  visit(IDD_OLD, SHIDIF_DONEBUTTON, closing([](HWND dialog) {
          int count = 0;
          for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
            count += GetDlgCtrlID(child) == IDOK ? 1 : 0;
          }
          EXPECT_EQ(count, 1);
        }));
}

TEST_F(DialogTest, EnterEscapeAndOkClose) {
  constexpr DWORD kFlags = SHIDIF_DONEBUTTON | SHIDIF_SIZEDLGFULLSCREEN;
  EXPECT_EQ(visit(IDD_PLAIN, kFlags, [](HWND dialog) { PostMessageW(dialog, WM_KEYDOWN, VK_RETURN, 1); }),
            IDOK);
  EXPECT_EQ(visit(IDD_PLAIN, kFlags, [](HWND dialog) { PostMessageW(dialog, WM_KEYDOWN, VK_ESCAPE, 1); }),
            IDCANCEL);
  EXPECT_EQ(
      visit(IDD_PLAIN, kFlags, [](HWND dialog) { PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0); }),
      IDOK);
}

TEST_F(DialogTest, AMissingDialogIsRefused) {
  EXPECT_EQ(visit(999, 0, {}), -1);
}

TEST_F(DialogTest, WhatIsNotUnderstoodIsRefused) {
  SHINITDLGINFO info = {0, top(), SHIDIF_DONEBUTTON};
  EXPECT_FALSE(SHInitDialog(&info));
  info = {SHIDIM_FLAGS, nullptr, SHIDIF_DONEBUTTON};
  EXPECT_FALSE(SHInitDialog(&info));
  EXPECT_FALSE(SHInitDialog(nullptr));
}

}  // namespace
