#include "platform/store/odbc/sources/rows_ahead.h"

#include <algorithm>
#include <utility>

namespace store {

namespace {

constexpr std::chrono::milliseconds kFreshness{1000};
// The rows of a window: whoever reads a second one behind the first mostly draws them all.
constexpr std::size_t kFewest = 32;

std::size_t sizeAfter(std::size_t run, std::size_t most) {
  return run == 0 ? 1 : std::min(std::clamp(run * 8, kFewest, RowsAhead::kMostRows), most);
}

}  // namespace

bool RowsAhead::take(std::size_t index, const Key& key, std::uint64_t changes, FoundRow* row) {
  forwards_ = index == lastIndex_ + 1 ? forwards_ + 1 : 0;
  backwards_ = index + 1 == lastIndex_ ? backwards_ + 1 : 0;
  lastIndex_ = index;
  if (changes != changes_ || Clock::now() - readAt_ > kFreshness) rows_.clear();
  const auto found = rows_.find(index);
  if (found == rows_.end() || found->second.key != key) return false;
  *row = std::move(found->second);
  rows_.erase(found);
  return row->state != FoundRow::State::leftOut;
}

RowsAhead::Block RowsAhead::blockFor(std::size_t index, std::size_t count, std::size_t most) {
  const Block expected = std::exchange(expected_, {0, 0});
  if (index >= expected.first && index - expected.first < expected.count) {
    // What has been read of them needn't come again.
    return {index, std::min({expected.first + expected.count - index, most, count - index})};
  }
  const std::size_t back = sizeAfter(backwards_, most);
  if (back > 1) {
    const std::size_t first = index + 1 > back ? index + 1 - back : 0;
    return {first, index + 1 - first};
  }
  return {index, std::min(sizeAfter(forwards_, most), count - index)};
}

RowsAhead::FoundRow RowsAhead::keep(std::size_t first, std::vector<FoundRow> rows, std::size_t asked,
                                    std::uint64_t changes) {
  rows_.clear();
  for (FoundRow& row : rows) rows_.emplace(first++, std::move(row));
  readAt_ = Clock::now();
  changes_ = changes;
  FoundRow row;
  if (const auto found = rows_.find(asked); found != rows_.end()) {
    row = std::move(found->second);
    rows_.erase(found);
  }
  return row;
}

}  // namespace store
