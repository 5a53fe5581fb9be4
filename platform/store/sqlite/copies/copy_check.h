#pragma once

#include <string>

#include "platform/store/rows/busy.h"
#include "platform/store/rows/status.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"

namespace store {

/// Opens a copy, to be read alone, and reads all of it to see whether it is whole: damaged with the reason
/// when it is not, stopped. What breaks the rules of its own tables was so in the database, and is no damage.
Status openWhole(const std::string& copy, const BusyQuestion& question, SqliteConnection* connection);

}  // namespace store
