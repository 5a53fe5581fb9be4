#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "platform/store/sqlite/files/durable_file.h"

namespace store {

namespace {

/// What can't be flushed need not be.
bool flush(int file) {
  return fsync(file) == 0 || errno == EINVAL || errno == EROFS;
}

bool flushAt(const char* path, int flags) {
  const int file = open(path, flags | O_CLOEXEC);
  if (file < 0) return false;
  const bool isFlushed = flush(file);
  close(file);
  return isFlushed;
}

/// The name of the folder of `path`, in place of it.
bool flushFolderOf(std::string& path) {
  const std::size_t end = path.find_last_of('/');
  if (end == std::string::npos) return flushAt(".", O_RDONLY | O_DIRECTORY);
  path.resize(end == 0 ? 1 : end);
  return flushAt(path.c_str(), O_RDONLY | O_DIRECTORY);
}

struct FolderCloser {
  void operator()(DIR* folder) const { closedir(folder); }
};

}  // namespace

bool renameFile(const std::string& from, const std::string& to, bool replaces) noexcept {
  if (replaces) return std::rename(from.c_str(), to.c_str()) == 0;
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  // Not every file system can do that.
  if (errno != EINVAL && errno != ENOSYS) return false;
  if (access(to.c_str(), F_OK) == 0) return false;
  return std::rename(from.c_str(), to.c_str()) == 0;
}

bool flushFile(const std::string& path) noexcept {
  if (!flushAt(path.c_str(), O_RDONLY)) return false;
  try {
    std::string folder = path;
    return flushFolderOf(folder);
  } catch (...) {
    return false;
  }
}

bool markReadOnly(const std::string& path, bool isReadOnly) noexcept {
  constexpr mode_t kReadable = 0444;
  constexpr mode_t kWritable = 0644;
  return chmod(path.c_str(), isReadOnly ? kReadable : kWritable) == 0;
}

bool removeFile(const std::string& path) noexcept {
  return unlink(path.c_str()) == 0 || errno == ENOENT;
}

std::optional<std::int64_t> freeBytesAt(const std::filesystem::path& folder) noexcept {
  struct statvfs system {};
  if (statvfs(folder.c_str(), &system) != 0) return std::nullopt;
  constexpr std::uint64_t kMost = std::uint64_t{1} << 62;
  return static_cast<std::int64_t>(std::min<std::uint64_t>(system.f_bavail * system.f_frsize, kMost));
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, FolderCloser> opened(opendir(folder.c_str()));
  if (opened == nullptr) return names;
  while (const dirent* entry = readdir(opened.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  return names;
}

}  // namespace store
