#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/store/sqlite/copies/copy_name.h"

namespace store {

/// The number of a day, and one more for each later one, by the user's own clock. Of milliseconds since 1970.
using LocalDay = std::function<std::int64_t(std::int64_t time)>;
std::int64_t systemLocalDay(std::int64_t time);

/// Which copies of one file stay, in the order of `copies`, which are newest first: the last five, the last
/// five that were kept before a deletion, the newest one of each of the last seven days, today among them,
/// and of each of the four weeks before this one. A week begins on Monday.
std::vector<bool> keptOf(const std::vector<CopyName>& copies, std::int64_t now, const LocalDay& dayOf);

}  // namespace store
