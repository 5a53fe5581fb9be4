#include "platform/store/odbc/sources/server_table_load.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <thread>
#include <utility>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"

namespace store {

namespace {

constexpr std::size_t kMostRowsAtOnce = 4096;
constexpr std::size_t kMostBytesAtOnce = 1 << 20;

// A server that begins anew after a crash needs some seconds.
constexpr std::chrono::seconds kOutcomePatience{10};

Status nothingStored() {
  return {ErrorCode::inputOutput, "The connection to the server was lost: nothing was stored."};
}

/// Whether the server refused a row for what it holds. What is wrong with the transaction or the table shows
/// by the next statement at the latest.
bool isOfRows(const Status& status) {
  return status.code() == ErrorCode::constraint || status.code() == ErrorCode::conversion ||
         status.code() == ErrorCode::tooLarge || status.code() == ErrorCode::errorsInCommand;
}

/// Appends the text as an array's text has it.
void appendElement(std::string_view value, std::string* text) {
  *text += ",\"";
  for (const char sign : value) {
    if (sign == '"' || sign == '\\') *text += '\\';
    *text += sign;
  }
  *text += '"';
}

void appendCell(const Cell& cell, ValueForm form, std::string* text) {
  if (cell.kind == CellKind::null) {
    *text += ",NULL";
    return;
  }
  if (cell.kind == CellKind::text) return appendElement(cell.bytes, text);
  if (cell.kind == CellKind::integer && form != ValueForm::boolean) {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), cell.integer);
    *text += ',';
    text->append(digits.data(), end.ptr);
    return;
  }
  appendElement(serverTextOf(valueOf(cell), form).value_or(""), text);
}

std::string columnAlias(std::size_t index) {
  return "c" + std::to_string(index);
}

bool isAmong(const std::vector<std::string>& names, const std::string& name) {
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& other) { return equalsIgnoringCase(other, name); });
}

/// The table's column of that name: exactly, else in any letter case.
const ServerColumn* findColumn(const ServerTable& table, const std::string& name) {
  if (const ServerColumn* exact = table.find(name)) return exact;
  for (const ServerColumn& column : table.columns) {
    if (equalsIgnoringCase(column.name, name)) return &column;
  }
  return nullptr;
}

std::int64_t numberOf(const std::optional<std::string>& text) {
  std::int64_t number = 0;
  if (text) std::from_chars(text->data(), text->data() + text->size(), number);
  return number;
}

/// Whether the server reads an array of the type as quickly as one of texts, and parts its values by commas.
bool isReadInArrays(const ServerColumn& column) {
  constexpr std::array<std::string_view, 10> kTypes{"int2",        "int4",       "int8", "float4",
                                                    "float8",      "bool",       "date", "\"timestamp\"",
                                                    "timestamptz", "\"numeric\""};
  constexpr std::string_view kSchema = "pg_catalog.";
  const std::string_view type = column.castType;
  return type.starts_with(kSchema) &&
         std::find(kTypes.begin(), kTypes.end(), type.substr(kSchema.size())) != kTypes.end();
}

/// The rows that are sent, one array for each column, in their order. What makes rows of the arrays stands
/// among what is selected: there the server makes one after the other, and keeps none.
std::string sentRows(const std::vector<const ServerColumn*>& columns, const std::string& more = {}) {
  std::string values;
  std::string arrays;
  for (std::size_t index = 0; index < columns.size(); ++index) {
    const char* separator = index == 0 ? "" : ", ";
    const std::string alias = columnAlias(index);
    const std::string cast = "::" + columns[index]->castType;
    const bool isRead = isReadInArrays(*columns[index]);
    values += separator + ("s." + alias) + (isRead ? "" : cast) + " AS " + alias;
    arrays += separator + ("pg_catalog.unnest(?::text" + (isRead ? cast : "::text") + "[]) AS " + alias);
  }
  return "SELECT " + more + values + " FROM (SELECT " + arrays + ") AS s";
}

}  // namespace

ServerTableLoad::~ServerTableLoad() {
  if (isSettling_ && begun_) statement_.abandonPrepared();
  if (!isOpen_ || !checkConversation()) return;
  // When it doesn't get there the server takes all back by itself, at the end of the conversation.
  OdbcStatement undo(connection_);
  if (!undo.run("ROLLBACK")) connection_.lose();
  catalogue_.forget();
}

Status ServerTableLoad::checkConversation() const {
  if (connection_.session() != nullptr && connection_.conversations() == conversation_) return {};
  return nothingStored();
}

Status ServerTableLoad::fail(Status status) {
  hasFailed_ = true;
  return status;
}

Status ServerTableLoad::runInside(std::string_view sql, const OdbcStatement::Parameters& parameters) {
  if (Status status = checkConversation(); !status) return fail(status);
  OdbcStatement statement(connection_);
  return statement.run(sql, parameters);
}

