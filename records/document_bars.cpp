// What the menus, the toolbars and the position box show.
#include <cwchar>

#include "base/settings/app_settings.h"
#include "records/document.h"
#include "records/parts/look_ups.h"
#include "records/parts/record_history.h"
#include "records/position_text.h"

CommandFacts Document::commandFacts() const {
  const RecordHistory::Steps steps = history_->steps();
  return {.unlocked = appUnlocked,
          .databaseOpen = database_.isOpen(),
          .countsAsOpen = countsAsOpen_,
          .recordsetOpen = recordsetOpen_,
          .viewMode = viewMode_,
          .tableCount = tableNames_.size(),
          .queryCount = queryNames_.size(),
          .fieldCount = recordsetOpen_ ? database_.fieldCount() : 0,
          .currentRecord = currentRecord,
          .recordCount = openRecordCount(),
          .newRecordPending = database_.newRecordPending(),
          .formPage = pages_.form.pageIndex(),
          .formPageCount = pages_.form.pageCount(),
          .firstSlidingColumn = pages_.grid.firstSlidingColumn(),
          .columnRoom = pages_.grid.columnRoom(),
          .recordsChosen = !wanted_.isNone(),
          .tableChosen = pages_.tables->hasChoice(),
          .queryChosen = pages_.queries->hasChoice(),
          .refersElsewhere = lookUps_->refersElsewhere(),
          .cameFromElsewhere = lookUps_->canGoBack(),
          .hasUndo = steps.back,
          .hasRedo = steps.again,
          .isArranged = !wanted_.arrangement().isEmpty()};
}

void Document::updateCommands() {
  pages_.bar.showCommands(commandFacts());
}

void Document::updateMenusForDatabase(bool open) {
  countsAsOpen_ = open;
  updateCommands();
}

void Document::updateNavigationState() {
  if (showsRecords(viewMode_)) updateCommands();
}

void Document::updatePageState() {
  updateCommands();
}

void Document::updatePositionText() {
  pages_.bar.setPositionText(positionText(currentRecord, recordCount).text());
  pages_.bar.setPositionTip(recordsetOpen_ ? wanted_.arrangement().describe().c_str() : L"");
}

void Document::updateCommandBar() {
  // The items of a new menu bar are in their first state.
  pages_.bar.refreshMenuBar();
  updateMenusForDatabase(databaseOpen_);
}

void Document::rowChosen() {
  // Only a deletion asks for it.
  chosenRow_ = currentRecord != 0 && updateRights() == kNewRecordsAndDeletions
                   ? database_.readListRecord(currentRecord - 1)
                   : RecordSnapshot();
  updatePositionText();
  updateCommands();
}

void Document::layOutPages() {
  pages_.tables->layOut();
  pages_.queries->layOut();
  pages_.grid.layOut();
}

void Document::layOutForm(bool force) {
  pages_.form.layOut(force);
  updatePageState();
}

void Document::refreshColors() {
  pages_.tables->refreshColors();
  pages_.queries->refreshColors();
  pages_.grid.refreshColors();
}

void Document::loadImages() const {
  pages_.tables->loadImages();
  pages_.queries->loadImages();
}
