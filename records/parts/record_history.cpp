#include "records/parts/record_history.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <optional>
#include <vector>

#include "records/history_text.h"

namespace {

/// The components keep changes of up to 64 MB; what follows from a change by the rules of its table counts,
/// too.
constexpr std::uint64_t kMostTypedBytes = 32 * 1024 * 1024;

constexpr const wchar_t* kNoFormerState = L"It is stored, and what was there before was not kept.";

/// At most, in the file.
std::uint64_t bytesOfText(std::uint64_t count) {
  constexpr std::uint64_t kMostBytesOfUnit = 3;
  return count * kMostBytesOfUnit;
}

std::uint64_t bytesOf(const ValueBeginning& value) {
  return value.value.type() == VT_BSTR ? bytesOfText(value.length) : value.length;
}

std::uint64_t bytesIn(const FieldValueSource& editor) {
  if (const Bytes* bytes = editor.bytes()) return bytes->size();
  return bytesOfText(editor.text().length());
}

/// Whether the step is about one record, which is there when it has been taken.
bool leavesRecord(const HistoryStep& step, HistoryWay way) {
  using Kind = HistoryStep::Kind;
  if (step.kind == Kind::changed) return true;
  return step.kind == (way == HistoryWay::back ? Kind::deleted : Kind::added);
}

}  // namespace

/// What is typed on the form is the newest change as soon as it is stored.
bool RecordHistory::hasTyped() const {
  if (document().viewMode() != ViewMode::form || !shown().isReadable()) return false;
  // Not what the editors say of themselves: a text with line breaks differs from what is shown of it.
  return database().newRecordPending() || pages().form.hasChange();
}

/// Whether what is typed could be taken back once it is stored. What a server's database or a very large
/// value was before is not kept.
bool RecordHistory::canTakeTypedBack() const {
  if (database().isServers()) return false;
  const FieldEditors editors = pages().form.editors();
  const std::vector<FieldSnapshot>& fields = shown().fields();
  std::uint64_t bytes = 0;
  for (std::size_t i = 0; i < fields.size() && i < editors.size(); ++i) {
    // Of a record that is changed all former values are kept, and the new ones of what was edited.
    bytes += bytesOf(fields[i].read);
    if (editors[i]->isEdited()) bytes += bytesIn(*editors[i]);
  }
  return bytes <= kMostTypedBytes;
}

/// The form shows what the file holds again.
void RecordHistory::takeTypedOff() const {
  const bool wasNew = database().newRecordPending();
  // Behind a match stands the cursor; the user means the record that he sees.
  const std::uint32_t position = shown().position();
  discardTyped();
  if (openRecordCount() != 0) {
    if (!wasNew) database().moveTo(position);
    document().loadRecord();
  }
  document().updateCommandBar();
}

/// What the file holds of the record that is typed into; of a new record nothing.
RecordSnapshot RecordHistory::readBefore() const {
  if (database().newRecordPending() || !database().moveTo(shown().position())) return {};
  return database().readRecord();
}

/// After what was typed over `before` has been stored: whether that is a step which can be taken back.
/// Without one nothing older is taken in its place.
bool RecordHistory::isTypedStep(const RecordSnapshot& before) {
  const bool hasChanged = !Database::isSameReading(before, shown());
  if (hasChanged && database().nextStep(HistoryWay::back).kind != HistoryStep::Kind::none) return true;
  if (hasChanged) tellFailure(L"The change could not be undone.", kNoFormerState);
  return false;
}

RecordHistory::Steps RecordHistory::steps() const {
  if (hasTyped()) return {.back = true, .again = false};
  const auto isThere = [&](HistoryWay way) {
    return database().nextStep(way).kind != HistoryStep::Kind::none;
  };
  return {.back = isThere(HistoryWay::back), .again = isThere(HistoryWay::again)};
}

std::wstring RecordHistory::text(HistoryWay way) const {
  if (!hasTyped()) return historyText(way, database().nextStep(way));
  return way == HistoryWay::back ? L"Undo what is typed" : historyText(way, {});
}

