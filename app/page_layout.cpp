#include "app/page_layout.h"

#include "app/program_state.h"
#include "app/screen.h"
#include "app/tab_pages.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/sip_state.h"

namespace {

/// The window of the form ends above the tabs, whatever the panel leaves of the page area.
void resizeForm() {
  RECT client{};
  HandheldGetClientRect(mainWindow, &client);
  HandheldMoveWindow(formWrapperWindow, 0, 0, client.right,
                     client.bottom - screen::kTabsHeight - sipState.height, TRUE);
}

}  // namespace

void layOutForInputPanel() {
  refreshSipState();
  HandheldMoveWindow(tabControl, 0, 0, screen::kPageAreaWidth, screen::kPageAreaHeight - sipState.height,
                     TRUE);
  resizeForm();
  if (!theDocument) return;
  theDocument->layOutPages();
  theCommandBar->placePageBars();
  if (currentPage == kFormPageIndex) theFormView.layOut(false);
}

void layOutForZoom() {
  buildTabPages();
  selectTab(currentPage);
  if (!theDocument) return;
  theDocument->loadImages();
  theRecordListView.zoomChanged();
  theCommandBar->rebuildAll();
}
