#include "platform/store/sqlite/history/step_recording.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sqlite/history/former_rows.h"

namespace store {

namespace {

constexpr std::size_t kMostCaptionBytes = 60;

bool isNotKept(const Status& status) {
  return status.code() == ErrorCode::notAvailable || status.code() == ErrorCode::noTable;
}

/// The beginning of a text, on one line and between two characters.
std::string beginningOf(std::string_view text) {
  std::size_t length = std::min(text.size(), kMostCaptionBytes);
  const auto isInside = [&](std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
  };
  while (length > 0 && isInside(length)) --length;
  std::string beginning(text.substr(0, length));
  std::replace_if(
      beginning.begin(), beginning.end(), [](char sign) { return static_cast<unsigned char>(sign) < 0x20; },
      ' ');
  return length < text.size() ? beginning + "\xE2\x80\xA6" : beginning;
}

/// What people know a record by.
class Caption {
 public:
  /// One value after the other, from the first column on.
  void offer(sqlite3_value* value) {
    if (value == nullptr || isText_) return;
    const int type = sqlite3_value_type(value);
    if (type == SQLITE_NULL || type == SQLITE_BLOB) return;
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (text == nullptr) return;
    const std::string_view bytes(text, static_cast<std::size_t>(sqlite3_value_bytes(value)));
    if (bytes.find_first_not_of(" \t\r\n") == std::string_view::npos) return;
    isText_ = type == SQLITE_TEXT;
    if (isText_ || caption_.empty()) caption_ = beginningOf(bytes);
  }
  std::string take() { return std::move(caption_); }

 private:
  std::string caption_;
  bool isText_ = false;
};

/// What became of the rows of a table that hides their row ids.
struct RowIds {
  std::size_t goneCount = 0;  // of rows that are there no more
  bool haveNullKeys = false;
};

Status lookAt(RecordedTable& table, const std::vector<std::int64_t>& touched, RowIds* rowIds) {
  std::vector<std::int64_t> all = touched;
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  for (const std::int64_t rowId : all) {
    bool found = false;
    bool hasNullKey = false;
    if (Status status = table.findRowId(rowId, &found, &hasNullKey); !status) return status;
    if (!found) ++rowIds->goneCount;
    rowIds->haveNullKeys = rowIds->haveNullKeys || hasNullKey;
  }
  return {};
}

/// The making of one step.
class StepMaker {
 public:
  StepMaker(const ChangeRecorder& recorder, const ChangeNote& note, RecordedTables& tables,
            RecordedStep* step)
      : recorder_(recorder), note_(note), tables_(tables), step_(step), former_(tables.connection()) {}

  /// `*recording` may become notKept.
  Status readChanges(Recording* recording) {
    ChangesetReader changes(step_->changes, false);
    while (changes.next()) {
      if (changes.isOtherTable()) {
        if (Status status = beginTable(changes.table()); !status) return status;
      }
      if (hasOtherKey(changes)) *recording = Recording::notKept;
      if (Status status = readChange(changes); !status) return status;
    }
    table_ = nullptr;
    if (changes.result() != SQLITE_DONE) *recording = Recording::notKept;
    step_->told.caption = step_->told.records == 1 ? caption_.take() : std::string();
    return {};
  }

  /// Rows whose keys hold a null are missing in the changes.
  Status lookForMissing(bool* isMissing) {
    for (const TouchedTable& touched : recorder_.touched()) {
      RecordedTable* table = nullptr;
      if (Status status = tables_.find(touched.name, &table); !status) return status;
      if (!table->mayHaveNullKeys()) continue;
      RowIds rowIds;
      if (Status status = lookAt(*table, touched.rowIds, &rowIds); !status) return status;
      if (rowIds.haveNullKeys || rowIds.goneCount > countOfReplaced(touched.name)) *isMissing = true;
    }
    return {};
  }

