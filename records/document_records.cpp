// New and deleted records, and what happens to one that the store refuses.
#include <string>

#include "base/settings/app_settings.h"
#include "records/document.h"

namespace {

bool warnsOnDeletion() {
  return theAppSettings && theAppSettings->options().warningOnDeletion() != 0;
}

}  // namespace

std::uint32_t Document::updateRights() {
  return theAppSettings ? theAppSettings->options().genUpdateRights()
                        : std::uint32_t{kNoNewRecordsOrDeletions};
}

void Document::refuse(PromptOwner owner, const wchar_t* text) {
  pages_.prompts.tell(owner, Notice::refusal, text);
}

// ---- Storing

int Document::commitCurrentRecord() {
  const Outcome stored = storeShownRecord();
  if (!stored) tellFailure(L"The record could not be written.", stored.reason());
  return 1;
}

bool Document::canLeaveRecord() {
  if (viewMode_ != ViewMode::form || !recordsetOpen_) return lookAfterFile();
  Outcome stored = storeShownRecord();
  if (!stored && database_.fileState() != FileState::present) {
    const LostFileEnd end = settleLostFile();
    if (end == LostFileEnd::otherFile) return false;
    if (end == LostFileEnd::settled) stored = storeShownRecord();
  }
  if (stored) return lookAfterFile();
  if (!mayDiscardTyped(stored)) return false;
  discardTyped();
  return true;
}

bool Document::mayDiscardTyped(const Outcome& refused) {
  const std::wstring text = std::wstring(L"The record could not be written.\n") + refused.reason().text() +
                            L"\n\nDo you want to discard what was typed?";
  return pages_.prompts.ask(PromptOwner::mainWindow, Question::discard, text.c_str());
}

/// For what needs nothing unstored on a form that stays in sight: it shows what the file holds now, and a
/// record that was new is one of the others. False as canLeaveRecord.
bool Document::settleRecord() {
  if (!canLeaveRecord()) return false;
  if (shown_.isEmpty()) loadRecord();
  updateNavigationState();
  return true;
}

/// A new record goes with what was typed. Where it was the only one, nothing is left to be typed into.
void Document::discardTyped() {
  shown_ = {};
  database_.abandonUpdate();
  if (currentRecord > database_.recordCount()) database_.moveLast();
  if (database_.recordCount() != 0) return;
  showNoRecords();
  updateCommandBar();
}

void Document::showNoRecords() {
  loadRecord();
  pages_.form.hideAllEditors();
}

/// Done also when there is nothing to store: what was not read whole is never written.
Outcome Document::storeShownRecord() {
  if (!shown_.isReadable()) return {};
  const bool changed = pages_.form.takeChange();
  if (!changed && !database_.newRecordPending()) return {};
  NameList leftOut;
  Outcome stored = database_.storeRecord(shown_, pages_.form.editors(), leftOut);
  // From here on the file holds something else than what was read.
  if (stored) shown_ = {};
  if (stored || database_.fileState() == FileState::present) tellLeftOut(leftOut);
  return stored;
}

void Document::tellLeftOut(const NameList& fields) {
  if (fields.isEmpty()) return;
  std::wstring text = L"What was typed does not fit and was left out:";
  for (std::uint32_t i = 0; i < fields.size(); ++i) {
    text += std::wstring(L"\nField '") + fields[i].text() + L"'";
  }
  refuse(PromptOwner::mainWindow, text.c_str());
}

// ---- Typing

void Document::editBegun() {
  if (wasEdited_ || !database_.isOpen()) return;
  wasEdited_ = true;
  pages_.prompts.tellWhenTyped();
}

void Document::tellUnwritable() {
  // A file that has lost its name is told of otherwise.
  if (!database_.isOpen() || database_.fileState() != FileState::present) return;
  if (const Outcome can = database_.tryWriting(); !can) {
    tellFailure(L"What is typed can't be stored.", can.reason());
  }
}

// ---- New records

int Document::newRecord() {
  if (viewMode_ == ViewMode::form) addRecord();
  updateCommandBar();
  return 0;
}

