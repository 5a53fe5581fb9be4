#include "app/window/page_layout.h"

#include "app/window/program_state.h"
#include "app/window/screen.h"
#include "app/window/tab_pages.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/shared/sip_state.h"

namespace {

/// Its height from the creation on, less what the input panel covers.
void layOutFormWindow() {
  RECT client{};
  HandheldGetClientRect(mainWindow, &client);
  HandheldMoveWindow(formWrapperWindow, 0, 0, static_cast<int>(client.right),
                     static_cast<int>(client.bottom) - screen::kBelowFormHeight - sipState.height, TRUE);
}

/// The page area that the pages were laid out for last.
SIZE laidOutArea{};

}  // namespace

void notePageArea() {
  laidOutArea = HandheldGetPageArea();
}

void layOutForInputPanel() {
  refreshSipState();
  laidOutArea = HandheldGetPageArea();
  HandheldMoveWindow(tabControl, 0, 0, static_cast<int>(laidOutArea.cx),
                     static_cast<int>(laidOutArea.cy) - sipState.height, TRUE);
  layOutFormWindow();
  if (!theDocument) return;
  theDocument->layOutPages();
  theCommandBar->placePageBars();
  if (currentPage == kFormPageIndex) theDocument->layOutForm(false);
}

void layOutForSize() {
  const SIZE area = HandheldGetPageArea();
  if (!IsWindow(tabControl) || (area.cx == laidOutArea.cx && area.cy == laidOutArea.cy)) return;
  const HandheldLayout layout(mainWindow);
  layOutForInputPanel();
  // There may be room for more columns, and none to move on to.
  if (theDocument) theDocument->updateNavigationState();
}

void applyOptions() {
  buildTabPages();
  selectTab(currentPage);
  if (!theDocument) return;
  theDocument->layOutPages();
  theCommandBar->placePageBars();
  theDocument->layOutForm(true);
  showColors();
  theDocument->updateCommandBar();
}

void showColors() {
  if (theDocument) theDocument->refreshColors();
  RedrawWindow(formWrapperWindow, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void layOutForZoom() {
  layOutForSize();
  buildTabPages();
  selectTab(currentPage);
  if (!theDocument) return;
  theDocument->loadImages();
  theRecordListView.zoomChanged();
  theCommandBar->rebuildAll();
}
