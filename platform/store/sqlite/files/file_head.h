#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/store/rows/status.h"
#include "platform/store/sqlite/files/file_path.h"

struct sqlite3;

namespace store {

/// Whether SQLite takes `path` for a file's: not for a database in memory, and whole.
bool isFileName(const std::string& path);

/// cannotOpen, with the reason for the user, when there is no ordinary file at `path`. The file is not
/// opened for that: on some systems the closing of any handle gives up the locks that this program has
/// on the file by another.
Status checkOrdinaryFile(const std::string& path);

/// Reads the head of the file that `connection` has opened, through the connection's own handle and
/// without a lock. cannotOpen, with the reason for the user, when it is empty, too short or of another
/// kind. Source of the format: "Database File Format", section 1.3, in SQLite's documentation.
Status checkFileHead(sqlite3* connection);

/// Whether the file that `connection` has opened and read from ends within its last page, so that a part of
/// that page is lost. (Whole pages that are missing SQLite notices by itself.) What stands behind the last
/// page belongs to nobody and is no damage. False when it can't be told: when the file can't be read, when
/// its head doesn't say how many pages it has (before SQLite 3.7.0), and as long as there is a write-ahead
/// log, in which the page may still be.
bool endsWithinPage(sqlite3* connection);

/// How many bytes are missing at the end of a file of `length` bytes that begins with `start`, by what it
/// says of itself. 0 when none are, and when that can't be told: of what is no database, and of a file whose
/// head doesn't say how many pages it has.
std::int64_t missingBytes(std::string_view start, std::int64_t length);

/// Whether the file carries a mark that nobody is to write it.
bool isMarkedReadOnly(const std::string& path);

}  // namespace store
