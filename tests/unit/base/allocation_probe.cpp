#include "tests/unit/base/allocation_probe.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace {

thread_local bool watching = false;
thread_local bool failing = false;
thread_local long live = 0;
thread_local std::size_t largest = 0;

}  // namespace

AllocationProbe::AllocationProbe() noexcept {
  failing = false;
  live = 0;
  largest = 0;
  watching = true;
}

AllocationProbe::~AllocationProbe() {
  watching = false;
  failing = false;
}

void AllocationProbe::failFromNowOn(bool fail) noexcept {
  failing = fail;
}

long AllocationProbe::liveCount() const noexcept {
  return live;
}

std::size_t AllocationProbe::largestLength() const noexcept {
  return largest;
}

// The forms for arrays and for nothrow of the run-time library call these.
void* operator new(std::size_t length) {
  if (watching) {
    if (length > largest) largest = length;
    if (failing) throw std::bad_alloc();
    ++live;
  }
  constexpr std::size_t kTailLength = 16;
  void* const block = std::malloc(length + kTailLength);
  if (!block) throw std::bad_alloc();
  if (watching) std::memset(block, 0xCC, length + kTailLength);
  return block;
}

void operator delete(void* block) noexcept {
  if (watching && block) --live;
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  operator delete(block);
}
