#include "platform/store/odbc/sources/server_table_rows.h"

#include <algorithm>
#include <limits>
#include <map>

#include "platform/store/odbc/sources/candidate_scan.h"
#include "platform/store/odbc/sources/row_text.h"
#include "platform/store/odbc/sources/server_result_rows.h"
#include "platform/store/rows/structure_changed.h"

namespace store {

namespace {

std::string keyAlias(std::size_t number) {
  return "\"quivane key " + std::to_string(number) + "\"";
}

Status rowGone() {
  return {ErrorCode::noCurrentRecord, "The record is no longer there: another program has deleted it."};
}

bool isWholeNumber(const ServerColumn& column) {
  return column.type.form == ValueForm::integer;
}

/// The cell as the server would write it.
std::optional<std::string> textOf(const Cell& cell, ValueForm form) {
  return serverTextOf(valueOf(cell), form);
}

/// A key that is appended to a set for a row that there is not yet, and leaves it when there will be none.
class AddedKey {
 public:
  AddedKey(KeySet* keys, const Key& key) : keys_(keys) { keys_->append(key); }
  ~AddedKey() {
    if (!isKept_) keys_->eraseAt(keys_->count() - 1);
  }
  AddedKey(const AddedKey&) = delete;
  AddedKey& operator=(const AddedKey&) = delete;

  void become(const Key& key) {
    keys_->replaceAt(keys_->count() - 1, key);
    isKept_ = true;
  }