Status ServerTableLoad::begin(const LoadTarget& target, const std::string& createSql) {
  if (target.columns.empty()) return {ErrorCode::invalidArgument, "No column was named."};
  if (Status status = connection_.ensureOpen(); !status) return status;
  conversation_ = connection_.conversations();
  if (Status status = runInside("BEGIN"); !status) return status;
  isOpen_ = true;
  if (!createSql.empty()) {
    if (Status status = runInside(createSql); !status) return status;
    makesTable_ = true;
    catalogue_.forget();
  }
  std::optional<ServerTable> table;
  if (Status status = catalogue_.readTable(target.table, &table); !status) return status;
  if (!table) return {ErrorCode::noTable, "no such table: " + target.table};
  if (!table->isTable || !table->canInsert) {
    return {ErrorCode::readOnly, target.table + " is not a table that takes records."};
  }
  return prepare(target, *table);
}

Status ServerTableLoad::prepare(const LoadTarget& target, const ServerTable& table) {
  for (const std::string& name : target.columns) {
    const ServerColumn* column = findColumn(table, name);
    if (column == nullptr) return {ErrorCode::badColumn, "no such column: " + name};
    forms_.push_back(column->type.form);
  }
  waiting_.columns.resize(forms_.size());
  settling_.columns.resize(forms_.size());
  replaces_ = !target.keyColumns.empty();
  if (replaces_) {
    if (Status status = writeReplacement(target, table); !status) return status;
  } else {
    writeInsert(target, table);
  }
  // What is wrong with the statement, and not with a row, shows without one.
  Sent sent;
  Status status = send(0, 0, &sent);
  return status ? runInside("SAVEPOINT quivane_rows") : status;
}

void ServerTableLoad::writeInsert(const LoadTarget& target, const ServerTable& table) {
  std::vector<const ServerColumn*> columns;
  std::string names;
  std::string values;
  for (std::size_t index = 0; index < target.columns.size(); ++index) {
    columns.push_back(findColumn(table, target.columns[index]));
    names += (index == 0 ? "" : ", ") + quotedName(columns.back()->name);
    values += (index == 0 ? "n." : ", n.") + columnAlias(index);
  }
  sql_ = "INSERT INTO " + table.reference + " (" + names + ") SELECT " + values + " FROM (" +
         sentRows(columns) + ") AS n";
}

Status ServerTableLoad::writeReplacement(const LoadTarget& target, const ServerTable& table) {
  std::size_t keyCount = 0;
  bool mayBeNull = false;
  for (const std::string& name : target.columns) {
    isKey_.push_back(isAmong(target.keyColumns, name));
    if (!isKey_.back()) continue;
    ++keyCount;
    mayBeNull = mayBeNull || !findColumn(table, name)->notNull;
  }
  if (keyCount != target.keyColumns.size()) {
    return {ErrorCode::badColumn, "Each column of the key needs a value."};
  }
  sql_ = replacementSql(target, table, false);
  if (mayBeNull) sqlForNulls_ = replacementSql(target, table, true);
  return {};
}

// All parts of the statement see the table as it was before: what is found decides what is replaced and what
// is inserted, and the numbers tell whether that is what happened.
std::string ServerTableLoad::replacementSql(const LoadTarget& target, const ServerTable& table,
                                            bool nulls) const {
  std::vector<const ServerColumn*> columns;
  std::string names;
  std::string values;
  std::string keys;
  std::string match;
  std::string changes;
  for (std::size_t index = 0; index < target.columns.size(); ++index) {
    const ServerColumn* column = findColumn(table, target.columns[index]);
    columns.push_back(column);
    const std::string name = quotedName(column->name);
    const std::string alias = "n." + columnAlias(index);
    names += (index == 0 ? "" : ", ") + name;
    values += (index == 0 ? "" : ", ") + alias;
    if (isKey_[index]) {
      keys += (keys.empty() ? "" : ", ") + alias;
      match += (match.empty() ? "" : " AND ") + ("t." + name) +
               (column->notNull || !nulls ? " = " : " IS NOT DISTINCT FROM ") + alias;
    } else {
      changes += (changes.empty() ? "" : ", ") + name + " = " + alias;
    }
  }
  const std::string replaced =
      changes.empty() ? "SELECT place FROM found"
                      : "UPDATE " + table.reference + " AS t SET " + changes + " FROM n WHERE " + match +
                            " AND n.place IN (SELECT place FROM found WHERE times = 1) RETURNING n.place";
  return "WITH n AS MATERIALIZED (" + sentRows(columns, "pg_catalog.row_number() OVER () AS place, ") +
         "), found AS MATERIALIZED (SELECT n.place, count(*) AS times FROM n JOIN " + table.reference +
         " AS t ON " + match + " GROUP BY n.place), replaced AS (" + replaced +
         "), inserted AS (INSERT INTO " + table.reference + " (" + names + ") SELECT " + values +
         " FROM n WHERE n.place NOT IN (SELECT place FROM found) ORDER BY n.place RETURNING 1) "
         "SELECT (SELECT count(*) FROM n)::text, (SELECT count(*) FROM (SELECT DISTINCT " +
         keys +
         " FROM n) AS k)::text, (SELECT count(*) FROM found)::text, (SELECT count(*) FROM found WHERE times "
         "> 1)::text, (SELECT count(*) FROM replaced)::text, (SELECT count(*) FROM inserted)::text";
}

