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

}  // namespace

void layOutForInputPanel() {
  refreshSipState();
  HandheldMoveWindow(tabControl, 0, 0, screen::kPageAreaWidth, screen::kPageAreaHeight - sipState.height,
                     TRUE);
  layOutFormWindow();
  if (!theDocument) return;
  theDocument->layOutPages();
  theCommandBar->placePageBars();
  if (currentPage == kFormPageIndex) theDocument->layOutForm(false);
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
  buildTabPages();
  selectTab(currentPage);
  if (!theDocument) return;
  theDocument->loadImages();
  theRecordListView.zoomChanged();
  theCommandBar->rebuildAll();
}
