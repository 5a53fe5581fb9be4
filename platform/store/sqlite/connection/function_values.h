#pragma once

#include <sqlite3.h>

#include "platform/store/rows/value.h"

namespace store {

/// What a function that a statement calls is given.

CellKind kindOf(sqlite3_value* value);
/// `kind` is kindOf(value). The bytes hold as long as SQLite lets the value be.
Cell cellOf(sqlite3_value* value, CellKind kind);

}  // namespace store