const std::string& ServerTableLoad::sqlFor(std::size_t first, std::size_t count) const {
  const std::vector<std::size_t>& nulls = settling_.nullKeyRows;
  const auto null = std::lower_bound(nulls.begin(), nulls.end(), first);
  const bool hasNull = null != nulls.end() && *null < first + count;
  return hasNull && !sqlForNulls_.empty() ? sqlForNulls_ : sql_;
}

Status ServerTableLoad::add(std::span<const Cell> values) {
  if (hasFailed_) return {ErrorCode::illegalOperation, "The transaction was undone already."};
  for (std::size_t index = 0; index < forms_.size(); ++index) {
    WaitingColumn& column = waiting_.columns[index];
    std::vector<std::size_t>& nulls = waiting_.nullKeyRows;
    const bool isNullKey = replaces_ && isKey_[index] && values[index].kind == CellKind::null;
    if (isNullKey && (nulls.empty() || nulls.back() != waiting_.count)) nulls.push_back(waiting_.count);
    const std::size_t before = column.texts.size();
    appendCell(values[index], forms_[index], &column.texts);
    column.ends.push_back(column.texts.size());
    waiting_.bytes += column.texts.size() - before;
  }
  ++waiting_.count;
  return {};
}

bool ServerTableLoad::isFull() const {
  return waiting_.count >= kMostRowsAtOnce || waiting_.bytes >= kMostBytesAtOnce;
}

void ServerTableLoad::WaitingRows::clear() {
  for (WaitingColumn& column : columns) {
    column.texts.clear();
    column.ends.clear();
  }
  nullKeyRows.clear();
  count = 0;
  bytes = 0;
}

OdbcStatement::Parameters ServerTableLoad::arraysOf(std::size_t first, std::size_t count) const {
  OdbcStatement::Parameters arrays;
  for (const WaitingColumn& column : settling_.columns) {
    if (count == 0) {
      arrays.emplace_back("{}");
      continue;
    }
    const std::size_t begin = first == 0 ? 0 : column.ends[first - 1];
    const std::size_t end = column.ends[first + count - 1];
    // Without the comma in front of the first.
    arrays.emplace_back("{" + column.texts.substr(begin + 1, end - begin - 1) + "}");
  }
  return arrays;
}

Status ServerTableLoad::send(std::size_t first, std::size_t count, Sent* sent) {
  if (Status status = checkConversation(); !status) return status;
  if (Status status = statement_.runPrepared(sqlFor(first, count), arraysOf(first, count)); !status)
    return status;
  return takeOutcome(count, sent);
}

/// What the statement answers that has run with so many rows.
Status ServerTableLoad::takeOutcome(std::size_t count, Sent* sent) {
  Sent counted;
  if (!replaces_) {
    counted.rows = static_cast<std::int64_t>(count);
    counted.distinctKeys = counted.rows;
    counted.inserted = statement_.affected();
    // None is also what an answer looks like that was lost.
    if (counted.inserted == 0) {
      if (Status status = statement_.answered(); !status) return status;
    }
  } else {
    Answer answer;
    if (Status status = takeRows(statement_, &answer); !status) return status;
    if (answer.size() != 1 || answer[0].size() != 6) {
      return {ErrorCode::inputOutput, "The server's answer can't be read."};
    }
    const AnswerRow& row = answer.front();
    counted = {numberOf(row[0]), numberOf(row[1]), numberOf(row[2]),
               numberOf(row[3]), numberOf(row[4]), numberOf(row[5])};
  }
  *sent = counted;
  return {};
}

bool ServerTableLoad::isWhole(const Sent& sent, std::size_t count) const {
  return sent.rows == static_cast<std::int64_t>(count) && sent.distinctKeys == sent.rows &&
         sent.ambiguous == 0 && sent.replaced == sent.found && sent.inserted == sent.rows - sent.found;
}

std::string ServerTableLoad::reasonOf(const Sent& sent) const {
  return sent.ambiguous > 0 ? "Several records have this key."
                            : "A rule of the database left the record out.";
}