std::optional<ViewMode> RecordHistory::take(HistoryWay way) {
  const bool takesTyped = way == HistoryWay::back && hasTyped();
  if (takesTyped && !canTakeTypedBack()) {
    takeTypedOff();
    return std::nullopt;
  }
  const RecordSnapshot before = takesTyped ? readBefore() : RecordSnapshot();
  // Nothing older is taken for what is refused. To have it off the form again is what the user asks for.
  if (hasTyped()) {
    if (const Outcome stored = storeShownRecord(); !stored) {
      if (!takesTyped) tellFailure(L"The record could not be written.", stored.reason());
      if (takesTyped && mayDiscardTyped(stored)) takeTypedOff();
      return std::nullopt;
    }
  }
  if (!document().settleTyped()) return std::nullopt;
  if (takesTyped && !isTypedStep(before)) {
    document().updateCommandBar();
    return std::nullopt;
  }
  const HistoryStep step = database().nextStep(way);
  if (step.kind == HistoryStep::Kind::none || !canChangeFile()) {
    document().updateCommandBar();
    return std::nullopt;
  }
  // A form without records has no editors yet.
  formWasEmpty_ = document().isRecordsetOpen() && database().recordCount() == 0;
  if (const Outcome taken = database().takeStep(way); !taken) {
    tellFailure(
        way == HistoryWay::back ? L"The change could not be undone." : L"The change could not be done again.",
        taken.reason());
    takenHasRecord_ = false;
    showTaken();
    return std::nullopt;
  }
  if (isOfQueries(step)) return ViewMode::queries;
  takenHasRecord_ = leavesRecord(step, way);
  openTaken(step);
  return showsRecords(document().viewMode()) ? document().viewMode() : ViewMode::form;
}

bool RecordHistory::isOfQueries(const HistoryStep& step) const {
  return std::wcscmp(step.table.text(), kQueriesTable) == 0 && !wanted().isTable(step.table);
}

/// The open recordset has the record, and the right ones beside it: of a whole table where only values have
/// changed. All keys of a large one need not be read for it.
bool RecordHistory::isOpenAsItIs(const HistoryStep& step) const {
  return document().isRecordsetOpen() && !sqlPending() && wanted().isTable(step.table) &&
         wanted().arrangement().isEmpty() && database().hasStepKeptRecords() &&
         database().positionOfStep() != 0;
}

/// Sees to it that the records in use are those that the step was about, as they are now: rows that come or
/// go are not in a recordset that was opened before. A query in use may hold them as well.
void RecordHistory::openTaken(const HistoryStep& step) {
  if (isOpenAsItIs(step)) return;
  const bool isSame = document().isRecordsetOpen() && !sqlPending() && database().reopenSameFields();
  const bool isOtherTable = wanted().isTable() && !wanted().isTable(step.table);
  const bool isNotInQuery =
      !wanted().isTable() && takenHasRecord_ && (!isSame || database().positionOfStep() == 0);
  const bool leads = tableNames().holds(step.table) && (isOtherTable || isNotInQuery);
  if (leads) {
    chooseTable(step.table);
    pages().grid.resetColumns();
  }
  if (leads || !isSame) reopenTaken(step.table);
}

void RecordHistory::reopenTaken(const String& table) {
  closeRecords();
  formWasEmpty_ = false;
  showEverythingAnew(table);
}

/// A filter that leaves the record out gives way for this time.
void RecordHistory::showHiddenTaken() {
  const bool isHidden = takenHasRecord_ && database().positionOfStep() == 0;
  if (!isHidden || !wanted().isTable() || wanted().arrangement().isEmpty()) return;
  const String table = wanted().tableName();
  wanted().chooseTable(table);
  reopenTaken(table);
}

void RecordHistory::showTaken() {
  if (document().viewMode() == ViewMode::queries) {
    reloadQueries();
  } else if (showsRecords(document().viewMode()) && document().isRecordsetOpen()) {
    standAtTaken();
  }
  document().updateCommandBar();
}

/// At the record that the step was about, or else where the user was.
void RecordHistory::standAtTaken() {
  showHiddenTaken();
  if (!document().isRecordsetOpen()) return;
  recordCount = database().recordCount();
  const std::uint32_t taken = database().positionOfStep();
  const std::uint32_t wanted =
      std::clamp(taken != 0 ? taken : currentRecord, std::min(1u, recordCount), recordCount);
  if (document().viewMode() == ViewMode::list) {
    currentRecord = wanted;
    showGridAnew();
    if (recordCount != 0) selectInGrid(wanted);
    return;
  }
  if (recordCount == 0) {
    showNoRecords();
  } else {
    if (formWasEmpty_) pages().form.build();
    database().moveTo(wanted);
    document().loadRecord();
    pages().form.showEditors();
  }
  formWasEmpty_ = false;
  document().updateNavigationState();
}
