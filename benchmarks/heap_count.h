#pragma once

#include <cstddef>

namespace bench {

/// Bytes that this program holds at the moment through new and, where the C library tells (glibc), also
/// through malloc.
std::size_t heapBytes();

}  // namespace bench
