#include "platform/store/sqlite/sources/table_rows.h"

#include <algorithm>

#include "platform/store/rows/structure_changed.h"
#include "platform/store/sqlite/files/temporary_bound.h"
#include "platform/store/sqlite/sources/schema_reading.h"

namespace store {

namespace {

Status outOfMemory() {
  return {ErrorCode::outOfMemory, "Out of memory."};
}

Status rowGone() {
  return {ErrorCode::noCurrentRecord, "The record is no longer there: another program has deleted it."};
}

Status notTaken(const char* message) {
  return {ErrorCode::constraint, message};
}

// How the n-th key is called inside a statement of the engine's own. In brackets, which never become a text.
std::string keyAlias(std::size_t number) {
  return "[quivane key " + std::to_string(number) + "]";
}

/// What reads the key of a record in a statement on the table alone.
std::vector<std::string> keyNamesOf(const TableSchema& schema) {
  if (!schema.withoutRowId) {
    const std::string name = schema.rowIdName();
    return {schema.find(name) != nullptr ? quotedName(name) : name};
  }
  std::vector<std::string> names;
  for (const std::string& name : schema.keyColumns()) names.push_back(quotedName(name));
  return names;
}

/// With which each part of the key is to be compared, behind the value; empty where it has nothing to choose.
std::vector<std::string> keyCollationsOf(const TableSchema& schema) {
  if (!schema.withoutRowId) return {""};
  std::vector<std::string> collations;
  for (const std::string& name : schema.keyColumns()) {
    const std::string& collation = schema.find(name)->keyCollation;
    collations.push_back(collation.empty() ? "" : " COLLATE " + quotedName(collation));
  }
  return collations;
}

/// Tells a table that has no end. What that would be is asked only of tables that are not small.
class RowBound {
 public:
  explicit RowBound(SqliteConnection& connection) : connection_(connection) {}

  bool isReached(std::size_t count) const { return count >= next_; }

  Status check(std::size_t count) {
    std::uint64_t most = 0;
    if (Status status = connection_.readMostRows(&most); !status) return status;
    if (count > most) return {ErrorCode::damaged, "The database is damaged: a table has no end."};
    next_ = static_cast<std::size_t>(most) + 1;
    return {};
  }