void Document::addRecord() {
  if (!database_.isOpen()) {
    refuse(PromptOwner::mainWindow, L"Cannot create a new record when a database is not open!");
    return;
  }
  if (updateRights() == kNoNewRecordsOrDeletions) {
    refuse(PromptOwner::mainWindow, L"Cannot create new records!\nUpdate rights currently disallow it");
    return;
  }
  if (!recordsetOpen_) return;
  if (!isRecordsetUpdatable()) {
    refuse(PromptOwner::mainWindow, L"Cannot create new records!\nThese records are read-only");
    return;
  }
  if (database_.recordCount() != 0 && !canLeaveRecord()) return;
  // Also when the only record was a new one that has just been discarded.
  if (database_.recordCount() == 0) {
    pages_.form.build();
    database_.moveFirst();
  }
  if (const Outcome begun = database_.addNew(); !begun) {
    tellFailure(L"The new record could not be made.", begun.reason());
    loadRecord();
    return;
  }
  pages_.prompts.raiseInputPanel();
  loadRecord();
  pages_.form.showEditors();
  updateNavigationState();
}

bool Document::isRecordsetUpdatable() const {
  for (std::uint32_t field = 0; field < database_.fieldCount(); ++field) {
    if (!database_.isFieldReadOnly(field)) return true;
  }
  return false;
}

// ---- Deleted records

int Document::deleteRecord() {
  if (mayDelete()) {
    if (viewMode_ == ViewMode::form) {
      deleteOnForm();
    } else if (viewMode_ == ViewMode::list) {
      deleteInGrid();
    }
  }
  updateCommandBar();
  return 0;
}

bool Document::mayDelete() {
  if (!database_.isOpen()) {
    refuse(PromptOwner::none, L"Cannot delete a record when a database is not open!");
    return false;
  }
  if (updateRights() != kNewRecordsAndDeletions) {
    refuse(PromptOwner::mainWindow, L"Cannot delete records!\nUpdate rights currently disallow it");
    return false;
  }
  if (!recordsetOpen_ || database_.recordCount() == 0) return false;
  if (!database_.newRecordPending() && !canChangeFile()) return false;
  return !warnsOnDeletion() ||
         pages_.prompts.ask(PromptOwner::mainWindow, Question::deleteRecord,
                            L"Are you sure you want to\ndelete this record?", L"Delete this record?");
}

void Document::tellNotDeleted(const Outcome& failure) {
  tellFailure(L"The record could not be deleted.", failure.reason());
}

void Document::deleteOnForm() {
  if (const Outcome deleted = database_.deleteRecord(shown_); !deleted) {
    tellNotDeleted(deleted);
    // What it holds now is shown, so that the user can decide anew; what was typed stays.
    const bool isOther = deleted.cause() == Outcome::Cause::changedElsewhere;
    if (isOther && !pages_.form.takeChange()) loadRecord();
    return;
  }
  // By one more record than the one that has gone.
  if (currentRecord > 1) {
    database_.moveTo(currentRecord - 1);
  } else {
    database_.moveFirst();
  }
  if (database_.recordCount() != 0) {
    loadRecord();
    pages_.form.showEditors();
  } else {
    showNoRecords();
  }
  updateNavigationState();
}

/// What is deleted is what the row was when it was chosen.
void Document::deleteInGrid() {
  if (!chosenRow_.isReadable() || chosenRow_.position() != currentRecord) rowChosen();
  if (const Outcome deleted = database_.deleteRecord(chosenRow_); !deleted) {
    tellNotDeleted(deleted);
    // Shows what it holds now, so that the user can decide anew.
    if (deleted.cause() == Outcome::Cause::changedElsewhere) pages_.grid.fill();
    rowChosen();
    return;
  }
  recordCount = database_.recordCount();
  // The row that follows the first takes its place.
  if (currentRecord == 0 && recordCount != 0) currentRecord = 1;
  pages_.grid.recordDeleted();
  rowChosen();
  updateNavigationState();
}
