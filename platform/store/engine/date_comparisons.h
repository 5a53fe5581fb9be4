#pragma once

#include "platform/store/engine/date_statement.h"
#include "platform/store/engine/status.h"

namespace store {

/// Has the date literals that are compared with date columns compared as moments: see makeDatesMoments().
Status readDateComparisons(DateStatement& statement);

}  // namespace store