 private:
  SqliteConnection& connection_;
  std::size_t next_ = 100'000;
};

std::string joined(const std::vector<std::string>& parts, const char* separator) {
  std::string text;
  for (const std::string& part : parts) {
    if (!text.empty()) text += separator;
    text += part;
  }
  return text;
}

}  // namespace

TableRows::TableRows(SqliteConnection& connection, const SingleTableSelect& select, const TableSchema& schema,
                     std::vector<SelectedColumn> columns)
    : connection_(connection),
      tableName_(select.table),
      table_(quotedName(select.table)),
      tupleKeyed_(schema.withoutRowId),
      keyNames_(keyNamesOf(schema)),
      keyCollations_(keyCollationsOf(schema)),
      keysSurviveRebuild_(schema.withoutRowId || schema.rowIdIsColumn) {
  for (SelectedColumn& column : columns) {
    columns_.push_back(std::move(column.column));
    tableColumns_.push_back(std::move(column.tableColumn));
  }
  if (keysSurviveRebuild_) keyColumns_ = schema.keyColumns();

  std::vector<std::string> qualified;
  std::vector<std::string> aliased;
  std::vector<std::string> aliases;
  std::vector<std::string> conditions;
  for (std::size_t number = 0; number < keyNames_.size(); ++number) {
    qualified.push_back(select.qualifier + "." + keyNames_[number]);
    aliases.push_back(keyAlias(number + 1));
    aliased.push_back(qualified.back() + " AS " + aliases.back());
    conditions.push_back(qualified.back() + " = ?" + std::to_string(number + 1) + keyCollations_[number]);
  }
  const std::string from = " FROM " + select.tableClause + " ";
  if (select.isPlainTable) {
    // In the order of the keys, whatever index SQLite would rather walk along.
    keysSql_ = "SELECT " + joined(qualified, ", ") + from + "ORDER BY " + joined(qualified, ", ");
  } else {
    // The statement itself decides which rows and in what order; SQLite folds the two SELECTs into one.
    wideKeysSql_ = "SELECT " + select.columnList + ", " + joined(aliased, ", ") + from + select.tail;
    for (const SingleTableSelect::Around& around : select.around) {
      wideKeysSql_ = "SELECT * FROM (" + wideKeysSql_ + ") " + around.tail;
    }
    keysSql_ = "SELECT " + joined(aliases, ", ") + " FROM (" + wideKeysSql_ + ")";
  }
  scanned_.columnList = select.columnList;
  scanned_.tableClause = select.tableClause;
  scanned_.keys = qualified;
  scanned_.areTupleKeyed = tupleKeyed_;
  scanned_.areWholeTable = select.isPlainTable;
  scanned_.areInFile = true;
  fetchSql_ = "SELECT " + select.columnList + from + "WHERE " + joined(conditions, " AND ");
}

TableRows::~TableRows() {
  ConnectionGuard::Use use(connection_.guard());
  fetch_.reset();
  claim_.statement.reset();
  insert_.statement.reset();
  update_.statement.reset();
  remove_.statement.reset();
}

Status TableRows::prepare() {
  return connection_.prepare(fetchSql_, &fetch_);
}

Status TableRows::readKeys(KeySet* keys, std::size_t* count) {
  ConnectionGuard::Use use(connection_.guard());
  if (Status status = connection_.beginRead(); !status) return status;
  SqliteStatement statement;
  Status prepared = connection_.prepare(keysSql_, &statement);
  // A column with a collation that is not known here can be read, but not inside a nested SELECT.
  if (!prepared && !wideKeysSql_.empty()) prepared = connection_.prepare(wideKeysSql_, &statement);
  if (!prepared) {
    connection_.endRead();
    return prepared;
  }
  const StatementWatch::Asked asked(connection_.watch());
  const int firstKey = sqlite3_column_count(statement.get()) - static_cast<int>(keyNames_.size());
  const bool byRowId = !isTupleKeyed();
  KeySet read(byRowId ? KeySet::Kind::rowId : KeySet::Kind::tuple);
  sqlite3_stmt* rows = statement.get();
  int result = SQLITE_ROW;
  Status status;
  RowBound bound(connection_);
  const TemporaryBound temporaryBound(connection_.mostTemporaryBytes());
  if (byRowId) {
    while (status && (result = sqlite3_step(rows)) == SQLITE_ROW) {
      read.append(sqlite3_column_int64(rows, firstKey));
      if (bound.isReached(read.count())) status = bound.check(read.count());
    }
  } else {
    while (status && (result = sqlite3_step(rows)) == SQLITE_ROW) {
      read.append(returnedKey(rows, firstKey));
      if (bound.isReached(read.count())) status = bound.check(read.count());
    }
  }
  if (status) status = temporaryBound.explain(statusOf(connection_.handle(), result));
  if (!status) {
    statement.reset();
    connection_.endRead();
    return status;
  }
  rebuildsAtLoad_ = connection_.rebuilds();
  *count = read.count();
  *keys = std::move(read);
  return {};
}

Status TableRows::fetch(const KeySet& keys, std::size_t index, Row* row) {
  row->clear();
  ConnectionGuard::Use use(connection_.guard());
  if (Status status = connection_.beginRead(); !status) return status;
  if (Status status = checkSameRows(); !status) return status;
  return readRow(keys, index, row);
}

Status TableRows::readRow(const KeySet& keys, std::size_t index, Row* row) {
  const StatementWatch::Asked asked(connection_.watch());
  StatementRun run(fetch_.get());
  if (bindKey(fetch_.get(), 1, keys, index) != SQLITE_OK) return outOfMemory();
  const int result = sqlite3_step(fetch_.get());
  if (result == SQLITE_DONE) return rowGone();
  if (result != SQLITE_ROW) {
    Status status = statusOf(connection_.handle(), result);
    sqlite3_reset(fetch_.get());
    connection_.endRead();
    return status;
  }
  if (!copyColumns(fetch_.get(), static_cast<int>(columns_.size()), row)) {
    row->clear();
    return outOfMemory();
  }
  return {};
}

// Inside a write transaction, where nobody else can change the row any more. Expressions don't count: they
// may say something else each time.
Status TableRows::checkSameRow(const KeySet& keys, std::size_t index, const Row* read) {
  Row present;
  if (Status status = readRow(keys, index, &present); !status || read == nullptr) return status;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    if (tableColumns_[column].empty() || sameCell(present.at(column), read->at(column))) continue;
    return {ErrorCode::changedElsewhere, "Another program has changed the record since it was read."};
  }
  return {};
}

