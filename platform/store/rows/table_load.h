#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/store/rows/status.h"
#include "platform/store/rows/value.h"

namespace store {

/// Where many rows are to go.
struct LoadTarget {
  /// A CREATE TABLE in the components' dialect that makes the table first, within the same transaction; empty
  /// when the table is there.
  std::string createStatement = {};
  std::string table = {};
  std::vector<std::string> columns = {};  ///< those that get values, each once; the others get their defaults
  /// Unless empty: a row takes the place of the one that has the same values in these columns, which are
  /// among `columns`; what the others hold stays.
  std::vector<std::string> keyColumns = {};
};

/// Many rows added to one table, all of them in one durable transaction. What is not committed is undone.
///
/// While it lives its thread alone can use the backend, and other programs can neither write nor, at times,
/// read. It is destroyed on the thread that made it.
class TableLoad {
 public:
  virtual ~TableLoad() = default;

  /// Adds a row, or replaces one by its key; `values` are those of the columns in their order, and their
  /// bytes hold until the return. constraint when this row can't be in the table (a rule of the database, a
  /// value of another kind than the key's column takes, several rows with this key): nothing has changed then
  /// and others may follow. After any other failure nothing can follow and nothing will be stored.
  virtual Status add(std::span<const Cell> values) = 0;

  /// A row that settle() has refused.
  struct Refusal {
    std::size_t number;  ///< 0-based, among those that it was about
    std::string reason;
  };

  /// Whether add() only takes rows, of which settle() tells what became of them.
  virtual bool isPuttingOff() const { return false; }

  /// Whether no more rows should be added before beginSettling().
  virtual bool isFull() const { return false; }

  /// Begins to store the rows that were added and put off. Others may be added before the settle() that tells
  /// of these, and nothing else be done. After a failure nothing can follow and nothing will be stored.
  virtual Status beginSettling() { return {}; }

  /// Sees what was begun to its end. Appends those rows that can't be in the table, in their order: of them
  /// nothing has changed, the others are there, and others may follow. To be called once for each
  /// beginSettling(), and behind the last rows before commit(). After a failure nothing can follow and
  /// nothing will be stored.
  virtual Status settle(std::vector<Refusal>* /*refused*/) { return {}; }

  /// After it nothing is undone any more. To be called once, as the last operation; on failure nothing has
  /// been stored, but for inputOutput, whose sentence says when that is not known.
  virtual Status commit() = 0;

  /// How many rows took the place of another one.
  virtual std::int64_t replacedCount() const = 0;
};

}  // namespace store
