#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/store/rows/backend.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sqlite/connection/open_options.h"

namespace store {

/// Opens the database in the file at `path` (UTF-8). Never creates a file. A file that can't be
/// written opens for reading. Fails, leaving `*backend` untouched and the file unchanged, with
///  - cannotOpen: missing, a folder, empty, cut short, or not a database;
///  - locked: another program holds it exclusively for longer than the wait;
///  - damaged, inputOutput, outOfMemory.
Status openDatabase(const std::string& path, const OpenOptions& options, std::unique_ptr<Backend>* backend);

/// The store without a database: runs CREATE DATABASE and DROP DATABASE and refuses every other
/// statement with noTable. A backend of an open database runs these two likewise, but refuses to drop
/// the file that it has open (locked).
std::unique_ptr<Backend> storeWithoutDatabase();

/// Makes an empty database at `path`, durably. fileExists when anything stands there already.
Status createDatabase(const std::string& path);

/// Deletes the database at `path` with the files beside it that belong to it. Refuses, leaving all as it
/// was, a file that is not a database (cannotOpen), a link to a server's database (illegalOperation), one
/// that is marked as not to be written (readOnly) and one that another connection has open (locked). Where a
/// system lets open files be deleted, which Windows does not, only a connection that reads or writes at the
/// moment counts as open: one that is idle can't be told there, and the file that has lost its name takes no
/// more of its changes.
Status dropDatabase(const std::string& path);

/// Runs a CREATE DATABASE or DROP DATABASE; noTable for any other statement. The file at `openPath`
/// (empty: none) is in use by the caller and is not dropped (locked).
Status runDatabaseStatement(const Statement& statement, const std::string& openPath);

}  // namespace store
