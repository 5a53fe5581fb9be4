#include "platform/store/odbc/sources/key_blocks.h"

#include <optional>
#include <vector>

#include "platform/store/odbc/driver/answer.h"

namespace store {

ReadTransaction::~ReadTransaction() {
  if (!isOpen_ || connection_.session() == nullptr) return;
  // What follows must not be a part of it.
  if (!runStatement(connection_, "ROLLBACK")) connection_.lose();
}

Status ReadTransaction::begin() {
  Status status = runStatement(connection_, "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
  isOpen_ = static_cast<bool>(status);
  return status;
}

Status declareKeys(OdbcConnection& connection, const std::string& select) {
  return runStatement(connection, "DECLARE quivane_keys NO SCROLL CURSOR FOR " + select);
}

Status fetchKeys(OdbcConnection& connection, std::size_t most, KeySet* keys) {
  OdbcStatement fetch(connection);
  Status status = fetch.run("FETCH FORWARD " + std::to_string(most) + " FROM quivane_keys");
  return status ? takeKeys(fetch, keys) : status;
}

Status takeKeys(OdbcStatement& statement, KeySet* keys) {
  if (keys->kind() == KeySet::Kind::rowId) {
    std::vector<std::int64_t> numbers;
    if (Status status = statement.readIntegers(&numbers); !status) return status;
    for (const std::int64_t number : numbers) keys->append(number);
    return {};
  }
  Answer answer;
  if (Status status = takeRows(statement, &answer); !status) return status;
  for (const AnswerRow& row : answer) {
    std::vector<Value> values;
    for (const std::optional<std::string>& text : row) values.emplace_back(text.value_or(""));
    keys->append(values);
  }
  return {};
}

}  // namespace store
