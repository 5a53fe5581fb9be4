#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/store/sqlite/connection/sqlite_connection.h"

namespace store {

/// How SQLite is going to run a statement: each step in its words, in the order of EXPLAIN QUERY PLAN. Inside
/// a Use of the connection's guard; the statement's parameters need no values. `steps` is left alone when it
/// fails.
Status readQueryPlan(SqliteConnection& connection, std::string_view sql, std::vector<std::string>* steps);

}  // namespace store
