#pragma once

#include <windows.h>

#include <memory>
#include <string>

/// The exclusive lock that another program takes on a database file while it commits: as long as this
/// lives, nobody else can read the file or write to it. It lies where the file format says, on bytes that
/// hold no data.
class ExclusiveLock {
 public:
  explicit ExclusiveLock(const std::wstring& path)
      : file_(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                          nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {
    isHeld_ = file_ != INVALID_HANDLE_VALUE && LockFile(file_, kFirstByte, 0, kByteCount, 0) != 0;
  }
  ~ExclusiveLock() {
    if (isHeld_) UnlockFile(file_, kFirstByte, 0, kByteCount, 0);
    if (file_ != INVALID_HANDLE_VALUE) CloseHandle(file_);
  }
  ExclusiveLock(const ExclusiveLock&) = delete;
  ExclusiveLock& operator=(const ExclusiveLock&) = delete;

  /// False while somebody else holds a lock: it is to be tried again.
  bool isHeld() const { return isHeld_; }

 private:
  static constexpr DWORD kFirstByte = 0x40000000;  // pending, reserved, and 510 bytes of shared locks
  static constexpr DWORD kByteCount = 512;

  HANDLE file_;
  bool isHeld_ = false;
};

/// Waits until nobody else holds a lock, for at most 5 s, and takes it.
inline std::unique_ptr<ExclusiveLock> lockExclusively(const std::wstring& path) {
  const ULONGLONG end = GetTickCount64() + 5000;
  auto lock = std::make_unique<ExclusiveLock>(path);
  while (!lock->isHeld() && GetTickCount64() < end) {
    SwitchToThread();
    lock = std::make_unique<ExclusiveLock>(path);
  }
  return lock;
}
