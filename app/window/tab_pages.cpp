#include "app/window/tab_pages.h"

#include <windows.h>

#include <commctrl.h>
#include <windowsx.h>

#include "app/window/context_menus.h"
#include "app/window/order_commands.h"
#include "app/window/page_keys.h"
#include "app/window/program_state.h"
#include "base/settings/app_settings.h"
#include "owners/control_handles.h"
#include "platform/pocketshell/handheld_windows.h"
#include "resources/resource_ids.h"

namespace {

constexpr INT_PTR kTabControlId = 61205;
constexpr const wchar_t* kPageNames[] = {L"Tables", L"Form", L"List", L"Queries"};
constexpr COLORREF kTransparent = RGB(0, 0, 0);

UniqueImageList tabImages;

constexpr int kNoTab = -1;

/// The tab that the control has reported as chosen during the present tap.
int reportedTab = kNoTab;

/// kNoTab beside the tabs.
int tabAt(LPARAM point) {
  TCHITTESTINFO hit{};
  hit.pt = {GET_X_LPARAM(point), GET_Y_LPARAM(point)};
  return static_cast<int>(SendMessageW(tabControl, TCM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
}

/// Some systems' tab control takes a tap for the end of the former choice, and reports the present tab or
/// none, after an arrow key has switched the page from a tab that was tapped.
LRESULT tabTapped(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const int tapped = tabAt(lParam);
  // Of the tab that is chosen already, also when its page is not shown, a tap chooses nothing.
  const bool isChosen = tapped == selectedTab();
  reportedTab = kNoTab;
  const LRESULT result = CallWindowProcW(tabOldProc, window, message, wParam, lParam);
  if (tapped != kNoTab && !isChosen && tapped != currentPage && tapped != reportedTab) showPage(tapped);
  return result;
}

void keepClear(HDC dc, HWND window) {
  if (!window || !IsWindowVisible(window)) return;
  RECT place{};
  GetWindowRect(window, &place);
  MapWindowPoints(nullptr, tabControl, reinterpret_cast<POINT*>(&place), 2);
  ExcludeClipRect(dc, static_cast<int>(place.left), static_cast<int>(place.top),
                  static_cast<int>(place.right), static_cast<int>(place.bottom));
}

/// The tab control clips neither what lies in it nor what lies before it: while the window is sized, each
/// step would show them erased.
void keepPagesClear(HDC dc) {
  for (HWND child = GetWindow(tabControl, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    keepClear(dc, child);
  }
  for (HWND before = GetWindow(tabControl, GW_HWNDPREV); before; before = GetWindow(before, GW_HWNDPREV)) {
    keepClear(dc, before);
  }
}

/// The grid's list is a child of the tab control: the grid sees what it reports before the tab control.
LRESULT CALLBACK tabProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NOTIFY && wParam == RecordListView::kListId) {
    auto& notification = *reinterpret_cast<NMHDR*>(lParam);
    if (notification.code == GN_CONTEXTMENU) {
      showGridContextMenu(instanceHandle, mainWindow, reinterpret_cast<NMRGINFO&>(notification).ptAction);
    } else if (notification.code == RecordListView::kColumnMenu) {
      const auto& asked = reinterpret_cast<NMRGINFO&>(notification);
      showColumnMenu(static_cast<std::uint32_t>(asked.dwItemSpec), asked.ptAction);
    } else {
      if (notification.code == static_cast<UINT>(LVN_KEYDOWN)) {
        const int command =
            commandOfListKey(kListPageIndex, reinterpret_cast<const NMLVKEYDOWN&>(notification).wVKey);
        if (command != 0) PostMessageW(mainWindow, WM_COMMAND, static_cast<WPARAM>(command), 0);
      }
      const LRESULT answer = theRecordListView.handleNotification(notification);
      if (notification.code == static_cast<UINT>(LVN_ODFINDITEMW)) return answer;
    }
  }
  // Some systems' tab control loses its border, and the pages a pixel of their places, when it is sized.
  if (message == WM_NCCALCSIZE) return DefWindowProcW(window, message, wParam, lParam);
  if (message == WM_ERASEBKGND) keepPagesClear(reinterpret_cast<HDC>(wParam));
  if (message == WM_LBUTTONDOWN) return tabTapped(window, message, wParam, lParam);
  return CallWindowProcW(tabOldProc, window, message, wParam, lParam);
}

void loadTabImages() {
  // The former images are destroyed after the tab control has got the new ones.
  UniqueImageList images(HandheldLoadImages(instanceHandle, IDB_TAB_IMAGES, kTransparent));
  SendMessageW(tabControl, TCM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images.get()));
  tabImages = std::move(images);
}

/// The labels have the control's own blank again.
void takeTabImagesAway() {
  SendMessageW(tabControl, TCM_SETIMAGELIST, 0, 0);
  tabImages.reset();
  constexpr int kUsualPadding = 6;
  constexpr int kUsualPaddingAbove = 3;
  SendMessageW(tabControl, TCM_SETPADDING, 0, MAKELPARAM(kUsualPadding, kUsualPaddingAbove));
}

}  // namespace

