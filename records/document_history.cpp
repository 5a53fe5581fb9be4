// Changes that are taken back and done again.
#include <algorithm>
#include <cwchar>
#include <optional>

#include "records/document.h"
#include "records/history_text.h"

namespace {

/// Whether the step is about one record, which is there when it has been taken.
bool leavesRecord(const HistoryStep& step, HistoryWay way) {
  using Kind = HistoryStep::Kind;
  if (step.kind == Kind::changed) return true;
  return step.kind == (way == HistoryWay::back ? Kind::deleted : Kind::added);
}

}  // namespace

/// What is typed on the form is the newest change as soon as it is stored.
bool Document::hasTyped() const {
  if (viewMode_ != ViewMode::form || !shown_.isReadable()) return false;
  const FieldEditors editors = pages_.form.editors();
  return database_.newRecordPending() ||
         std::any_of(editors.begin(), editors.end(), [](const auto* editor) { return editor->isEdited(); });
}

bool Document::hasStep(HistoryWay way) const {
  if (hasTyped()) return way == HistoryWay::back;
  return database_.nextStep(way).kind != HistoryStep::Kind::none;
}

std::wstring Document::historyText(HistoryWay way) const {
  if (!hasTyped()) return ::historyText(way, database_.nextStep(way));
  return way == HistoryWay::back ? L"Undo what is typed" : ::historyText(way, {});
}

std::optional<ViewMode> Document::takeStep(HistoryWay way) {
  // What is refused is left as it is, and nothing older is taken for it.
  if (hasTyped()) {
    if (const Outcome stored = storeShownRecord(); !stored) {
      tellFailure(L"The record could not be written.", stored.reason());
      return std::nullopt;
    }
  }
  if (viewMode_ == ViewMode::form ? !settleRecord() : !canLeaveRecord()) return std::nullopt;
  const HistoryStep step = database_.nextStep(way);
  if (step.kind == HistoryStep::Kind::none || !canChangeFile()) {
    updateCommandBar();
    return std::nullopt;
  }
  // A form without records has no editors yet.
  formWasEmpty_ = recordsetOpen_ && database_.recordCount() == 0;
  if (const Outcome taken = database_.takeStep(way); !taken) {
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
  return showsRecords(viewMode_) ? viewMode_ : ViewMode::form;
}

bool Document::isOfQueries(const HistoryStep& step) const {
  return std::wcscmp(step.table.text(), kQueriesTable) == 0 && !wanted_.isTable(step.table);
}

/// Sees to it that the records in use are those that the step was about, as they are now: rows that come or
/// go are not in a recordset that was opened before. A query in use may hold them as well.
void Document::openTaken(const HistoryStep& step) {
  const bool isSame = recordsetOpen_ && !sqlPending() && database_.reopenSameFields();
  const bool isOtherTable = wanted_.isTable() && !wanted_.isTable(step.table);
  const bool isNotInQuery =
      !wanted_.isTable() && takenHasRecord_ && (!isSame || database_.positionOfStep() == 0);
  const bool leads = tableNames_.holds(step.table) && (isOtherTable || isNotInQuery);
  if (leads) {
    chooseTable(step.table);
    pages_.grid.resetColumns();
  }
  if (leads || !isSame) reopenTaken(step.table);
}

void Document::reopenTaken(const String& table) {
  closeRecords();
  formWasEmpty_ = false;
  showEverythingAnew(table);
}

/// A filter that leaves the record out gives way for this time.
void Document::showHiddenTaken() {
  const bool isHidden = takenHasRecord_ && database_.positionOfStep() == 0;
  if (!isHidden || !wanted_.isTable() || wanted_.arrangement().isEmpty()) return;
  const String table = wanted_.tableName();
  wanted_.chooseTable(table);
  reopenTaken(table);
}

void Document::showTaken() {
  if (viewMode_ == ViewMode::queries) {
    reloadQueries();
  } else if (showsRecords(viewMode_) && recordsetOpen_) {
    standAtTaken();
  }
  updateCommandBar();
}

/// At the record that the step was about, or else where the user was.
void Document::standAtTaken() {
  showHiddenTaken();
  if (!recordsetOpen_) return;
  recordCount = database_.recordCount();
  const std::uint32_t taken = database_.positionOfStep();
  const std::uint32_t wanted =
      std::clamp(taken != 0 ? taken : currentRecord, std::min(1u, recordCount), recordCount);
  if (viewMode_ == ViewMode::list) {
    currentRecord = wanted;
    showGridAnew();
    if (recordCount != 0) selectInGrid(wanted);
    return;
  }
  if (recordCount == 0) {
    showNoRecords();
  } else {
    if (formWasEmpty_) pages_.form.build();
    database_.moveTo(wanted);
    loadRecord();
    pages_.form.showEditors();
  }
  formWasEmpty_ = false;
  updateNavigationState();
}
