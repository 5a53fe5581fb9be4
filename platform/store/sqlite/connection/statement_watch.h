#pragma once

#include <chrono>
#include <functional>
#include <sqlite3.h>
#include <utility>

#include "platform/store/rows/busy.h"

namespace store {

/// Asks, while a connection prepares or runs a statement that may take its time, whether it shall go on.
///
/// All functions are called inside a Use of the connection's guard.
class StatementWatch {
 public:
  /// `connection` outlives the watch.
  explicit StatementWatch(sqlite3* connection);
  ~StatementWatch();
  StatementWatch(const StatementWatch&) = delete;
  StatementWatch& operator=(const StatementWatch&) = delete;

  /// Whom to ask, up to some ten thousand times a second.
  void ask(BusyQuestion question) { question_ = std::move(question); }

  /// Asks whether what is no statement shall be stopped.
  bool isToStop() const { return question_ && question_(Busy::working); }

  /// Has `work` done now and then while any statement runs; it takes no memory and uses no statements.
  void accompany(std::function<void()> work) { work_ = std::move(work); }

  /// What may be stopped, for a scope. Elsewhere nobody is asked: the statements that begin and end
  /// transactions could be told to have been stopped after they were done.
  class Asked {
   public:
    explicit Asked(StatementWatch& watch) : watch_(watch) { ++watch_.asked_; }
    ~Asked() { --watch_.asked_; }
    Asked(const Asked&) = delete;
    Asked& operator=(const Asked&) = delete;

   private:
    StatementWatch& watch_;
  };

  /// Stops what takes longer, whoever is asked, for a scope.
  class Limit {
   public:
    Limit(StatementWatch& watch, std::chrono::milliseconds most) : watch_(watch), former_(watch.end_) {
      watch_.end_ = std::chrono::steady_clock::now() + most;
    }
    ~Limit() { watch_.end_ = former_; }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;

   private:
    StatementWatch& watch_;
    std::chrono::steady_clock::time_point former_;
  };

 private:
  static int onProgress(void* self);

  sqlite3* connection_;
  BusyQuestion question_;
  std::function<void()> work_;
  std::chrono::steady_clock::time_point end_ = std::chrono::steady_clock::time_point::max();
  int asked_ = 0;
};

}  // namespace store