void createTabControl() {
  constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | WS_BORDER | WS_GROUP | TCS_BOTTOM;
  static_assert(kStyle == 0x50820002);
  const SIZE area = HandheldGetPageArea();
  tabControl = HandheldCreateWindow(0, WC_TABCONTROLW, L"", kStyle, 0, 0, static_cast<int>(area.cx),
                                    static_cast<int>(area.cy), mainWindow,
                                    reinterpret_cast<HMENU>(kTabControlId), instanceHandle, nullptr);
  if (!tabControl) return;
  tabOldProc = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(tabControl, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(tabProcedure)));
  SendMessageW(tabControl, TCM_SETEXTENDEDSTYLE, 0, TCS_EX_REGISTERDROP);
  buildTabPages();
}

void buildTabPages() {
  if (SendMessageW(tabControl, TCM_GETITEMCOUNT, 0, 0) > 0)
    SendMessageW(tabControl, TCM_DELETEALLITEMS, 0, 0);
  const std::uint32_t labels = theAppSettings->options().tabLabelStyle();
  TCITEMW item{};
  if (labels != kTabIconOnly) item.mask |= TCIF_TEXT;
  if (labels == kTabIconOnly || labels == kTabTextAndIcon) {
    item.mask |= TCIF_IMAGE;
    loadTabImages();
    // Half the usual blank beside the labels: else four of them with text and image don't fit in the width.
    const int padding = HandheldToMonitor(3);
    SendMessageW(tabControl, TCM_SETPADDING, 0, MAKELPARAM(padding, padding));
  } else if (tabImages) {
    takeTabImagesAway();
  }
  HandheldNameControl(tabControl, 0, L"Pages");
  for (const wchar_t* name : kPageNames) {
    item.pszText = const_cast<wchar_t*>(name);
    SendMessageW(tabControl, TCM_INSERTITEMW, static_cast<WPARAM>(item.iImage),
                 reinterpret_cast<LPARAM>(&item));
    ++item.iImage;
    HandheldNameControl(tabControl, item.iImage, name);
  }
}

void destroyTabImages() {
  tabImages.reset();
}

void selectTab(int page) {
  SendMessageW(tabControl, TCM_SETCURSEL, static_cast<WPARAM>(page), 0);
}

int selectedTab() {
  return static_cast<int>(SendMessageW(tabControl, TCM_GETCURSEL, 0, 0));
}

void tabChosen() {
  reportedTab = selectedTab();
  if (reportedTab != kNoTab) switchPage(reportedTab);
}

namespace {

void enterPage(int page) {
  theCommandBar->destroyPageBars();
  if (page == kBeforeFirstPage) {
    theCommandBar->refreshMenuBar();
    return;
  }
  if (theDocument && theDocument->isDatabaseOpen()) theCommandBar->showPageBars(page);
  currentPage = page;
  theCommandBar->refreshMenuBar();
  if (theDocument) theDocument->setViewMode(static_cast<ViewMode>(page));
}

}  // namespace

void switchPage(int page) {
  if (page == currentPage) return;
  // What can't be stored keeps the user on the form.
  if (theDocument && currentPage == kFormPageIndex && !theDocument->canLeaveRecord()) {
    selectTab(currentPage);
    return;
  }
  enterPage(page);
}

void showPage(int page) {
  switchPage(page);
  if (currentPage == page) selectTab(page);
}

void showPageAnew(int page) {
  enterPage(page);
  selectTab(page);
}

void showDatabasePage() {
  showPageAnew(kTablesPageIndex);
}

void showNoDatabase() {
  theCommandBar->destroyPageBars();
  theDocument->updateCommandBar();
}
