// A table that was deleted comes back alone.
#include <algorithm>
#include <utility>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sqlite/connection/table_kind.h"
#include "platform/store/sqlite/copies/copy_check.h"
#include "platform/store/sqlite/copies/going_back.h"
#include "platform/store/sqlite/copies/record_count.h"
#include "platform/store/sqlite/copies/upkeep.h"
#include "platform/store/sqlite/files/durable_file.h"
#include "platform/store/sqlite/sources/schema_reading.h"

namespace store {

namespace {

constexpr const char* kCopyName = "\"quivane copy\"";
constexpr const char* kTables =
    "SELECT s.name FROM sqlite_schema s WHERE s.type = 'table' AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
    "AND " QUIVANE_KIND_OF_TABLE " = 'table' ORDER BY s.rowid";

/// The first column of each row of a statement that is given one text.
Status readTexts(SqliteConnection& connection, const char* sql, const std::string& parameter,
                 std::vector<std::string>* texts) {
  SqliteStatement statement;
  if (Status status = connection.prepare(sql, &statement); !status) return status;
  if (sqlite3_bind_parameter_count(statement.get()) > 0) {
    const int bound = sqlite3_bind_text64(statement.get(), 1, parameter.data(), parameter.size(),
                                          SQLITE_STATIC, SQLITE_UTF8);
    if (bound != SQLITE_OK) return statusOf(connection.handle(), bound);
  }
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(statement.get())) == SQLITE_ROW)
    texts->emplace_back(columnText(statement.get(), 0));
  return statusOf(connection.handle(), result);
}

Status run(SqliteConnection& connection, SqliteConnection::WriteTransaction& transaction,
           const std::string& sql) {
  SqliteStatement statement;
  Status status = connection.prepare(sql, &statement);
  return status ? transaction.run(statement.get()) : status;
}

/// All columns that are written, the row id before them where the table has one that nothing hides.
std::string columnsOf(const TableSchema& schema) {
  std::string columns;
  const auto add = [&](const std::string& name) {
    if (!columns.empty()) columns += ", ";
    columns += quotedName(name);
  };
  if (!schema.withoutRowId && !schema.rowIdIsColumn && !schema.rowIdName().empty()) add(schema.rowIdName());
  for (const TableSchema::Column& column : schema.columns) {
    if (!column.generated) add(column.name);
  }
  return columns;
}

Status attach(SqliteConnection& connection, const std::string& path) {
  SqliteStatement statement;
  Status status = connection.prepare("ATTACH ?1 AS " + std::string(kCopyName), &statement);
  if (!status) return status;
  sqlite3_bind_text64(statement.get(), 1, path.data(), path.size(), SQLITE_STATIC, SQLITE_UTF8);
  return statusOf(connection.handle(), sqlite3_step(statement.get()));
}

}  // namespace

Status GoingBack::listMissingTables(const std::string& database, const std::string& copy,
                                    std::vector<std::string>* tables) {
  OpenOptions options;
  options.isReadOnly = true;
  options.lockWait = lockWait_;
  options.question = question_;
  std::vector<std::string> found;
  {
    SqliteConnection kept;
    if (Status status = kept.open(copy, options); !status) return status;
    const ConnectionGuard::Use use(kept.guard());
    if (Status status = readTexts(kept, kTables, {}, &found); !status) return status;
  }
  std::vector<std::string> present;
  SqliteConnection connection;
  if (connection.open(database, options)) {
    const ConnectionGuard::Use use(connection.guard());
    if (Status status = readTexts(connection, "SELECT name FROM sqlite_schema", {}, &present); !status) {
      return status;
    }
  }
  std::erase_if(found, [&](const std::string& name) {
    return std::any_of(present.begin(), present.end(),
                       [&](const std::string& other) { return equalsIgnoringCase(name, other); });
  });
  *tables = std::move(found);
  return {};
}

Status GoingBack::putTableBack(const std::string& database, const std::string& copy,
                               const std::string& table) {
  SqliteConnection whole;
  if (Status status = openWhole(copy, question_, &whole); !status) return status;
  const ConnectionGuard::Use useOfCopy(whole.guard());
  OpenOptions options;
  options.lockWait = lockWait_;
  options.question = question_;
  SqliteConnection connection;
  if (Status status = connection.open(database, options); !status) return status;
  if (connection.isReadOnly()) return {ErrorCode::readOnly, "The database can only be read."};
  const ConnectionGuard::Use use(connection.guard());
  if (Status status = attach(connection, copy); !status) return status;
  FormerState kept;
  const Status status = insertTable(connection, database, whole, table, &kept);
  kept.isNeeded = !connection.checkFile();
  return settle(status, kept, database, copy);
}

Status GoingBack::insertTable(SqliteConnection& connection, const std::string& database,
                              SqliteConnection& copy, const std::string& table, FormerState* kept) {
  TableSchema schema;
  if (Status status = readTableSchema(copy, table, &schema); !status) return status;
  if (schema.columns.empty()) return {ErrorCode::noTable, "no such table: " + table};
  if (!schema.ordinary) {
    return {ErrorCode::notAvailable, "Only tables that hold their own records can come back alone."};
  }
  std::vector<std::string> definitions;
  Status status = readTexts(
      copy,
      "SELECT sql FROM sqlite_schema WHERE lower(tbl_name) = lower(?1) AND sql IS NOT NULL ORDER BY "
      "type <> 'table', type <> 'index', rowid",
      table, &definitions);
  if (!status) return status;
  if (definitions.empty()) return {ErrorCode::noTable, "no such table: " + table};

  SqliteConnection::WriteTransaction transaction(connection);
  if (status = transaction.begin(); !status) return status;
  if (status = keep(connection.handle(), database, CopyReason::goingBack, &kept->path); !status)
    return status;
  const std::string columns = columnsOf(schema);
  const std::string name = quotedName(table);
  std::vector<std::string> statements = {"PRAGMA defer_foreign_keys=ON", definitions.front(),
                                         "INSERT INTO main." + name + " (" + columns + ") SELECT " + columns +
                                             " FROM " + kCopyName + "." + name};
  statements.insert(statements.end(), definitions.begin() + 1, definitions.end());
  for (const std::string& statement : statements) {
    if (status = run(connection, transaction, statement); !status) return status;
  }
  std::vector<std::string> lastNumbers;
  // A number that a deleted record had is not given again.
  if (readTexts(copy, "SELECT seq FROM sqlite_sequence WHERE name = ?1", table, &lastNumbers) &&
      !lastNumbers.empty()) {
    status = run(connection, transaction,
                 "REPLACE INTO main.sqlite_sequence (rowid, name, seq) SELECT (SELECT rowid FROM "
                 "main.sqlite_sequence WHERE name = k.name), k.name, k.seq FROM " +
                     std::string(kCopyName) + ".sqlite_sequence k WHERE k.name = " + quotedText(table));
    if (!status) return status;
  }
  return transaction.commitStructure(true);
}

}  // namespace store