std::unique_ptr<RowScan> TableRows::makeScan(RowTest& test) {
  return std::make_unique<SqliteRowScan>(connection_, *this, test, scanned_,
                                         [this] { return checkSameRows(); });
}

Status TableRows::insert(const std::vector<Change>& changes, KeySet* keys) {
  std::vector<Assignment> assignments;
  if (Status status = assignmentsOf(changes, &assignments); !status) return status;

  ConnectionGuard::Use use(connection_.guard());
  if (Status status = keep(insert_, insertText(assignments)); !status) return status;
  StatementRun run(insert_.statement.get());
  if (bindValues(insert_.statement.get(), assignments) != SQLITE_OK) return outOfMemory();
  std::optional<Key> key;
  SqliteConnection::WriteTransaction transaction(connection_);
  Status status = transaction.begin(claim());
  // Otherwise the new record would be stored and could not be shown.
  if (status) status = checkSameRows();
  if (status) {
    ChangeNote& note = transaction.record({.kind = StepKind::added, .table = tableName_});
    status = transaction.run(insert_.statement.get(),
                             [&](sqlite3_stmt* statement) { key = returnedKey(statement, 0); });
    note.after = key;
  }
  if (!status) return status;
  if (!key) return notTaken("The database's own rules did not take the record.");
  keys->append(*key);
  status = transaction.commit();
  if (!status) keys->eraseAt(keys->count() - 1);
  return status;
}

Status TableRows::update(const std::vector<Change>& changes, KeySet* keys, std::size_t index,
                         const Row& read) {
  std::vector<Assignment> assignments;
  if (Status status = assignmentsOf(changes, &assignments); !status) return status;
  if (assignments.empty()) return {};

  ConnectionGuard::Use use(connection_.guard());
  if (Status status = keep(update_, updateText(assignments)); !status) return status;
  StatementRun run(update_.statement.get());
  if (bindValues(update_.statement.get(), assignments) != SQLITE_OK ||
      bindKey(update_.statement.get(), static_cast<int>(assignments.size()) + 1, *keys, index) != SQLITE_OK) {
    return outOfMemory();
  }

  std::optional<Key> key;
  SqliteConnection::WriteTransaction transaction(connection_);
  if (Status status = transaction.begin(claim()); !status) return status;
  if (Status status = checkSameRows(); !status) return status;
  if (Status status = checkSameRow(*keys, index, &read); !status) return status;
  const Key former = keys->keyAt(index);
  ChangeNote& note =
      transaction.record({.kind = StepKind::changed, .table = tableName_, .before = former, .after = former});
  Status status = transaction.run(update_.statement.get(),
                                  [&](sqlite3_stmt* statement) { key = returnedKey(statement, 0); });
  if (!status) return status;
  if (sqlite3_changes64(connection_.handle()) == 0) {
    return notTaken("The database's own rules did not take the change.");
  }
  if (!key) return transaction.commit();
  note.after = key;
  // The set follows first, because it may need memory; that can't be refused any more after the commit.
  keys->replaceAt(index, *key);
  status = transaction.commit();
  if (!status) keys->replaceAt(index, former);
  return status;
}

