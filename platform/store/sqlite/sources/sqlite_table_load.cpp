#include "platform/store/sqlite/sources/sqlite_table_load.h"

#include <algorithm>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sql/sql_tokens.h"
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

/// Whether the table has an index that begins with the columns of the key, so that they are found quickly.
Status hasIndexOf(SqliteConnection& connection, const LoadTarget& target, bool* found) {
  SqliteStatement statement;
  Status status = connection.prepare(
      "SELECT count(*) FROM pragma_index_list(?1, 'main') AS i WHERE NOT i.partial AND NOT EXISTS (SELECT 1 "
      "FROM pragma_index_info(i.name, 'main') AS c WHERE c.seqno < ?2 AND instr(?3, char(10) || "
      "lower(c.name) || char(10)) = 0) AND (SELECT count(*) FROM pragma_index_info(i.name, 'main')) >= ?2",
      &statement);
  if (!status) return status;
  std::string names = "\n";
  for (const std::string& name : target.keyColumns) names += lowerCase(name) + "\n";
  sqlite3_bind_text64(statement.get(), 1, target.table.data(), target.table.size(), SQLITE_STATIC,
                      SQLITE_UTF8);
  sqlite3_bind_int64(statement.get(), 2, static_cast<std::int64_t>(target.keyColumns.size()));
  sqlite3_bind_text64(statement.get(), 3, names.data(), names.size(), SQLITE_STATIC, SQLITE_UTF8);
  const int result = sqlite3_step(statement.get());
  *found = result == SQLITE_ROW && sqlite3_column_int(statement.get(), 0) > 0;
  return statusOf(connection.handle(), result);
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
  if (Status status = makeKeyIndex(target); !status) return status;
  const std::string condition = " WHERE " + joined(target.columns, keyIndexes_, " IS ?", " AND ");
  const std::string table = quotedName(target.table);
  Status status =
      connection_.prepare("SELECT count(*) FROM (SELECT 1 FROM " + table + condition + " LIMIT 2)", &find_);
  if (!status || updateIndexes_.empty()) return status;
  return connection_.prepare(
      "UPDATE " + table + " SET " + joined(target.columns, updateIndexes_, " = ?", ", ") + condition,
      &update_);
}

// Without an index the whole table would be gone through for each row.
Status SqliteTableLoad::makeKeyIndex(const LoadTarget& target) {
  bool found = false;
  TableSchema schema;
  if (Status status = readTableSchema(connection_, target.table, &schema); !status) return status;
  const std::vector<std::string> primary = schema.keyColumns();
  if (target.keyColumns.size() == 1 && schema.rowIdIsColumn && primary.size() == 1) {
    found = equalsIgnoringCase(primary.front(), target.keyColumns.front());
  }
  if (!found) {
    if (Status status = hasIndexOf(connection_, target, &found); !status || found) return status;
  }
  if (found) return {};
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
