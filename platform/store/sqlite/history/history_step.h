#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/store/rows/change_history.h"
#include "platform/store/sqlite/history/changeset.h"

namespace store {

/// A step, and how the rows stand that it or its taking back has left.
struct RecordedStep {
  struct Table {
    std::string name;
    std::string definition;
  };

  HistoryStep told;
  std::optional<Key> before;  ///< of the record that it is about
  std::optional<Key> after;
  Changeset changes;          ///< as it was made first
  std::vector<Table> tables;  ///< in their order in the changes
  /// Of each row that the changes update, in their order: RecordedTable::image().
  std::vector<std::uint64_t> images;
  /// Of each row that comes back when the step is taken next, in tables that hide their row ids, in the order
  /// of the changes: its row id, where that is known.
  std::vector<std::optional<std::int64_t>> rowIds;

  std::size_t bytes() const {
    return sizeof *this + static_cast<std::size_t>(changes.size()) + images.size() * sizeof(std::uint64_t) +
           rowIds.size() * sizeof(std::optional<std::int64_t>);
  }
};

}  // namespace store
