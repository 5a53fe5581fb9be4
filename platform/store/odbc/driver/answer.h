#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/odbc/driver/odbc_statement.h"

namespace store {

/// The rows of a short answer, whole.
using AnswerRow = std::vector<std::optional<std::string>>;
using Answer = std::vector<AnswerRow>;

/// Runs a statement whose answer is not wanted.
Status runStatement(OdbcConnection& connection, std::string_view sql);

/// Runs a statement and takes all that it answers. On failure `*answer` is untouched.
Status ask(OdbcConnection& connection, std::string_view sql, const OdbcStatement::Parameters& parameters,
           Answer* answer);

/// The same with a statement that is kept, by its runPrepared().
Status askAgain(OdbcStatement& statement, std::string_view sql, const OdbcStatement::Parameters& parameters,
                Answer* answer);

/// Appends the rows that are left.
Status takeRows(OdbcStatement& statement, Answer* answer);

}  // namespace store
