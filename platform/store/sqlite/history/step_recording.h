#pragma once

#include "platform/store/sqlite/connection/change_listener.h"
#include "platform/store/sqlite/history/change_recorder.h"
#include "platform/store/sqlite/history/history_step.h"
#include "platform/store/sqlite/history/recorded_table.h"

namespace store {

/// What became of a transaction's changes.
enum class Recording {
  nothing,  ///< it has changed nothing
  kept,     ///< they make a step
  notKept,  ///< they can't be taken back
};

/// Makes a step of what `recorder` has written down of the open transaction. A failure is one of reading the
/// file, after which `*step` is untouched.
Status makeStep(const ChangeRecorder& recorder, Changeset changes, const ChangeNote& note,
                RecordedTables& tables, Recording* recording, RecordedStep* step);

}  // namespace store
