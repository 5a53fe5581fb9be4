#pragma once

#include <cstddef>

/// Watches operator new in this test program, on the thread that created the probe and while it lives.
/// Every block, and some bytes behind it, holds 0xCC, so that reading what was never written shows.
class AllocationProbe {
 public:
  AllocationProbe() noexcept;
  ~AllocationProbe();
  AllocationProbe(const AllocationProbe&) = delete;
  AllocationProbe& operator=(const AllocationProbe&) = delete;

  /// Every allocation from here on fails, or no longer does.
  void failFromNowOn(bool fail) noexcept;

  /// Blocks allocated since the probe began, less blocks freed.
  long liveCount() const noexcept;
  /// The length of the largest block asked for.
  std::size_t largestLength() const noexcept;
};
