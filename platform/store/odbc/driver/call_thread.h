#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

#include "platform/store/odbc/driver/odbc_functions.h"

namespace store {

/// A thread that makes the calls of a driver which may take long, so that whoever waits for them can do
/// something else meanwhile. One call at a time. When the driver doesn't come back the thread is left alone,
/// with all that the call keeps alive, and ends when it does.
class CallThread {
 public:
  CallThread();
  /// Waits for nobody: a call that runs is left alone.
  ~CallThread();
  CallThread(const CallThread&) = delete;
  CallThread& operator=(const CallThread&) = delete;

  /// Begins a call. The one before has come back.
  void begin(std::function<SQLRETURN()> call);
  /// Whether it comes back within that time. What it kept alive is then let go already.
  bool waitFor(std::chrono::milliseconds time);
  /// What it came back with; SQL_ERROR also when it threw.
  SQLRETURN result() const;

 private:
  struct State;

  static void run(const std::shared_ptr<State>& state);

  std::shared_ptr<State> state_;
  std::thread thread_;
};

}  // namespace store
