#pragma once

#include "base/string.h"
#include "owners/handles.h"

/// Keeps the program to one copy in a user's session. The mutex decides who is first, also between
/// copies that start at the same moment, when neither has a window yet.
class SingleInstance {
 public:
  /// Waits until it is known whether another copy runs: at most ten seconds, for a copy that is still
  /// starting and has no window.
  SingleInstance();
  /// The next copy may start.
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  bool isFirst() const { return isFirst_; }

  /// Sends the path of the command line to the first copy and brings it to the front. `path` may be
  /// empty. The first copy keeps its database, but for one that is having a file chosen: it opens the
  /// path after that.
  void callFirst(const String& path) const;

 private:
  void send(UINT message, WPARAM wParam, LPARAM lParam) const;

  UniqueMutex mutex_;
  bool isFirst_ = false;
  HWND firstWindow_ = nullptr;
  bool isChoosingFile_ = false;  // the first copy
};
