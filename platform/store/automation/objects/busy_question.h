#pragma once

#include <windows.h>

#include <oaidl.h>

#include <chrono>

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

}  // namespace automation
