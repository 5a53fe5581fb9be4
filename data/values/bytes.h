#pragma once

#include <cstdint>
#include <vector>

/// The bytes of a value, whole.
using Bytes = std::vector<std::uint8_t>;
