#pragma once

#include <chrono>
#include <sqlite3.h>
#include <utility>

#include "platform/store/rows/busy.h"

namespace store {

/// The patience of a connection with the locks of other programs: what waits, waits together no longer
/// than the given time from the first wait until renew(). SQLite's own timeout begins anew with each
/// lock, of which a transaction takes several.
class LockWait {
 public:
  /// Takes the place of the timeout of `connection`, which outlives this object and waits no longer after it.
  LockWait(sqlite3* connection, std::chrono::milliseconds most);
  ~LockWait();
  LockWait(const LockWait&) = delete;
  LockWait& operator=(const LockWait&) = delete;

  /// Whom to ask, some twenty times a second and more at first, whether to give up what waits.
  void ask(BusyQuestion question) { question_ = std::move(question); }

  /// Gives the whole time again.
  void renew() { hasWaited_ = false; }

  /// Does not wait at all, for a scope.
  class Never {
   public:
    explicit Never(LockWait& wait) : wait_(wait) { wait_.isAllowed_ = false; }
    ~Never() { wait_.isAllowed_ = true; }
    Never(const Never&) = delete;
    Never& operator=(const Never&) = delete;

   private:
    LockWait& wait_;
  };

 private:
  static int onBusy(void* self, int count);
  bool waitOnce(int count);

  sqlite3* connection_;
  BusyQuestion question_;
  std::chrono::milliseconds most_;
  std::chrono::steady_clock::time_point end_;  // once something has waited
  bool hasWaited_ = false;
  bool isAllowed_ = true;
};

}  // namespace store
