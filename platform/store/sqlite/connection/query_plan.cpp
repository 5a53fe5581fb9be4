#include "platform/store/sqlite/connection/query_plan.h"

namespace store {

Status readQueryPlan(SqliteConnection& connection, std::string_view sql, std::vector<std::string>* steps) {
  constexpr int kDetail = 3;
  SqliteStatement plan;
  if (Status status = connection.prepare("EXPLAIN QUERY PLAN " + std::string(sql), &plan); !status)
    return status;
  std::vector<std::string> read;
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(plan.get())) == SQLITE_ROW)
    read.emplace_back(columnText(plan.get(), kDetail));
  if (result != SQLITE_DONE) return statusOf(connection.handle(), result);
  *steps = std::move(read);
  return {};
}

}  // namespace store
