#pragma once

#include <windows.h>

#include <optional>

#include "owners/handles.h"

/// What the start has to do that needs no window: the file association is written, and the data-access
/// components are loaded if they are registered. A thread of its own does it while windows are made; where
/// there is none to be had, it is done at once.
class StartBesideWindows {
 public:
  StartBesideWindows();
  /// Waits until all is done.
  ~StartBesideWindows();
  StartBesideWindows(const StartBesideWindows&) = delete;
  StartBesideWindows& operator=(const StartBesideWindows&) = delete;

  /// Waits until all is done. Whether the components are registered. Throws std::bad_alloc.
  bool areComponentsRegistered();

 private:
  static DWORD WINAPI run(void* start) noexcept;
  void wait() noexcept;

  std::optional<bool> areRegistered_;  // the thread's until it has ended
  UniqueKernelObject thread_;
};
