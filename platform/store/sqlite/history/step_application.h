#pragma once

#include <cstdint>
#include <optional>
#include <sqlite3.h>
#include <string>
#include <vector>

#include "platform/store/rows/change_history.h"
#include "platform/store/rows/status.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/history/history_step.h"
#include "platform/store/sqlite/history/recorded_table.h"

namespace store {

/// Takes one step back, or does it again, inside an open write transaction that is undone when this fails. No
/// other session or hook of the kind is on the connection meanwhile.
class StepApplication {
 public:
  /// All outlive it.
  StepApplication(SqliteConnection& connection, RecordedTables& tables, const RecordedStep& step,
                  ChangeHistory::Way way)
      : connection_(connection), tables_(tables), step_(step), isBack_(way == ChangeHistory::Way::back) {}

  /// As ChangeHistory::take.
  Status run();

  /// Whether no row has come, gone or got another key.
  bool keepsRows() const { return keepsRows_; }

  /// How the rows stand now, for the step to be taken the other way.
  std::vector<std::uint64_t> takeImages() { return std::move(images_); }
  std::vector<std::optional<std::int64_t>> takeRowIds() { return std::move(rowIds_); }

 private:
  Status checkDefinitions();
  Status checkRows();
  Status checkRow(const ChangesetReader& change);
  Status apply();
  Status makeWay();
  Status restoreRowId(const ChangesetReader& change);
  Status checkResult();
  Status checkResult(const ChangesetReader& change);
  Status statusOfConflict() const;

  static int onConflict(void* self, int kind, sqlite3_changeset_iter* change);
  static void onRow(void* self, sqlite3* connection, int operation, const char* database, const char* table,
                    sqlite3_int64 before, sqlite3_int64 behind);

  SqliteConnection& connection_;
  RecordedTables& tables_;
  const RecordedStep& step_;
  bool isBack_;
  RecordedTable* table_ = nullptr;
  bool keepsRows_ = true;
  std::size_t imagesSeen_ = 0;
  std::size_t rowIdsUsed_ = 0;
  std::int64_t addedRows_ = 0;    // as the changes say, deleted ones taken off
  std::int64_t countedRows_ = 0;  // as they were added and deleted
  int conflict_ = 0;              // SQLITE_CHANGESET_..., the first one
  std::string conflictReason_;
  std::vector<std::uint64_t> images_;
  std::vector<std::optional<std::int64_t>> rowIds_;
};

}  // namespace store
