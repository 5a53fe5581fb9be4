#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace store {

/// A layer over the system's files, as SQLite reaches them. Behind each file lies the system's own, and with
/// it the test keeps `Facts` about it, which a failed opening leaves behind too. What a test does not do
/// itself goes on to the system. All is static, because SQLite's functions know no object: each type of
/// Facts has one layer.
template <typename Facts>
class WrappedFileSystem {
 public:
  static Facts& factsOf(sqlite3_file* file) { return reinterpret_cast<File*>(file)->facts; }
  static sqlite3_vfs* system() { return system_; }

  /// Puts the layer between SQLite and the system for every database that is opened from now on. `change` is
  /// given what goes on to the system, to put the test's own functions into it.
  template <typename Change>
  static void install(const char* name, Change change) {
    system_ = sqlite3_vfs_find(nullptr);
    ASSERT_NE(nullptr, system_);
    methods_ = forwarding();
    layer_ = *system_;
    layer_.pNext = nullptr;
    layer_.zName = name;
    layer_.szOsFile = static_cast<int>(sizeof(File)) + system_->szOsFile;
    change(&layer_, &methods_);
    ASSERT_EQ(SQLITE_OK, sqlite3_vfs_register(&layer_, 1));
  }
  static void uninstall() {
    sqlite3_vfs_unregister(&layer_);
    sqlite3_vfs_register(system_, 1);
  }

  /// To be called where a file is opened, before anything that can fail.
  static void begin(sqlite3_file* file, const Facts& facts) {
    file->pMethods = nullptr;
    factsOf(file) = facts;
  }
  static int open(const char* name, sqlite3_file* file, int flags, int* outFlags) {
    const int result = system_->xOpen(system_, name, own(file), flags, outFlags);
    if (own(file)->pMethods != nullptr) file->pMethods = &methods_;
    return result;
  }

  // What the system does with its own file.
  static int close(sqlite3_file* file) { return ofSystem(file)->xClose(own(file)); }
  static int read(sqlite3_file* file, void* data, int length, sqlite3_int64 offset) {
    return ofSystem(file)->xRead(own(file), data, length, offset);
  }
  static int write(sqlite3_file* file, const void* data, int length, sqlite3_int64 offset) {
    return ofSystem(file)->xWrite(own(file), data, length, offset);
  }
  static int truncate(sqlite3_file* file, sqlite3_int64 length) {
    return ofSystem(file)->xTruncate(own(file), length);
  }
  static int sync(sqlite3_file* file, int flags) { return ofSystem(file)->xSync(own(file), flags); }
  static int size(sqlite3_file* file, sqlite3_int64* length) {
    return ofSystem(file)->xFileSize(own(file), length);
  }
  static int lock(sqlite3_file* file, int level) { return ofSystem(file)->xLock(own(file), level); }
  static int lockSharedMemory(sqlite3_file* file, int offset, int count, int flags) {
    return ofSystem(file)->xShmLock(own(file), offset, count, flags);
  }

 private:
  struct File {
    sqlite3_file base;
    Facts facts;
  };

  static sqlite3_file* own(sqlite3_file* file) {
    return reinterpret_cast<sqlite3_file*>(reinterpret_cast<File*>(file) + 1);
  }
  static const sqlite3_io_methods* ofSystem(sqlite3_file* file) { return own(file)->pMethods; }

  static int unlock(sqlite3_file* file, int level) { return ofSystem(file)->xUnlock(own(file), level); }
  static int checkReservedLock(sqlite3_file* file, int* reserved) {
    return ofSystem(file)->xCheckReservedLock(own(file), reserved);
  }
  static int control(sqlite3_file* file, int code, void* argument) {
    return ofSystem(file)->xFileControl(own(file), code, argument);
  }
  static int sectorSize(sqlite3_file* file) { return ofSystem(file)->xSectorSize(own(file)); }
  static int characteristics(sqlite3_file* file) { return ofSystem(file)->xDeviceCharacteristics(own(file)); }
  static int mapSharedMemory(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
    return ofSystem(file)->xShmMap(own(file), page, size, extend, memory);
  }
  static void sharedMemoryBarrier(sqlite3_file* file) { ofSystem(file)->xShmBarrier(own(file)); }
  static int unmapSharedMemory(sqlite3_file* file, int remove) {
    return ofSystem(file)->xShmUnmap(own(file), remove);
  }

  static sqlite3_io_methods forwarding() {
    // Version 2 has no memory mapping, so that every reading comes through here.
    sqlite3_io_methods all{};
    all.iVersion = 2;
    all.xClose = close;
    all.xRead = read;
    all.xWrite = write;
    all.xTruncate = truncate;
    all.xSync = sync;
    all.xFileSize = size;
    all.xLock = lock;
    all.xUnlock = unlock;
    all.xCheckReservedLock = checkReservedLock;
    all.xFileControl = control;
    all.xSectorSize = sectorSize;
    all.xDeviceCharacteristics = characteristics;
    all.xShmMap = mapSharedMemory;
    all.xShmLock = lockSharedMemory;
    all.xShmBarrier = sharedMemoryBarrier;
    all.xShmUnmap = unmapSharedMemory;
    return all;
  }

  static inline sqlite3_vfs* system_ = nullptr;
  static inline sqlite3_vfs layer_{};
  static inline sqlite3_io_methods methods_{};
};

}  // namespace store
