#pragma once

#include <windows.h>

#include <string>

namespace automationtest {

/// Another program that holds a database exclusively: this test program, started a second time, as long
/// as the object lives.
class LockHolder {
 public:
  /// Returns when the lock is held, or when the program has failed to get it.
  explicit LockHolder(const std::wstring& path);
  /// Gives the lock back and waits for the program's end.
  ~LockHolder();
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;

  bool holds() const { return holds_; }

 private:
  HANDLE held_ = nullptr;
  HANDLE release_ = nullptr;
  HANDLE process_ = nullptr;
  bool holds_ = false;
};

/// Whether this is the second process, which leaves the registry to the first.
bool isLockHolder();

/// Runs a program and returns its standard output; `*exitCode` is its own. Fails the running test when
/// it can't be started.
std::string outputOf(std::wstring commandLine, const std::wstring& folder, DWORD* exitCode);

}  // namespace automationtest
