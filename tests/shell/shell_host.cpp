// A window with everything the shell gives one, for pictures: shell_host [old | extended | plain]. The
// zoom and the panel's policy are the registry's.
#include <windows.h>

#include <commctrl.h>

#include <array>
#include <string_view>

#include "platform/pocketshell/aygshell.h"
#include "platform/pocketshell/handheld_windows.h"
#include "tests/shell/shell_resources.h"

namespace {

constexpr wchar_t kClassName[] = L"Shell Host";

HWND list = nullptr;
HWND edit = nullptr;

HINSTANCE instance() {
  return GetModuleHandleW(nullptr);
}

void makeBar(HWND window) {
  SHMENUBARINFO info{};
  info.cbSize = sizeof(info);
  info.hwndParent = window;
  info.nToolBarId = IDR_BAR;
  info.hInstRes = instance();
  info.nBmpId = IDB_STRIP;
  info.cBmpImages = 3;
  if (!SHCreateMenuBar(&info)) return;
  std::array<TBBUTTON, 3> added{};
  for (int i = 0; i < 3; ++i) {
    TBBUTTON& button = added[static_cast<std::size_t>(i)];
    button.iBitmap = i;
    button.idCommand = ID_IMAGE_NEW + i;
    button.fsState = i == 1 ? TBSTATE_INDETERMINATE : TBSTATE_ENABLED;
  }
  SendMessageW(info.hwndMB, TB_ADDBUTTONSW, added.size(), reinterpret_cast<LPARAM>(added.data()));
  constexpr std::array<const wchar_t*, 6> kTips = {nullptr, nullptr, nullptr, L"New", L"Delete", L"Find"};
  HandheldSetButtonTips(info.hwndMB, static_cast<UINT>(kTips.size()), kTips.data());
}

HWND makeControl(HWND parent, const wchar_t* className, const wchar_t* text, DWORD style, RECT place) {
  return HandheldCreateWindow(0, className, text, WS_CHILD | WS_VISIBLE | style, static_cast<int>(place.left),
                              static_cast<int>(place.top), static_cast<int>(place.right - place.left),
                              static_cast<int>(place.bottom - place.top), parent, nullptr, instance(),
                              nullptr);
}

void makeControls(HWND window) {
  const HWND tab =
      makeControl(window, WC_TABCONTROLW, L"", WS_BORDER | WS_GROUP | TCS_BOTTOM, {0, 0, 240, 269});
  for (const wchar_t* const text : {L"Tables", L"Form", L"List", L"Queries"}) {
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = const_cast<wchar_t*>(text);
    SendMessageW(tab, TCM_INSERTITEMW, 9, reinterpret_cast<LPARAM>(&item));
  }
  makeControl(window, WC_STATICW, L"Name:", 0, {6, 8, 60, 26});
  edit = makeControl(window, WC_EDITW, L"Typed here", WS_BORDER | ES_AUTOHSCROLL, {64, 6, 232, 24});
  makeControl(window, WC_BUTTONW, L"Married", BS_AUTOCHECKBOX, {64, 28, 232, 46});
  list = makeControl(window, WC_LISTVIEWW, L"", LVS_REPORT | LVS_SINGLESEL, {6, 52, 232, 180});
  for (int i = 0; i < 3; ++i) {
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.cx = HandheldToMonitor(75);
    column.pszText = const_cast<wchar_t*>(L"Column");
    SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
  }
  for (int i = 0; i < 5; ++i) {
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = i;
    item.pszText = const_cast<wchar_t*>(L"Item");
    SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  }
}

INT_PTR CALLBACK dialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    if (lParam != 0) {
      SHINITDLGINFO info = {SHIDIM_FLAGS, dialog, SHIDIF_DONEBUTTON | SHIDIF_SIZEDLGFULLSCREEN};
      SHInitDialog(&info);
    }
    return TRUE;
  }
  if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
    EndDialog(dialog, LOWORD(wParam));
    return TRUE;
  }
  return FALSE;
}

void showMenu(HWND window, POINT place) {
  const HMENU menu = CreatePopupMenu();
  AppendMenuW(menu, MF_STRING, ID_DELETE, L"Delete Table");
  TrackPopupMenuEx(menu, 0, static_cast<int>(place.x), static_cast<int>(place.y), window, nullptr);
  DestroyMenu(menu);
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CREATE) {
    makeBar(window);
    return 0;
  }
  if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == GN_CONTEXTMENU) {
    showMenu(window, reinterpret_cast<const NMRGINFO*>(lParam)->ptAction);
    return 0;
  }
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

// NOLINTNEXTLINE(readability-non-const-parameter): the signature is the system's
int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR lpCmdLine, int) {
  const std::wstring_view dialog = lpCmdLine;
  WNDCLASSW description{};
  description.lpfnWndProc = procedure;
  description.hInstance = instance();
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  description.lpszClassName = kClassName;
  RegisterClassW(&description);
  const HWND window =
      HandheldCreateWindow(0, kClassName, L"Shell", WS_VISIBLE, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                           CW_USEDEFAULT, nullptr, nullptr, instance(), nullptr);
  makeControls(window);
  SetFocus(edit);
  if (dialog == L"old") HandheldDialogBox(instance(), IDD_OLD, window, dialogProcedure, 0);
  if (dialog == L"extended") HandheldDialogBox(instance(), IDD_EXTENDED, window, dialogProcedure, 0);
  if (dialog == L"plain") HandheldDialogBox(instance(), IDD_PLAIN, window, dialogProcedure, 1);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0)) {
    HandheldTakeMenuKey(&message);
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return 0;
}