Status TableRows::remove(KeySet* keys, std::size_t index, const Row* read) {
  const std::string sql = "DELETE FROM main." + table_ + " WHERE " + keyCondition(1);
  ConnectionGuard::Use use(connection_.guard());
  if (Status status = keep(remove_, sql); !status) return status;
  StatementRun run(remove_.statement.get());
  if (bindKey(remove_.statement.get(), 1, *keys, index) != SQLITE_OK) return outOfMemory();
  SqliteConnection::WriteTransaction transaction(connection_);
  Status status = transaction.begin(claim());
  if (status) status = checkSameRows();
  if (!status) return status;
  Status found = checkSameRow(*keys, index, read);
  const bool isGone = found.code() == ErrorCode::noCurrentRecord;
  if (!found && !isGone) return found;
  if (!isGone) {
    transaction.record({.kind = StepKind::deleted, .table = tableName_, .before = keys->keyAt(index)});
    status = transaction.run(remove_.statement.get());
    if (!status) return status;
    const bool isKept = sqlite3_changes64(connection_.handle()) == 0 &&
                        checkSameRow(*keys, index, nullptr).code() != ErrorCode::noCurrentRecord;
    if (isKept) return notTaken("The database's own rules did not let the record be deleted.");
  }
  keys->prepareErase(index);
  status = transaction.commit();
  if (status) keys->eraseAt(index);
  return status;
}

Status TableRows::assignmentsOf(const std::vector<Change>& changes,
                                std::vector<Assignment>* assignments) const {
  std::vector<Assignment> made;
  for (const Change& change : changes) {
    if (!columns_[change.column].updatable) {
      return {ErrorCode::readOnly, "The field " + columns_[change.column].name + " can't be written."};
    }
    const std::string& name = tableColumns_[change.column];
    const auto same = std::find_if(made.begin(), made.end(),
                                   [&](const Assignment& other) { return *other.tableColumn == name; });
    if (same != made.end()) {
      same->value = &change.value;
    } else {
      made.push_back({&name, &change.value});
    }
  }
  *assignments = std::move(made);
  return {};
}

// The parameters of both statements are the values in their order, and then the key's.

std::string TableRows::insertText(const std::vector<Assignment>& assignments) const {
  std::vector<std::string> names;
  std::vector<std::string> parameters;
  for (const Assignment& assignment : assignments) {
    names.push_back(quotedName(*assignment.tableColumn));
    parameters.push_back("?" + std::to_string(names.size()));
  }
  const std::string values = names.empty()
                                 ? " DEFAULT VALUES"
                                 : " (" + joined(names, ", ") + ") VALUES (" + joined(parameters, ", ") + ")";
  return "INSERT INTO main." + table_ + values + " RETURNING " + joined(keyNames_, ", ");
}

std::string TableRows::updateText(const std::vector<Assignment>& assignments) const {
  std::vector<std::string> settings;
  settings.reserve(assignments.size());
  for (const Assignment& assignment : assignments) {
    settings.push_back(quotedName(*assignment.tableColumn) + " = ?" + std::to_string(settings.size() + 1));
  }
  const int keyParameter = static_cast<int>(assignments.size()) + 1;
  std::string sql =
      "UPDATE main." + table_ + " SET " + joined(settings, ", ") + " WHERE " + keyCondition(keyParameter);
  if (changesKey(assignments)) sql += " RETURNING " + joined(keyNames_, ", ");
  return sql;
}

