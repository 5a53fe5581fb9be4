#include "app/main_window.h"

#include <commctrl.h>

#include <array>

#include "app/command_table.h"
#include "app/program_state.h"
#include "app/screen.h"
#include "app/tab_pages.h"
#include "resources/resource_ids.h"
#include "views/message_table.h"
#include "views/name_list_view.h"

namespace {

constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;

/// The control that had the focus when the window was last left.
HWND lastFocus = nullptr;

LRESULT commandGiven(HWND window, UINT, WPARAM wParam, LPARAM lParam) {
  return runCommand(window, LOWORD(wParam), lParam, HIWORD(wParam));
}

LRESULT windowDestroyed(HWND, UINT, WPARAM, LPARAM) {
  if (theDocument) theDocument->closeDatabase();
  destroyTabImages();
  PostQuitMessage(0);
  return 0;
}

LRESULT windowActivated(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (LOWORD(wParam) == WA_INACTIVE) lastFocus = GetFocus();
  return DefWindowProcW(window, message, wParam, lParam);
}

/// The window itself has no use for the keyboard: who comes back to it goes on where he was.
LRESULT focusGained(HWND window, UINT, WPARAM, LPARAM) {
  if (IsChild(window, lastFocus) && IsWindowVisible(lastFocus)) SetFocus(lastFocus);
  return 0;
}

void openSelection(int index) {
  if (currentPage == kTablesPageIndex) {
    theDocument->openTableSelection(index);
  } else if (currentPage == kQueriesPageIndex) {
    theDocument->openQuerySelection(index);
  }
}

void namesListReported(const NMHDR& notification) {
  if (notification.code == LVN_ITEMCHANGED) {
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(notification);
    // The item that loses the selection is reported too, and nobody has chosen that.
    if ((change.uNewState & ~change.uOldState & LVIS_SELECTED) != 0) openSelection(change.iItem);
  } else if (notification.code == NM_CLICK) {
    // A tap on the item that is selected already changes nothing in the list and is a choice all the
    // same: of the table, say, after a query was looked at.
    const auto& click = reinterpret_cast<const NMITEMACTIVATE&>(notification);
    if (click.iItem >= 0) openSelection(click.iItem);
  }
}

LRESULT controlReported(HWND, UINT, WPARAM, LPARAM lParam) {
  const auto& notification = *reinterpret_cast<const NMHDR*>(lParam);
  if (!theDocument) return 0;
  if (notification.hwndFrom == tabControl && notification.code == TCN_SELCHANGE) {
    switchPage(selectedTab());
  } else if (notification.idFrom == NameListView::kControlId) {
    namesListReported(notification);
  }
  return 0;
}

constexpr std::array kMessages = {
    MessageRow{WM_COMMAND, commandGiven},     MessageRow{WM_DESTROY, windowDestroyed},
    MessageRow{WM_ACTIVATE, windowActivated}, MessageRow{WM_NOTIFY, controlReported},
    MessageRow{WM_SETFOCUS, focusGained},
};

LRESULT CALLBACK mainProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return answerFromTable(kMessages, window, message, wParam, lParam, DefWindowProcW);
}

}  // namespace

bool registerMainWindowClass() {
  WNDCLASSW description{};
  description.style = CS_HREDRAW | CS_VREDRAW;
  description.lpfnWndProc = mainProcedure;
  description.hInstance = instanceHandle;
  description.hIcon = LoadIconW(instanceHandle, MAKEINTRESOURCEW(IDI_QUIVANE));
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  description.lpszClassName = kMainWindowClass;
  return RegisterClassW(&description) != 0;
}

void createMainWindow(int showCommand) {
  RECT frame = {0, 0, screen::kPageAreaWidth, screen::kPageAreaHeight};
  AdjustWindowRectEx(&frame, kStyle, FALSE, 0);
  mainWindow = CreateWindowExW(0, kMainWindowClass, kMainWindowTitle, kStyle, CW_USEDEFAULT, CW_USEDEFAULT,
                               frame.right - frame.left, frame.bottom - frame.top, nullptr, nullptr,
                               instanceHandle, nullptr);
  if (!mainWindow) return;
  ShowWindow(mainWindow, showCommand);
  UpdateWindow(mainWindow);
}
