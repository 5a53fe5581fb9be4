#pragma once

#include <adoce.h>

#include "data/handles/connection_handle.h"
#include "data/handles/history_step.h"
#include "data/handles/recordset_handle.h"
#include "data/outcome.h"
#include "owners/com_handles.h"

/// What was changed through a connection, as far as it can be taken back. Components that have nothing of the
/// kind have no step.
class HistoryHandle {
 public:
  explicit HistoryHandle(const ConnectionHandle& connection);

  /// Begins to keep what is changed from now on.
  void keep();
  /// The next step that way; of the kind none when there is none.
  HistoryStep next(HistoryWay way) const;
  /// Takes that step, whole and durably; on failure nothing has changed.
  Outcome take(HistoryWay way);
  /// Where the record that the step taken last is about stands among these, from 1; 0 for nowhere.
  LONG find(const RecordsetHandle& records) const;
  /// Whether the step taken last changed values alone, so that recordsets which were open before have the
  /// right records still.
  bool hasKeptRecords() const;

 private:
  ComPtr<IAdoceHistory> history_;
};
