#include "tests/ui/support/modal_dialog_fixture.h"

#include <commctrl.h>

#include <algorithm>

#include "owners/live_resources.h"
#include "platform/pocketshell/handheld_windows.h"

namespace {

BOOL CALLBACK countWindow(HWND window, LPARAM count) {
  ++*reinterpret_cast<int*>(count);
  EnumChildWindows(
      window,
      [](HWND, LPARAM children) -> BOOL {
        ++*reinterpret_cast<int*>(children);
        return TRUE;
      },
      count);
  return TRUE;
}

}  // namespace

ModalDialogFixture::ModalDialogFixture() {
  INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&controls);
  forgetShellSettings();
  HandheldSetZoom(100);
  frame_ = std::make_unique<ShellFrame>(WS_VISIBLE);
}

ModalDialogFixture::~ModalDialogFixture() {
  SHSipPreference(owner(), SIP_DOWN);
  frame_.reset();
  HandheldSetZoom(100);
  forgetShellSettings();
}

std::vector<ModalDialogFixture::Refusal> ModalDialogFixture::refusals(HWND dialog) {
  std::vector<Refusal> result;
  for (const MessageBoxSpy::Box& box : boxes_.take()) {
    EXPECT_EQ(box.owner, dialog);
    EXPECT_EQ(box.flags, static_cast<UINT>(MB_SETFOREGROUND));
    result.push_back({box.text, box.caption});
  }
  return result;
}

std::vector<std::wstring> ModalDialogFixture::cutLabels(HWND dialog) {
  std::vector<std::wstring> cut;
  for (const HWND control : childrenOf(dialog)) {
    const std::wstring name = classOf(control);
    if (name != L"Static" && name != L"Button") continue;
    auto* const font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
    if (!textFits(control, font)) cut.push_back(::textOf(control));
  }
  return cut;
}

void ModalDialogFixture::expectFits(HWND dialog) {
  RECT frame{};
  GetWindowRect(dialog, &frame);
  EXPECT_LE(frame.right - frame.left, HandheldToMonitor(240) + 2 * GetSystemMetrics(SM_CXFIXEDFRAME));
  EXPECT_LE(frame.bottom - frame.top,
            HandheldToMonitor(294) + GetSystemMetrics(SM_CYCAPTION) + 2 * GetSystemMetrics(SM_CYFIXEDFRAME));
  RECT client{};
  GetClientRect(dialog, &client);
  for (const HWND control : childrenOf(dialog)) {
    const ControlPlace place = placeOf(control);
    EXPECT_GE(place.x, 0) << GetDlgCtrlID(control);
    EXPECT_GE(place.y, 0) << GetDlgCtrlID(control);
    EXPECT_LE(place.x + place.width, client.right) << GetDlgCtrlID(control);
    // The list of a combo box hangs down over the edge when it opens.
    if (classOf(control) != WC_COMBOBOXW) {
      EXPECT_LE(place.y + place.height, client.bottom) << GetDlgCtrlID(control);
    }
  }
}

void ModalDialogFixture::expectCentred(HWND dialog, int raise) {
  RECT area{};
  GetClientRect(GetParent(dialog), &area);
  RECT frame{};
  GetWindowRect(dialog, &frame);
  const LONG width = frame.right - frame.left;
  const LONG height = frame.bottom - frame.top;
  MapWindowPoints(nullptr, GetParent(dialog), reinterpret_cast<POINT*>(&frame), 2);
  EXPECT_NEAR(frame.left, std::max(0L, (area.right - width) / 2), 1);
  EXPECT_NEAR(frame.top, std::max(0L, (area.bottom - height) / 2 - HandheldToMonitor(raise)), 1);
}

void ModalDialogFixture::expectFullScreen(HWND dialog) {
  RECT own{};
  RECT below{};
  GetClientRect(dialog, &own);
  GetClientRect(GetParent(dialog), &below);
  EXPECT_TRUE(EqualRect(&own, &below));
  MapWindowPoints(dialog, GetParent(dialog), reinterpret_cast<POINT*>(&own), 2);
  EXPECT_TRUE(EqualRect(&own, &below));
}

void ModalDialogFixture::expectColors(HWND dialog) {
  const HDC context = CreateCompatibleDC(nullptr);
  const LRESULT white = reinterpret_cast<LRESULT>(GetStockObject(WHITE_BRUSH));
  int labels = 0;
  for (const HWND control : childrenOf(dialog)) {
    if (classOf(control) != WC_STATICW) continue;
    ++labels;
    SetTextColor(context, RGB(1, 2, 3));
    EXPECT_EQ(SendMessageW(dialog, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(context),
                           reinterpret_cast<LPARAM>(control)),
              white);
    EXPECT_EQ(GetTextColor(context), RGB(0, 0, 255));
    EXPECT_EQ(GetBkColor(context), RGB(255, 255, 255));
  }
  EXPECT_GT(labels, 0);
  EXPECT_EQ(SendMessageW(dialog, WM_CTLCOLORDLG, reinterpret_cast<WPARAM>(context),
                         reinterpret_cast<LPARAM>(dialog)),
            white);
  DeleteDC(context);
}

ModalDialogFixture::Alive ModalDialogFixture::alive() {
  int windows = 0;
  EnumThreadWindows(GetCurrentThreadId(), countWindow, reinterpret_cast<LPARAM>(&windows));
  return {windows, LiveResources::countOfAll()};
}