/// Keeps rows that were sent behind the savepoint, or takes them back; `*isKept` tells which. The savepoint
/// stands again for those that follow.
Status ServerTableLoad::conclude(const Status& status, const Sent& sent, std::size_t count, bool* isKept) {
  *isKept = status && isWhole(sent, count);
  if (!status && !isOfRows(status)) return fail(status);
  if (*isKept) {
    replacedCount_ += sent.found;
    storedCount_ += sent.replaced + sent.inserted;
  }
  Status stands = runInside(*isKept ? "RELEASE SAVEPOINT quivane_rows; SAVEPOINT quivane_rows"
                                    : "ROLLBACK TO SAVEPOINT quivane_rows");
  return stands ? stands : fail(stands);
}

/// Sends the rows again among which there is one that can't be in the table: the fewer at once the more of
/// them there are.
Status ServerTableLoad::sendApart(std::vector<Refusal>* refused) {
  std::size_t most = settling_.count / 2;
  for (std::size_t first = 0; first < settling_.count;) {
    const std::size_t count = std::clamp<std::size_t>(most, 1, settling_.count - first);
    Sent sent;
    const Status status = send(first, count, &sent);
    bool isKept = false;
    if (Status stands = conclude(status, sent, count, &isKept); !stands) return stands;
    if (!isKept && count > 1) {
      most = count / 2;
      continue;
    }
    if (!isKept) refused->push_back({first, status ? reasonOf(sent) : status.message()});
    if (isKept) most = count * 2;
    first += count;
  }
  return {};
}

Status ServerTableLoad::beginSettling() {
  if (hasFailed_) return {ErrorCode::illegalOperation, "The transaction was undone already."};
  std::swap(waiting_, settling_);
  waiting_.clear();
  if (settling_.count == 0) return {};
  if (Status status = checkConversation(); !status) return fail(status);
  // What can't even be sent is told of by its row, too.
  begun_ = statement_.beginPrepared(sqlFor(0, settling_.count), arraysOf(0, settling_.count));
  isSettling_ = true;
  return {};
}

Status ServerTableLoad::settle(std::vector<Refusal>* refused) {
  if (hasFailed_) return {ErrorCode::illegalOperation, "The transaction was undone already."};
  if (!std::exchange(isSettling_, false)) return {};
  Sent sent;
  Status status = begun_ ? statement_.endPrepared() : begun_;
  if (status) status = takeOutcome(settling_.count, &sent);
  bool isKept = false;
  if (Status stands = conclude(status, sent, settling_.count, &isKept); !stands) return stands;
  if (!isKept) {
    if (Status apart = sendApart(refused); !apart) return apart;
  }
  settling_.clear();
  return {};
}

/// What became of the transaction whose end the server did not answer, by its number. The conversation may
/// have ended before the transaction has, and the server may be beginning anew.
Status ServerTableLoad::findOutcome(const std::string& number) {
  const auto deadline = std::chrono::steady_clock::now() + kOutcomePatience;
  std::string outcome;
  const auto isOver = [&](std::chrono::milliseconds time) {
    Answer answer;
    const Status status =
        ask(connection_, "SELECT pg_catalog.txid_status(?::text::bigint)", {number}, &answer);
    if (status && !answer.empty()) outcome = answer.front().front().value_or("");
    const bool mayTellLater =
        status ? outcome == "in progress"
               : status.code() == ErrorCode::cannotOpen || status.code() == ErrorCode::inputOutput;
    if (!mayTellLater || std::chrono::steady_clock::now() >= deadline) return true;
    std::this_thread::sleep_for(time);
    return false;
  };
  // Whoever doesn't want to wait for it doesn't know it.
  const Status waited = connection_.wait(isOver);
  if (waited && outcome == "committed") return {};
  if (waited && outcome == "aborted") return nothingStored();
  return {
      ErrorCode::inputOutput,
      "The connection was lost while the import was being stored. Whether it is stored is not known: look "
      "before you import again."};
}

Status ServerTableLoad::commit() {
  if (hasFailed_ || isSettling_ || waiting_.count > 0) {
    return {ErrorCode::illegalOperation, "The transaction was undone already."};
  }
  // A transaction that failed unseen would end as well as a good one, and store nothing: it tells no number.
  Answer number;
  if (Status status = checkConversation(); !status) return fail(status);
  if (Status status = ask(connection_, "SELECT pg_catalog.txid_current()::text", {}, &number); !status)
    return fail(status);
  if (Status status = checkConversation(); !status) return fail(status);
  isOpen_ = false;
  catalogue_.forget();
  connection_.noteChange();
  OdbcStatement statement(connection_, OdbcStatement::Effect::change);
  Status status = statement.run("COMMIT");
  if (!status && !checkConversation() && !number.empty()) {
    status = findOutcome(number.front().front().value_or(""));
  }
  if (!status) return status;
  connection_.noteChangedRows(storedCount_);
  if (makesTable_) connection_.noteDefinition();
  return {};
}

}  // namespace store
