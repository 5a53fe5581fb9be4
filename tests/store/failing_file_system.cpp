#include "tests/store/failing_file_system.h"

#include <atomic>
#include <cstdint>
#include <gtest/gtest.h>
#include <mutex>
#include <sqlite3.h>
#include <string>
#include <string_view>

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

sqlite3_vfs* g_system = nullptr;
sqlite3_vfs g_failing;
sqlite3_io_methods g_methods;

/// The system's own file lies behind it.
struct File {
  sqlite3_file base;
  bool isJournal;
};

bool isJournal(sqlite3_file* file) {
  return reinterpret_cast<File*>(file)->isJournal;
}

sqlite3_file* systemFile(sqlite3_file* file) {
  return reinterpret_cast<sqlite3_file*>(reinterpret_cast<File*>(file) + 1);
}
const sqlite3_io_methods* systemMethods(sqlite3_file* file) {
  return systemFile(file)->pMethods;
}

int closeFile(sqlite3_file* file) {
  if (isJournal(file)) logOfJournal("close");
  return systemMethods(file)->xClose(systemFile(file));
}
int readFile(sqlite3_file* file, void* data, int length, sqlite3_int64 offset) {
  if (fails(Operation::read)) return SQLITE_IOERR_READ;
  return systemMethods(file)->xRead(systemFile(file), data, length, offset);
}
int writeFile(sqlite3_file* file, const void* data, int length, sqlite3_int64 offset) {
  if (fails(Operation::fullDisk)) return SQLITE_FULL;
  if (fails(Operation::write)) {
    // Half of it arrives, as when the power goes.
    systemMethods(file)->xWrite(systemFile(file), data, length / 2, offset);
    return SQLITE_IOERR_WRITE;
  }
  return systemMethods(file)->xWrite(systemFile(file), data, length, offset);
}
int truncateFile(sqlite3_file* file, sqlite3_int64 length) {
  if (fails(Operation::truncate)) return SQLITE_IOERR_TRUNCATE;
  if (isJournal(file)) logOfJournal("truncate");
  return systemMethods(file)->xTruncate(systemFile(file), length);
}
int syncFile(sqlite3_file* file, int) {
  if (isJournal(file)) logOfJournal("sync");
  // No power goes here, and a test of hundreds of runs can't wait for the disk.
  return fails(Operation::sync) ? SQLITE_IOERR_FSYNC : SQLITE_OK;
}
int fileSize(sqlite3_file* file, sqlite3_int64* length) {
  return systemMethods(file)->xFileSize(systemFile(file), length);
}
int lockFile(sqlite3_file* file, int level) {
  if (fails(Operation::lock)) return SQLITE_IOERR_LOCK;
  return systemMethods(file)->xLock(systemFile(file), level);
}
int unlockFile(sqlite3_file* file, int level) {
  return systemMethods(file)->xUnlock(systemFile(file), level);
}
int checkReservedLock(sqlite3_file* file, int* reserved) {
  return systemMethods(file)->xCheckReservedLock(systemFile(file), reserved);
}
int controlFile(sqlite3_file* file, int code, void* argument) {
  return systemMethods(file)->xFileControl(systemFile(file), code, argument);
}
int sectorSize(sqlite3_file* file) {
  return systemMethods(file)->xSectorSize(systemFile(file));
}
int characteristics(sqlite3_file* file) {
  return systemMethods(file)->xDeviceCharacteristics(systemFile(file));
}
int mapSharedMemory(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
  return systemMethods(file)->xShmMap(systemFile(file), page, size, extend, memory);
}
int lockSharedMemory(sqlite3_file* file, int offset, int count, int flags) {
  if ((flags & SQLITE_SHM_LOCK) != 0 && fails(Operation::lock)) return SQLITE_IOERR_SHMLOCK;
  return systemMethods(file)->xShmLock(systemFile(file), offset, count, flags);
}
void sharedMemoryBarrier(sqlite3_file* file) {
  systemMethods(file)->xShmBarrier(systemFile(file));
}
int unmapSharedMemory(sqlite3_file* file, int remove) {
  return systemMethods(file)->xShmUnmap(systemFile(file), remove);
}

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  file->pMethods = nullptr;
  reinterpret_cast<File*>(file)->isJournal = (flags & SQLITE_OPEN_MAIN_JOURNAL) != 0;
  if (fails(Operation::open)) return SQLITE_CANTOPEN;
  const int result = g_system->xOpen(g_system, name, systemFile(file), flags, outFlags);
  if (systemFile(file)->pMethods != nullptr) file->pMethods = &g_methods;
  return result;
}

int deleteFile(sqlite3_vfs*, const char* name, int) {
  if (fails(Operation::remove)) return SQLITE_IOERR_DELETE;
  if (std::string_view(name).ends_with("-journal")) logOfJournal("delete");
  constexpr int kWithoutFlushing = 0;
  return g_system->xDelete(g_system, name, kWithoutFlushing);
}

}  // namespace

void FailingFileSystem::install() {
  g_journalLog.reserve(kLogLength);
  g_system = sqlite3_vfs_find(nullptr);
  ASSERT_NE(nullptr, g_system);
  // Version 2 has no memory mapping, so that every reading comes through here.
  g_methods = {};
  g_methods.iVersion = 2;
  g_methods.xClose = closeFile;
  g_methods.xRead = readFile;
  g_methods.xWrite = writeFile;
  g_methods.xTruncate = truncateFile;
  g_methods.xSync = syncFile;
  g_methods.xFileSize = fileSize;
  g_methods.xLock = lockFile;
  g_methods.xUnlock = unlockFile;
  g_methods.xCheckReservedLock = checkReservedLock;
  g_methods.xFileControl = controlFile;
  g_methods.xSectorSize = sectorSize;
  g_methods.xDeviceCharacteristics = characteristics;
  g_methods.xShmMap = mapSharedMemory;
  g_methods.xShmLock = lockSharedMemory;
  g_methods.xShmBarrier = sharedMemoryBarrier;
  g_methods.xShmUnmap = unmapSharedMemory;
  g_failing = *g_system;
  g_failing.pNext = nullptr;
  g_failing.zName = "failing";
  g_failing.szOsFile = static_cast<int>(sizeof(File)) + g_system->szOsFile;
  g_failing.xOpen = openFile;
  g_failing.xDelete = deleteFile;
  ASSERT_EQ(SQLITE_OK, sqlite3_vfs_register(&g_failing, 1));
}

void FailingFileSystem::uninstall() {
  sqlite3_vfs_unregister(&g_failing);
  sqlite3_vfs_register(g_system, 1);
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
