#include "platform/store/odbc/driver/answer.h"

#include <iterator>

namespace store {

Status takeRows(OdbcStatement& statement, Answer* answer) {
  for (bool hasRow = true;;) {
    if (Status status = statement.next(&hasRow); !status) return status;
    if (!hasRow) return {};
    AnswerRow row(statement.columnCount());
    for (std::size_t index = 0; index < row.size(); ++index) {
      if (Status status = statement.read(index, &row[index]); !status) return status;
    }
    answer->push_back(std::move(row));
  }
}

Status runStatement(OdbcConnection& connection, std::string_view sql) {
  OdbcStatement statement(connection);
  return statement.run(sql);
}

Status ask(OdbcConnection& connection, std::string_view sql, const OdbcStatement::Parameters& parameters,
           Answer* answer) {
  OdbcStatement statement(connection);
  if (Status status = statement.run(sql, parameters); !status) return status;
  Answer read;
  if (Status status = takeRows(statement, &read); !status) return status;
  *answer = std::move(read);
  return {};
}

Status askAgain(OdbcStatement& statement, std::string_view sql, const OdbcStatement::Parameters& parameters,
                Answer* answer) {
  if (Status status = statement.runPrepared(sql, parameters); !status) return status;
  Answer read;
  if (Status status = takeRows(statement, &read); !status) return status;
  *answer = std::move(read);
  return {};
}

}  // namespace store
