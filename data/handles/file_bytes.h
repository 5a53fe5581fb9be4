#pragma once

#include "base/string.h"
#include "data/outcome.h"
#include "data/values/bytes.h"

/// A larger file is not taken as a value: the value stands in memory several times on its way.
inline constexpr std::uint64_t kMostFileBytes = 100'000'000;

/// Reads all of a file, which other programs may have open. `bytes` is untouched when that fails.
Outcome readFile(const String& path, Bytes& bytes);
