#pragma once

#include <cstdint>
#include <optional>
#include <sqlite3.h>

namespace store {

/// Which file of the system it is, whatever its names are. As long as a file is open no other one has the
/// same identity.
struct FileIdentity {
  std::uint64_t volume = 0;
  std::uint64_t number = 0;
  bool operator==(const FileIdentity&) const = default;
};

/// What became of a file that is open.
enum class FileState {
  same,      ///< it stands under its name
  gone,      ///< nothing stands under its name
  replaced,  ///< another file stands under its name
  unknown,   ///< the system doesn't tell at the moment (the folder can't be read, the network is down)
};

/// The identity of `file`, which SQLite's own layer over the system has just opened at `path` (UTF-8, as
/// SQLite hands it to that layer). Empty when the system has none that lasts, or when the file has lost that
/// name already. Opens and closes nothing that would give up the locks of this program on the file.
std::optional<FileIdentity> identityOf(sqlite3_file* file, const char* path);

/// What became of `file` with `identity`, which was opened at `path` and is open still.
FileState stateOf(const FileIdentity& identity, sqlite3_file* file, const char* path);

/// Makes an empty file at `path` (UTF-8). False when it can't be made, or when anything stands there already,
/// and then nothing was made.
bool makeEmptyFile(const char* path);

}  // namespace store
