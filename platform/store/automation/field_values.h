#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstddef>
#include <vector>

#include "platform/store/automation/com_values.h"
#include "platform/store/automation/outcome.h"
#include "platform/store/engine/recordset.h"

namespace automation {

/// Reading and writing the fields of a cursor's current record.

/// Stores the value of the field in `*value`, untouched on failure. Throws std::bad_alloc.
Outcome readField(store::Recordset& records, std::size_t column, OwnedVariant* value);

/// Writes `given`, which comes from plainVariant, into the field. A value that says what the field shows
/// leaves what the database holds, to the byte. On failure the field keeps what it has.
/// Throws std::bad_alloc.
Outcome writeField(store::Recordset& records, std::size_t column, const VARIANT& given);

/// The column that `index` (plain) names, by name or number; kItemNotFound when there is none.
Outcome findColumn(const store::Recordset& records, const VARIANT& index, std::size_t* column);

/// A value for a column, as the arguments of AddNew and Update name them.
struct FieldAssignment {
  std::size_t column;
  OwnedVariant value;
};

/// Reads a pair of arguments "field list, values": one name or number and one value, or arrays of both
/// with as many elements. `*assignments` is empty when both arguments are left out. kInvalidArgument for
/// pairs that don't go together, kItemNotFound for an unknown field; the out-parameter is then untouched.
Outcome readAssignments(const store::Recordset& records, const VARIANT& fieldList, const VARIANT& values,
                        std::vector<FieldAssignment>* assignments);

/// The columns that the argument names, by one name or number or an array of them; all of them when it
/// is left out.
Outcome readColumnList(const store::Recordset& records, const VARIANT& fields,
                       std::vector<std::size_t>* columns);

}  // namespace automation
