#include "tests/store/faults/losing_file_system.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <random>
#include <sqlite3.h>
#include <string>
#include <utility>
#include <vector>

#include "tests/store/faults/wrapped_file_system.h"
#include "tests/store/store_fixture.h"

namespace store {

namespace {

constexpr std::size_t kSector = 512;

/// One operation on a file that was not flushed.
struct Pending {
  std::size_t offset = 0;
  std::string bytes;
  bool cutsOff = false;  // the file, at the offset
};

struct DiskFile {
  std::string flushed;
  std::vector<Pending> pending;
  bool isThere = true;     // on the disk, once it was flushed
  bool isDeleted = false;  // and the deletion not flushed
};

// The reading's helper thread uses files too.
std::mutex g_mutex;
std::map<std::string, DiskFile> g_disk;
int g_cutAt = -1;
int g_operations = 0;
bool g_isCut = false;

struct Facts {
  DiskFile* disk = nullptr;  // null for temporary files
};
using Files = WrappedFileSystem<Facts>;

bool isCut() {
  const std::lock_guard<std::mutex> lock(g_mutex);
  return g_isCut;
}

/// Before an operation that changes the disk: false when there is no power for it. Inside the mutex.
bool countOperation() {
  if (!g_isCut && g_operations++ == g_cutAt) g_isCut = true;
  return !g_isCut;
}

void apply(std::string* content, const Pending& operation) {
  if (operation.cutsOff) {
    content->resize(operation.offset);
    return;
  }
  const std::size_t end = operation.offset + operation.bytes.size();
  if (content->size() < end) content->resize(end);
  content->replace(operation.offset, operation.bytes.size(), operation.bytes);
}

/// Of an operation that was under way a part arrives: a write sector by sector.
void applyPart(std::string* content, const Pending& operation, std::mt19937* random) {
  switch ((*random)() % 3) {
    case 0:
      return;
    case 1:
      apply(content, operation);
      return;
    default:
      break;
  }
  if (operation.cutsOff) return;
  for (std::size_t begin = 0; begin < operation.bytes.size(); begin += kSector) {
    if ((*random)() % 2 == 0) continue;
    apply(content, {operation.offset + begin, operation.bytes.substr(begin, kSector)});
  }
}

int readFile(sqlite3_file* file, void* data, int length, sqlite3_int64 offset) {
  if (isCut()) return SQLITE_IOERR_READ;
  return Files::read(file, data, length, offset);
}
int writeFile(sqlite3_file* file, const void* data, int length, sqlite3_int64 offset) {
  if (Files::factsOf(file).disk != nullptr) {
    const std::lock_guard<std::mutex> lock(g_mutex);
    // The write that the power goes at may arrive in part, too.
    if (!g_isCut) {
      Files::factsOf(file).disk->pending.push_back(
          {static_cast<std::size_t>(offset),
           std::string(static_cast<const char*>(data), static_cast<std::size_t>(length))});
    }
    if (!countOperation()) return SQLITE_IOERR_WRITE;
  }
  return Files::write(file, data, length, offset);
}
int truncateFile(sqlite3_file* file, sqlite3_int64 length) {
  if (Files::factsOf(file).disk != nullptr) {
    const std::lock_guard<std::mutex> lock(g_mutex);
    if (!g_isCut) Files::factsOf(file).disk->pending.push_back({static_cast<std::size_t>(length), {}, true});
    if (!countOperation()) return SQLITE_IOERR_TRUNCATE;
  }
  return Files::truncate(file, length);
}
int syncFile(sqlite3_file* file, int) {
  DiskFile* disk = Files::factsOf(file).disk;
  if (disk == nullptr) return SQLITE_OK;
  const std::lock_guard<std::mutex> lock(g_mutex);
  if (!countOperation()) return SQLITE_IOERR_FSYNC;
  for (const Pending& operation : disk->pending) apply(&disk->flushed, operation);
  disk->pending.clear();
  disk->isThere = true;
  return SQLITE_OK;
}
int fileSize(sqlite3_file* file, sqlite3_int64* length) {
  if (isCut()) return SQLITE_IOERR_FSTAT;
  return Files::size(file, length);
}

/// What the disk knows of a file that is opened.
DiskFile* diskFile(const char* name) {
  const auto found = g_disk.find(name);
  if (found != g_disk.end()) {
    DiskFile& known = found->second;
    // Made anew after its deletion, which is then on the disk with it or not at all.
    if (known.isDeleted) known.pending.insert(known.pending.begin(), {0, {}, true});
    known.isDeleted = false;
    return &known;
  }
  DiskFile& made = g_disk[name];
  made.isThere = std::filesystem::exists(name);
  if (made.isThere) made.flushed = bytesOf(name);
  return &made;
}

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  constexpr int kKept = SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_WAL;
  Files::begin(file, {});
  if (isCut()) return SQLITE_CANTOPEN;
  if (name != nullptr && (flags & kKept) != 0) {
    const std::lock_guard<std::mutex> lock(g_mutex);
    Files::factsOf(file).disk = diskFile(name);
  }
  return Files::open(name, file, flags, outFlags);
}

int deleteFile(sqlite3_vfs*, const char* name, int syncFolder) {
  {
    const std::lock_guard<std::mutex> lock(g_mutex);
    if (!countOperation()) return SQLITE_IOERR_DELETE;
    const auto found = g_disk.find(name);
    if (found != g_disk.end() && syncFolder != 0) {
      found->second = {};
      found->second.isThere = false;
    } else if (found != g_disk.end()) {
      found->second.isDeleted = true;
    }
  }
  return Files::system()->xDelete(Files::system(), name, syncFolder);
}

int accessFile(sqlite3_vfs*, const char* name, int flags, int* result) {
  if (isCut()) return SQLITE_IOERR_ACCESS;
  return Files::system()->xAccess(Files::system(), name, flags, result);
}

}  // namespace

void LosingFileSystem::install() {
  Files::install("losing", [](sqlite3_vfs* layer, sqlite3_io_methods* methods) {
    methods->xRead = readFile;
    methods->xWrite = writeFile;
    methods->xTruncate = truncateFile;
    methods->xSync = syncFile;
    methods->xFileSize = fileSize;
    layer->xOpen = openFile;
    layer->xDelete = deleteFile;
    layer->xAccess = accessFile;
  });
}

void LosingFileSystem::uninstall() {
  Files::uninstall();
}

void LosingFileSystem::begin(int number) {
  const std::lock_guard<std::mutex> lock(g_mutex);
  g_disk.clear();
  g_cutAt = number;
  g_operations = 0;
  g_isCut = false;
}

int LosingFileSystem::operations() {
  const std::lock_guard<std::mutex> lock(g_mutex);
  return g_operations;
}

bool LosingFileSystem::restart(unsigned seed) {
  const std::lock_guard<std::mutex> lock(g_mutex);
  if (!g_isCut) return false;
  std::mt19937 random(seed);
  for (auto& [name, disk] : g_disk) {
    bool isThere = disk.isThere || random() % 2 == 0;
    if (disk.isDeleted && random() % 2 == 0) isThere = false;
    for (const Pending& operation : disk.pending) applyPart(&disk.flushed, operation, &random);
    if (isThere) {
      writeBytes(name, disk.flushed);
    } else {
      std::filesystem::remove(name);
    }
    // The index of a write-ahead file is memory, and gone.
    std::filesystem::remove(name + "-shm");
  }
  g_disk.clear();
  g_cutAt = -1;
  g_isCut = false;
  return true;
}

}  // namespace store