 private:
  KeySet* keys_;
  bool isKept_ = false;
};

/// About how long the column's text is, as the server says it without reading what it keeps elsewhere.
std::string sizeOf(ValueForm form, const std::string& expression) {
  if (form == ValueForm::bytes) return "coalesce(2 * octet_length(" + expression + ")::bigint, 0)";
  if (form == ValueForm::text) return "coalesce(octet_length((" + expression + ")::text)::bigint, 0)";
  return "32";
}

}  // namespace

ServerTableRows::ServerTableRows(OdbcConnection& connection, const SingleTableSelect& select,
                                 const ServerTable& table, const std::vector<ShownColumn>& columns)
    : connection_(connection),
      tableName_(table.name),
      reference_(table.reference),
      ownRows_(table.ownRows),
      qualifier_(select.qualifier),
      isWholeTable_(select.isPlainTable),
      canInsert_(table.canInsert),
      canUpdate_(table.canUpdate),
      canDelete_(table.canDelete),
      blocks_(connection),
      changes_(connection, OdbcStatement::Effect::change) {
  const std::vector<const ServerColumn*> keys = table.keyColumns();
  isTupleKeyed_ = keys.size() != 1 || !isWholeNumber(*keys.front());
  for (const ServerColumn* key : keys) keyColumns_.push_back({quotedName(key->name), key->castType});
  for (const ShownColumn& column : columns) {
    columns_.push_back(column.column);
    forms_.push_back(column.form);
    sources_.push_back(column.source != nullptr ? Source{quotedName(column.source->name),
                                                         column.source->castType, column.source->holdsTexts}
                                                : Source{});
    texts_.push_back("(" + column.expression + ")::text");
    rowSize_ += (rowSize_.empty() ? "" : " + ") + sizeOf(column.form, column.expression);
    rowList_ += (rowList_.empty() ? "" : ", ") + texts_.back();
  }
  const std::string from = " FROM " + ownRows_ + " AS " + qualifier_ + " ";
  std::string order;
  std::string aliased;
  std::string aliases;
  for (std::size_t number = 0; number < keyColumns_.size(); ++number) {
    const std::string name = qualifier_ + "." + keyColumns_[number].name;
    const char* separator = number == 0 ? "" : ", ";
    const std::string alias = keyAlias(number + 1);
    order += separator + name;
    aliased += separator + name + " AS " + alias;
    aliases += separator + alias + (isTupleKeyed_ ? "::text" : "::bigint");
  }
  if (select.isPlainTable) {
    keysSql_ = "SELECT " + keyList(qualifier_) + from + "ORDER BY " + order;
  } else {
    // The statement itself decides which rows and in what order.
    std::string wide = "SELECT " + select.columnList + ", " + aliased + from + select.tail;
    std::size_t number = 0;
    for (const SingleTableSelect::Around& around : select.around) {
      wide = "SELECT * FROM (" + wide + "\n) AS quivane_" + std::to_string(++number) + " " + around.tail;
    }
    keysSql_ = "SELECT " + aliases + " FROM (" + wide + "\n) AS quivane_keys";
  }
}

std::string ServerTableRows::keyList(const std::string& qualifier) const {
  std::string list;
  for (const KeyColumn& key : keyColumns_) {
    list += (list.empty() ? "" : ", ") + qualifier + "." + key.name + (isTupleKeyed_ ? "::text" : "::bigint");
  }
  return list;
}

bool ServerTableRows::isEachItsOwn() {
  Answer plan;
  if (!ask(connection_, "EXPLAIN " + keysSql_, {}, &plan)) return false;
  // This step of the plan makes several rows of one, for a function that answers a set.
  return std::none_of(plan.begin(), plan.end(), [](const AnswerRow& line) {
    return !line.empty() && line.front().value_or("").find("ProjectSet") != std::string::npos;
  });
}

Status ServerTableRows::readKeys(KeySet* keys, std::size_t* count) {
  KeyReading::Statements statements;
  statements.keys = keysSql_;
  // An order of its own has to be made of all rows before the first one is known.
  if (isWholeTable_) statements.count = "SELECT count(*) FROM " + ownRows_;
  statements.kind = isTupleKeyed_ ? KeySet::Kind::tuple : KeySet::Kind::rowId;
  auto reading = std::make_unique<KeyReading>(connection_, std::move(statements));
  if (Status status = reading->begin(keys, count); !status) return ofReading(status);
  reading_ = std::move(reading);
  ahead_.clear();
  return {};
}

Status ServerTableRows::readMoreKeys(KeySet* keys, std::size_t wanted) {
  return reading_->readOn(keys, wanted);
}

Key ServerTableRows::keyOf(const AnswerRow& row) const {
  if (!isTupleKeyed_) return std::stoll(row[0].value_or("0"));
  std::vector<Value> values;
  for (std::size_t index = 0; index < keyColumns_.size(); ++index)
    values.emplace_back(row[index].value_or(""));
  return values;
}

std::vector<std::string> ServerTableRows::keyTexts(const KeySet& keys, std::size_t index) const {
  if (!isTupleKeyed_) return {std::to_string(keys.rowIdAt(index))};
  std::vector<std::string> texts;
  const Key key = keys.keyAt(index);
  for (const Value& value : std::get<std::vector<Value>>(key)) texts.push_back(std::get<std::string>(value));
  return texts;
}

std::string ServerTableRows::keyCondition(const KeySet& keys, std::size_t index,
                                          const std::string& qualifier) const {
  const std::vector<std::string> texts = keyTexts(keys, index);
  std::string condition;
  for (std::size_t number = 0; number < keyColumns_.size(); ++number) {
    condition += (number == 0 ? "" : " AND ") + qualifier + keyColumns_[number].name + " = " +
                 quotedText(texts[number]) + "::" + keyColumns_[number].castType;
  }
  return condition;
}

std::string ServerTableRows::keyCondition(const KeySet& keys, std::size_t index,
                                          OdbcStatement::Parameters* parameters) const {
  std::string condition;
  for (const KeyColumn& key : keyColumns_) {
    condition +=
        (condition.empty() ? "quivane." : " AND quivane.") + key.name + " = ?::text::" + key.castType;
  }
  for (std::string& text : keyTexts(keys, index)) parameters->emplace_back(std::move(text));
  return condition;
}

Status ServerTableRows::ofReading(const Status& status) {
  const bool isOfStructure = status.code() == ErrorCode::badColumn || status.code() == ErrorCode::noTable ||
                             (status.code() == ErrorCode::errorsInCommand && haveKeysOtherTypes());
  return isOfStructure ? structureChanged() : status;
}

bool ServerTableRows::haveKeysOtherTypes() {
  std::string keys;
  for (const KeyColumn& key : keyColumns_) {
    keys += (keys.empty() ? "(" : ", (") + quotedText(key.name) + ", " + quotedText(key.castType) + ")";
  }
  const std::string sql =
      "SELECT count(*)::text FROM pg_catalog.pg_attribute a JOIN pg_catalog.pg_type t ON t.oid = a.atttypid "
      "JOIN pg_catalog.pg_namespace n ON n.oid = t.typnamespace WHERE a.attrelid = pg_catalog.to_regclass(" +
      quotedText(reference_) +
      ") AND NOT a.attisdropped AND ('\"' || pg_catalog.replace(a.attname::text, '\"', '\"\"') || '\"', "
      "pg_catalog.quote_ident(n.nspname) || '.' || pg_catalog.quote_ident(t.typname)) IN (" +
      keys + ")";
  Answer answer;
  return ask(connection_, sql, {}, &answer) && !answer.empty() &&
         answer[0][0] != std::to_string(keyColumns_.size());
}

Status ServerTableRows::askForBlock(const KeySet& keys, RowsAhead::Block block, Answer* answer) {
  const std::string key = keyList(qualifier_);
  const std::string whole = asRowText(key + ", " + rowList_);
  const std::string from = " FROM " + ownRows_ + " AS " + qualifier_ + " WHERE ";
  // Of a row that is too large to come with others the key alone. One comes whatever its size.
  const auto orKey = [&](const std::string& limit) {
    return "SELECT CASE WHEN " + rowSize_ + " <= " + limit + " THEN " + whole + " ELSE " + asRowText(key) +
           " END";
  };
  const std::string limit =
      std::to_string(block.count == 1 ? std::numeric_limits<std::int64_t>::max()
                                      : static_cast<std::int64_t>(RowsAhead::kMostBytes / block.count));
  if (isTupleKeyed_) {
    std::string conditions;
    for (std::size_t index = 0; index < block.count; ++index) {
      conditions +=
          (index == 0 ? "(" : " OR (") + keyCondition(keys, block.first + index, qualifier_ + ".") + ")";
    }
    return ask(connection_, orKey(limit) + from + conditions, {}, answer);
  }
  std::string numbers = "{";
  for (std::size_t index = 0; index < block.count; ++index) {
    numbers += (index == 0 ? "" : ",") + std::to_string(keys.rowIdAt(block.first + index));
  }
  numbers += '}';
  const KeyColumn& only = keyColumns_.front();
  return askAgain(blocks_,
                  orKey("?::text::bigint") + from + qualifier_ + "." + only.name +
                      " = ANY(?::text::" + only.castType + "[])",
                  {limit, std::move(numbers)}, answer);
}

Status ServerTableRows::readBlock(const KeySet& keys, RowsAhead::Block block,
                                  std::vector<RowsAhead::FoundRow>* rows) {
  using State = RowsAhead::FoundRow::State;
  Answer answer;
  if (Status status = askForBlock(keys, block, &answer); !status) return ofReading(status);
  std::map<std::vector<std::string>, RowsAhead::FoundRow> byKey;
  const std::size_t keyCount = keyColumns_.size();
  for (AnswerRow& text : answer) {
    RowsAhead::FoundRow row{State::found};
    const bool isWhole =
        text.size() == 1 && text[0] && readRowText(*text[0], keyCount + texts_.size(), &row.values);
    if (!isWhole) {
      row.state = State::leftOut;
      if (Status status = partRowText(keyCount, &text); !status) return status;
      row.values = std::move(text);
    }
    text = {};
    std::vector<std::string> key;
    for (std::size_t number = 0; number < keyCount; ++number) key.push_back(row.values[number].value_or(""));
    row.values.erase(row.values.begin(), row.values.begin() + static_cast<std::ptrdiff_t>(keyCount));
    byKey.emplace(std::move(key), std::move(row));
  }
  for (std::size_t index = 0; index < block.count; ++index) {
    const auto found = byKey.find(keyTexts(keys, block.first + index));
    rows->push_back(found != byKey.end() ? std::move(found->second) : RowsAhead::FoundRow());
    rows->back().key = keys.keyAt(block.first + index);
  }
  return {};
}

Status ServerTableRows::fetch(const KeySet& keys, std::size_t index, Row* row) {
  using State = RowsAhead::FoundRow::State;
  row->clear();
  RowsAhead::FoundRow found;
  const std::uint64_t changes = connection_.changes();
  if (!ahead_.take(index, keys.keyAt(index), changes, &found) && found.state != State::leftOut) {
    const RowsAhead::Block block = ahead_.blockFor(index, keys.count());
    std::vector<RowsAhead::FoundRow> rows;
    if (Status status = readBlock(keys, block, &rows); !status) return status;
    found = ahead_.keep(block.first, std::move(rows), index, changes);
  }
  if (found.state == State::leftOut) {
    // The others stay.
    std::vector<RowsAhead::FoundRow> rows;
    if (Status status = readBlock(keys, {index, 1}, &rows); !status) return status;
    found = std::move(rows.front());
  }
  if (found.state == State::gone) return rowGone();
  setRow(forms_, found.values, row);
  return {};
}

// The server decides by its own letters; the rows in which these may not be the system's are tested here.
std::string ServerTableRows::candidateCondition(const RowTest& test, const SoughtText& sought,
                                                std::size_t number) const {
  const std::size_t column = test.columns()[number];
  const std::string& text = texts_[column];
  const bool isInteger = forms_[column] == ValueForm::integer;
  if (isInteger || forms_[column] == ValueForm::text) {
    if (test.ignores(number, isInteger ? CellKind::integer : CellKind::text)) return {};
    if (sought.ascii.empty()) return text + " IS NOT NULL";
    const std::string quoted = quotedText(sought.ascii);
    // Capitals of ASCII alone.
    std::string condition = sought.anyLetterCase ? "strpos(upper(" + text + " COLLATE \"C\"), upper(" +
                                                       quoted + " COLLATE \"C\")) > 0"
                                                 : "strpos(" + text + ", " + quoted + ") > 0";
    if (!isInteger) condition += " OR octet_length(" + text + ") <> length(" + text + ")";
    return condition;
  }
  // Numbers with decimals, truth and bytes have other texts here than there.
  const bool canMatch = !test.ignores(number, CellKind::integer) || !test.ignores(number, CellKind::real) ||
                        !test.ignores(number, CellKind::blob) || !test.ignores(number, CellKind::text);
  return canMatch ? text + " IS NOT NULL" : std::string();
}

std::unique_ptr<RowScan> ServerTableRows::makeScan(RowTest& test) {
  ahead_.clear();
  const std::optional<SoughtText> sought = test.soughtText();
  if (!sought) return makeFetchingScan(*this, test);
  std::string conditions;
  for (std::size_t number = 0; number < test.columns().size(); ++number) {
    const std::string condition = candidateCondition(test, *sought, number);
    if (!condition.empty()) conditions += (conditions.empty() ? "" : " OR ") + condition;
  }
  const std::string sql = "SELECT " + keyList(qualifier_) + " FROM " + ownRows_ + " AS " + qualifier_ +
                          " WHERE " + (conditions.empty() ? "FALSE" : conditions);
  return std::make_unique<CandidateScan>(connection_, *this, test, sql, isTupleKeyed_);
}

std::vector<ServerTableRows::Assignment> ServerTableRows::assignmentsOf(
    const std::vector<Change>& changes) const {
  std::vector<Assignment> assignments;
  for (const Change& change : changes) {
    const Source& source = sources_[change.column];
    if (source.name.empty()) continue;
    std::optional<std::string> text = serverTextOf(change.value, forms_[change.column]);
    if (text && text->empty() && !source.holdsTexts) text.reset();
    // A column may be shown twice; what was written last counts.
    const auto known = std::find_if(assignments.begin(), assignments.end(), [&](const Assignment& other) {
      return other.source->name == source.name;
    });
    if (known != assignments.end()) {
      known->text = std::move(text);
    } else {
      assignments.push_back({&source, std::move(text)});
    }
  }
  return assignments;
}

void ServerTableRows::addReadCondition(const Row& read, std::string* sql,
                                       OdbcStatement::Parameters* parameters) const {
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    const Source& source = sources_[column];
    if (source.name.empty()) continue;
    const Cell cell = read.at(column);
    // A number has many texts.
    const bool isNumber = cell.kind == CellKind::real;
    *sql += " AND " + source.name + (isNumber ? "" : "::text") + " IS NOT DISTINCT FROM ?::text" +
            (isNumber ? "::" + source.castType : "");
    parameters->push_back(textOf(cell, forms_[column]));
  }
}

