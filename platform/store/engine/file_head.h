#pragma once

#include <filesystem>
#include <string>

#include "platform/store/engine/status.h"

namespace store {

/// The path of a UTF-8 text.
std::filesystem::path pathOf(const std::string& utf8);

/// Whether SQLite takes `path` for a file's: not for a database in memory, and whole.
bool isFileName(const std::string& path);

/// What the first bytes of an SQLite file tell before it is opened.
/// Source of the format: "Database File Format", section 1.3, in SQLite's documentation.
struct FileHead {
  bool writeAheadLog = false;  ///< the file is in write-ahead mode
};

/// Reads the head of the file at `path` (UTF-8). cannotOpen, with the reason for the user, when it is
/// missing, not an ordinary file, empty, too short or of another kind. The file is only read.
Status readFileHead(const std::string& path, FileHead* head);

/// Whether the file's length is a whole number of its pages. A whole database's is, between
/// transactions; a file that was cut short seldom. True when the file can't be read.
bool hasWholePages(const std::string& path);

/// Whether the file carries a mark that nobody is to write it.
bool isMarkedReadOnly(const std::string& path);

}  // namespace store
