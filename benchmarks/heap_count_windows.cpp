#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

#include "benchmarks/heap_count.h"

// The C library here keeps no account, so that of new is kept: the keys of a recordset come from there.
namespace {
std::atomic<std::size_t> held{0};
}

void* operator new(std::size_t size) {
  void* memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  held += _msize(memory);
  return memory;
}

void* operator new[](std::size_t size) {
  return operator new(size);
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr) held -= _msize(memory);
  std::free(memory);
}

void operator delete[](void* memory) noexcept {
  operator delete(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  operator delete(memory);
}

namespace bench {

std::size_t heapBytes() {
  return held;
}

}  // namespace bench
