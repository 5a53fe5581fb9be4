#pragma once

#include <string>
#include <vector>

#include "platform/store/rows/backend.h"
#include "platform/store/rows/table_schema.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/sources/sqlite_row_scan.h"

namespace store {

/// A column of a SELECT with the table's column that it shows; no name for an expression.
struct SelectedColumn {
  Column column;
  std::string tableColumn;
};

/// The rows of a SELECT on one table, told apart by row id, or by primary key in a table without row ids.
class TableRows : public RowSource {
 public:
  /// `connection` outlives the rows. `schema` is an ordinary table's, with a row id name or without row ids.
  TableRows(SqliteConnection& connection, const SingleTableSelect& select, const TableSchema& schema,
            std::vector<SelectedColumn> columns);
  ~TableRows() override;
  TableRows(const TableRows&) = delete;
  TableRows& operator=(const TableRows&) = delete;

  /// Prepares the reading of single rows, inside a Use. To be called once, before anything else.
  Status prepare();

  const std::vector<Column>& columns() const override { return columns_; }
  std::string_view table() const override { return tableName_; }
  bool isUpdatable() const override { return !connection_.isReadOnly(); }
  Status readKeys(KeySet* keys, std::size_t* count) override;
  Status fetch(const KeySet& keys, std::size_t index, Row* row) override;
  std::unique_ptr<RowScan> makeScan(RowTest& test) override;
  Status insert(const std::vector<Change>& changes, KeySet* keys) override;
  Status update(const std::vector<Change>& changes, KeySet* keys, std::size_t index,
                const Row& read) override;
  Status remove(KeySet* keys, std::size_t index, const Row* read) override;

 private:
  /// The newest value of each of the table's columns that `changes` write.
  struct Assignment {
    const std::string* tableColumn;
    const Value* value;
  };
  /// A statement that stays prepared as long as the same one is asked for.
  struct KeptStatement {
    std::string sql;
    SqliteStatement statement;
  };

  Status assignmentsOf(const std::vector<Change>& changes, std::vector<Assignment>* assignments) const;
  std::string insertText(const std::vector<Assignment>& assignments) const;
  std::string updateText(const std::vector<Assignment>& assignments) const;
  static int bindValues(sqlite3_stmt* statement, const std::vector<Assignment>& assignments);
  bool changesKey(const std::vector<Assignment>& assignments) const;
  Status keep(KeptStatement& kept, const std::string& sql);
  sqlite3_stmt* claim();
  int bindKey(sqlite3_stmt* statement, int position, const KeySet& keys, std::size_t index) const;
  Key returnedKey(sqlite3_stmt* statement, int first) const;
  bool isTupleKeyed() const { return tupleKeyed_; }
  Status checkSameRows();
  bool hasSameKey(const TableSchema& schema) const;
  Status readRow(const KeySet& keys, std::size_t index, Row* row);
  Status checkSameRow(const KeySet& keys, std::size_t index, const Row* read);
  std::string keyCondition(int firstParameter) const;

  SqliteConnection& connection_;
  std::vector<Column> columns_;
  std::vector<std::string> tableColumns_;
  std::string tableName_;
  std::string table_;                       // the same, quoted
  bool tupleKeyed_;                         // by primary key instead of row id
  std::vector<std::string> keyColumns_;     // the table's columns that hold the key, if columns do
  std::vector<std::string> keyNames_;       // what reads the key in a statement on the table alone, quoted
  std::vector<std::string> keyCollations_;  // for each of them, what stands behind a value to compare it with
  bool keysSurviveRebuild_;
  ScannedRows scanned_;
  std::string keysSql_;
  std::string wideKeysSql_;  // the same with all columns in front of the keys; empty for a plain table
  std::string fetchSql_;
  unsigned rebuildsAtLoad_ = 0;  // the connection's count when the keys were taken
  SqliteStatement fetch_;
  KeptStatement claim_;
  KeptStatement insert_;
  KeptStatement update_;
  KeptStatement remove_;
};

}  // namespace store
