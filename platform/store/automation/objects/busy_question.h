#pragma once

#include <windows.h>

#include <oaidl.h>

#include <chrono>
#include <cstdint>

#include "platform/store/automation/values/com_values.h"
#include "platform/store/rows/busy.h"

namespace automation {

/// A client's object that says, while an operation takes its time, whether to stop it: by its default member,
/// with the number of what it takes its time with. Copies ask the same object.
class BusyQuestion {
 public:
  explicit BusyQuestion(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  /// Whether to stop. Bothers the object at most 50 times a second; one that fails stops nothing.
  bool operator()(store::Busy busy);

  /// Whether the calling thread is inside such a question. Then the database is in the midst of something,
  /// and the objects of this module can't be used.
  static bool isBeingAsked();

 private:
  ComPtr<IDispatch> object_;
  std::chrono::steady_clock::time_point next_{};
};

/// What is moved between the database and a file, as a client is told it.
enum class Moving : LONG {
  looking = 0,  ///< bytes of a file that is looked through
  storing = 1,  ///< bytes of a file whose records are stored
  writing = 2,  ///< records
};

/// A client's object that says, while records are moved between the database and a file, whether to stop
/// that. Also while it is asked the objects of this module can't be used.
class ProgressQuestion {
 public:
  /// Null is asked nothing, and goes on.
  explicit ProgressQuestion(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  /// Whether to go on. Bothers the object at most 50 times a second; one that fails stops nothing.
  bool goesOn(Moving moving, std::int64_t done, std::int64_t total);

 private:
  ComPtr<IDispatch> object_;
  std::chrono::steady_clock::time_point next_{};
};

}  // namespace automation
