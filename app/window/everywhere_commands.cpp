#include "app/window/everywhere_commands.h"

#include <windows.h>

#include "app/window/program_state.h"
#include "app/window/tab_pages.h"
#include "dialogs/find/everywhere_dialog.h"

void findEverywhere() {
  if (!theDocument || !theDocument->isDatabaseOpen() || !theDocument->settleTyped()) return;
  // The next search begins with the text of the last one.
  static String lastText;
  EverywhereDialog dialog([](const String& text, const FoundListener& found) {
    return theDocument->findEverywhere(text, found);
  });
  dialog.text = lastText;
  if (dialog.run(mainWindow) != IDOK) return;
  lastText = dialog.text;
  if (!theDocument || !theDocument->chooseFound(dialog.chosen)) return;
  showPageAnew(kFormPageIndex);
  theDocument->showFound(dialog.chosen, dialog.text);
}