int TableRows::bindValues(sqlite3_stmt* statement, const std::vector<Assignment>& assignments) {
  int position = 0;
  for (const Assignment& assignment : assignments) {
    if (const int result = bindValue(statement, ++position, *assignment.value); result != SQLITE_OK) {
      return result;
    }
  }
  return SQLITE_OK;
}

bool TableRows::changesKey(const std::vector<Assignment>& assignments) const {
  return std::any_of(assignments.begin(), assignments.end(), [&](const Assignment& assignment) {
    return std::find(keyColumns_.begin(), keyColumns_.end(), *assignment.tableColumn) != keyColumns_.end();
  });
}

Status TableRows::keep(KeptStatement& kept, const std::string& sql) {
  if (kept.statement && kept.sql == sql) return {};
  SqliteStatement statement;
  if (Status status = connection_.prepare(sql, &statement); !status) return status;
  kept = {sql, std::move(statement)};
  return {};
}

// Needs the right to write and changes nothing. Null where not even that is possible.
sqlite3_stmt* TableRows::claim() {
  const Status prepared = keep(claim_, "DELETE FROM main." + table_ + " WHERE 0");
  return prepared ? claim_.statement.get() : nullptr;
}

int TableRows::bindKey(sqlite3_stmt* statement, int position, const KeySet& keys, std::size_t index) const {
  if (keys.kind() == KeySet::Kind::rowId) return sqlite3_bind_int64(statement, position, keys.rowIdAt(index));
  const Key key = keys.keyAt(index);
  for (const Value& value : std::get<std::vector<Value>>(key)) {
    // The values end with this function, the binding does not.
    const int result = bindValueCopy(statement, position, value);
    if (result != SQLITE_OK) return result;
    ++position;
  }
  return SQLITE_OK;
}

Key TableRows::returnedKey(sqlite3_stmt* statement, int first) const {
  if (!isTupleKeyed()) return sqlite3_column_int64(statement, first);
  std::vector<Value> values;
  values.reserve(keyNames_.size());
  for (int index = 0; index < static_cast<int>(keyNames_.size()); ++index) {
    values.push_back(columnValue(statement, first + index));
  }
  return values;
}

// Keys that columns hold stay good, as long as the same columns are the key; then only the other columns
// could have become others.
Status TableRows::checkSameRows() {
  if (connection_.rebuilds() == rebuildsAtLoad_) return {};
  SqliteStatement fetch;
  bool isSame = keysSurviveRebuild_;
  if (isSame) {
    TableSchema schema;
    if (Status status = readTableSchema(connection_, tableName_, &schema); !status) return status;
    isSame = hasSameKey(schema);
  }
  isSame = isSame && connection_.prepare(fetchSql_, &fetch) &&
           sqlite3_column_count(fetch.get()) >= static_cast<int>(columns_.size());
  for (std::size_t index = 0; index < columns_.size() && isSame; ++index) {
    const char* name = sqlite3_column_name(fetch.get(), static_cast<int>(index));
    isSame = name != nullptr && columns_[index].name == name;
  }
  if (!isSame) return structureChanged();
  fetch_ = std::move(fetch);
  rebuildsAtLoad_ = connection_.rebuilds();
  return {};
}

bool TableRows::hasSameKey(const TableSchema& schema) const {
  return schema.ordinary && schema.withoutRowId == tupleKeyed_ &&
         (schema.withoutRowId || schema.rowIdIsColumn) && schema.keyColumns() == keyColumns_ &&
         keyNamesOf(schema) == keyNames_ && keyCollationsOf(schema) == keyCollations_;
}

std::string TableRows::keyCondition(int firstParameter) const {
  std::vector<std::string> conditions;
  for (std::size_t number = 0; number < keyNames_.size(); ++number) {
    conditions.push_back(keyNames_[number] + " = ?" +
                         std::to_string(firstParameter + static_cast<int>(number)) + keyCollations_[number]);
  }
  return joined(conditions, " AND ");
}

}  // namespace store
