#include "platform/store/sqlite/files/new_file.h"

#include <filesystem>
#include <sqlite3.h>
#include <system_error>

#include "platform/store/sqlite/files/file_head.h"
#include "platform/store/sqlite/files/file_identity.h"

namespace store {

namespace {

bool isTaken(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(std::filesystem::symlink_status(pathOf(path), error));
}

}  // namespace

Status createNewFile(const std::string& path) {
  if (!isFileName(path)) return {ErrorCode::cannotOpen, "This is not the name of a file."};
  // By the system itself, because SQLite's layer over it may fail for want of memory when the file is made,
  // and then nobody could tell whose it is.
  if (makeEmptyFile(path.c_str())) return {};
  if (isTaken(path)) return {ErrorCode::fileExists, "There is a file or folder of this name already."};
  return {ErrorCode::cannotOpen, sqlite3_errstr(SQLITE_CANTOPEN)};
}

NewFileRemoval::NewFileRemoval(const std::string& path)
    : path_(pathOf(path)), journal_(pathOf(path + "-journal")) {}

NewFileRemoval::~NewFileRemoval() {
  std::error_code ignored;
  if (!removes_) return;
  std::filesystem::remove(journal_, ignored);
  std::filesystem::remove(path_, ignored);
}

}  // namespace store
