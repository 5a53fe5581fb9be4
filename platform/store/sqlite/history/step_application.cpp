#include "platform/store/sqlite/history/step_application.h"

#include <algorithm>
#include <limits>
#include <new>

namespace store {

namespace {

Status recordGone() {
  return {ErrorCode::changedElsewhere, "Another program has deleted the record."};
}

Status recordChanged() {
  return {ErrorCode::changedElsewhere, "Another program has changed the record since."};
}

Status notAsBefore() {
  return {ErrorCode::constraint, "A rule of the database does not let the record be as it was."};
}

bool isDeletion(sqlite3_changeset_iter* change) {
  const char* table = nullptr;
  int columnCount = 0;
  int operation = 0;
  int isIndirect = 0;
  return sqlite3changeset_op(change, &table, &columnCount, &operation, &isIndirect) == SQLITE_OK &&
         operation == SQLITE_DELETE;
}

/// What triggers did comes back with the step, so that they must not run again.
class WithoutTriggers {
 public:
  explicit WithoutTriggers(sqlite3* connection) : connection_(connection) { set(0); }
  ~WithoutTriggers() { set(1); }
  WithoutTriggers(const WithoutTriggers&) = delete;
  WithoutTriggers& operator=(const WithoutTriggers&) = delete;

 private:
  void set(int enabled) { sqlite3_db_config(connection_, SQLITE_DBCONFIG_ENABLE_TRIGGER, enabled, nullptr); }

  sqlite3* connection_;
};

/// SQLite's own applying of changes looks for results without their details, or gives up where it need not.
class WithPlainResults {
 public:
  explicit WithPlainResults(sqlite3* connection) : connection_(connection) {
    sqlite3_extended_result_codes(connection_, 0);
  }
  ~WithPlainResults() { sqlite3_extended_result_codes(connection_, 1); }
  WithPlainResults(const WithPlainResults&) = delete;
  WithPlainResults& operator=(const WithPlainResults&) = delete;

 private:
  sqlite3* connection_;
};

/// A hook that hears of each row, also of one that a rule of the table puts another one in the place of.
class RowHook {
 public:
  using Function = void (*)(void*, sqlite3*, int, const char*, const char*, sqlite3_int64, sqlite3_int64);

  RowHook(sqlite3* connection, Function function, void* self) : connection_(connection) {
    sqlite3_preupdate_hook(connection_, function, self);
  }
  ~RowHook() { sqlite3_preupdate_hook(connection_, nullptr, nullptr); }
  RowHook(const RowHook&) = delete;
  RowHook& operator=(const RowHook&) = delete;

