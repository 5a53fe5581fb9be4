#pragma once

#include "platform/store/rows/status.h"

namespace store {

/// What is kept of the states that an open database had before, so that one can go back to them.
class FormerStates {
 public:
  virtual ~FormerStates() = default;

  /// Before a table is deleted: keeps the state as it is now, durably. Fails when it can't be kept
  /// (tooLarge, cannotOpen, inputOutput, locked, stopped, outOfMemory).
  virtual Status keepBeforeDeletion() = 0;

  /// Why the state before the first change was not kept, once; done when it was or there was no change. Of a
  /// database that is too large it is said once for all, until a state of it was kept again.
  virtual Status takeFailure() = 0;
};

}  // namespace store
