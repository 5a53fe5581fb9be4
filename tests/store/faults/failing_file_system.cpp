#include "tests/store/faults/failing_file_system.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <sqlite3.h>
#include <string>
#include <string_view>

#include "tests/store/faults/wrapped_file_system.h"

namespace store {

namespace {

using Operation = FailingFileSystem::Operation;

// The reading's helper thread uses files too.
std::atomic<Operation> g_operation{Operation::read};
std::atomic<int> g_left{-1};  // operations until the fault; negative: none
std::atomic<bool> g_forEver{false};
std::atomic<bool> g_failed{false};

bool fails(Operation operation) {
  if (g_operation != operation || g_left < 0) return false;
  if (g_left > 0) {
    --g_left;
    return false;
  }
  g_failed = true;
  if (!g_forEver) g_left = -1;
  return true;
}

std::mutex g_logMutex;
// It takes no memory while SQLite works, which may be refused just then: what nobody has taken for long is
// dropped.
constexpr std::size_t kLogLength = 4096;
std::string g_journalLog;

void logOfJournal(std::string_view operation) {
  const std::lock_guard<std::mutex> lock(g_logMutex);
  if (g_journalLog.size() + operation.size() + 1 > g_journalLog.capacity()) g_journalLog.clear();
  if (operation.size() + 1 > g_journalLog.capacity()) return;
  g_journalLog += operation;
  g_journalLog += ' ';
}

struct Facts {
  bool isJournal = false;
};
using Files = WrappedFileSystem<Facts>;

int closeFile(sqlite3_file* file) {
  if (Files::factsOf(file).isJournal) logOfJournal("close");
  return Files::close(file);
}
int readFile(sqlite3_file* file, void* data, int length, sqlite3_int64 offset) {
  if (fails(Operation::read)) return SQLITE_IOERR_READ;
  return Files::read(file, data, length, offset);
}
int writeFile(sqlite3_file* file, const void* data, int length, sqlite3_int64 offset) {
  if (fails(Operation::fullDisk)) return SQLITE_FULL;
  if (fails(Operation::write)) {
    // Half of it arrives, as when the power goes.
    Files::write(file, data, length / 2, offset);
    return SQLITE_IOERR_WRITE;
  }
  return Files::write(file, data, length, offset);
}
int truncateFile(sqlite3_file* file, sqlite3_int64 length) {
  if (fails(Operation::truncate)) return SQLITE_IOERR_TRUNCATE;
  if (Files::factsOf(file).isJournal) logOfJournal("truncate");
  return Files::truncate(file, length);
}
int syncFile(sqlite3_file* file, int) {
  if (Files::factsOf(file).isJournal) logOfJournal("sync");
  // No power goes here, and a test of hundreds of runs can't wait for the disk.
  return fails(Operation::sync) ? SQLITE_IOERR_FSYNC : SQLITE_OK;
}
int lockFile(sqlite3_file* file, int level) {
  if (fails(Operation::lock)) return SQLITE_IOERR_LOCK;
  return Files::lock(file, level);
}
int lockSharedMemory(sqlite3_file* file, int offset, int count, int flags) {
  if ((flags & SQLITE_SHM_LOCK) != 0 && fails(Operation::lock)) return SQLITE_IOERR_SHMLOCK;
  return Files::lockSharedMemory(file, offset, count, flags);
}

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  Files::begin(file, {.isJournal = (flags & SQLITE_OPEN_MAIN_JOURNAL) != 0});
  if (fails(Operation::open)) return SQLITE_CANTOPEN;
  return Files::open(name, file, flags, outFlags);
}

int deleteFile(sqlite3_vfs*, const char* name, int) {
  if (fails(Operation::remove)) return SQLITE_IOERR_DELETE;
  if (std::string_view(name).ends_with("-journal")) logOfJournal("delete");
  constexpr int kWithoutFlushing = 0;
  return Files::system()->xDelete(Files::system(), name, kWithoutFlushing);
}

}  // namespace

void FailingFileSystem::install() {
  g_journalLog.reserve(kLogLength);
  Files::install("failing", [](sqlite3_vfs* layer, sqlite3_io_methods* methods) {
    methods->xClose = closeFile;
    methods->xRead = readFile;
    methods->xWrite = writeFile;
    methods->xTruncate = truncateFile;
    methods->xSync = syncFile;
    methods->xLock = lockFile;
    methods->xShmLock = lockSharedMemory;
    layer->xOpen = openFile;
    layer->xDelete = deleteFile;
  });
}

void FailingFileSystem::uninstall() {
  Files::uninstall();
}

void FailingFileSystem::fail(Operation operation, int number, bool forEver) {
  g_operation = operation;
  g_forEver = forEver;
  g_failed = false;
  g_left = number;
}

bool FailingFileSystem::heal() {
  g_left = -1;
  return g_failed;
}

std::string FailingFileSystem::takeJournalLog() {
  const std::lock_guard<std::mutex> lock(g_logMutex);
  std::string taken = g_journalLog;
  g_journalLog.clear();
  return taken;
}

}  // namespace store
