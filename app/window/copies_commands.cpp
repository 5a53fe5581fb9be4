#include "app/window/copies_commands.h"

#include <vector>

#include "app/window/program_state.h"
#include "app/window/tab_pages.h"
#include "dialogs/copies/copy_table_dialog.h"
#include "dialogs/copies/go_back_dialog.h"
#include "records/parts/former_states.h"

namespace {

void putTableBack(FormerStates& states, const GoBackDialog& dialog) {
  const NameList tables = states.missingTables(dialog.database, dialog.copy);
  if (tables.isEmpty()) return;
  CopyTableDialog choice(tables);
  if (choice.run(mainWindow) == IDOK)
    states.putTableBack(dialog.database, dialog.copy, tables[choice.chosen]);
}

void carryOut(FormerStates& states, const GoBackDialog& dialog) {
  switch (dialog.choice) {
    case GoBackDialog::Choice::look:
      if (dialog.isPresent) {
        states.returnToPresent();
      } else {
        states.look(dialog.database, dialog.copy);
      }
      break;
    case GoBackDialog::Choice::putBack:
      states.putBack(dialog.database, dialog.copy);
      break;
    case GoBackDialog::Choice::putTable:
      putTableBack(states, dialog);
      break;
  }
}

}  // namespace

void goBackToCopy() {
  if (!theDocument || !theDocument->settleTyped()) return;
  FormerStates& states = theDocument->formerStates();
  const std::vector<String> databases = states.databases();
  if (databases.empty()) {
    thePrompts.tell(PromptOwner::mainWindow, Notice::remark, L"There are no copies yet.", kPromptCaption);
    return;
  }
  GoBackDialog dialog(databases, states.isLooking(),
                      [&states](const String& database) { return states.copiesOf(database); });
  if (dialog.run(mainWindow) != IDOK) return;
  const bool wasOpen = theDocument->isDatabaseOpen();
  carryOut(states, dialog);
  const bool isOpen = theDocument->isDatabaseOpen();
  if (isOpen && !wasOpen) showDatabasePage();
  if (!isOpen && wasOpen) showNoDatabase();
}
