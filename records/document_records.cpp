// New and deleted records, and what happens to one that the store refuses.
#include <windows.h>

#include <string>

#include "base/app_settings.h"
#include "records/document.h"

namespace {

constexpr wchar_t kCaption[] = L"Quivane";

std::uint32_t updateRights() {
  return theAppSettings ? theAppSettings->options().GenUpdateRights()
                        : std::uint32_t{kNoNewRecordsOrDeletions};
}

bool warnsOnDeletion() {
  return theAppSettings && theAppSettings->options().WarningOnDeletion() != 0;
}

}  // namespace

void Document::refuse(PromptOwner owner, const wchar_t* text) {
  pages_.prompts.showMessage(owner, text, kCaption, MB_ICONEXCLAMATION);
}

// ---- Storing

int Document::commitCurrentRecord() {
  const bool changed = pages_.form.takeChange();
  if (!changed && !database_.newRecordPending()) return 1;
  if (!returnToShownRecord()) {
    refuse(PromptOwner::mainWindow, L"The record could not be written.\nIt can no longer be reached.");
    return 1;
  }
  pages_.form.writeRecord();
  database_.update();
  return 1;
}

/// A search leaves the cursor behind the record that it shows, and what the user does means that record.
/// False when it can't be reached: no other may be written or deleted in its place.
bool Document::returnToShownRecord() {
  if (database_.newRecordPending() || shownRecord_ == 0 || shownRecord_ == currentRecord) return true;
  return database_.moveTo(shownRecord_);
}

bool Document::storeRecord() {
  commitCurrentRecord();
  tellClearedFields();
  if (!database_.isUpdateRefused()) return true;
  const std::wstring text = std::wstring(L"The record could not be written.\n") +
                            database_.refusalText().text() + L"\n\nDo you want to discard what was typed?";
  const int answer = pages_.prompts.showMessage(PromptOwner::mainWindow, text.c_str(), kCaption,
                                                MB_YESNO | MB_DEFBUTTON2 | MB_ICONEXCLAMATION);
  if (answer != IDYES) return false;
  database_.abandonUpdate();
  if (currentRecord > database_.recordCount()) database_.moveLast();
  loadRecord();
  return true;
}

void Document::tellClearedFields() {
  const NameList cleared = database_.takeClearedFields();
  if (cleared.isEmpty()) return;
  std::wstring text = L"What was typed does not fit and was left out:";
  for (std::uint32_t i = 0; i < cleared.size(); ++i) {
    text += std::wstring(L"\nField '") + cleared[i].text() + L"'";
  }
  refuse(PromptOwner::mainWindow, text.c_str());
}

bool Document::finishEditing() {
  if (viewMode_ != ViewMode::form || !recordsetOpen_ || recordCount == 0) return true;
  return storeRecord();
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
  if (database_.recordCount() != 0) {
    if (!storeRecord()) return;
  } else {
    pages_.form.build();
    database_.moveFirst();
  }
  if (!database_.addNew()) return;
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
  return !warnsOnDeletion() ||
         pages_.prompts.showMessage(PromptOwner::mainWindow, L"Are you sure you want to\ndelete this record?",
                                    L"Delete this record?", MB_YESNO | MB_ICONQUESTION) == IDYES;
}

void Document::tellNotDeleted() {
  const std::wstring text =
      std::wstring(L"The record could not be deleted.\n") + database_.refusalText().text();
  refuse(PromptOwner::mainWindow, text.c_str());
}

void Document::deleteOnForm() {
  if (!returnToShownRecord() || !database_.deleteCurrent()) {
    tellNotDeleted();
    return;
  }
  // By one more record than the one that has gone.
  if (currentRecord > 1) {
    database_.moveTo(currentRecord - 1);
  } else {
    database_.moveFirst();
  }
  loadRecord();
  if (recordCount != 0) {
    pages_.form.showEditors();
  } else {
    pages_.form.hideEditors();
  }
  updateNavigationState();
}

void Document::deleteInGrid() {
  // Where the move fails another record is current, and must not go in this one's place.
  if (!database_.moveTo(currentRecord) || !database_.deleteCurrent()) {
    tellNotDeleted();
    return;
  }
  recordCount = database_.recordCount();
  // The row that follows the first takes its place.
  if (currentRecord == 0 && recordCount != 0) currentRecord = 1;
  pages_.grid.recordDeleted();
  rowChosen();
  updateNavigationState();
}
