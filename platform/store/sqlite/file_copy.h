#pragma once

#include <string>

#include "platform/store/sqlite/connection/sqlite_connection.h"

namespace store {

/// Writes what `source` has open, as it is at the moment, into a new file at `path` (UTF-8), durably and page
/// by page, so that nothing is lost of what SQLite would not show. Also when the open file has lost its name.
/// Fails, leaving nothing behind, with
///  - fileExists: something stands at `path` already;
///  - cannotOpen: no file can be made there;
///  - locked, inputOutput (the disk is full), outOfMemory;
///  - stopped: who watches over the source wanted it.
/// Made inside a Use of the source's guard.
Status copyDatabase(SqliteConnection& source, const std::string& path);

}  // namespace store
