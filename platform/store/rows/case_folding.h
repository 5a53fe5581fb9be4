#pragma once

#include <functional>
#include <vector>

namespace store {

/// Which letters count as one: every UTF-16 unit stands for one unit, itself or another. The system decides
/// that, not the engine; it is asked once.
class CaseFolding {
 public:
  /// A unit that stands for another one.
  struct Change {
    char16_t from;
    char16_t to;
  };

  /// Asks `folded` once for every unit. May throw std::bad_alloc and what `folded` throws.
  explicit CaseFolding(const std::function<char16_t(char16_t)>& folded);

  char16_t of(char16_t unit) const { return units_[unit]; }
  /// All units that don't stand for themselves, in order.
  const std::vector<Change>& changes() const { return changes_; }

 private:
  std::vector<char16_t> units_;
  std::vector<Change> changes_;
};

/// For who has no system to ask: the capitals of A to Z.
const CaseFolding& asciiCapitals();

}  // namespace store
