#pragma once

#include "platform/store/engine/date_statement.h"
#include "platform/store/engine/status.h"

namespace store {

/// Has the date literals that INSERT and UPDATE store in date columns written in ISO 8601: see
/// makeDatesMoments(). Marks the assignments of the statement.
Status readStoredDates(DateStatement& statement);

}  // namespace store
