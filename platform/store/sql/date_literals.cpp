#include "platform/store/sql/date_literals.h"

#include "platform/store/sql/date_comparisons.h"
#include "platform/store/sql/date_statement.h"
#include "platform/store/sql/date_storing.h"

namespace store {

Status makeDatesMoments(std::string* sql, DateOrder order, DeclaredTypes& types) {
  const Tokens tokens(*sql);
  DateStatement statement(tokens, order, types);
  if (Status status = readStoredDates(statement); !status) return status;
  if (Status status = readDateComparisons(statement); !status) return status;
  *sql = statement.changed(*sql);
  return {};
}

}  // namespace store
