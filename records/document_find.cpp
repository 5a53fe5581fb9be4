// The search for text in the records, a step for each press of the Find dialog's button.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cwchar>
#include <optional>
#include <string>
#include <utility>

#include "base/wait_cursor.h"
#include "records/document.h"
#include "records/search_parts.h"
#include "records/search_step.h"

int Document::openFind() {
  if (viewMode_ != ViewMode::form) return 0;
  if (!database_.isOpen()) {
    refuse(PromptOwner::mainWindow, L"Cannot find text when a database is not open!");
    return 0;
  }
  if (!settleRecord()) return 0;
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
  // What was typed on the form between two steps belongs to the record that is shown; storing it goes back
  // there.
  const std::uint32_t place = currentRecord;
  if (!settleRecord()) return 0;
  if (currentRecord != place) standAt(place);
  SearchEnd end = SearchEnd::notFound;
  if (const Outcome searched = runSearch(end); !searched) {
    breakSearchOff(searched);
  } else if (end != SearchEnd::stopped) {
    tellSearchEnd(end == SearchEnd::found);
  }
  updatePageState();
  pages_.prompts.refillFindDialog();
  return 0;
}

/// One step. When the user stops it, everything is as it was before it.
Outcome Document::runSearch(SearchEnd& end) {
  const std::uint32_t shown = currentRecord;
  const std::uint32_t field = findField_;
  const std::uint32_t counter = findRecordCounter_;
  const bool isNew = find_.newSearch;
  searchStopped_ = false;
  bool found = false;
  // A statement that was stopped by the user fails.
  if (Outcome searched = searchBothPasses(found); !searched && !searchStopped_) return searched;
  end = found ? SearchEnd::found : SearchEnd::notFound;
  if (!searchStopped_) return {};
  findField_ = field;
  findRecordCounter_ = counter;
  find_.newSearch = isNew;
  standAt(shown);
  end = SearchEnd::stopped;
  return {};
}

/// In milliseconds.
std::uint32_t Document::sliceOfSearch() const {
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(searchBegan_ + kSearchSilence - BusyClock::now());
  return static_cast<std::uint32_t>(std::max(left, kSearchPart).count());
}

/// Makes the record current, or the place behind the last one, where a match in it leaves the cursor.
void Document::standAt(std::uint32_t position) {
  const std::uint32_t last = openRecordCount();
  if (last == 0) return;
  database_.moveTo(std::min(position, last));
  if (position > last) database_.moveNext();
}

/// From where the search stands to the end, and if nothing was found from the first record to the start.
Outcome Document::searchBothPasses(bool& found) {
  const WaitCursor wait;
  const SearchStep step(*this);
  beginSearch();
  return searchAll(found);
}

Outcome Document::searchAll(bool& found) {
  database_.beginSearch(find_.checkAllFields != 0, find_.matchCase != 0, findField_, find_.text);
  searchedRecords_ = 0;
  std::optional<std::uint32_t> field;
  Outcome searched = searchUpTo(openRecordCount(), field);
  if (searched && !field && !searchStopped_) {
    const std::uint32_t leftOut = currentRecord;
    database_.moveFirst();
    findRecordCounter_ = 0;
    searched = searchUpTo(findStartRecord_, field);
    if (searched && !field && !searchStopped_) searched = searchLeftOut(leftOut, field);
  }
  if (!searched || searchStopped_) return searched;
  found = field.has_value();
  if (found) {
    findField_ = *field;
    pages_.form.focusField(findField_);
  } else {
    if (findStartRecord_ != 0) database_.moveTo(findStartRecord_);
    loadRecord();
  }
  return {};
}

