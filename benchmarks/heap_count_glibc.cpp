#include <malloc.h>

#include "benchmarks/heap_count.h"

namespace bench {

std::size_t heapBytes() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace bench
