#pragma once

#include "platform/store/rows/status.h"
#include "platform/store/sql/date_statement.h"

namespace store {

/// Has the date literals that INSERT and UPDATE store in date columns written in ISO 8601: see
/// makeDatesMoments(). Marks the assignments of the statement.
Status readStoredDates(DateStatement& statement);

}  // namespace store
