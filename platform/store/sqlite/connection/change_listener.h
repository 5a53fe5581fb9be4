#pragma once

#include <optional>
#include <string>

#include "platform/store/rows/change_history.h"
#include "platform/store/rows/keyset.h"
#include "platform/store/rows/status.h"

namespace store {

/// What the maker of a change knows of it.
struct ChangeNote {
  StepKind kind = StepKind::none;
  std::string table = {};                    ///< empty for a statement's
  std::optional<Key> before = std::nullopt;  ///< of the record, unless it is new or not one alone
  std::optional<Key> after = std::nullopt;   ///< of the record, unless it is deleted or not one alone
};

/// Hears of the write transactions that change records, one at a time, inside a Use of the connection's
/// guard: of each beginning, and then of its completion and its end or of its end alone.
class ChangeListener {
 public:
  virtual ~ChangeListener() = default;

  /// A transaction is open and has changed nothing yet.
  virtual void changeBegins() = 0;
  /// All is changed and nothing is committed. A failure undoes it; so does an exception.
  virtual Status changeIsComplete(const ChangeNote& note) = 0;
  /// It is durable and acknowledged, or it was undone. A listener takes no memory here.
  virtual void changeIsOver(bool isAcknowledged) noexcept = 0;
};

}  // namespace store