Status ServerTableRows::explainUnmet(const KeySet& keys, std::size_t index, const Row* read) {
  std::vector<RowsAhead::FoundRow> rows;
  if (Status status = readBlock(keys, {index, 1}, &rows); !status) return status;
  if (rows.front().state == RowsAhead::FoundRow::State::gone) return rowGone();
  Row present;
  setRow(forms_, rows.front().values, &present);
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    if (read == nullptr || sources_[column].name.empty()) continue;
    if (sameCell(present.at(column), read->at(column))) continue;
    return {ErrorCode::changedElsewhere, "Another program has changed the record since it was read."};
  }
  return {ErrorCode::constraint, "The database's own rules did not take the change."};
}

Status ServerTableRows::insert(const std::vector<Change>& changes, KeySet* keys) {
  std::string names;
  std::string values;
  OdbcStatement::Parameters parameters;
  for (Assignment& assignment : assignmentsOf(changes)) {
    // The server has its default for it.
    if (!assignment.text) continue;
    names += (names.empty() ? "" : ", ") + assignment.source->name;
    values += (values.empty() ? "?::text::" : ", ?::text::") + assignment.source->castType;
    parameters.push_back(std::move(assignment.text));
  }
  const std::string content = names.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + values + ")";
  const std::string sql =
      "INSERT INTO " + reference_ + " AS quivane" + content + " RETURNING " + keyList("quivane");
  // The set grows first, because that may need memory; afterwards the row is there.
  AddedKey added(keys, isTupleKeyed_ ? Key(std::vector<Value>(keyColumns_.size(), std::string()))
                                     : Key(std::int64_t{0}));
  Answer answer;
  connection_.noteChange();
  Status status = askAgain(changes_, sql, parameters, &answer);
  if (status && answer.empty()) {
    status = {ErrorCode::constraint, "The database's own rules did not take the record."};
  }
  if (!status) return status;
  connection_.noteChangedRows(1);
  added.become(keyOf(answer.front()));
  return {};
}

