#include "platform/store/sqlite/sources/sqlite_table_load.h"

#include <algorithm>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sql/sql_tokens.h"
#include "platform/store/sqlite/connection/query_plan.h"
#include "platform/store/sqlite/sources/schema_reading.h"

namespace store {

namespace {

constexpr const char* kKeyIndex = "\"quivane load key\"";

int bindCell(sqlite3_stmt* statement, int position, const Cell& cell) {
  switch (cell.kind) {
    case CellKind::integer:
      return sqlite3_bind_int64(statement, position, cell.integer);
    case CellKind::real:
      return sqlite3_bind_double(statement, position, cell.real);
    case CellKind::text:
      // An empty text may have no address, which would be null.
      return sqlite3_bind_text64(statement, position, cell.bytes.empty() ? "" : cell.bytes.data(),
                                 cell.bytes.size(), SQLITE_STATIC, SQLITE_UTF8);
    case CellKind::blob:
      if (cell.bytes.empty()) return sqlite3_bind_zeroblob(statement, position, 0);
      return sqlite3_bind_blob64(statement, position, cell.bytes.data(), cell.bytes.size(), SQLITE_STATIC);
    default:
      return sqlite3_bind_null(statement, position);
  }
}

std::string joined(const std::vector<std::string>& names, const std::vector<std::size_t>& indexes,
                   std::string_view behindName, std::string_view between) {
  std::string text;
  for (const std::size_t index : indexes) {
    if (!text.empty()) text += between;
    text += quotedName(names[index]);
    text += behindName;
  }
  return text;
}

/// Whether what failed is wrong with this one row only.
bool isOfRow(int result) {
  const int code = result & 0xFF;
  return code == SQLITE_CONSTRAINT || code == SQLITE_MISMATCH || code == SQLITE_TOOBIG;
}

/// Whether SQLite finds the rows of a statement on one table by an index that has all `columnCount` columns
/// of its condition, and by nothing that it would have to go through. Only SQLite itself knows which index
/// suits: its columns, what they collate, and whether it has all rows.
Status isSearched(SqliteConnection& connection, const std::string& sql, std::size_t columnCount,
                  bool* searched) {
  std::vector<std::string> steps;
  if (Status status = readQueryPlan(connection, sql, &steps); !status) return status;
  *searched = std::any_of(steps.begin(), steps.end(), [&](const std::string& step) {
    std::size_t compared = 0;
    for (std::size_t at = step.find("=?"); at != step.npos; at = step.find("=?", at + 1)) ++compared;
    return step.starts_with("SEARCH ") && compared >= columnCount;
  });
  return {};
}

}  // namespace

Status SqliteTableLoad::begin(const LoadTarget& target, const std::string& createSql) {
  if (connection_.isReadOnly()) return {ErrorCode::readOnly, "The database can only be read."};
  if (target.columns.empty()) return {ErrorCode::invalidArgument, "No column was named."};
  if (Status status = transaction_.begin(); !status) return status;
  if (!createSql.empty()) {
    if (Status status = create(createSql); !status) return status;
  }
  TableSchema schema;
  if (Status status = readTableSchema(connection_, target.table, &schema); !status) return status;
  if (schema.columns.empty()) return {ErrorCode::noTable, "no such table: " + target.table};
  if (!schema.ordinary) return {ErrorCode::readOnly, target.table + " is not a table that takes records."};
  if (Status status = prepareKey(target); !status) return status;
  transaction_.record({.kind = StepKind::imported, .table = target.table});

  std::vector<std::size_t> all;
  std::string parameters;
  for (std::size_t index = 0; index < target.columns.size(); ++index) {
    all.push_back(index);
    parameters += index == 0 ? "?" : ", ?";
  }
  return connection_.prepare("INSERT INTO " + quotedName(target.table) + " (" +
                                 joined(target.columns, all, "", ", ") + ") VALUES (" + parameters + ")",
                             &insert_);
}

Status SqliteTableLoad::create(const std::string& createSql) {
  SqliteConnection::UserStatement prepared;
  if (Status status = connection_.prepareUser(createSql, &prepared); !status) return status;
  changesStructure_ = true;
  return transaction_.run(prepared.statement.get());
}

Status SqliteTableLoad::prepareKey(const LoadTarget& target) {
  if (target.keyColumns.empty()) return {};
  for (std::size_t index = 0; index < target.columns.size(); ++index) {
    const bool isKey =
        std::any_of(target.keyColumns.begin(), target.keyColumns.end(),
                    [&](const std::string& name) { return equalsIgnoringCase(name, target.columns[index]); });
    (isKey ? keyIndexes_ : updateIndexes_).push_back(index);
  }
  if (keyIndexes_.size() != target.keyColumns.size()) {
    return {ErrorCode::badColumn, "Each column of the key needs a value."};
  }
  const std::string condition = " WHERE " + joined(target.columns, keyIndexes_, " IS ?", " AND ");
  const std::string table = quotedName(target.table);
  bool isQuick = false;
  if (Status status =
          isSearched(connection_, "SELECT 1 FROM " + table + condition, keyIndexes_.size(), &isQuick);
      !status) {
    return status;
  }
  if (!isQuick) {
    if (Status status = makeKeyIndex(target); !status) return status;
  }
  Status status =
      connection_.prepare("SELECT count(*) FROM (SELECT 1 FROM " + table + condition + " LIMIT 2)", &find_);
  if (!status || updateIndexes_.empty()) return status;
  return connection_.prepare(
      "UPDATE " + table + " SET " + joined(target.columns, updateIndexes_, " = ?", ", ") + condition,
      &update_);
}

// Without an index the whole table would be gone through for each row.
Status SqliteTableLoad::makeKeyIndex(const LoadTarget& target) {
  SqliteStatement statement;
  Status status =
      connection_.prepare(std::string("CREATE INDEX ") + kKeyIndex + " ON " + quotedName(target.table) +
                              " (" + joined(target.columns, keyIndexes_, "", ", ") + ")",
                          &statement);
  if (status) status = transaction_.run(statement.get());
  hasKeyIndex_ = static_cast<bool>(status);
  return status;
}

Status SqliteTableLoad::rowStatusOf(int result) {
  Status status = statusOf(connection_.handle(), result);
  if (status) return status;
  // Some rules undo the whole transaction (ON CONFLICT ROLLBACK).
  const bool isOpen = sqlite3_get_autocommit(connection_.handle()) == 0;
  if (isOfRow(result) && isOpen) return {ErrorCode::constraint, status.message()};
  hasFailed_ = true;
  if (status.code() == ErrorCode::constraint) {
    return {ErrorCode::illegalOperation, "A rule of the database has undone the whole: " + status.message()};
  }
  return status;
}

Status SqliteTableLoad::countOfKey(std::span<const Cell> values, int* count) {
  int position = 0;
  int result = SQLITE_OK;
  for (const std::size_t index : keyIndexes_) {
    result = bindCell(find_.get(), ++position, values[index]);
    if (result != SQLITE_OK) return rowStatusOf(result);
  }
  result = sqlite3_step(find_.get());
  if (result == SQLITE_ROW) *count = sqlite3_column_int(find_.get(), 0);
  Status status = rowStatusOf(result);
  sqlite3_reset(find_.get());
  return status;
}

Status SqliteTableLoad::runRow(sqlite3_stmt* statement) {
  const int result = sqlite3_step(statement);
  if (result == SQLITE_DONE) {
    sqlite3_reset(statement);
    if (sqlite3_changes(connection_.handle()) > 0) return {};
    return {ErrorCode::constraint, "A rule of the database left the record out."};
  }
  Status status = rowStatusOf(result);
  sqlite3_reset(statement);
  return status;
}

Status SqliteTableLoad::add(std::span<const Cell> values) {
  if (hasFailed_) return {ErrorCode::illegalOperation, "The transaction was undone already."};
  if (!keyIndexes_.empty()) {
    int count = 0;
    if (Status status = countOfKey(values, &count); !status) return status;
    if (count > 1) return {ErrorCode::constraint, "Several records have this key."};
    if (count == 1) {
      ++replacedCount_;
      if (updateIndexes_.empty()) return {};
      int position = 0;
      for (const auto& indexes : {updateIndexes_, keyIndexes_}) {
        for (const std::size_t index : indexes) {
          const int bound = bindCell(update_.get(), ++position, values[index]);
          if (bound != SQLITE_OK) return rowStatusOf(bound);
        }
      }
      Status status = runRow(update_.get());
      if (!status) --replacedCount_;
      return status;
    }
  }
  for (std::size_t index = 0; index < values.size(); ++index) {
    const int bound = bindCell(insert_.get(), static_cast<int>(index) + 1, values[index]);
    if (bound != SQLITE_OK) return rowStatusOf(bound);
  }
  return runRow(insert_.get());
}

Status SqliteTableLoad::commit() {
  if (hasFailed_) return {ErrorCode::illegalOperation, "The transaction was undone already."};
  insert_.reset();
  update_.reset();
  find_.reset();
  if (hasKeyIndex_) {
    SqliteStatement statement;
    Status status = connection_.prepare(std::string("DROP INDEX ") + kKeyIndex, &statement);
    if (status) status = transaction_.run(statement.get());
    if (!status) return status;
  }
  return changesStructure_ || hasKeyIndex_ ? transaction_.commitStructure(false) : transaction_.commit();
}

}  // namespace store
