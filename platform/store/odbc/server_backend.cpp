#include "platform/store/odbc/server_backend.h"

#include <optional>

#include "platform/store/odbc/dialect/server_definition.h"
#include "platform/store/odbc/dialect/server_statement.h"
#include "platform/store/odbc/server_description.h"
#include "platform/store/odbc/session_passwords.h"
#include "platform/store/odbc/sources/server_result_rows.h"
#include "platform/store/odbc/sources/server_table_load.h"
#include "platform/store/sql/source_text.h"
#include "platform/store/sql/sql_tokens.h"

namespace store {

namespace {

/// A SELECT that reads the catalogue's tables, with what they are in front of it.
std::string withCatalogue(const std::string& sql) {
  const Tokens tokens(sql);
  const bool continues = isWord(tokens[0], "WITH");
  const std::string_view rest = tokens.slice(continues ? 1 : 0, tokens.count());
  return ServerCatalogue::catalogueClause(continues) + std::string(rest);
}

Status readOnlyDatabase() {
  return {ErrorCode::readOnly, "The server lets this database only be read."};
}

Status notOnServers(const char* what) {
  return {ErrorCode::notAvailable, std::string(what) + " is not possible with a server's database."};
}

}  // namespace

Status ServerBackend::openRows(std::string_view source, SourceKind kind, std::unique_ptr<RowSource>* rows) {
  StatementNames names(catalogue_);
  std::string text;
  if (Status status = textOfSource(source, kind, names, &text); !status) return status;
  std::int64_t affected = 0;
  return runText(text, names, &affected, rows);
}

Status ServerBackend::run(std::string_view sql, std::int64_t* affected, std::unique_ptr<RowSource>* rows) {
  StatementNames names(catalogue_);
  return runText(sql, names, affected, rows);
}

Status ServerBackend::runText(std::string_view text, StatementNames& names, std::int64_t* affected,
                              std::unique_ptr<RowSource>* rows) {
  Statement statement;
  if (Status status = readStatement(text, &statement); !status) return status;
  if (statement.kind == StatementKind::select && changesRows(statement.sql))
    statement.kind = StatementKind::change;
  std::int64_t changed = 0;
  switch (statement.kind) {
    case StatementKind::createDatabase:
    case StatementKind::dropDatabase:
      if (Status status = fileStatements_(statement); !status) return status;
      break;
    case StatementKind::select:
      if (Status status = openSelect(statement.sql, names, rows); !status) return status;
      *affected = 0;
      return {};
    case StatementKind::change:
    case StatementKind::definition:
      if (Status status = runChange(statement, names, &changed); !status) return status;
      break;
    case StatementKind::other:
      return {ErrorCode::errorsInCommand,
              "A server's database takes SELECT, INSERT, UPDATE, DELETE, CREATE, ALTER and DROP here."};
  }
  *affected = changed;
  rows->reset();
  return {};
}

Status ServerBackend::runChange(const Statement& statement, StatementNames& names, std::int64_t* affected) {
  if (isReadOnly_) return readOnlyDatabase();
  std::string sql;
  if (std::optional<std::string> definition = toServerDefinition(statement.sql)) {
    sql = std::move(*definition);
  } else if (Status status = toServerSql(statement.sql, names, &sql); !status) {
    return status;
  }
  if (names.readsCatalogue() && statement.kind == StatementKind::change) {
    return {ErrorCode::readOnly, "The catalogue's tables can only be read."};
  }
  connection_->noteChange();
  OdbcStatement run(*connection_, OdbcStatement::Effect::change);
  Status status = run.run(sql);
  if (statement.kind == StatementKind::definition) {
    catalogue_.forget();
    connection_->noteDefinition();
  }
  if (!status) return status;
  // None is also what an answer looks like that was lost.
  if (statement.kind == StatementKind::change && run.affected() == 0) {
    if (status = run.answered(); !status) return status;
  }
  *affected = statement.kind == StatementKind::change ? run.affected() : 0;
  connection_->noteChangedRows(*affected);
  return {};
}

Status ServerBackend::describeSelect(const std::string& select, StatementNames& names, Described* described) {
  if (!namesTable(select)) return {ErrorCode::noTable, "The statement names no table."};
  Described made;
  if (Status status = takeApart(select, names, &made); !status) return status;
  if (!made.table) {
    if (Status status = toServerSql(select, names, &made.sql); !status) return status;
    if (names.readsCatalogue()) made.sql = withCatalogue(made.sql);
  }
  OdbcStatement statement(*connection_);
  if (Status status = statement.describe(made.sql); !status) return status;
  for (std::size_t index = 0; index < statement.columnCount(); ++index) {
    Column column;
    column.name = statement.columnName(index);
    column.declaredType = statement.columnTypeName(index);
    const ServerType type = serverTypeOf(column.declaredType, column.declaredType);
    column.type = type.field;
    made.columns.push_back(std::move(column));
    made.forms.push_back(type.form);
  }
  if (made.columns.empty()) return {ErrorCode::errorsInCommand, "The statement has no fields."};
  *described = std::move(made);
  return {};
}

/// Finds out which columns of which table a SELECT on one table shows, and makes of it one in which each of
/// them has its name, so that the hidden key is none of them. Of any other SELECT nothing is stored.
Status ServerBackend::takeApart(const std::string& select, StatementNames& names, Described* described) {
  std::string readable;
  if (Status status = toReadableSql(select, names, &readable); !status) return status;
  std::optional<SingleTableSelect> parts = readSingleTableSelect(readable);
  if (!parts || names.readsCatalogue()) return {};
  std::optional<ServerTable> table;
  if (Status status = names.readTable(parts->table, &table); !status || !table) return status;
  auto listed = readColumnList(parts->columnList, table->fieldNames(), parts->qualifier);
  if (!listed || listed->empty()) return {};
  std::string list;
  for (const ListedColumn& column : *listed) list += (list.empty() ? "" : ", ") + column.text;
  std::string sql =
      "SELECT " + list + " FROM " + table->reference + " AS " + parts->qualifier + " " + parts->tail;
  std::size_t number = 0;
  for (const SingleTableSelect::Around& around : parts->around) {
    sql = "SELECT * FROM (" + sql + "\n) AS quivane_" + std::to_string(++number) + " " + around.tail;
  }
  described->sql = std::move(sql);
  described->parts = std::move(parts);
  described->table = std::move(table);
  described->listed = std::move(*listed);
  return {};
}

Status ServerBackend::openSelect(const std::string& select, StatementNames& names,
                                 std::unique_ptr<RowSource>* rows) {
  Described described;
  if (Status status = describeSelect(select, names, &described); !status) return status;
  if (std::unique_ptr<ServerTableRows> keyed = keyedRows(described)) {
    *rows = std::move(keyed);
    return {};
  }
  auto made = std::make_unique<ServerResultRows>(*connection_, std::move(described.columns),
                                                 std::move(described.forms));
  if (Status status = made->take(described.sql); !status) return status;
  *rows = std::move(made);
  return {};
}

/// Null when the rows can't be told apart by keys.
std::unique_ptr<ServerTableRows> ServerBackend::keyedRows(Described& described) {
  if (!described.table || !described.table->isTable || described.table->keyColumns().empty()) return nullptr;
  if (described.table->hasHeirs) return nullptr;
  if (described.listed.size() != described.columns.size()) return nullptr;
  ServerTable& table = *described.table;
  if (isReadOnly_) table.canInsert = table.canUpdate = table.canDelete = false;
  std::vector<ServerTableRows::ShownColumn> columns;
  for (std::size_t index = 0; index < described.listed.size(); ++index) {
    const ListedColumn& listed = described.listed[index];
    ServerTableRows::ShownColumn shown{described.columns[index], described.forms[index], listed.expression,
                                       listed.tableColumn.empty() ? nullptr : table.find(listed.tableColumn)};
    if (shown.source != nullptr) {
      shown.column.declaredType = shown.source->spelledType;
      shown.column.type = shown.source->type.field;
      shown.form = shown.source->type.form;
      shown.column.nullable = !shown.source->notNull;
      shown.column.updatable = !isReadOnly_ && shown.source->isWritable;
      shown.column.reference = shown.source->reference;
    }
    columns.push_back(std::move(shown));
  }
  auto made = std::make_unique<ServerTableRows>(*connection_, *described.parts, table, columns);
  const bool isKeyed = described.parts->isPlainTable || made->isEachItsOwn();
  return isKeyed ? std::move(made) : nullptr;
}

Status ServerBackend::openStream(std::string_view source, SourceKind kind,
                                 std::unique_ptr<RowStream>* stream) {
  StatementNames names(catalogue_);
  Statement statement;
  if (Status status = readStreamedSource(source, kind, names, &statement); !status) return status;
  if (statement.kind != StatementKind::select || changesRows(statement.sql)) return statementWithoutRecords();
  Described described;
  if (Status status = describeSelect(statement.sql, names, &described); !status) return status;
  *stream = std::make_unique<ServerRowStream>(*connection_, spareConversation_, std::move(described.sql),
                                              std::move(described.columns), std::move(described.forms));
  return {};
}

Status ServerBackend::describeTable(std::string_view name, TableSchema* schema) {
  std::optional<ServerTable> table;
  if (Status status = catalogue_.readTable(name, &table); !status) return status;
  TableSchema made;
  if (table) {
    made.ordinary = table->isTable;
    made.withoutRowId = true;
    for (const ServerColumn& column : table->columns) {
      if (table->hasHiddenKey() && column.name == kHiddenKey) continue;
      TableSchema::Column described;
      described.name = column.name;
      described.declaredType = column.spelledType;
      described.valueType = valueTypeOf(column.type);
      described.keyPosition = column.keyPosition;
      described.notNull = column.notNull;
      described.generated = !column.isWritable;
      described.reference = column.reference;
      made.columns.push_back(std::move(described));
    }
  }
  *schema = std::move(made);
  return {};
}

Status ServerBackend::beginLoad(const LoadTarget& target, std::unique_ptr<TableLoad>* load) {
  if (isReadOnly_) return readOnlyDatabase();
  std::string createSql;
  if (!target.createStatement.empty()) {
    Statement statement;
    if (Status status = readStatement(target.createStatement, &statement); !status) return status;
    std::optional<std::string> definition = toServerDefinition(statement.sql);
    if (!definition) return {ErrorCode::invalidArgument, "The statement makes no table."};
    createSql = std::move(*definition);
  }
  auto made = std::make_unique<ServerTableLoad>(*connection_, catalogue_);
  if (Status status = made->begin(target, createSql); !status) return status;
  *load = std::move(made);
  return {};
}

Status ServerBackend::tryWriting() {
  if (isReadOnly_) return readOnlyDatabase();
  return connection_->ensureOpen();
}

Status ServerBackend::countOthersChanges(std::int64_t* count) {
  return look_.count(count);
}

Status ServerBackend::describeServer(std::string* text) {
  return store::describeServer(*connection_, text);
}

Status ServerBackend::givePassword(const std::string& password) {
  if (link_.empty()) return Backend::givePassword(password);
  Status status = connection_->tryPassword(password);
  if (status) {
    rememberPassword(link_, password);
  } else if (status.code() == ErrorCode::passwordWanted) {
    status = {status.code(), "The server does not take the password: " + status.message()};
  }
  return status;
}

Status ServerBackend::saveCopy(const std::string&) {
  return notOnServers("A copy in a file");
}

}  // namespace store
