#pragma once

#include <cstdint>

#include "platform/store/exchange/import_plan.h"

namespace store::exchange {

/// What becomes of an import.
enum class ImportMode {
  allOrNothing,  ///< one record that can't be taken, and nothing is stored
  goodRecords,   ///< those that can be taken are stored
  trial,         ///< nothing is stored in any case
};

struct ImportResult {
  std::int64_t added = 0;
  std::int64_t replaced = 0;
  std::int64_t leftOut = 0;
  bool isStored = false;
};

/// Puts the records of `source` into the table as `plan` says, in one durable transaction. Each record that
/// can't be taken is told to the observer. Also when nothing is stored because of them the result tells how
/// many there were. On failure nothing has changed: illegalOperation when the observer has cancelled it, and
/// all that can happen to files and tables.
Status runImport(Backend& backend, ByteSource& source, const ImportPlan& plan, ImportMode mode,
                 ImportObserver& observer, ImportResult* result);

}  // namespace store::exchange