 private:
  sqlite3* connection_;
};

}  // namespace

Status StepApplication::run() {
  const StatementWatch::Asked asked(connection_.watch());
  if (Status status = checkDefinitions(); !status) return status;
  if (Status status = checkRows(); !status) return status;
  return apply();
}

Status StepApplication::checkDefinitions() {
  for (const RecordedStep::Table& table : step_.tables) {
    RecordedTable* present = nullptr;
    Status status = tables_.find(table.name, &present);
    const bool isOther =
        status ? present->definition() != table.definition
               : status.code() == ErrorCode::noTable || status.code() == ErrorCode::notAvailable;
    if (isOther) {
      return {ErrorCode::structureChanged,
              "The table " + table.name + " is no longer there, or has got another structure."};
    }
    if (!status) return status;
  }
  return {};
}

Status StepApplication::checkRows() {
  ChangesetReader changes(step_.changes, isBack_);
  while (changes.next()) {
    if (changes.isOtherTable()) {
      if (Status status = tables_.find(changes.table(), &table_); !status) return status;
    }
    Status status = checkRow(changes);
    table_->release();
    if (!status) return status;
  }
  return changes.result() == SQLITE_DONE ? Status() : statusOf(nullptr, changes.result());
}

// Rows that are to be added are looked for by SQLite, once those that they take the places of are gone.
Status StepApplication::checkRow(const ChangesetReader& change) {
  const int operation = change.operation();
  addedRows_ += operation == SQLITE_INSERT ? 1 : operation == SQLITE_DELETE ? -1 : 0;
  // Another key is a row that goes and one that comes.
  if (operation != SQLITE_UPDATE) keepsRows_ = false;
  if (operation == SQLITE_INSERT) return {};
  bool found = false;
  if (Status status = table_->find(change, false, &found); !status) return status;
  if (!found) return recordGone();
  if (operation == SQLITE_UPDATE) {
    return table_->image() == step_.images.at(imagesSeen_++) ? Status() : recordChanged();
  }
  for (int column = 0; column < change.columnCount(); ++column) {
    sqlite3_value* const before = change.before(column);
    if (before == nullptr) return {ErrorCode::outOfMemory, "Out of memory."};
    if (!isSame(table_->value(column), before)) return recordChanged();
  }
  if (table_->hasHiddenRowIds()) rowIds_.emplace_back(table_->rowId());
  return {};
}

Status StepApplication::apply() {
  const WithoutTriggers withoutTriggers(connection_.handle());
  const WithPlainResults withPlainResults(connection_.handle());
  {
    const RowHook hook(connection_.handle(), &StepApplication::onRow, this);
    const int flags = SQLITE_CHANGESETAPPLY_NOSAVEPOINT | SQLITE_CHANGESETAPPLY_FKNOACTION |
                      (isBack_ ? SQLITE_CHANGESETAPPLY_INVERT : 0);
    const int result =
        sqlite3changeset_apply_v2(connection_.handle(), step_.changes.size(), step_.changes.bytes(), nullptr,
                                  &StepApplication::onConflict, this, nullptr, nullptr, flags);
    if (conflict_ != 0) return statusOfConflict();
    if (result != SQLITE_OK) return statusOf(connection_.handle(), result);
  }
  // A table may have the rule to leave out, or to put in the place of another row, what breaks its rules.
  if (countedRows_ != addedRows_) return notAsBefore();
  if (Status status = makeWay(); !status) return status;
  return checkResult();
}

int StepApplication::onConflict(void* self, int kind, sqlite3_changeset_iter* change) {
  // All rows were there: one that is to go has gone already when a rule of the table put another one of the
  // step in its place.
  if (kind == SQLITE_CHANGESET_NOTFOUND && isDeletion(change)) return SQLITE_CHANGESET_OMIT;
  auto* application = static_cast<StepApplication*>(self);
  if (application->conflict_ == 0) {
    application->conflict_ = kind;
    try {
      application->conflictReason_ = sqlite3_errmsg(application->connection_.handle());
    } catch (const std::bad_alloc&) {
      application->conflictReason_.clear();
    }
  }
  return SQLITE_CHANGESET_ABORT;
}

Status StepApplication::statusOfConflict() const {
  switch (conflict_) {
    case SQLITE_CHANGESET_NOTFOUND:
      return recordGone();
    case SQLITE_CHANGESET_DATA:
      return recordChanged();
    case SQLITE_CHANGESET_CONFLICT:
      return {ErrorCode::changedElsewhere, "Another record stands in its place."};
    case SQLITE_CHANGESET_FOREIGN_KEY:
      return {ErrorCode::constraint,
              "FOREIGN KEY constraint failed: records would refer to one that is not there."};
    default:
      return {ErrorCode::constraint, conflictReason_};
  }
}

void StepApplication::onRow(void* self, sqlite3*, int operation, const char* database, const char*,
                            sqlite3_int64, sqlite3_int64) {
  if (sqlite3_stricmp(database, "main") != 0 || operation == SQLITE_UPDATE) return;
  static_cast<StepApplication*>(self)->countedRows_ += operation == SQLITE_INSERT ? 1 : -1;
}

// Rows that come back may have got row ids that others of them had: first all of them step aside, where none
// of them stood and no other row stands.
Status StepApplication::makeWay() {
  if (step_.rowIds.size() < 2) return {};
  ChangesetReader changes(step_.changes, isBack_);
  std::size_t used = 0;
  std::int64_t lowest = 0;
  std::int64_t highest = 0;
  while (changes.next()) {
    if (changes.isOtherTable()) {
      if (Status status = tables_.find(changes.table(), &table_); !status) return status;
      Status status = table_->hasHiddenRowIds() ? table_->findRowIdRange(&lowest, &highest) : Status();
      if (!status) return status;
      for (const std::optional<std::int64_t>& wanted : step_.rowIds)
        lowest = std::min(lowest, wanted.value_or(lowest));
    }
    if (changes.operation() != SQLITE_INSERT || !table_->hasHiddenRowIds()) continue;
    const bool isKnown = step_.rowIds.at(used++).has_value();
    if (!isKnown || lowest == std::numeric_limits<std::int64_t>::min()) continue;
    bool isTaken = false;
    if (Status status = table_->moveToRowId(changes, --lowest, &isTaken); !status) return status;
  }
  return changes.result() == SQLITE_DONE ? Status() : statusOf(nullptr, changes.result());
}

Status StepApplication::restoreRowId(const ChangesetReader& change) {
  const std::optional<std::int64_t> rowId = step_.rowIds.at(rowIdsUsed_++);
  if (!rowId) return {};
  bool isTaken = false;
  if (Status status = table_->moveToRowId(change, *rowId, &isTaken); !status || !isTaken) return status;
  if (step_.rowIds.size() < 2) return {};
  // It stands aside: behind all others, where a new row would stand.
  std::int64_t lowest = 0;
  std::int64_t highest = 0;
  if (Status status = table_->findRowIdRange(&lowest, &highest); !status) return status;
  for (const std::optional<std::int64_t>& wanted : step_.rowIds)
    highest = std::max(highest, wanted.value_or(0));
  if (highest == std::numeric_limits<std::int64_t>::max()) return {};
  return table_->moveToRowId(change, highest + 1, &isTaken);
}

// What the columns of a table make of a value may have been another thing when it was stored.
Status StepApplication::checkResult() {
  ChangesetReader changes(step_.changes, isBack_);
  while (changes.next()) {
    if (changes.isOtherTable()) {
      if (Status status = tables_.find(changes.table(), &table_); !status) return status;
    }
    Status status = changes.operation() == SQLITE_DELETE ? Status() : checkResult(changes);
    table_->release();
    if (!status) return status;
  }
  return changes.result() == SQLITE_DONE ? Status() : statusOf(nullptr, changes.result());
}

Status StepApplication::checkResult(const ChangesetReader& change) {
  const bool isNew = change.operation() == SQLITE_INSERT;
  if (isNew && table_->hasHiddenRowIds()) {
    if (Status status = restoreRowId(change); !status) return status;
  }
  bool found = false;
  if (Status status = table_->find(change, true, &found); !status) return status;
  if (!found) return notAsBefore();
  for (int column = 0; column < change.columnCount(); ++column) {
    sqlite3_value* const behind = change.behind(column);
    if (behind != nullptr && !isSame(table_->value(column), behind)) return notAsBefore();
  }
  if (!isNew) images_.push_back(table_->image());
  return {};
}

}  // namespace store
