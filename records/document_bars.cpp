// What the menus, the toolbars and the position box show.
#include <cwchar>

#include "base/app_settings.h"
#include "records/document.h"
#include "records/position_text.h"

void Document::updateMenusForDatabase(bool open) {
  pages_.bar.apply(databaseStates({.open = open,
                                   .viewMode = viewMode_,
                                   .tableCount = tableNames_.size(),
                                   .queryCount = queryNames_.size(),
                                   .fieldCount = recordsetOpen_ ? database_.fieldCount() : 0}));
  pages_.bar.apply(recordStates({.recordsetOpen = recordsetOpen_, .recordCount = openRecordCount()}));
  updateNavigationState();
  updatePageState();
}

void Document::updateNavigationState() {
  if (viewMode_ != ViewMode::form && viewMode_ != ViewMode::list) return;
  pages_.bar.apply(navigationStates({.unlocked = appUnlocked,
                                     .databaseOpen = database_.isOpen(),
                                     .currentRecord = currentRecord,
                                     .recordCount = openRecordCount(),
                                     .newRecordPending = database_.newRecordPending()}));
}

void Document::updatePageState() {
  pages_.bar.apply(formPageStates({.unlocked = appUnlocked,
                                   .databaseOpen = database_.isOpen(),
                                   .recordsetOpen = recordsetOpen_,
                                   .viewMode = viewMode_,
                                   .pageIndex = pages_.form.pageIndex(),
                                   .pageCount = pages_.form.pageCount()}));
}

void Document::updatePositionText() {
  pages_.bar.setPositionText(positionText(currentRecord, recordCount).text());
}

void Document::updateCommandBar() {
  // A new menu bar has every item in its first state.
  pages_.bar.rebuildMenuBar();
  updateMenusForDatabase(databaseOpen_);
}

void Document::rowChosen() {
  updatePositionText();
  updateNavigationState();
  pages_.bar.apply(gridRecordStates({.position = currentRecord, .recordCount = openRecordCount()}));
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
