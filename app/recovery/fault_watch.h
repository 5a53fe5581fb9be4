#pragma once

#include <string>

#include "app/recovery/recovery_files.h"

/// While it lives, an end of the program by a fault (an access to memory that is none, an exception that
/// nobody catches, abort()) on any of its threads leaves two files: what keepTyped() was given last is added
/// to `files.typed`, and `files.fault` says where it happened. The program ends as it would without.
///
/// What happens after the fault relies on as little as possible: on no window, no lock and no memory of the
/// program's but the text that was kept. One at a time.
class FaultWatch {
 public:
  explicit FaultWatch(const RecoveryFiles& files) noexcept;
  ~FaultWatch();
  FaultWatch(const FaultWatch&) = delete;
  FaultWatch& operator=(const FaultWatch&) = delete;

  /// What would be lost now; the empty text when nothing would. To be called on one thread.
  static void keepTyped(std::wstring text) noexcept;

  /// The path of `files.typed`; empty without a watch.
  static const wchar_t* typedFile() noexcept;
};
