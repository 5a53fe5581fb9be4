#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/odbc/catalogue/change_look.h"
#include "platform/store/odbc/catalogue/server_catalogue.h"
#include "platform/store/odbc/catalogue/statement_names.h"
#include "platform/store/odbc/driver/odbc_connection.h"
#include "platform/store/odbc/sources/server_row_stream.h"
#include "platform/store/odbc/sources/server_table_rows.h"
#include "platform/store/rows/backend.h"
#include "platform/store/sql/dialect.h"

namespace store {

/// A database of a server that speaks PostgreSQL's SQL, through ODBC.
class ServerBackend : public Backend {
 public:
  /// Runs a CREATE DATABASE or DROP DATABASE, which are about files.
  using FileStatements = std::function<Status(const Statement& statement)>;

  /// `connection` is open. `link` is what a password is remembered for, empty where the link has its own.
  ServerBackend(std::unique_ptr<OdbcConnection> connection, std::string link, bool isReadOnly,
                FileStatements fileStatements)
      : connection_(std::move(connection)),
        link_(std::move(link)),
        catalogue_(*connection_),
        look_(*connection_),
        isReadOnly_(isReadOnly),
        fileStatements_(std::move(fileStatements)) {}

  bool isReadOnly() const override { return isReadOnly_; }
  void askWhileBusy(BusyQuestion question) override { connection_->askWhileBusy(std::move(question)); }
  void stop() override { connection_->stop(); }
  Status openRows(std::string_view source, SourceKind kind, std::unique_ptr<RowSource>* rows) override;
  Status run(std::string_view sql, std::int64_t* affected, std::unique_ptr<RowSource>* rows) override;
  Status openStream(std::string_view source, SourceKind kind, std::unique_ptr<RowStream>* stream) override;
  Status describeTable(std::string_view name, TableSchema* schema) override;
  Status beginLoad(const LoadTarget& target, std::unique_ptr<TableLoad>* load) override;
  /// The file that names the server is nothing that could be lost.
  Status checkFile() override { return {}; }
  Status tryWriting() override;
  /// Asks the server at most each some seconds, and only in a conversation that there is.
  Status countOthersChanges(std::int64_t* count) override;
  bool isServers() const override { return true; }
  Status describeServer(std::string* text) override;
  Status takeRefusal() override { return connection_->takeRefusal(); }
  Status givePassword(const std::string& password) override;
  Status saveCopy(const std::string& path) override;

 private:
  /// A SELECT as the server runs it, and what its columns are.
  struct Described {
    std::string sql;
    std::vector<Column> columns;
    std::vector<ValueForm> forms;
    // Of a SELECT on one table; one of `listed` for each column.
    std::optional<SingleTableSelect> parts;
    std::optional<ServerTable> table;
    std::vector<ListedColumn> listed;
  };

  Status describeSelect(const std::string& select, StatementNames& names, Described* described);
  Status openSelect(const std::string& select, StatementNames& names, std::unique_ptr<RowSource>* rows);
  static Status takeApart(const std::string& select, StatementNames& names, Described* described);
  std::unique_ptr<ServerTableRows> keyedRows(Described& described);
  Status runChange(const Statement& statement, StatementNames& names, std::int64_t* affected);
  Status runText(std::string_view text, StatementNames& names, std::int64_t* affected,
                 std::unique_ptr<RowSource>* rows);

  std::unique_ptr<OdbcConnection> connection_;
  ServerRowStream::Spare spareConversation_;  // for what is read from the first row to the last
  std::string link_;
  ServerCatalogue catalogue_;
  ChangeLook look_;
  bool isReadOnly_;
  FileStatements fileStatements_;
};

}  // namespace store
