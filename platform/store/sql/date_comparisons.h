#pragma once

#include "platform/store/rows/status.h"
#include "platform/store/sql/date_statement.h"

namespace store {

/// Has the date literals that are compared with date columns compared as moments: see makeDatesMoments().
Status readDateComparisons(DateStatement& statement);

}  // namespace store
