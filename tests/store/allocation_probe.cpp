#include "tests/store/allocation_probe.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <malloc.h>
#include <new>

namespace {

constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

std::atomic<std::size_t> live{0};
std::atomic<std::size_t> peak{0};
thread_local std::size_t allowed = kUnlimited;
thread_local bool refused = false;

std::size_t lengthOf(void* memory) {
#ifdef _WIN32
  return _msize(memory);
#else
  return malloc_usable_size(memory);
#endif
}

void* allocate(std::size_t length) noexcept {
  if (allowed == 0) {
    refused = true;
    return nullptr;
  }
  void* memory = std::malloc(length == 0 ? 1 : length);
  if (memory == nullptr) return nullptr;
  if (allowed != kUnlimited) --allowed;
  const std::size_t total = live += lengthOf(memory);
  std::size_t highest = peak;
  while (total > highest && !peak.compare_exchange_weak(highest, total)) {
  }
  return memory;
}

void* allocateOrThrow(std::size_t length) {
  void* memory = allocate(length);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void release(void* memory) noexcept {
  if (memory == nullptr) return;
  live -= lengthOf(memory);
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t length) {
  return allocateOrThrow(length);
}
void* operator new[](std::size_t length) {
  return allocateOrThrow(length);
}
void* operator new(std::size_t length, const std::nothrow_t&) noexcept {
  return allocate(length);
}
void* operator new[](std::size_t length, const std::nothrow_t&) noexcept {
  return allocate(length);
}
void operator delete(void* memory) noexcept {
  release(memory);
}
void operator delete[](void* memory) noexcept {
  release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  release(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  release(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  release(memory);
}

namespace testsupport {

std::size_t liveBytes() {
  return live;
}
std::size_t peakBytes() {
  return peak;
}
void resetPeak() {
  peak = live.load();
}

AllocationLimit::AllocationLimit(std::size_t allowedCount) {
  refused = false;
  allowed = allowedCount;
}

AllocationLimit::~AllocationLimit() {
  allowed = kUnlimited;
}

bool AllocationLimit::wasReached() const {
  return refused;
}

}  // namespace testsupport
