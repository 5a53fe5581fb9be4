#include "app/window/main_window.h"

#include <commctrl.h>
#include <shellapi.h>

#include <array>
#include <string>

#include "app/recovery/fault_watch.h"
#include "app/recovery/recovery_offer.h"
#include "app/start/command_line.h"
#include "app/start/start_page.h"
#include "app/window/command_table.h"
#include "app/window/context_menus.h"
#include "app/window/help.h"
#include "app/window/messages.h"
#include "app/window/other_programs.h"
#include "app/window/page_keys.h"
#include "app/window/page_layout.h"
#include "app/window/program_state.h"
#include "app/window/tab_pages.h"
#include "dialogs/find/find_dialog.h"
#include "owners/late_function.h"
#include "platform/pocketshell/handheld_windows.h"
#include "resources/resource_ids.h"
#include "views/dialog/current_dialog.h"
#include "views/names/name_list_view.h"
#include "views/shared/list_view.h"
#include "views/shared/message_table.h"

namespace {

/// The control that had the focus when the window was last left.
HWND lastFocus = nullptr;

LRESULT windowCreated(HWND window, UINT, WPARAM, LPARAM) {
  if (!theCommandBar->create(window)) return -1;
  theCommandBar->showCommands({});
  return 0;
}

LRESULT commandGiven(HWND window, UINT, WPARAM wParam, LPARAM lParam) {
  return runCommand(window, LOWORD(wParam), lParam, HIWORD(wParam));
}

LRESULT windowDestroyed(HWND, UINT, WPARAM, LPARAM) {
  if (theDocument) theDocument->closeDatabase();
  theCommandBar->destroy();
  destroyTabImages();
  PostQuitMessage(0);
  return 0;
}

/// What can't be stored keeps the window open.
LRESULT closeAsked(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (theDocument && (theDocument->isBusy() || !theDocument->canLeaveRecord())) return 0;
  return DefWindowProcW(window, message, wParam, lParam);
}

/// The user wants to log off: what can't be stored keeps the window open, as at its closing.
LRESULT sessionEndAsked(HWND, UINT, WPARAM, LPARAM) {
  return theDocument && (theDocument->isBusy() || !theDocument->canLeaveRecord()) ? FALSE : TRUE;
}

/// The user logs off or the system ends: what stands on the form is not lost.
LRESULT sessionEnded(HWND, UINT, WPARAM wParam, LPARAM) {
  if (wParam != FALSE && theDocument) theDocument->closeDatabase();
  return 0;
}

LRESULT findNext(HWND, UINT, WPARAM, LPARAM) {
  return theDocument ? theDocument->findNext() : 0;
}

LRESULT pathHandedOver(HWND, UINT, WPARAM, LPARAM lParam) {
  const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
  if (data.dwData != kPathForLater || !thePrompts.isChoosingFile()) return FALSE;
  // It comes from another process, and may end anywhere.
  const std::wstring path(static_cast<const wchar_t*>(data.lpData), data.cbData / sizeof(wchar_t));
  openDatabaseLater(path.c_str());
  return TRUE;
}

constinit const LateFunction<decltype(DragQueryFileW)> dragQueryFile{L"shell32.dll", "DragQueryFileW"};
constinit const LateFunction<decltype(DragFinish)> dragFinish{L"shell32.dll", "DragFinish"};

/// The first of the files that were dropped is opened as one of the command line is. Not under a dialog, and
/// not from here: the program that they come from waits for the answer.
LRESULT filesDropped(HWND window, UINT, WPARAM wParam, LPARAM) {
  const auto drop = reinterpret_cast<HDROP>(wParam);
  std::wstring path(static_cast<std::size_t>(dragQueryFile(drop, 0, nullptr, 0)) + 1, L'\0');
  dragQueryFile(drop, 0, path.data(), static_cast<UINT>(path.size()));
  dragFinish(drop);
  if (IsWindowEnabled(window) && theDocument && !theDocument->isBusy()) openDatabaseLater(path.c_str());
  return 0;
}

LRESULT itemDrawn(HWND, UINT, WPARAM, LPARAM) {
  return 0;
}

LRESULT settingChanged(HWND, UINT, WPARAM wParam, LPARAM) {
  if (wParam != SPI_SETSIPINFO) return -1;
  layOutForInputPanel();
  return 0;
}

LRESULT helpWanted(HWND, UINT, WPARAM, LPARAM) {
  showHelp(kMainHelpTopic);
  return 0;
}

LRESULT windowActivated(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  // A dialog that follows another comes before the focus has returned.
  if (LOWORD(wParam) == WA_INACTIVE && IsChild(window, GetFocus())) lastFocus = GetFocus();
  // One that ends enables this window before it goes, and is not shown once more.
  if (currentDialog && !IsWindowEnabled(window)) {
    ShowWindow(currentDialog, SW_SHOWNORMAL);
    UpdateWindow(currentDialog);
  }
  // Not from here: a question is no part of an activation.
  if (LOWORD(wParam) != WA_INACTIVE) {
    const bool isFromElsewhere = lParam == 0;
    PostMessageW(window, kCameToFrontMessage, isFromElsewhere ? 1 : 0, 0);
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

/// As long as a dialog is open the window is disabled; it comes to the front once more after that.
LRESULT cameToFront(HWND window, UINT, WPARAM wParam, LPARAM) {
  if (!theDocument || !IsWindowEnabled(window) || theDocument->isBusy()) return 0;
  theDocument->lookAfterFile();
  theDocument->lookAfterPassword();
  if (wParam != 0) lookForChanges(window);
  return 0;
}

LRESULT busyOver(HWND, UINT, WPARAM, LPARAM) {
  if (theDocument) theDocument->busyOver();
  return 0;
}

LRESULT editBegun(HWND, UINT, WPARAM, LPARAM) {
  if (theDocument && !theDocument->isBusy()) theDocument->tellUnwritable();
  return 0;
}

/// The window itself has no use for the keyboard: who comes back to it goes on where he was.
LRESULT focusGained(HWND window, UINT, WPARAM, LPARAM) {
  if (IsChild(window, lastFocus) && IsWindowVisible(lastFocus)) SetFocus(lastFocus);
  return 0;
}

/// A minimised window can't give the keyboard on; a window manager may have given it that early.
LRESULT sizeChanged(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (wParam != SIZE_MINIMIZED) layOutForSize();
  if (wParam != SIZE_MINIMIZED && GetFocus() == window) focusGained(window, WM_SETFOCUS, 0, 0);
  return DefWindowProcW(window, message, wParam, lParam);
}

void openSelection(int index) {
  if (currentPage == kTablesPageIndex) {
    theDocument->openTableSelection(index);
  } else if (currentPage == kQueriesPageIndex) {
    theDocument->openQuerySelection(index);
  }
}

void nameChanged(const NMHDR& notification) {
  const auto& change = reinterpret_cast<const NMLISTVIEW&>(notification);
  // The item that loses the selection is reported too, and nobody has chosen that. One that is selected
  // already is chosen when a key brings it the list's own focus.
  constexpr UINT kChoosing = LVIS_SELECTED | LVIS_FOCUSED;
  const bool gains = (change.uNewState & ~change.uOldState & kChoosing) != 0;
  if (gains && (change.uNewState & LVIS_SELECTED) != 0) openSelection(change.iItem);
}

void nameHeld(const NMHDR& notification) {
  const auto& tap = reinterpret_cast<const NMRGINFO&>(notification);
  showNamesContextMenu(instanceHandle, mainWindow, currentPage, tap.ptAction);
}

void nameKeyPressed(const NMHDR& notification) {
  const WORD key = reinterpret_cast<const NMLVKEYDOWN&>(notification).wVKey;
  const int selected = listview::nextItem(notification.hwndFrom, listview::kFirstOfAll, LVNI_SELECTED);
  // The keyboard's tap.
  if (key == VK_SPACE && selected >= 0) openSelection(selected);
  const int command = commandOfListKey(currentPage, key);
  if (command != 0) PostMessageW(mainWindow, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

/// A tap on the item that is selected already changes nothing in the list and is a choice all the same: of
/// the table, say, after a query was looked at.
void nameTapped(const NMHDR& notification) {
  const auto& click = reinterpret_cast<const NMITEMACTIVATE&>(notification);
  if (click.iItem >= 0) openSelection(click.iItem);
}

/// What the lists of names report.
struct NamesRow {
  UINT code;
  void (*handler)(const NMHDR& notification);
};

constexpr std::array kNamesReports = {
    NamesRow{static_cast<UINT>(LVN_ITEMCHANGED), nameChanged},
    NamesRow{GN_CONTEXTMENU, nameHeld},
    NamesRow{static_cast<UINT>(LVN_KEYDOWN), nameKeyPressed},
    NamesRow{static_cast<UINT>(NM_CLICK), nameTapped},
};

void namesListReported(const NMHDR& notification) {
  for (const NamesRow& row : kNamesReports) {
    if (row.code == notification.code) return row.handler(notification);
  }
}

LRESULT controlReported(HWND, UINT, WPARAM, LPARAM lParam) {
  const auto& notification = *reinterpret_cast<const NMHDR*>(lParam);
  if (!theDocument) return 0;
  if (notification.hwndFrom == tabControl && notification.code == TCN_SELCHANGE) {
    tabChosen();
  } else if (notification.idFrom == NameListView::kControlId) {
    namesListReported(notification);
  }
  return 0;
}

LRESULT staticColored(HWND, UINT, WPARAM wParam, LPARAM lParam) {
  return reinterpret_cast<LRESULT>(
      theCommandBar->backgroundOf(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam)));
}

LRESULT programStarted(HWND window, UINT, WPARAM, LPARAM) {
  showFirstPage();
  openKeptDatabaseLater();
  beginLookingForChanges(window);
  PostMessageW(window, kOfferRecoveredMessage, 0, 0);
  return 0;
}

LRESULT recoveredOffered(HWND, UINT, WPARAM, LPARAM) {
  offerRecovered(FaultWatch::typedFile());
  return 0;
}

constexpr std::array kMessages = {
    MessageRow{WM_CREATE, windowCreated},
    MessageRow{WM_COMMAND, commandGiven},
    MessageRow{WM_DESTROY, windowDestroyed},
    MessageRow{FindDialog::kFindNextMessage, findNext},
    MessageRow{WM_DRAWITEM, itemDrawn},
    MessageRow{WM_SETTINGCHANGE, settingChanged},
    MessageRow{WM_HELP, helpWanted},
    MessageRow{WM_ACTIVATE, windowActivated},
    MessageRow{WM_NOTIFY, controlReported},
    MessageRow{WM_CTLCOLORSTATIC, staticColored},
    MessageRow{kStartedMessage, programStarted},
    // What a desktop needs besides.
    MessageRow{kCameToFrontMessage, cameToFront},
    MessageRow{kBusyOverMessage, busyOver},
    MessageRow{kEditBegunMessage, editBegun},
    MessageRow{kOfferRecoveredMessage, recoveredOffered},
    MessageRow{WM_TIMER, timeToLook},
    MessageRow{WM_SETFOCUS, focusGained},
    MessageRow{WM_SIZE, sizeChanged},
    MessageRow{WM_CLOSE, closeAsked},
    MessageRow{WM_QUERYENDSESSION, sessionEndAsked},
    MessageRow{WM_ENDSESSION, sessionEnded},
    MessageRow{WM_COPYDATA, pathHandedOver},
    MessageRow{WM_DROPFILES, filesDropped},
};

LRESULT CALLBACK mainProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  // A number that the system gives out at run time has no place in the table, and is asked for only then.
  constexpr UINT kFirstRegisteredMessage = 0xC000;
  if (message >= kFirstRegisteredMessage && message == HandheldZoomMessage()) {
    layOutForZoom();
    return 0;
  }
  return answerFromTable(kMessages, window, message, wParam, lParam, DefWindowProcW);
}

}  // namespace

bool registerMainWindowClass() {
  const auto icon = [](int width, int height) {
    return static_cast<HICON>(LoadImageW(instanceHandle, MAKEINTRESOURCEW(IDI_QUIVANE), IMAGE_ICON,
                                         GetSystemMetrics(width), GetSystemMetrics(height), LR_SHARED));
  };
  WNDCLASSEXW description{};
  description.cbSize = sizeof(description);
  description.style = CS_HREDRAW | CS_VREDRAW;
  description.lpfnWndProc = mainProcedure;
  description.hInstance = instanceHandle;
  description.hIcon = icon(SM_CXICON, SM_CYICON);
  // The system would make it of the other one, twice.
  description.hIconSm = icon(SM_CXSMICON, SM_CYSMICON);
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  description.lpszClassName = kMainWindowClass;
  return RegisterClassExW(&description) != 0;
}

void createMainWindow(int showCommand) {
  // The shell lays the menu bar over the end of the client area, so that the window keeps its height.
  mainWindow = HandheldCreateWindow(WS_EX_ACCEPTFILES, kMainWindowClass, kMainWindowTitle,
                                    WS_VISIBLE | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                    CW_USEDEFAULT, nullptr, nullptr, instanceHandle, nullptr);
  if (!mainWindow) return;
  // The ordinary command would make one smaller that the user left maximised.
  const bool isOrdinary = showCommand == SW_SHOWNORMAL || showCommand == SW_SHOWDEFAULT;
  ShowWindow(mainWindow, isOrdinary && IsZoomed(mainWindow) ? SW_SHOW : showCommand);
  UpdateWindow(mainWindow);
}
