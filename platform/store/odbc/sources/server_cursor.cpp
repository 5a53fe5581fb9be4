#include "platform/store/odbc/sources/server_cursor.h"

#include <algorithm>
#include <atomic>
#include <iterator>

#include "platform/store/odbc/sources/row_text.h"

namespace store {

ServerCursor::~ServerCursor() {
  if (name_.empty() || !checkConversation() || connection_.session() == nullptr) return;
  OdbcStatement close(connection_);
  // Nobody can be told; the server forgets it at the end of the conversation anyway.
  static_cast<void>(close.run("CLOSE " + name_));
}

Status ServerCursor::checkConversation() const {
  if (connection_.conversations() == conversation_) return {};
  return {ErrorCode::structureChanged,
          "The connection to the server was lost meanwhile: the records must be opened again."};
}

Status ServerCursor::open(const std::string& select, std::size_t columnCount) {
  static std::atomic<unsigned> made{0};
  const std::string name = "quivane_" + std::to_string(++made);
  // As texts, without a loss; the names of the columns may occur twice and are not needed.
  std::string texts;
  std::string names;
  for (std::size_t index = 0; index < columnCount; ++index) {
    const std::string number = std::to_string(index);
    texts += (index == 0 ? "q.c" : ", q.c") + number + "::text";
    names += (index == 0 ? "c" : ", c") + number;
  }
  OdbcStatement statement(connection_);
  Status status = statement.run("DECLARE " + name + " SCROLL CURSOR WITH HOLD FOR SELECT " +
                                asRowText(texts) + " FROM (" + select + "\n) AS q(" + names + ")");
  if (!status) return status;
  name_ = name;
  columnCount_ = columnCount;
  conversation_ = connection_.conversations();
  return {};
}

Status ServerCursor::count(std::int64_t* count) {
  if (Status status = checkConversation(); !status) return status;
  OdbcStatement statement(connection_);
  if (Status status = statement.run("MOVE ABSOLUTE 0 IN " + name_); !status) return status;
  if (Status status = statement.run("MOVE FORWARD ALL IN " + name_); !status) return status;
  if (Status status = statement.answered(); !status) return status;
  *count = statement.affected();
  return {};
}

Status ServerCursor::readFrom(std::int64_t first, std::size_t count, Answer* answer) {
  if (Status status = checkConversation(); !status) return status;
  OdbcStatement statement(connection_);
  if (Status status = statement.run("MOVE ABSOLUTE " + std::to_string(first) + " IN " + name_); !status)
    return status;
  if (Status status = statement.run("FETCH FORWARD " + std::to_string(count) + " FROM " + name_); !status)
    return status;
  Answer read;
  if (Status status = takeRows(statement, &read); !status) return status;
  if (Status status = partRowTexts(columnCount_, &read); !status) return status;
  std::move(read.begin(), read.end(), std::back_inserter(*answer));
  return {};
}

}  // namespace store
