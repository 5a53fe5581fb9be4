// The search for text in the records, a step for each press of the Find dialog's button.
#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>

#include "records/document.h"
#include "records/wait_cursor.h"

int Document::openFind() {
  if (viewMode_ != ViewMode::form) return 0;
  if (!database_.isOpen()) {
    refuse(PromptOwner::mainWindow, L"Cannot find text when a database is not open!");
    return 0;
  }
  if (!finishEditing()) return 0;
  // A match in the last record has left the cursor behind it.
  findStartRecord_ = std::min(currentRecord, openRecordCount());
  NameList names;
  // The fields of the former recordset outlast one that did not open.
  const std::uint32_t count = recordsetOpen_ ? database_.fieldCount() : 0;
  for (std::uint32_t field = 0; field < count; ++field) names.append(database_.fieldName(field));
  pages_.prompts.showFindDialog(find_, std::move(names));
  return 0;
}

int Document::findNext() {
  if (viewMode_ != ViewMode::form || !database_.isOpen()) return 0;
  // What was typed on the form between two steps belongs to the record that is shown.
  if (!finishEditing()) return 0;
  tellSearchEnd(searchBothPasses());
  updateNavigationState();
  updatePageState();
  pages_.prompts.refillFindDialog(find_);
  return 0;
}

/// From where the search stands to the end, and if nothing was found from the first record to the start.
bool Document::searchBothPasses() {
  const WaitCursor wait;
  beginSearch();
  std::uint32_t field = 0;
  bool found = searchUpTo(openRecordCount(), field);
  if (!found) {
    const std::uint32_t leftOut = currentRecord;
    database_.moveFirst();
    findRecordCounter_ = 0;
    found = searchUpTo(findStartRecord_, field) || searchLeftOut(leftOut, field);
  }
  if (found) {
    findField_ = field;
    pages_.form.focusField(field);
  } else {
    if (findStartRecord_ != 0) database_.moveTo(findStartRecord_);
    loadRecord();
  }
  return found;
}

/// The pass to the end stops before the last record, and earlier when the search was continued; the pass
/// from the first record ends at the start. Tests what lies behind both, from where the former stopped:
/// what is told afterwards speaks of all records.
bool Document::searchLeftOut(std::uint32_t first, std::uint32_t& field) {
  const std::uint32_t counter = findRecordCounter_;
  findRecordCounter_ = std::max(first, findStartRecord_ + 1);
  const std::uint32_t end = openRecordCount() + 1;
  if (findRecordCounter_ < end && database_.moveTo(findRecordCounter_) && searchUpTo(end, field)) return true;
  findRecordCounter_ = counter;
  return false;
}

/// Where the search begins: anew at the current record, or behind the last match.
void Document::beginSearch() {
  if (find_.newSearch) {
    findField_ = find_.checkAllFields != 0 ? 0 : database_.fieldIndexByName(find_.fieldName);
    findRecordCounter_ = currentRecord;
    find_.newSearch = false;
  } else if (find_.checkAllFields != 0) {
    if (++findField_ >= database_.fieldCount()) {
      findField_ = 0;
      ++findRecordCounter_;
    }
  } else {
    findField_ = database_.fieldIndexByName(find_.fieldName);
    ++findRecordCounter_;
  }
}

/// Tests the record of the cursor and those behind it while the counter is below `end`. A match is shown
/// on the form; the cursor then stands behind it, as behind every record that was tested.
bool Document::searchUpTo(std::uint32_t end, std::uint32_t& field) {
  bool found = false;
  while (findRecordCounter_ < end && !found) {
    if (find_.checkAllFields != 0) findField_ = 0;
    found =
        database_.matchRecord(find_.checkAllFields != 0, find_.matchCase != 0, findField_, find_.text, field);
    if (found) loadRecord();
    database_.moveNext();
    ++findRecordCounter_;
  }
  return found;
}

void Document::tellSearchEnd(bool found) {
  constexpr UINT kFlags = MB_ICONEXCLAMATION | MB_TOPMOST;
  const std::wstring quoted = std::wstring(L"'") + find_.text.text() + L"'";
  if (!found && findRecordCounter_ != findStartRecord_) {
    const std::wstring where = find_.checkAllFields != 0 ? std::wstring(L" was not found in any field")
                                                         : std::wstring(L" was not found in field '") +
                                                               find_.fieldName.text() + L"'";
    pages_.prompts.showMessage(PromptOwner::findDialog, (quoted + where).c_str(), L"Text not found", kFlags);
    if (find_.dialog) SetFocus(find_.dialog);
  }
  if (findRecordCounter_ == findStartRecord_) {
    pages_.prompts.showMessage(PromptOwner::findDialog, (L"All records searched for " + quoted).c_str(),
                               L"Searched all records", kFlags);
  }
}
