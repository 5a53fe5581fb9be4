#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstddef>
#include <vector>

#include "platform/store/automation/objects/outcome.h"
#include "platform/store/automation/values/com_values.h"
#include "platform/store/rows/recordset.h"

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

/// The arguments of AddNew, Update and GetRows that name fields and values. They are read without the
/// records, because an object that is asked for its value may close these.

/// The elements of a one-dimensional array, or the value itself as the only one, each plain. On failure
/// `*elements` is untouched. Throws std::bad_alloc.
Outcome readList(const VARIANT& list, std::vector<OwnedVariant>* elements);

/// Fields, by name or number, and as many values for them.
struct FieldArguments {
  std::vector<OwnedVariant> fields;
  std::vector<OwnedVariant> values;
};

/// Reads a pair of arguments "field list, values": one name or number and one value, or arrays of both
/// with as many elements. `*read` is empty when both arguments are left out. kInvalidArgument for pairs
/// that don't go together; `*read` is then untouched.
Outcome readFieldArguments(const VARIANT& fieldList, const VARIANT& values, FieldArguments* read);

/// The columns that plain names or numbers stand for; kItemNotFound when one is unknown, `*columns` then
/// being untouched.
Outcome findColumns(const store::Recordset& records, const std::vector<OwnedVariant>& fields,
                    std::vector<std::size_t>* columns);

}  // namespace automation
