#include "platform/store/sqlite/files/file_system.h"

#include <mutex>
#include <new>
#include <string_view>

#include "platform/store/sqlite/files/read_ahead.h"
#include "platform/store/sqlite/files/temporary_bound.h"

namespace store {

namespace {

constexpr char kName[] = "quivane";

/// A file as SQLite sees it. The system's own, as SQLite's layer knows it, is allocated for it.
struct File {
  sqlite3_file base;
  sqlite3_file* system;

  // Of databases only. The names are SQLite's, which keeps them as long as the file is open.
  const char* name;
  const char* journalName;
  const char* writeAheadName;
  std::optional<FileIdentity> identity;
  File* next;            // in the list of open databases
  ReadAhead* readAhead;  // null when there was no memory for it

  // Of the files that SQLite makes for itself while it sorts, and for temporary tables.
  bool isTemporary;
  sqlite3_int64 length;
};

// SQLite asks for a file beside a database by the very name that it gave with the database.
std::mutex g_databasesMutex;
File* g_databases = nullptr;

File* fileOf(sqlite3_file* file) {
  return reinterpret_cast<File*>(file);
}
sqlite3_file* systemOf(sqlite3_file* file) {
  return fileOf(file)->system;
}
const sqlite3_io_methods* methodsOf(sqlite3_file* file) {
  return systemOf(file)->pMethods;
}
sqlite3_vfs* systemFiles() {
  return sqlite3_vfs_find(nullptr);
}

/// What is read from now on comes from the file.
void forgetReadAhead(sqlite3_file* file) {
  if (fileOf(file)->readAhead != nullptr) fileOf(file)->readAhead->forget();
}

FileState stateOf(const File& database) {
  if (!database.identity.has_value()) return FileState::same;
  return stateOf(*database.identity, database.system, database.name);
}

bool hasLostItsName(const File& database) {
  const FileState state = stateOf(database);
  return state == FileState::gone || state == FileState::replaced;
}

/// Whether `name` is that of a file beside an open database which doesn't stand there any more.
bool belongsToAnother(const char* name) {
  File* database = nullptr;
  {
    const std::lock_guard<std::mutex> lock(g_databasesMutex);
    database = g_databases;
    while (database != nullptr && database->journalName != name && database->writeAheadName != name)
      database = database->next;
  }
  return database != nullptr && hasLostItsName(*database);
}

int closeFile(sqlite3_file* file) {
  File* closed = fileOf(file);
  {
    const std::lock_guard<std::mutex> lock(g_databasesMutex);
    File** link = &g_databases;
    while (*link != nullptr && *link != closed) link = &(*link)->next;
    if (*link != nullptr) *link = closed->next;
  }
  const int result = methodsOf(file)->xClose(closed->system);
  sqlite3_free(closed->system);
  delete closed->readAhead;
  file->pMethods = nullptr;
  return result;
}
int readFile(sqlite3_file* file, void* data, int length, sqlite3_int64 offset) {
  ReadAhead* readAhead = fileOf(file)->readAhead;
  if (readAhead != nullptr) return readAhead->read(systemOf(file), data, length, offset);
  return methodsOf(file)->xRead(systemOf(file), data, length, offset);
}
/// A temporary file is about to be as long as that.
bool mayGrow(File* file, sqlite3_int64 length) {
  if (!file->isTemporary || length <= file->length) return true;
  if (!TemporaryBound::allowsGrowth(length - file->length)) return false;
  file->length = length;
  return true;
}

int writeFile(sqlite3_file* file, const void* data, int length, sqlite3_int64 offset) {
  if (!mayGrow(fileOf(file), offset + length)) return SQLITE_FULL;
  forgetReadAhead(file);
  return methodsOf(file)->xWrite(systemOf(file), data, length, offset);
}
int truncateFile(sqlite3_file* file, sqlite3_int64 length) {
  forgetReadAhead(file);
  return methodsOf(file)->xTruncate(systemOf(file), length);
}
int syncFile(sqlite3_file* file, int flags) {
  return methodsOf(file)->xSync(systemOf(file), flags);
}
int fileSize(sqlite3_file* file, sqlite3_int64* length) {
  return methodsOf(file)->xFileSize(systemOf(file), length);
}
int lockFile(sqlite3_file* file, int level) {
  forgetReadAhead(file);
  return methodsOf(file)->xLock(systemOf(file), level);
}
int unlockFile(sqlite3_file* file, int level) {
  forgetReadAhead(file);
  return methodsOf(file)->xUnlock(systemOf(file), level);
}
int checkReservedLock(sqlite3_file* file, int* reserved) {
  return methodsOf(file)->xCheckReservedLock(systemOf(file), reserved);
}
int controlFile(sqlite3_file* file, int code, void* argument) {
  const File& controlled = *fileOf(file);
  if (code == SQLITE_FCNTL_HAS_MOVED && controlled.identity.has_value()) {
    *static_cast<int*>(argument) = hasLostItsName(controlled) ? 1 : 0;
    return SQLITE_OK;
  }
  return methodsOf(file)->xFileControl(systemOf(file), code, argument);
}
int sectorSize(sqlite3_file* file) {
  return methodsOf(file)->xSectorSize(systemOf(file));
}
int characteristics(sqlite3_file* file) {
  return methodsOf(file)->xDeviceCharacteristics(systemOf(file)) & ~SQLITE_IOCAP_UNDELETABLE_WHEN_OPEN;
}
int mapSharedMemory(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
  // The first page makes or opens the file, by name.
  if (page == 0 && hasLostItsName(*fileOf(file))) return SQLITE_READONLY_DBMOVED;
  return methodsOf(file)->xShmMap(systemOf(file), page, size, extend, memory);
}
int lockSharedMemory(sqlite3_file* file, int offset, int count, int flags) {
  // In the write-ahead mode a transaction begins and ends so.
  forgetReadAhead(file);
  return methodsOf(file)->xShmLock(systemOf(file), offset, count, flags);
}
void sharedMemoryBarrier(sqlite3_file* file) {
  methodsOf(file)->xShmBarrier(systemOf(file));
}
int unmapSharedMemory(sqlite3_file* file, int remove) {
  const int isOurs = remove != 0 && !hasLostItsName(*fileOf(file)) ? 1 : 0;
  return methodsOf(file)->xShmUnmap(systemOf(file), isOurs);
}

// Version 2 knows shared memory, and no reading through a mapping of the file: another program that cuts the
// file short would end this one.
constexpr sqlite3_io_methods kMethods = {2,
                                         closeFile,
                                         readFile,
                                         writeFile,
                                         truncateFile,
                                         syncFile,
                                         fileSize,
                                         lockFile,
                                         unlockFile,
                                         checkReservedLock,
                                         controlFile,
                                         sectorSize,
                                         characteristics,
                                         mapSharedMemory,
                                         lockSharedMemory,
                                         sharedMemoryBarrier,
                                         unmapSharedMemory,
                                         nullptr,
                                         nullptr};

void rememberDatabase(File* file, const char* name) {
  file->name = name;
  file->journalName = sqlite3_filename_journal(name);
  file->writeAheadName = sqlite3_filename_wal(name);
  file->identity = identityOf(file->system, name);
  file->readAhead = new (std::nothrow) ReadAhead;
  const std::lock_guard<std::mutex> lock(g_databasesMutex);
  file->next = g_databases;
  g_databases = file;
}

/// Looked at after the opening: before it the database could still have been replaced in between.
bool isBesideAnother(const char* name) {
  return hasLostItsName(*fileOf(sqlite3_database_file_object(name)));
}

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  file->pMethods = nullptr;
  sqlite3_vfs* system = systemFiles();
  void* memory = sqlite3_malloc(system->szOsFile);
  if (memory == nullptr) return SQLITE_NOMEM;
  File* opened = new (file) File{};
  opened->system = static_cast<sqlite3_file*>(memory);
  opened->system->pMethods = nullptr;
  int result = system->xOpen(system, name, opened->system, flags, outFlags);
  if (opened->system->pMethods == nullptr) {
    sqlite3_free(memory);
    return result;
  }
  file->pMethods = &kMethods;
  if (result != SQLITE_OK) return result;
  opened->isTemporary =
      (flags & (SQLITE_OPEN_TEMP_DB | SQLITE_OPEN_TRANSIENT_DB | SQLITE_OPEN_TEMP_JOURNAL)) != 0;
  if ((flags & SQLITE_OPEN_MAIN_DB) != 0) rememberDatabase(opened, name);
  if ((flags & (SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_WAL)) != 0 && isBesideAnother(name)) {
    closeFile(file);
    result = SQLITE_READONLY_DBMOVED;
  }
  return result;
}

int deleteFile(sqlite3_vfs*, const char* name, int syncFolder) {
  if (belongsToAnother(name)) return SQLITE_OK;
  sqlite3_vfs* system = systemFiles();
  return system->xDelete(system, name, syncFolder);
}

int accessFile(sqlite3_vfs*, const char* name, int flags, int* result) {
  sqlite3_vfs* system = systemFiles();
  const int outcome = system->xAccess(system, name, flags, result);
  // To a database that has lost its name what is beside it is not there.
  if (outcome == SQLITE_OK && *result != 0 && belongsToAnother(name)) *result = 0;
  return outcome;
}

bool registerFileSystem() {
  static sqlite3_vfs fileSystem = {};
  if (sqlite3_initialize() != SQLITE_OK) return false;
  // What has nothing to do with files is the system's.
  fileSystem = *systemFiles();
  fileSystem.pNext = nullptr;
  fileSystem.zName = kName;
  fileSystem.szOsFile = sizeof(File);
  fileSystem.xOpen = openFile;
  fileSystem.xDelete = deleteFile;
  fileSystem.xAccess = accessFile;
  return sqlite3_vfs_register(&fileSystem, 0) == SQLITE_OK;
}

/// Null when it is none of this file system.
const File* mainFileOf(sqlite3* connection) {
  sqlite3_file* file = nullptr;
  const int result = sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  return result == SQLITE_OK && file != nullptr && file->pMethods == &kMethods ? fileOf(file) : nullptr;
}

}  // namespace

const char* fileSystemName() {
  static std::mutex mutex;
  const std::lock_guard<std::mutex> lock(mutex);
  if (sqlite3_vfs_find(kName) == nullptr && !registerFileSystem()) return nullptr;
  return kName;
}

FileState fileStateOf(sqlite3* connection) {
  const File* const file = mainFileOf(connection);
  return file == nullptr ? FileState::unknown : stateOf(*file);
}

bool haveSameFile(sqlite3* one, sqlite3* other) {
  const File* const first = mainFileOf(one);
  const File* const second = mainFileOf(other);
  return first != nullptr && second != nullptr && first->identity.has_value() &&
         first->identity == second->identity;
}

}  // namespace store
