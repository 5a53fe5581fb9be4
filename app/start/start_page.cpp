#include "app/start/start_page.h"

#include "app/window/program_state.h"
#include "app/window/tab_pages.h"
#include "base/settings/app_settings.h"

void showFirstPage() {
  if (!theDocument) return;
  // A command that another program has sent in the meantime may have opened one.
  if (theDocument->isDatabaseOpen()) return;
  bool open = false;
  if (theAppSettings->options().openLastTableOnStartup() != 0) {
    const RestoreResult restored = theDocument->restoreSession();
    if (restored != RestoreResult::nothing) {
      // Without tables Close stays grey until a page is switched.
      open = restored != RestoreResult::noTables;
      showPageAnew(restored == RestoreResult::tables ? kTablesPageIndex : kFormPageIndex);
      // One that can't be read was told when its page was entered.
      if (theDocument->isRecordShown()) theDocument->loadRecord();
      theDocument->updatePositionText();
    }
  }
  theDocument->updateMenusForDatabase(open);
}
