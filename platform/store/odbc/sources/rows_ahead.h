#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

#include "platform/store/odbc/driver/answer.h"
#include "platform/store/rows/keyset.h"

namespace store {

/// Rows that were fetched together with one that was asked for, because the next ones are likely to be asked
/// for too: a server answers a question for a hundred rows as quickly as for one. Each is handed out once,
/// and only for a short time: who asks again wants to know what the server has now.
class RowsAhead {
 public:
  using Clock = std::chrono::steady_clock;
  /// A row that the server no longer has is gone; one that is too large to come with others is left out, and
  /// has to be asked for alone.
  struct FoundRow {
    enum class State : std::uint8_t { gone, found, leftOut };
    State state = State::gone;
    AnswerRow values = {};
    Key key = {};  // two recordsets over the same rows may have other rows at the same index
  };
  static constexpr std::size_t kMostRows = 256;
  /// What the rows of a block should take together at most.
  static constexpr std::size_t kMostBytes = std::size_t{8} << 20;

  struct Block {
    std::size_t first;
    std::size_t count;
  };

  /// Takes the row at `index` out, which has this key. False when it has to be asked for, `*row` tells
  /// whether alone. `changes` counts what was changed meanwhile.
  bool take(std::size_t index, const Key& key, std::uint64_t changes, FoundRow* row);

  /// Told that the rows of the block will be read soon, one after the other: the first of them that has to be
  /// asked for brings the others.
  void expect(Block rows) { expected_ = rows; }

  /// What to ask for instead of the one row at `index`, of `count` in all, but at most `most` rows: more the
  /// longer the rows were taken one after the other. The row itself is in it.
  Block blockFor(std::size_t index, std::size_t count, std::size_t most = kMostRows);

  /// Keeps the rows of that block, and takes the one that was asked for out: as gone when it is not among
  /// them.
  FoundRow keep(std::size_t first, std::vector<FoundRow> rows, std::size_t asked, std::uint64_t changes);
  void clear() { rows_.clear(); }

 private:
  std::map<std::size_t, FoundRow> rows_;
  Clock::time_point readAt_;
  std::uint64_t changes_ = 0;
  std::size_t lastIndex_ = 0;
  std::size_t forwards_ = 0;  // rows that were asked for one behind the other
  std::size_t backwards_ = 0;
  Block expected_{0, 0};
};

}  // namespace store
