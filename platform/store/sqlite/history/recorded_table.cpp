#include "platform/store/sqlite/history/recorded_table.h"

#include <bit>
#include <cstring>
#include <string_view>
#include <utility>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/rows/table_schema.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/sources/schema_reading.h"

namespace store {

namespace {

// The name by which SQLite's changes call the key of a table without one.
constexpr const char* kRowIdColumn = "_rowid_";

// SQLite looks for a row that is to go by one expression over all of its columns, which may be 1,000 deep.
constexpr std::size_t kMostColumns = 900;

// Tables that stay prepared between steps.
constexpr std::size_t kMostTables = 32;

Status outOfMemory() {
  return {ErrorCode::outOfMemory, "Out of memory."};
}

Status readDefinition(SqliteConnection& connection, const std::string& name, std::string* definition) {
  SqliteStatement statement;
  Status status = connection.prepare(
      "SELECT sql FROM main.sqlite_schema WHERE type = 'table' AND name = ?1 COLLATE NOCASE", &statement);
  if (!status) return status;
  if (sqlite3_bind_text64(statement.get(), 1, name.data(), name.size(), SQLITE_STATIC, SQLITE_UTF8) !=
      SQLITE_OK) {
    return outOfMemory();
  }
  const int result = sqlite3_step(statement.get());
  if (result == SQLITE_ROW) *definition = columnText(statement.get(), 0);
  return statusOf(connection.handle(), result);
}

std::string_view bytesOf(sqlite3_value* value) {
  const void* data = sqlite3_value_type(value) == SQLITE_TEXT
                         ? static_cast<const void*>(sqlite3_value_text(value))
                         : sqlite3_value_blob(value);
  const int length = sqlite3_value_bytes(value);
  if (data == nullptr || length <= 0) return {};
  return {static_cast<const char*>(data), static_cast<std::size_t>(length)};
}

std::uint64_t mixed(std::uint64_t image, std::uint64_t word) {
  image = (image ^ word) * 0x9E3779B97F4A7C15u;
  return image ^ image >> 29;
}

std::uint64_t mixedBytes(std::uint64_t image, std::string_view bytes) {
  image = mixed(image, bytes.size());
  while (!bytes.empty()) {
    std::uint64_t word = 0;
    const std::size_t length = bytes.size() < sizeof word ? bytes.size() : sizeof word;
    std::memcpy(&word, bytes.data(), length);
    image = mixed(image, word);
    bytes.remove_prefix(length);
  }
  return image;
}

}  // namespace

bool isSame(sqlite3_value* one, sqlite3_value* other) {
  const int type = sqlite3_value_type(one);
  if (type != sqlite3_value_type(other)) return false;
  switch (type) {
    case SQLITE_NULL:
      return true;
    case SQLITE_INTEGER:
      return sqlite3_value_int64(one) == sqlite3_value_int64(other);
    case SQLITE_FLOAT:
      return std::bit_cast<std::uint64_t>(sqlite3_value_double(one)) ==
             std::bit_cast<std::uint64_t>(sqlite3_value_double(other));
    default:
      return bytesOf(one) == bytesOf(other);
  }
}

Status RecordedTable::read(SqliteConnection& connection, const std::string& name) {
  connection_ = &connection;
  name_ = "main." + quotedName(name);
  TableSchema schema;
  if (Status status = readTableSchema(connection, name, &schema); !status) return status;
  if (schema.columns.empty()) return {ErrorCode::noTable, "The table " + name + " is gone."};
  if (Status status = readDefinition(connection, name, &definition_); !status) return status;
  const bool hasKey = !schema.keyColumns().empty();
  const bool hidesRowIds = hasKey && !schema.withoutRowId && !schema.rowIdIsColumn;
  if (hidesRowIds) rowIdName_ = schema.rowIdName();
  const bool isUnreachable =
      hasKey ? hidesRowIds && rowIdName_.empty() : schema.find(kRowIdColumn) != nullptr;
  if (!schema.ordinary || isUnreachable || schema.columns.size() > kMostColumns) {
    return {ErrorCode::notAvailable, "The changes of " + name + " can't be kept."};
  }
  hasNoKey_ = !hasKey;
  if (!hasKey) {
    columns_.emplace_back(kRowIdColumn);
    isKey_.push_back(true);
  }
  for (const TableSchema::Column& column : schema.columns) {
    if (column.generated) continue;
    columns_.push_back(quotedName(column.name));
    isKey_.push_back(column.keyPosition > 0);
    if (column.keyPosition > 0 && !column.notNull) mayHaveNullKeys_ = true;
  }
  for (std::size_t index = 0; index < columns_.size(); ++index) {
    if (!isKey_[index]) continue;
    keyCondition_ += (keyCondition_.empty() ? "" : " AND ") + columns_[index] + " IS ?";
    nullCondition_ += (nullCondition_.empty() ? "" : " OR ") + columns_[index] + " IS NULL";
  }
  return {};
}

Status RecordedTable::prepare(SqliteStatement& statement, const std::string& sql) {
  return statement ? Status() : connection_->prepare(sql, &statement);
}

bool RecordedTable::bindKey(sqlite3_stmt* statement, int first, const ChangesetReader& change,
                            bool behind) const {
  int position = first;
  for (int column = 0; column < columnCount() && column < change.columnCount(); ++column) {
    if (!isKey(column)) continue;
    // An update leaves the key alone, and has it before the change only.
    sqlite3_value* const value =
        behind && change.operation() != SQLITE_UPDATE ? change.behind(column) : change.before(column);
    if (value == nullptr || sqlite3_bind_value(statement, position, value) != SQLITE_OK) return false;
    ++position;
  }
  return true;
}

Status RecordedTable::find(const ChangesetReader& change, bool behind, bool* found) {
  if (!find_) {
    std::string list;
    for (const std::string& column : columns_) list += (list.empty() ? "" : ", ") + column;
    if (hasHiddenRowIds()) list += ", " + rowIdName_;
    if (Status status = prepare(find_, "SELECT " + list + " FROM " + name_ + " WHERE " + keyCondition_);
        !status) {
      return status;
    }
  }
  release();
  if (!bindKey(find_.get(), 1, change, behind)) return outOfMemory();
  const int result = sqlite3_step(find_.get());
  if (result != SQLITE_ROW && result != SQLITE_DONE) {
    Status status = statusOf(connection_->handle(), result);
    release();
    return status;
  }
  *found = result == SQLITE_ROW;
  return {};
}

sqlite3_value* RecordedTable::value(int column) const {
  return sqlite3_column_value(find_.get(), column);
}

std::int64_t RecordedTable::rowId() const {
  return sqlite3_column_int64(find_.get(), columnCount());
}

std::uint64_t RecordedTable::image() const {
  std::uint64_t image = 0;
  for (int column = 0; column < columnCount(); ++column) {
    sqlite3_value* const cell = value(column);
    const int type = sqlite3_column_type(find_.get(), column);
    image = mixed(image, static_cast<std::uint64_t>(type));
    if (type == SQLITE_INTEGER) {
      image = mixed(image, static_cast<std::uint64_t>(sqlite3_column_int64(find_.get(), column)));
    } else if (type == SQLITE_FLOAT) {
      image = mixed(image, std::bit_cast<std::uint64_t>(sqlite3_column_double(find_.get(), column)));
    } else if (type != SQLITE_NULL) {
      image = mixedBytes(image, bytesOf(cell));
    }
  }
  return image;
}

void RecordedTable::release() {
  if (!find_) return;
  sqlite3_reset(find_.get());
  sqlite3_clear_bindings(find_.get());
}

std::string RecordedTable::rowIdQuery() const {
  return "SELECT " + rowIdName_ + " FROM " + name_ + " WHERE " + keyCondition_;
}

Status RecordedTable::findRowId(std::int64_t rowId, bool* found, bool* hasNullKey) {
  if (Status status = prepare(
          findRowId_, "SELECT " + nullCondition_ + " FROM " + name_ + " WHERE " + rowIdName_ + " = ?");
      !status) {
    return status;
  }
  const StatementRun run(findRowId_.get());
  if (sqlite3_bind_int64(findRowId_.get(), 1, rowId) != SQLITE_OK) return outOfMemory();
  const int result = sqlite3_step(findRowId_.get());
  if (result != SQLITE_ROW && result != SQLITE_DONE) return statusOf(connection_->handle(), result);
  *found = result == SQLITE_ROW;
  *hasNullKey = *found && sqlite3_column_int(findRowId_.get(), 0) != 0;
  return {};
}

Status RecordedTable::findRowIdRange(std::int64_t* lowest, std::int64_t* highest) {
  SqliteStatement statement;
  Status status = connection_->prepare("SELECT (SELECT min(" + rowIdName_ + ") FROM " + name_ +
                                           "), (SELECT max(" + rowIdName_ + ") FROM " + name_ + ")",
                                       &statement);
  if (!status) return status;
  const int result = sqlite3_step(statement.get());
  *lowest = result == SQLITE_ROW ? sqlite3_column_int64(statement.get(), 0) : 0;
  *highest = result == SQLITE_ROW ? sqlite3_column_int64(statement.get(), 1) : 0;
  return statusOf(connection_->handle(), result);
}

Status RecordedTable::moveToRowId(const ChangesetReader& change, std::int64_t rowId, bool* isTaken) {
  bool hasNullKey = false;
  if (Status status = findRowId(rowId, isTaken, &hasNullKey); !status || *isTaken) return status;
  if (Status status =
          prepare(move_, "UPDATE " + name_ + " SET " + rowIdName_ + " = ? WHERE " + keyCondition_);
      !status) {
    return status;
  }
  const StatementRun run(move_.get());
  if (sqlite3_bind_int64(move_.get(), 1, rowId) != SQLITE_OK || !bindKey(move_.get(), 2, change, true)) {
    return outOfMemory();
  }
  return statusOf(connection_->handle(), sqlite3_step(move_.get()));
}

Status RecordedTables::find(const std::string& name, RecordedTable** table) {
  if (structureVersion_ != connection_.structureVersion() || tables_.size() > kMostTables) clear();
  structureVersion_ = connection_.structureVersion();
  const std::string known = lowerCase(name);
  auto found = tables_.find(known);
  if (found == tables_.end()) {
    auto made = std::make_unique<RecordedTable>();
    if (Status status = made->read(connection_, name); !status) return status;
    found = tables_.emplace(known, std::move(made)).first;
  }
  *table = found->second.get();
  return {};
}

}  // namespace store
