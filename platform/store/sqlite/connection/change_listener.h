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

/// Hears of every write transaction, before anything is changed in it, and of the statements that can't stand
/// in one, inside a Use of the connection's guard.
class WriteListener {
 public:
  virtual ~WriteListener() = default;

  /// The transaction is open, so that nobody else can write, and has changed nothing yet. A failure undoes
  /// it.
  virtual Status writingBegins() = 0;
  /// All is changed, if anything was, and nothing is durable.
  virtual void writingIsComplete(bool hasChanged) = 0;
  /// It is durable, or it was undone. A listener takes no memory here.
  virtual void writingIsOver(bool isDurable) noexcept = 0;
};

}  // namespace store