Status ServerTableRows::update(const std::vector<Change>& changes, KeySet* keys, std::size_t index,
                               const Row& read) {
  std::string sql;
  OdbcStatement::Parameters parameters;
  for (Assignment& assignment : assignmentsOf(changes)) {
    sql += (sql.empty() ? " SET " : ", ") + assignment.source->name +
           " = ?::text::" + assignment.source->castType;
    parameters.push_back(std::move(assignment.text));
  }
  if (sql.empty()) return {};
  sql = "UPDATE " + ownRows_ + " AS quivane" + sql + " WHERE " + keyCondition(*keys, index, &parameters);
  addReadCondition(read, &sql, &parameters);
  sql += " RETURNING " + keyList("quivane");
  Answer answer;
  connection_.noteChange();
  if (Status status = askAgain(changes_, sql, parameters, &answer); !status) return status;
  if (answer.empty()) return explainUnmet(*keys, index, &read);
  connection_.noteChangedRows(1);
  const Key key = keyOf(answer.front());
  if (key != keys->keyAt(index)) keys->replaceAt(index, key);
  return {};
}

Status ServerTableRows::remove(KeySet* keys, std::size_t index, const Row* read) {
  OdbcStatement::Parameters parameters;
  std::string sql =
      "DELETE FROM " + ownRows_ + " AS quivane WHERE " + keyCondition(*keys, index, &parameters);
  if (read != nullptr) addReadCondition(*read, &sql, &parameters);
  keys->prepareErase(index);
  connection_.noteChange();
  if (Status status = changes_.runPrepared(sql, parameters); !status) return status;
  connection_.noteChangedRows(changes_.affected());
  if (changes_.affected() == 0) {
    if (Status status = changes_.answered(); !status) return status;
    Status status = explainUnmet(*keys, index, read);
    if (status.code() != ErrorCode::noCurrentRecord) return status;
  }
  keys->eraseAt(index);
  return {};
}

}  // namespace store
