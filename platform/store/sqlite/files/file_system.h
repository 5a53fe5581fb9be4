#pragma once

#include <sqlite3.h>

#include "platform/store/sqlite/files/file_identity.h"

namespace store {

/// The name of the store's own layer over SQLite's layer over the system's files (sqlite3_open_v2 takes it).
/// Registers it at the first call; null when SQLite refuses that. It adds two things that keep the store from
/// harming other programs' work, heeds TemporaryBound, and reads ahead (ReadAhead):
///
///  - No journal stays open between two transactions. SQLite keeps an emptied one open where it takes it that
///    open files can't be deleted, which under Wine is not so: a native program commits by deleting it, and
///    the file that is still open would pass for a transaction to be undone.
///  - The files beside the database (the journal and those of the write-ahead mode) are reached by name, and
///    belong to whatever database stands beside them. When the one that is open has been deleted or another
///    one was renamed over it, none of them is opened, read or deleted any more, and SQLite refuses to change
///    the file (SQLITE_READONLY_DBMOVED). What is open can still be read.
const char* fileSystemName();

/// What became of the main file of `connection`, which was opened in the file system above. FileState::same
/// where the system doesn't tell files apart.
FileState fileStateOf(sqlite3* connection);

/// Whether the main files of both connections, opened in the file system above, are known to be one.
bool haveSameFile(sqlite3* one, sqlite3* other);

}  // namespace store