/// The pass to the end stops before the last record, and earlier when the search was continued; the pass
/// from the first record ends at the start. Tests what lies behind both, from where the former stopped:
/// what is told afterwards speaks of all records.
Outcome Document::searchLeftOut(std::uint32_t first, std::optional<std::uint32_t>& field) {
  const std::uint32_t counter = findRecordCounter_;
  findRecordCounter_ = std::max(first, findStartRecord_ + 1);
  const std::uint32_t end = openRecordCount() + 1;
  if (findRecordCounter_ < end && database_.moveTo(findRecordCounter_)) {
    if (Outcome searched = searchUpTo(end, field); !searched || field) return searched;
  }
  findRecordCounter_ = counter;
  return {};
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
/// match are passed over in between, which changes nothing but the time. A record that another program has
/// deleted holds nothing; one that can't be read ends the search.
Outcome Document::searchUpTo(std::uint32_t end, std::optional<std::uint32_t>& field) {
  while (findRecordCounter_ < end && !field) {
    const std::uint32_t passed = database_.passOver(end - findRecordCounter_, sliceOfSearch());
    findRecordCounter_ += passed;
    searchedRecords_ += passed;
    const std::uint32_t all = openRecordCount();
    if (searchStopped_ || !searchGoesOn({Progress::What::searching, std::min(searchedRecords_, all), all})) {
      searchStopped_ = true;
      return {};
    }
    if (findRecordCounter_ >= end) break;
    if (find_.checkAllFields != 0) findField_ = 0;
    Outcome read = database_.searchRecord(find_.checkAllFields != 0, find_.matchCase != 0, findField_,
                                          find_.text, field);
    if (!read && read.cause() != Outcome::Cause::recordGone) return read;
    if (field) loadRecord();
    database_.moveNext();
    ++findRecordCounter_;
    ++searchedRecords_;
  }
  return {};
}

/// The form goes on showing what it shows, and the next step begins there.
void Document::breakSearchOff(const Outcome& failure) {
  find_.newSearch = true;
  tellFailure(L"The search could not go on.", failure.reason(), PromptOwner::findDialog);
  if (!shown_.isEmpty()) database_.moveTo(shown_.position());
}

void Document::tellSearchEnd(bool found) {
  const std::wstring quoted = std::wstring(L"'") + find_.text.text() + L"'";
  if (!found && findRecordCounter_ != findStartRecord_) {
    const std::wstring where = find_.checkAllFields != 0 ? std::wstring(L" was not found in any field")
                                                         : std::wstring(L" was not found in field '") +
                                                               find_.fieldName.text() + L"'";
    pages_.prompts.tell(PromptOwner::findDialog, Notice::searchEnd, (quoted + where).c_str(),
                        L"Text not found");
    pages_.prompts.returnToFindDialog();
  }
  if (findRecordCounter_ == findStartRecord_) {
    pages_.prompts.tell(PromptOwner::findDialog, Notice::searchEnd,
                        (L"All records searched for " + quoted).c_str(), L"Searched all records");
  }
}

// ---- A row of the grid

namespace {

bool isSameText(const String& text, const String& wanted) {
  return std::wcscmp(text.text(), wanted.text()) == 0;
}

bool beginsWith(const String& text, const String& beginning) {
  const auto length = static_cast<int>(beginning.length());
  return text.length() >= beginning.length() &&
         CompareStringOrdinal(text.text(), length, beginning.text(), length, TRUE) == CSTR_EQUAL;
}

}  // namespace

Outcome Document::findRow(std::uint32_t first, std::uint32_t field, const String& beginning,
                          std::optional<std::uint32_t>& row) {
  std::optional<std::uint32_t> found;
  Outcome read;
  if (!isBusy() && recordsetOpen_ && !beginning.isEmpty()) {
    const WaitCursor wait;
    const SearchStep step(*this);
    searchStopped_ = false;
    searchedRecords_ = 0;
    database_.beginRowSearch(field, beginning);
    const std::uint32_t count = openRecordCount();
    read = findRowAmong(first, count, field, beginning, beginsWith, found);
    if (read && !found && !searchStopped_)
      read = findRowAmong(0, std::min(first, count), field, beginning, beginsWith, found);
    database_.endRowSearch();
  }
  if (read) row = found;
  return read;
}

/// What is gone holds nothing. What can't be read might be the wanted row, and behind a lock or in another
/// structure none can be.
Outcome Document::findRowAmong(std::uint32_t first, std::uint32_t end, std::uint32_t field,
                               const String& wanted, IsWanted isWanted, std::optional<std::uint32_t>& found) {
  for (std::uint32_t row = first; row < end; ++row, ++searchedRecords_) {
    const std::uint32_t passed = database_.passOverRows(row, end - row, sliceOfSearch());
    row += passed;
    searchedRecords_ += passed;
    const std::uint32_t all = openRecordCount();
    if (searchStopped_ || !searchGoesOn({Progress::What::searching, std::min(searchedRecords_, all), all})) {
      searchStopped_ = true;
      return {};
    }
    if (row >= end) return {};
    String text;
    Outcome read = database_.readForList(row, field, text);
    if (read && isWanted(text, wanted)) {
      found = row;
      return read;
    }
    if (!read && read.cause() != Outcome::Cause::recordGone) return read;
  }
  return {};
}

Outcome Document::findRowOfKey(std::uint32_t field, const String& key, std::optional<std::uint32_t>& row) {
  const WaitCursor wait;
  const SearchStep step(*this);
  searchStopped_ = false;
  searchedRecords_ = 0;
  database_.beginRowSearch(field, key);
  Outcome read = findRowAmong(0, openRecordCount(), field, key, isSameText, row);
  database_.endRowSearch();
  return read;
}
