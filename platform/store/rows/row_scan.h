#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/store/rows/keyset.h"
#include "platform/store/rows/status.h"
#include "platform/store/rows/value.h"

namespace store {

class RowSource;

/// What is known of the texts in which a text is looked for.
struct SoughtText {
  std::string ascii;           ///< every text of ASCII alone that is wanted has this in it; may be empty
  bool anyLetterCase = false;  ///< maybe in other letters of ASCII
};

/// What rows are looked for.
class RowTest {
 public:
  virtual ~RowTest() = default;

  /// The columns whose values decide, each once.
  virtual const std::vector<std::size_t>& columns() const = 0;

  /// Whether no value of this kind in the column `columns()[number]` is looked for, so that none need be
  /// read.
  virtual bool ignores(std::size_t number, CellKind kind) const noexcept = 0;

  /// Whether a row is looked for because of this value of its column `columns()[number]`. `cell` holds until
  /// the return.
  virtual bool isWanted(std::size_t number, const Cell& cell) noexcept = 0;

  /// For who can leave out rows without reading them; nothing when it is no text that is looked for.
  virtual std::optional<SoughtText> soughtText() const { return std::nullopt; }

  /// Another one that says the same, for another thread. May throw std::bad_alloc.
  virtual std::unique_ptr<RowTest> copy() const = 0;
};

/// Passes over rows that are not wanted, without handing them out. Made for one search and dropped with it:
/// what it has found out about rows may be out of date afterwards.
///
/// Each row is tested at some moment between the making of the scan and the answer, with what the database
/// holds at that moment. A row that is gone is not wanted.
class RowScan {
 public:
  using Clock = std::chrono::steady_clock;

  virtual ~RowScan() = default;

  /// Looks at the rows with the keys [first, last) of `keys`, in their order, and stores in `*next` the first
  /// of them that may be wanted, or `last`. It stops at any other row before that when it is `until`, and
  /// where it fails: no row in front of `*next` is wanted in any case. The keys are the same in all calls.
  virtual Status passOver(const KeySet& keys, std::size_t first, std::size_t last, Clock::time_point until,
                          std::size_t* next) = 0;
};

/// A scan of any row source, by way of its fetch(). `rows` and `test` outlive it.
std::unique_ptr<RowScan> makeFetchingScan(RowSource& rows, RowTest& test);

}  // namespace store
