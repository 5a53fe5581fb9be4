#include "platform/store/automation/values/field_values.h"

#include <optional>
#include <utility>

#include "platform/store/automation/objects/collection.h"
#include "platform/store/automation/values/text.h"
#include "platform/store/automation/values/variant_values.h"

namespace automation {

namespace {

Outcome noSuchField() {
  return {kItemNotFound, "There is no such field."};
}

Outcome unusableList() {
  return {kInvalidArgument, "Fields and values must be a name and a value, or two lists of the same length."};
}

}  // namespace

Outcome readField(store::Recordset& records, std::size_t column, OwnedVariant* value) {
  store::Cell cell;
  if (store::Status status = records.cell(column, &cell); !status) return status;
  *value = shownValue(cell, records.columns()[column].type);
  return {};
}

Outcome writeField(store::Recordset& records, std::size_t column, const VARIANT& given) {
  store::Cell cell;
  if (store::Status status = records.cell(column, &cell); !status) return status;
  const store::FieldType& type = records.columns()[column].type;
  if (saysTheSame(*shownValue(cell, type), given)) return records.setValue(column, store::valueOf(cell));
  store::Value value;
  if (Outcome outcome = storedValue(given, type, cell, &value); !outcome) return outcome;
  return records.setValue(column, std::move(value));
}

Outcome findColumn(const store::Recordset& records, const VARIANT& index, std::size_t* column) {
  std::optional<std::size_t> found;
  if (V_VT(&index) == VT_BSTR) {
    found = records.columnIndex(utf8Of(viewOf(V_BSTR(&index))));
  } else {
    found = itemIndexOf(index, records.columns().size());
  }
  if (!found) return noSuchField();
  *column = *found;
  return {};
}

Outcome readList(const VARIANT& list, std::vector<OwnedVariant>* elements) {
  OwnedVariant holder;
  const VARIANT* plain = nullptr;
  if (Outcome outcome = plainVariant(list, &holder, &plain); !outcome) return outcome;

  std::vector<OwnedVariant> read;
  if (V_VT(plain) == (VT_ARRAY | VT_VARIANT) && V_ARRAY(plain) != nullptr) {
    SAFEARRAY* array = V_ARRAY(plain);
    LONG first = 0;
    LONG last = 0;
    if (SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetLBound(array, 1, &first)) ||
        FAILED(SafeArrayGetUBound(array, 1, &last))) {
      return unusableList();
    }
    for (LONG index = first; index <= last; ++index) {
      OwnedVariant element;
      if (FAILED(SafeArrayGetElement(array, &index, element.get()))) return unusableList();
      read.push_back(std::move(element));
    }
  } else {
    OwnedVariant copy;
    if (!copy.copy(*plain)) {
      if (V_VT(plain) == VT_BSTR || (V_VT(plain) & VT_ARRAY) != 0) throw std::bad_alloc();
      return unusableList();
    }
    read.push_back(std::move(copy));
  }

  for (OwnedVariant& element : read) {
    OwnedVariant elementHolder;
    const VARIANT* elementPlain = nullptr;
    if (Outcome outcome = plainVariant(*element, &elementHolder, &elementPlain); !outcome) return outcome;
    if (elementPlain == elementHolder.get()) element = std::move(elementHolder);
  }
  *elements = std::move(read);
  return {};
}

Outcome readFieldArguments(const VARIANT& fieldList, const VARIANT& values, FieldArguments* read) {
  FieldArguments pairs;
  if (!isMissing(fieldList) || !isMissing(values)) {
    if (isMissing(fieldList)) return unusableList();
    if (Outcome outcome = readList(fieldList, &pairs.fields); !outcome) return outcome;
    if (Outcome outcome = readList(values, &pairs.values); !outcome) return outcome;
    if (pairs.fields.size() != pairs.values.size()) return unusableList();
  }
  *read = std::move(pairs);
  return {};
}

Outcome findColumns(const store::Recordset& records, const std::vector<OwnedVariant>& fields,
                    std::vector<std::size_t>* columns) {
  std::vector<std::size_t> found;
  for (const OwnedVariant& field : fields) {
    std::size_t column = 0;
    if (Outcome outcome = findColumn(records, *field, &column); !outcome) return outcome;
    found.push_back(column);
  }
  *columns = std::move(found);
  return {};
}

}  // namespace automation