 private:
  // Rows that were deleted, or changed in the place of a deleted one.
  std::size_t countOfReplaced(const std::string& name) const {
    ChangesetReader changes(step_->changes, false);
    std::size_t count = 0;
    while (changes.next()) {
      if (changes.operation() != SQLITE_INSERT && changes.table() == name) ++count;
    }
    return count;
  }

  Status beginTable(const std::string& name) {
    if (Status status = tables_.find(name, &table_); !status) return status;
    step_->tables.push_back({name, table_->definition()});
    if (note_.table.empty() && step_->tables.size() == 1) step_->told.table = name;
    onlyRowId_.reset();
    if (!table_->hasHiddenRowIds()) return {};
    for (const TouchedTable& touched : recorder_.touched()) {
      if (touched.name != name) continue;
      const std::vector<std::int64_t>& all = touched.rowIds;
      const bool isOne = std::adjacent_find(all.begin(), all.end(), std::not_equal_to<>()) == all.end();
      if (isOne && !all.empty()) onlyRowId_ = all.front();
    }
    return {};
  }

  // What is another key to the byte and the same one to the table's collation is not told rightly.
  bool hasOtherKey(const ChangesetReader& change) const {
    if (change.operation() != SQLITE_UPDATE) return false;
    for (int column = 0; column < change.columnCount(); ++column) {
      if (table_->isKey(column) && change.behind(column) != nullptr) return true;
    }
    return false;
  }

  Status readChange(const ChangesetReader& change) {
    bool found = false;
    if (change.operation() == SQLITE_UPDATE) {
      if (Status status = table_->find(change, true, &found); !status) return status;
      step_->images.push_back(found ? table_->image() : 0);
    }
    if (change.operation() == SQLITE_DELETE && table_->hasHiddenRowIds()) {
      step_->rowIds.push_back(onlyRowId_ ? onlyRowId_ : former_.rowIdOf(*table_, change));
    }
    if (!change.isIndirect()) tell(change, found);
    table_->release();
    return {};
  }

  void tell(const ChangesetReader& change, bool found) {
    const bool isOfNote = note_.table.empty() || equalsIgnoringCase(change.table(), note_.table);
    if (note_.table.empty() && !equalsIgnoringCase(change.table(), step_->told.table)) {
      step_->told.table.clear();
    }
    if (!isOfNote) return;
    const bool isMoved = note_.kind == StepKind::changed && change.operation() == SQLITE_DELETE;
    if (isMoved) return;  // it comes once more, under its new key
    ++step_->told.records;
    if (step_->told.records > 1) return;
    for (int column = table_->isRowId(0) ? 1 : 0; column < change.columnCount(); ++column) {
      sqlite3_value* value = found ? table_->value(column) : nullptr;
      if (!found) value = change.operation() == SQLITE_DELETE ? change.before(column) : change.behind(column);
      caption_.offer(value);
    }
  }

  const ChangeRecorder& recorder_;
  const ChangeNote& note_;
  RecordedTables& tables_;
  RecordedStep* step_;
  RecordedTable* table_ = nullptr;
  std::optional<std::int64_t> onlyRowId_;  // of the one row of the table that was touched
  FormerRows former_;
  Caption caption_;
};

}  // namespace

Status makeStep(const ChangeRecorder& recorder, Changeset changes, const ChangeNote& note,
                RecordedTables& tables, Recording* recording, RecordedStep* step) {
  RecordedStep made;
  made.told.kind = note.kind;
  made.told.table = note.table;
  made.before = note.before;
  made.after = note.after;
  made.changes = std::move(changes);
  Recording result = made.changes.isEmpty() ? Recording::nothing : Recording::kept;
  StepMaker maker(recorder, note, tables, &made);
  Status status = maker.readChanges(&result);
  bool isMissing = false;
  if (status) status = maker.lookForMissing(&isMissing);
  if (isNotKept(status) || isMissing) result = Recording::notKept;
  if (!status && !isNotKept(status)) return status;
  *recording = result;
  *step = std::move(made);
  return {};
}

}  // namespace store
