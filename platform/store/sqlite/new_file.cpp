#include "platform/store/sqlite/new_file.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <sqlite3.h>
#include <system_error>
#include <vector>

#include "platform/store/sqlite/file_head.h"

namespace store {

namespace {

struct FileNameReleaser {
  void operator()(const char* name) const { sqlite3_free_filename(name); }
};

bool isTaken(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(std::filesystem::symlink_status(pathOf(path), error));
}

/// A code of SQLite's. Its layer over the system has the exclusive opening that the language's library lacks.
int openExclusively(const std::string& path) {
  sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
  std::string wholePath(static_cast<std::size_t>(system->mxPathname) + 1, '\0');
  int result = system->xFullPathname(system, path.c_str(), system->mxPathname, wholePath.data());
  if (result != SQLITE_OK && result != SQLITE_OK_SYMLINK) return result;
  const std::unique_ptr<const char, FileNameReleaser> name(
      sqlite3_create_filename(wholePath.c_str(), "", "", 0, nullptr));
  if (name == nullptr) return SQLITE_NOMEM;
  std::vector<std::max_align_t> memory(static_cast<std::size_t>(system->szOsFile) / sizeof(std::max_align_t) +
                                       1);
  auto* const file = reinterpret_cast<sqlite3_file*>(memory.data());
  constexpr int kFlags =
      SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_EXCLUSIVE;
  int openedAs = 0;
  result = system->xOpen(system, name.get(), file, kFlags, &openedAs);
  if (file->pMethods != nullptr) file->pMethods->xClose(file);
  // A file that is there may have been opened for reading instead.
  return result == SQLITE_OK && (openedAs & SQLITE_OPEN_READWRITE) == 0 ? SQLITE_CANTOPEN : result;
}

}  // namespace

Status createNewFile(const std::string& path) {
  if (!isFileName(path)) return {ErrorCode::cannotOpen, "This is not the name of a file."};
  const bool wasTaken = isTaken(path);
  const int result = wasTaken ? SQLITE_OK : openExclusively(path);
  // What can't be made may stand there since the look before.
  if (wasTaken || (result != SQLITE_OK && isTaken(path))) {
    return {ErrorCode::fileExists, "There is a file or folder of this name already."};
  }
  if (result != SQLITE_OK) return {ErrorCode::cannotOpen, sqlite3_errstr(result)};
  return {};
}

}  // namespace store
