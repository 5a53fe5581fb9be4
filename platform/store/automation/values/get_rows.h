#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstddef>
#include <vector>

#include "platform/store/automation/objects/outcome.h"
#include "platform/store/automation/values/com_values.h"
#include "platform/store/rows/recordset.h"

namespace automation {

/// Reads where a move starts, which may be left out, as plainVariant does; before the records are looked at,
/// because an object that is asked for its value may close these.
Outcome readStart(const VARIANT& given, OwnedVariant* holder, const VARIANT** start);

/// Moves by `count` from where `start` (plain) says: 0 the current record (also when it is left out), 1 the
/// first, 2 the last, or a bookmark.
Outcome moveFrom(store::Recordset& records, long count, const VARIANT& start);

/// Stores the values of up to `count` records (-1: all that follow), from the current one on, in
/// `*values` as a two-dimensional array of VARIANT, [column][record], both counted from 0. The record
/// behind the last one read is current afterwards. On failure `*values` is untouched.
Outcome readRows(store::Recordset& records, const std::vector<std::size_t>& columns, long count,
                 OwnedVariant* values);

}  // namespace automation
