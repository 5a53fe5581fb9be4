#include "tests/store/copies/disk_log_linux.h"

#include <array>
#include <mutex>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

namespace store {

namespace {

std::mutex mutex;
std::vector<std::string>* log = nullptr;

void note(const std::string& entry) {
  const std::lock_guard<std::mutex> lock(mutex);
  if (log != nullptr && (log->empty() || log->back() != entry)) log->push_back(entry);
}

bool isOn() {
  const std::lock_guard<std::mutex> lock(mutex);
  return log != nullptr;
}

std::string pathOf(int file) {
  std::array<char, 4096> path{};
  const std::string link = "/proc/self/fd/" + std::to_string(file);
  const ssize_t length = readlink(link.c_str(), path.data(), path.size());
  if (length <= 0) return {};
  struct stat status {};
  const bool isFolder = fstat(file, &status) == 0 && S_ISDIR(status.st_mode);
  return std::string(path.data(), static_cast<std::size_t>(length)) + (isFolder ? "/" : "");
}

void noteFile(const char* what, int file) {
  if (isOn()) note(std::string(what) + " " + pathOf(file));
}

}  // namespace

DiskLog::DiskLog() {
  const std::lock_guard<std::mutex> lock(mutex);
  log = new std::vector<std::string>;
}

DiskLog::~DiskLog() {
  const std::lock_guard<std::mutex> lock(mutex);
  delete log;
  log = nullptr;
}

std::vector<std::string> DiskLog::entries() const {
  const std::lock_guard<std::mutex> lock(mutex);
  return *log;
}

}  // namespace store

// In the place of the C library's.
extern "C" {

int fsync(int file) {
  store::noteFile("flush", file);
  return static_cast<int>(syscall(SYS_fsync, file));
}

int fdatasync(int file) {
  store::noteFile("flush", file);
  return static_cast<int>(syscall(SYS_fdatasync, file));
}

ssize_t write(int file, const void* bytes, size_t count) {
  store::noteFile("write", file);
  return syscall(SYS_write, file, bytes, count);
}

ssize_t pwrite(int file, const void* bytes, size_t count, off_t place) {
  store::noteFile("write", file);
  return syscall(SYS_pwrite64, file, bytes, count, place);
}

ssize_t pwrite64(int file, const void* bytes, size_t count, off64_t place) {
  store::noteFile("write", file);
  return syscall(SYS_pwrite64, file, bytes, count, place);
}

int ftruncate(int file, off_t length) noexcept {
  store::noteFile("cut", file);
  return static_cast<int>(syscall(SYS_ftruncate, file, length));
}

int ftruncate64(int file, off64_t length) noexcept {
  store::noteFile("cut", file);
  return static_cast<int>(syscall(SYS_ftruncate, file, length));
}

int unlink(const char* path) noexcept {
  if (store::isOn()) store::note(std::string("remove ") + path);
  return static_cast<int>(syscall(SYS_unlink, path));
}
}
