#pragma once

#include "platform/store/rows/status.h"

namespace store {

/// What a source of rows fails with when the table that it reads has become another one.
inline Status structureChanged() {
  return {ErrorCode::structureChanged,
          "The structure of the database was changed meanwhile: the table must be opened again."};
}

}  // namespace store
