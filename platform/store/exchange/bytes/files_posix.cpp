#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/store/exchange/bytes/files.h"

namespace store::exchange {

namespace {

/// Gives the file the name `to` unless anything stands there (EEXIST). Not every file system can do it in
/// either of the first two ways.
bool moveToFreeName(const char* from, const char* to) {
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return true;
  if (errno == EEXIST) return false;
  if (link(from, to) == 0) {
    unlink(from);
    return true;
  }
  if (errno == EEXIST) return false;
  // The name is taken by an empty file first, which nobody else has made then.
  const FileHandle own = createToWrite(to);
  if (own == nullptr) return false;
  if (std::rename(from, to) == 0) return true;
  const int reason = errno;
  unlink(to);
  errno = reason;
  return false;
}

/// Takes care that the names in the folder of `path` are on the disk.
bool flushFolderOf(const std::string& path) {
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  const int number = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  // One that may be written to but not read can't be flushed.
  if (number < 0) return true;
  const bool isFlushed = fsync(number) == 0 || errno == EINVAL || errno == EROFS;
  const int reason = errno;
  close(number);
  errno = reason;
  return isFlushed;
}

}  // namespace

FileHandle openToRead(const std::string& path) {
  FileHandle file(std::fopen(path.c_str(), "rbe"));
  struct stat about {};
  if (file != nullptr && fstat(fileno(file.get()), &about) == 0 && S_ISDIR(about.st_mode)) {
    file.reset();
    errno = EISDIR;
  }
  return file;
}

FileHandle createToWrite(const std::string& path) {
  return FileHandle(std::fopen(path.c_str(), "wbxe"));
}

bool flushToDisk(std::FILE* file) {
  if (std::fflush(file) != 0) return false;
  // What is no file can't be flushed and need not.
  return fsync(fileno(file)) == 0 || errno == EINVAL || errno == EROFS;
}

Placing putIntoPlace(const std::string& from, const std::string& to, bool replaces, std::string* reason) {
  const bool isPlaced =
      replaces ? std::rename(from.c_str(), to.c_str()) == 0 : moveToFreeName(from.c_str(), to.c_str());
  if (!isPlaced && errno == EEXIST) return Placing::taken;
  if (isPlaced && flushFolderOf(to)) return Placing::done;
  *reason = std::strerror(errno);
  return Placing::failed;
}

unsigned long processNumber() {
  return static_cast<unsigned long>(getpid());
}

FileHandle openTemporary() {
  return FileHandle(std::tmpfile());
}

}  // namespace store::exchange
