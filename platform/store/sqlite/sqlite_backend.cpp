#include "platform/store/sqlite/sqlite_backend.h"

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/sql_tokens.h"
#include "platform/store/sqlite/connection/catalogue.h"
#include "platform/store/sqlite/connection/text_functions.h"
#include "platform/store/sqlite/file_copy.h"
#include "platform/store/sqlite/sources/result_rows.h"
#include "platform/store/sqlite/sources/schema_reading.h"
#include "platform/store/sqlite/sources/sqlite_row_stream.h"
#include "platform/store/sqlite/sources/sqlite_table_load.h"
#include "platform/store/sqlite/sources/table_rows.h"

namespace store {

namespace {

constexpr std::size_t kMostNameBytes = 100'000;

std::string textOrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

std::vector<Column> columnsOf(sqlite3_stmt* statement) {
  std::vector<Column> columns;
  for (int index = 0; index < sqlite3_column_count(statement); ++index) {
    Column column;
    column.name = textOrEmpty(sqlite3_column_name(statement, index));
    column.declaredType = textOrEmpty(sqlite3_column_decltype(statement, index));
    column.type = fieldTypeOf(column.declaredType);
    columns.push_back(std::move(column));
  }
  return columns;
}

std::vector<SelectedColumn> selectedColumnsOf(sqlite3_stmt* statement, const TableSchema& schema,
                                              bool writable) {
  std::vector<SelectedColumn> selected;
  for (Column& column : columnsOf(statement)) {
    const int index = static_cast<int>(selected.size());
    const std::string origin = textOrEmpty(sqlite3_column_origin_name(statement, index));
    const TableSchema::Column* source = origin.empty() ? nullptr : schema.find(origin);
    SelectedColumn made{std::move(column), source != nullptr ? source->name : std::string()};
    if (source != nullptr) {
      made.column.nullable = !source->notNull;
      made.column.updatable = writable && !source->generated;
      made.column.reference = source->reference;
    }
    selected.push_back(std::move(made));
  }
  return selected;
}

// Most statements hold no date, and then nothing need be asked.
bool mayHoldDate(std::string_view sql) {
  const std::size_t quote = sql.find_first_of("'\"");
  return quote != std::string_view::npos && sql.find_first_of("0123456789", quote) != std::string_view::npos;
}

// EXPLAIN only tells, whatever the statement behind it would do.
bool yieldsRows(sqlite3_stmt* statement) {
  const bool onlyReads = sqlite3_stmt_readonly(statement) != 0 || sqlite3_stmt_isexplain(statement) != 0;
  return sqlite3_column_count(statement) > 0 && onlyReads;
}

bool callsTextFunction(std::string_view sql) {
  if (sql.find('(') == std::string_view::npos) return false;
  const Tokens tokens(sql);
  for (std::size_t index = 0; index < tokens.count(); ++index) {
    if (!isName(tokens[index]) || tokens[index + 1].kind != TokenKind::open) continue;
    const std::string name = nameOf(tokens[index]);
    for (const char* function : kTextFunctions) {
      if (equalsIgnoringCase(name, function)) return true;
    }
  }
  return false;
}

bool startsWithWord(std::string_view sql, std::string_view word) {
  const std::size_t start = sql.find_first_not_of(" \t\r\n\f");
  if (start == std::string_view::npos || sql.size() - start < word.size()) return false;
  return sqlite3_strnicmp(sql.data() + start, word.data(), static_cast<int>(word.size())) == 0;
}

}  // namespace

SqliteBackend::SqliteBackend(std::unique_ptr<SqliteConnection> connection, DateOrder dateOrder,
                             std::shared_ptr<CopyFolder> copies)
    : connection_(std::move(connection)), history_(*connection_), dateOrder_(dateOrder) {
  if (copies != nullptr && !connection_->isReadOnly()) firstChange_.emplace(*connection_, std::move(copies));
}

void SqliteBackend::askWhileBusy(BusyQuestion question) {
  ConnectionGuard::Use use(connection_->guard());
  connection_->askWhileBusy(std::move(question));
}

void SqliteBackend::stop() {
  // Not inside a Use, which whoever is to be stopped holds.
  sqlite3_interrupt(connection_->handle());
}

Status SqliteBackend::openRows(std::string_view source, SourceKind kind, std::unique_ptr<RowSource>* rows) {
  ConnectionGuard::Use use(connection_->guard());
  std::string text;
  if (Status status = textOfSource(source, kind, *this, &text); !status) return status;
  std::int64_t affected = 0;
  return runText(text, &affected, rows);
}

Status SqliteBackend::run(std::string_view sql, std::int64_t* affected, std::unique_ptr<RowSource>* rows) {
  ConnectionGuard::Use use(connection_->guard());
  return runText(sql, affected, rows);
}

ChangeHistory* SqliteBackend::history() {
  return &history_;
}

FormerStates* SqliteBackend::formerStates() {
  return firstChange_ ? &*firstChange_ : nullptr;
}

Status SqliteBackend::checkFile() {
  ConnectionGuard::Use use(connection_->guard());
  return connection_->checkFile();
}

Status SqliteBackend::tryWriting() {
  ConnectionGuard::Use use(connection_->guard());
  return connection_->tryWriting();
}

Status SqliteBackend::countOthersChanges(std::int64_t* count) {
  ConnectionGuard::Use use(connection_->guard());
  return connection_->countOthersChanges(count);
}

Status SqliteBackend::saveCopy(const std::string& path) {
  ConnectionGuard::Use use(connection_->guard());
  return copyDatabase(*connection_, path);
}

Status SqliteBackend::isTable(std::string_view name, bool* found) {
  // SQLite would read a name only to its first zero, and asks for it in a statement, which must be shorter.
  if (name.size() > kMostNameBytes || name.find('\0') != std::string_view::npos) {
    *found = false;
    return {};
  }
  if (isCatalogueTable(std::string(name).c_str())) {
    *found = true;
    return {};
  }
  if (Status status = connection_->beginRead(); !status) return status;
  TableSchema schema;
  if (Status status = readTableSchema(*connection_, name, &schema); !status) return status;
  *found = !schema.columns.empty();
  return {};
}

Status SqliteBackend::selectAllOf(std::string_view name, std::string* select) {
  bool found = false;
  if (Status status = isTable(name, &found); !status) return status;
  if (!found) return {ErrorCode::noTable, "no such table: " + std::string(name)};
  // A table of the file may be called like one of the catalogue but for the letter case.
  const char* catalogue = catalogueSourceOf(name, false);
  if (catalogue == nullptr && catalogueSourceOf(name, true) != nullptr) {
    if (Status status = isInFile(name, &found); !status) return status;
    if (!found) catalogue = catalogueSourceOf(name, true);
  }
  *select = "SELECT * FROM " + quotedName(catalogue != nullptr ? catalogue : name);
  return {};
}

Status SqliteBackend::isInFile(std::string_view name, bool* found) {
  if (Status status = connection_->beginRead(); !status) return status;
  SqliteStatement statement;
  Status status = connection_->prepare(
      "SELECT 1 FROM sqlite_schema WHERE type IN ('table', 'view') AND name = ?1 COLLATE NOCASE", &statement);
  if (!status) return status;
  const int bound =
      sqlite3_bind_text64(statement.get(), 1, name.data(), name.size(), SQLITE_STATIC, SQLITE_UTF8);
  if (bound != SQLITE_OK) return statusOf(connection_->handle(), bound);
  const int result = sqlite3_step(statement.get());
  *found = result == SQLITE_ROW;
  return statusOf(connection_->handle(), result);
}

Status SqliteBackend::prepareText(Statement* statement, UserStatement* prepared) {
  if (Status status = connection_->beginRead(); !status) return status;
  const bool meansDates = statement->kind == StatementKind::select ||
                          statement->kind == StatementKind::change ||
                          startsWithWord(statement->sql, "EXPLAIN");
  if (meansDates && mayHoldDate(statement->sql)) {
    if (Status status = makeDatesMoments(&statement->sql, dateOrder_, *this); !status) return status;
  }
  // A view, a trigger or a default is not looked into before it is used.
  if (statement->kind == StatementKind::definition && callsTextFunction(statement->sql)) {
    return {
        ErrorCode::errorsInCommand,
        "quivane_fold and quivane_contains can't be part of a table, view or trigger: other programs have no "
        "such functions."};
  }
  if (Status status = connection_->prepareUser(statement->sql, prepared); !status) return status;
  if (sqlite3_bind_parameter_count(prepared->statement.get()) > 0) {
    return {ErrorCode::errorsInCommand, "A statement can't have parameters."};
  }
  return {};
}

Status SqliteBackend::openStream(std::string_view source, SourceKind kind,
                                 std::unique_ptr<RowStream>* stream) {
  ConnectionGuard::Use use(connection_->guard());
  Statement statement;
  if (Status status = readStreamedSource(source, kind, *this, &statement); !status) return status;
  UserStatement prepared;
  if (Status status = prepareText(&statement, &prepared); !status) return status;
  if (!yieldsRows(prepared.statement.get())) return statementWithoutRecords();
  std::vector<Column> columns = columnsOf(prepared.statement.get());
  *stream =
      std::make_unique<SqliteRowStream>(*connection_, std::move(columns), std::move(prepared.statement));
  return {};
}

Status SqliteBackend::describeTable(std::string_view name, TableSchema* schema) {
  ConnectionGuard::Use use(connection_->guard());
  if (Status status = connection_->beginRead(); !status) return status;
  TableSchema read;
  if (Status status = readTableSchema(*connection_, name, &read); !status) return status;
  *schema = std::move(read);
  return {};
}

Status SqliteBackend::beginLoad(const LoadTarget& target, std::unique_ptr<TableLoad>* load) {
  std::string createSql;
  if (!target.createStatement.empty()) {
    Statement statement;
    if (Status status = readStatement(target.createStatement, &statement); !status) return status;
    if (statement.kind != StatementKind::definition) {
      return {ErrorCode::invalidArgument, "The statement makes no table."};
    }
    createSql = statement.sql;
  }
  auto made = std::make_unique<SqliteTableLoad>(*connection_);
  if (Status status = made->begin(target, createSql); !status) return status;
  *load = std::move(made);
  return {};
}

Status SqliteBackend::runText(std::string_view text, std::int64_t* affected,
                              std::unique_ptr<RowSource>* rows) {
  Statement statement;
  if (Status status = readStatement(text, &statement); !status) return status;
  if (statement.kind == StatementKind::createDatabase || statement.kind == StatementKind::dropDatabase) {
    Status status = runDatabaseStatement(statement, connection_->path());
    if (status) {
      *affected = 0;
      rows->reset();
    }
    return status;
  }
  UserStatement prepared;
  if (Status status = prepareText(&statement, &prepared); !status) return status;
  sqlite3_stmt* handle = prepared.statement.get();
  if (yieldsRows(handle)) {
    if (Status status = openSelect(statement.sql, std::move(prepared), rows); !status) return status;
    *affected = 0;
    return {};
  }
  std::int64_t changed = 0;
  if (Status status = runChange(statement, handle, &changed); !status) return status;
  *affected = changed;
  rows->reset();
  return {};
}

// Asks SQLite itself for the rows of no row: with an aggregate there is one all the same.
Status SqliteBackend::makesOneRowOfAll(const SingleTableSelect& select, bool* makesOne) {
  *makesOne = false;
  if (select.isPlainTable) return {};
  const StatementWatch::Asked asked(connection_->watch());
  SqliteStatement statement;
  std::string sql =
      "SELECT " + select.columnList + " FROM " + select.tableClause + " WHERE 0 " + select.order;
  for (const SingleTableSelect::Around& around : select.around) {
    sql = "SELECT * FROM (" + sql + ") " + around.order;
  }
  if (Status status = connection_->prepare(sql, &statement); !status) return status;
  const int result = sqlite3_step(statement.get());
  *makesOne = result == SQLITE_ROW;
  return statusOf(connection_->handle(), result);
}

// Leaves `*rows` as it is when the rows can't be told apart by keys.
Status SqliteBackend::openKeyedRows(const SingleTableSelect& select, sqlite3_stmt* prepared,
                                    std::unique_ptr<RowSource>* rows) {
  TableSchema schema;
  if (Status status = readTableSchema(*connection_, select.table, &schema); !status) return status;
  if (!schema.ordinary || (!schema.withoutRowId && schema.rowIdName().empty())) return {};
  bool makesOne = false;
  if (Status status = makesOneRowOfAll(select, &makesOne); !status) return status;
  if (makesOne) return {};
  auto made = std::make_unique<TableRows>(*connection_, select, schema,
                                          selectedColumnsOf(prepared, schema, !isReadOnly()));
  if (Status status = made->prepare(); !status) return status;
  *rows = std::move(made);
  return {};
}

Status SqliteBackend::openSelect(const std::string& sql, UserStatement statement,
                                 std::unique_ptr<RowSource>* rows) {
  sqlite3_stmt* prepared = statement.statement.get();
  if (startsWithWord(sql, "SELECT") && !statement.readsTable) {
    return {ErrorCode::noTable, "The statement names no table."};
  }
  if (const std::optional<SingleTableSelect> select = readSingleTableSelect(sql)) {
    std::unique_ptr<RowSource> keyed;
    if (Status status = openKeyedRows(*select, prepared, &keyed); !status) return status;
    if (keyed != nullptr) {
      *rows = std::move(keyed);
      return {};
    }
  }
  auto made = std::make_unique<ResultRows>(*connection_, columnsOf(prepared));
  if (Status status = made->take(prepared); !status) return status;
  *rows = std::move(made);
  return {};
}

Status SqliteBackend::runChange(const Statement& statement, sqlite3_stmt* prepared, std::int64_t* affected) {
  if (statement.kind == StatementKind::other) return connection_->runAlone(prepared);
  SqliteConnection::WriteTransaction transaction(*connection_);
  if (Status status = transaction.begin(); !status) return status;
  // The new name in a renaming is the only one that the authorizer is not asked about.
  const bool renames = startsWithWord(statement.sql, "ALTER");
  std::int64_t hidingBefore = 0;
  std::int64_t hidingAfter = 0;
  if (renames) {
    if (Status status = countHidingTables(&hidingBefore); !status) return status;
  }
  if (statement.kind != StatementKind::definition) transaction.record({.kind = StepKind::statement});
  if (Status status = transaction.run(prepared); !status) return status;
  if (renames) {
    if (Status status = countHidingTables(&hidingAfter); !status) return status;
  }
  if (statement.kind == StatementKind::definition) {
    if (hidingAfter > hidingBefore) {
      return {ErrorCode::errorsInCommand, "The names of the catalogue's tables are reserved."};
    }
    if (Status status = transaction.commitStructure(statement.takesFromTables); !status) return status;
    *affected = 0;
    return {};
  }
  // A WITH in front of it makes a change none the less one.
  const std::int64_t changed = sqlite3_changes64(connection_->handle());
  if (Status status = transaction.commit(); !status) return status;
  *affected = changed;
  return {};
}

// Tables of the file that are called like one of the catalogue, which they hide.
Status SqliteBackend::countHidingTables(std::int64_t* count) {
  SqliteStatement statement;
  Status status = connection_->prepare(
      "SELECT count(*) FROM sqlite_schema WHERE lower(name) IN ('msysfields', 'msystables', 'msysindexes', "
      "'msysprocs')",
      &statement);
  if (!status) return status;
  const int result = sqlite3_step(statement.get());
  if (result != SQLITE_ROW) return statusOf(connection_->handle(), result);
  *count = sqlite3_column_int64(statement.get(), 0);
  return {};
}

Status SqliteBackend::ofSelect(const std::string& select, std::optional<std::string>* type) {
  UserStatement prepared;
  if (Status status = connection_->prepareUser(select, &prepared); !status) {
    return status.code() == ErrorCode::outOfMemory ? status : Status();
  }
  *type = textOrEmpty(sqlite3_column_decltype(prepared.statement.get(), 0));
  return {};
}

Status SqliteBackend::ofInsert(const std::string& table, std::vector<std::string>* types) {
  TableSchema schema;
  if (Status status = readTableSchema(*connection_, table, &schema); !status) return status;
  for (const TableSchema::Column& column : schema.columns) {
    if (!column.generated) types->push_back(column.declaredType);
  }
  return {};
}

}  // namespace store
