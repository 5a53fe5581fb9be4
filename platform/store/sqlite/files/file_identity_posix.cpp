#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/store/sqlite/files/file_identity.h"

namespace store {

namespace {

// (Opening the file for it would be dear: the closing of any descriptor gives up all locks on the file.)
std::optional<FileIdentity> identityAt(const char* path) {
  struct stat found {};
  if (stat(path, &found) != 0) return {};
  return FileIdentity{static_cast<std::uint64_t>(found.st_dev), static_cast<std::uint64_t>(found.st_ino)};
}

}  // namespace

std::optional<FileIdentity> identityOf(sqlite3_file* file, const char* path) {
  const std::optional<FileIdentity> found = identityAt(path);
  // SQLite compares the file that it has open with the one at its path.
  int moved = 0;
  const int result = file->pMethods->xFileControl(file, SQLITE_FCNTL_HAS_MOVED, &moved);
  if (result != SQLITE_OK || moved != 0) return {};
  return found;
}

FileState stateOf(const FileIdentity& identity, sqlite3_file*, const char* path) {
  errno = 0;
  const std::optional<FileIdentity> found = identityAt(path);
  if (found.has_value()) return *found == identity ? FileState::same : FileState::replaced;
  return errno == ENOENT || errno == ENOTDIR ? FileState::gone : FileState::unknown;
}

bool makeEmptyFile(const char* path) {
  constexpr mode_t kPermissions = 0644;
  const int file = open(path, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kPermissions);
  if (file < 0) return false;
  close(file);
  return true;
}

}  // namespace store
