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
  // The windows are listened to during a step.
  if (isSearching_) return 0;
  if (viewMode_ != ViewMode::form || !database_.isOpen()) return 0;
  // What was typed on the form between two steps belongs to the record that is shown.
  if (!finishEditing()) return 0;
  const SearchEnd end = runSearch();
  if (end != SearchEnd::stopped) tellSearchEnd(end == SearchEnd::found);
  updateNavigationState();
  updatePageState();
  pages_.prompts.refillFindDialog(find_);
  return 0;
}

/// One step. When the user stops it, everything is as it was before it.
Document::SearchEnd Document::runSearch() {
  const std::uint32_t shown = currentRecord;
  const std::uint32_t field = findField_;
  const std::uint32_t counter = findRecordCounter_;
  const bool isNew = find_.newSearch;
  searchStopped_ = false;
  const bool found = searchBothPasses();
  if (!searchStopped_) return found ? SearchEnd::found : SearchEnd::notFound;
  findField_ = field;
  findRecordCounter_ = counter;
  find_.newSearch = isNew;
  standAt(shown);
  return SearchEnd::stopped;
}

/// What holds during a step, however it ends.
class Document::SearchStep {
 public:
  explicit SearchStep(Document& document) : document_(document) { document_.isSearching_ = true; }
  ~SearchStep() {
    document_.database_.endSearch();
    document_.pages_.prompts.endSearching();
    document_.isSearching_ = false;
  }
  SearchStep(const SearchStep&) = delete;
  SearchStep& operator=(const SearchStep&) = delete;

 private:
  Document& document_;
};

/// Makes the record current, or the place behind the last one, where a match in it leaves the cursor.
void Document::standAt(std::uint32_t position) {
  const std::uint32_t last = openRecordCount();
  if (last == 0) return;
  database_.moveTo(std::min(position, last));
  if (position > last) database_.moveNext();
}

/// From where the search stands to the end, and if nothing was found from the first record to the start.
bool Document::searchBothPasses() {
  const WaitCursor wait;
  const SearchStep step(*this);
  beginSearch();
  return searchAll();
}

bool Document::searchAll() {
  database_.beginSearch(find_.checkAllFields != 0, find_.matchCase != 0, findField_, find_.text);
  searchedRecords_ = 0;
  std::uint32_t field = 0;
  bool found = searchUpTo(openRecordCount(), field);
  if (!found && !searchStopped_) {
    const std::uint32_t leftOut = currentRecord;
    database_.moveFirst();
    findRecordCounter_ = 0;
    found = searchUpTo(findStartRecord_, field) || (!searchStopped_ && searchLeftOut(leftOut, field));
  }
  if (searchStopped_) return false;
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
/// on the form; the cursor then stands behind it, as behind every record that was tested. Records that can't
/// match are passed over in between, which changes nothing but the time.
bool Document::searchUpTo(std::uint32_t end, std::uint32_t& field) {
  // So long the windows are neither painted nor listened to.
  constexpr std::uint32_t kSliceMilliseconds = 40;
  bool found = false;
  while (findRecordCounter_ < end && !found) {
    const std::uint32_t passed = database_.passOver(end - findRecordCounter_, kSliceMilliseconds);
    findRecordCounter_ += passed;
    searchedRecords_ += passed;
    if (!pages_.prompts.keepSearching(std::min(searchedRecords_, openRecordCount()), openRecordCount())) {
      searchStopped_ = true;
      return false;
    }
    if (findRecordCounter_ >= end) break;
    if (find_.checkAllFields != 0) findField_ = 0;
    found =
        database_.matchRecord(find_.checkAllFields != 0, find_.matchCase != 0, findField_, find_.text, field);
    if (found) loadRecord();
    database_.moveNext();
    ++findRecordCounter_;
    ++searchedRecords_;
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
