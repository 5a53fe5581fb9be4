#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/backend.h"
#include "platform/store/sql/date_literals.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sql/source_text.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/copies/first_change.h"
#include "platform/store/sqlite/database_file.h"
#include "platform/store/sqlite/history/sqlite_history.h"

namespace store {

/// A database in an SQLite file.
class SqliteBackend : public Backend, private DeclaredTypes, private TableNames {
 public:
  /// Without `copies` no former states are kept.
  SqliteBackend(std::unique_ptr<SqliteConnection> connection, DateOrder dateOrder,
                std::shared_ptr<CopyFolder> copies);

  bool isReadOnly() const override { return connection_->isReadOnly(); }
  void askWhileBusy(BusyQuestion question) override;
  void stop() override;
  Status openRows(std::string_view source, SourceKind kind, std::unique_ptr<RowSource>* rows) override;
  Status run(std::string_view sql, std::int64_t* affected, std::unique_ptr<RowSource>* rows) override;
  Status openStream(std::string_view source, SourceKind kind, std::unique_ptr<RowStream>* stream) override;
  Status describeTable(std::string_view name, TableSchema* schema) override;
  Status beginLoad(const LoadTarget& target, std::unique_ptr<TableLoad>* load) override;
  Status checkFile() override;
  Status tryWriting() override;
  Status countOthersChanges(std::int64_t* count) override;
  ChangeHistory* history() override;
  FormerStates* formerStates() override;
  Status saveCopy(const std::string& path) override;

 private:
  using UserStatement = SqliteConnection::UserStatement;

  Status selectAllOf(std::string_view name, std::string* select) override;
  Status isTable(std::string_view name, bool* found) override;
  Status isInFile(std::string_view name, bool* found);
  Status prepareText(Statement* statement, UserStatement* prepared);
  Status runText(std::string_view text, std::int64_t* affected, std::unique_ptr<RowSource>* rows);
  Status makesOneRowOfAll(const SingleTableSelect& select, bool* makesOne);
  Status openKeyedRows(const SingleTableSelect& select, sqlite3_stmt* prepared,
                       std::unique_ptr<RowSource>* rows);
  Status openSelect(const std::string& sql, UserStatement statement, std::unique_ptr<RowSource>* rows);
  Status runChange(const Statement& statement, sqlite3_stmt* prepared, std::int64_t* affected);
  Status countHidingTables(std::int64_t* count);

  Status ofSelect(const std::string& select, std::optional<std::string>* type) override;
  Status ofInsert(const std::string& table, std::vector<std::string>* types) override;

  std::unique_ptr<SqliteConnection> connection_;
  SqliteHistory history_;
  std::optional<FirstChange> firstChange_;
  DateOrder dateOrder_;
};

}  // namespace store
