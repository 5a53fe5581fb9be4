#include "tests/ui/modal_dialog_fixture.h"

#include <commctrl.h>

#include <algorithm>

#include "base/live_resources.h"
#include "platform/pocketshell/handheld_windows.h"

namespace {

constexpr wchar_t kClassName[] = L"Dialog Owner";
constexpr wchar_t kSettings[] = L"Software\\MorvaleSoftware\\Pocket Shell";

std::vector<HWND> childrenOf(HWND dialog) {
  std::vector<HWND> children;
  for (HWND each = GetWindow(dialog, GW_CHILD); each; each = GetWindow(each, GW_HWNDNEXT)) {
    children.push_back(each);
  }
  return children;
}

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

/// What the control's text takes, with its line breaks.
SIZE textSize(HWND control) {
  const HDC context = GetDC(control);
  const auto font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
  const HGDIOBJ before = SelectObject(context, font);
  RECT needed{};
  DrawTextW(context, textOf(control).c_str(), -1, &needed, DT_CALCRECT);
  SelectObject(context, before);
  ReleaseDC(control, context);
  return {needed.right, needed.bottom};
}

}  // namespace

ModalDialogFixture::ModalDialogFixture() {
  INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&controls);
  RegDeleteTreeW(HKEY_CURRENT_USER, kSettings);
  HandheldSetZoom(100);
  WNDCLASSW description{};
  description.lpfnWndProc = DefWindowProcW;
  description.hInstance = GetModuleHandleW(nullptr);
  description.lpszClassName = kClassName;
  RegisterClassW(&description);  // fails but for the first
  owner_ =
      HandheldCreateWindow(0, kClassName, L"Quivane", WS_VISIBLE, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                           CW_USEDEFAULT, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
}

ModalDialogFixture::~ModalDialogFixture() {
  SHSipPreference(owner_, SIP_DOWN);
  DestroyWindow(owner_);
  HandheldSetZoom(100);
  RegDeleteTreeW(HKEY_CURRENT_USER, kSettings);
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

void ModalDialogFixture::useInputPanel() {
  const DWORD asHandheld = 1;
  RegSetKeyValueW(HKEY_CURRENT_USER, kSettings, L"InputPanel", REG_DWORD, &asHandheld, sizeof(asHandheld));
}

bool ModalDialogFixture::isPanelUp() {
  SIPINFO info{};
  info.cbSize = sizeof(info);
  return SHSipInfo(SPI_GETSIPINFO, 0, &info, 0) && (info.fdwFlags & SIPF_ON) != 0;
}

std::vector<int> ModalDialogFixture::tabOrder(HWND dialog) {
  std::vector<int> order;
  HWND each = GetNextDlgTabItem(dialog, nullptr, FALSE);
  while (each && (order.empty() || GetDlgCtrlID(each) != order.front())) {
    order.push_back(GetDlgCtrlID(each));
    each = GetNextDlgTabItem(dialog, each, FALSE);
  }
  return order;
}

std::vector<std::wstring> ModalDialogFixture::cutLabels(HWND dialog) {
  std::vector<std::wstring> cut;
  for (const HWND control : childrenOf(dialog)) {
    const std::wstring name = classOf(control);
    if (name != L"Static" && name != L"Button") continue;
    const SIZE needed = textSize(control);
    const ControlPlace place = placeOf(control);
    if (needed.cx > place.width || needed.cy > place.height) cut.push_back(::textOf(control));
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
