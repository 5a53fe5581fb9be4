#include "platform/store/automation/values/get_rows.h"

#include <limits>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "platform/store/automation/objects/collection.h"
#include "platform/store/automation/values/field_values.h"
#include "platform/store/automation/values/variant_values.h"

namespace automation {

namespace {

constexpr long kAllThatFollow = -1;
constexpr std::size_t kOriginCount = 3;

OwnedVariant arrayOfRows(std::vector<OwnedVariant>& values, std::size_t columnCount) {
  if (values.size() > std::numeric_limits<LONG>::max()) throw std::bad_alloc();
  SAFEARRAYBOUND bounds[2];
  bounds[0] = {static_cast<ULONG>(columnCount), 0};
  bounds[1] = {static_cast<ULONG>(columnCount == 0 ? 0 : values.size() / columnCount), 0};
  OwnedVariant variant;
  SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (array == nullptr) throw std::bad_alloc();
  V_VT(variant.get()) = VT_ARRAY | VT_VARIANT;
  V_ARRAY(variant.get()) = array;
  void* elements = nullptr;
  if (FAILED(SafeArrayAccessData(array, &elements))) throw std::bad_alloc();
  // The first dimension varies fastest, so that the records stand one behind the other.
  auto* element = static_cast<VARIANT*>(elements);
  for (OwnedVariant& value : values) *element++ = value.release();
  SafeArrayUnaccessData(array);
  return variant;
}

}  // namespace

Outcome readStart(const VARIANT& given, OwnedVariant* holder, const VARIANT** start) {
  if (!isMissing(given)) return plainVariant(given, holder, start);
  *start = &given;
  return {};
}

Outcome moveFrom(store::Recordset& records, long count, const VARIANT& start) {
  if (isMissing(start)) return records.move(count, store::MoveOrigin::current);
  if (const std::optional<std::string> bookmark = bytesOf(start))
    return records.moveFromBookmark(count, *bookmark);
  if (const std::optional<std::size_t> origin = itemIndexOf(start, kOriginCount)) {
    return records.move(count, static_cast<store::MoveOrigin>(*origin));
  }
  return {kInvalidArgument, "A move starts from 0, 1, 2 or a bookmark."};
}

Outcome readRows(store::Recordset& records, const std::vector<std::size_t>& columns, long count,
                 OwnedVariant* values) {
  if (count < kAllThatFollow || count == 0)
    return {kInvalidArgument, "The number of records is -1 or above 0."};
  if (records.isEof() || records.isBof()) {
    return store::Status(store::ErrorCode::noCurrentRecord, "There is no current record.");
  }
  std::vector<OwnedVariant> read;
  for (long row = 0; (count == kAllThatFollow || row < count) && !records.isEof(); ++row) {
    for (const std::size_t column : columns) {
      OwnedVariant value;
      if (Outcome outcome = readField(records, column, &value); !outcome) return outcome;
      read.push_back(std::move(value));
    }
    if (store::Status status = records.moveNext(); !status) return status;
  }
  *values = arrayOfRows(read, columns.size());
  return {};
}

}  // namespace automation
