#pragma once

#include <cstddef>

/// Watches and refuses the test program's allocations. The program's global operator new reports here.
namespace testsupport {

/// Bytes that are allocated at present.
std::size_t liveBytes();

/// The most that liveBytes() has been since resetPeak().
std::size_t peakBytes();
void resetPeak();

/// While it lives, the calling thread's allocations throw std::bad_alloc after the first
/// `allowedCount`. One at a time.
class AllocationLimit {
 public:
  explicit AllocationLimit(std::size_t allowedCount);
  ~AllocationLimit();
  AllocationLimit(const AllocationLimit&) = delete;
  AllocationLimit& operator=(const AllocationLimit&) = delete;

  /// Whether an allocation was refused.
  bool wasReached() const;
};

}  // namespace testsupport
