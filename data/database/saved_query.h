#pragma once

#include "base/string.h"

/// A named SQL text kept in the database.
struct SavedQuery {
  String name;
  String sql;
};
