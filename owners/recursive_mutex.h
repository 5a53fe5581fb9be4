#pragma once

#include <mutex>
#include <pthread.h>
#include <type_traits>

/// std::recursive_mutex that takes along what stands behind it. The C++ library's own leaves that where its
/// mutex needs no construction: under Windows some memory of each that was ever locked, and an event of each
/// that two threads have wanted at the same time.
class RecursiveMutex : public std::recursive_mutex {
 public:
  RecursiveMutex() = default;
  /// Nobody holds it any more.
  ~RecursiveMutex() {
    if (std::is_trivially_destructible_v<std::recursive_mutex>) pthread_mutex_destroy(native_handle());
  }
  RecursiveMutex(const RecursiveMutex&) = delete;
  RecursiveMutex& operator=(const RecursiveMutex&) = delete;
};
