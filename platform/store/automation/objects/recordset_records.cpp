#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/store/automation/objects/recordset.h"
#include "platform/store/automation/values/field_values.h"
#include "platform/store/automation/values/get_rows.h"
#include "platform/store/automation/values/variant_values.h"

// The records of an open recordset: reading, moving, changing.

namespace automation {

namespace {

constexpr long kCurrentRecordOnly = 1;
constexpr long kMostAffect = 4;

// ADO's "CursorOptionEnum".
constexpr long kMovesBackwards = 0x200;
constexpr long kAddsRecords = 0x1000400;
constexpr long kDeletesRecords = 0x1000800;
constexpr long kUpdatesRecords = 0x1008000;
constexpr long kHasBookmarks = 0x2000;
constexpr long kHasPositions = 0x4000;

long saturated(std::int64_t number) {
  return static_cast<long>(
      std::clamp<std::int64_t>(number, std::numeric_limits<long>::min(), std::numeric_limits<long>::max()));
}

Outcome writeAll(store::Recordset& records, const std::vector<std::size_t>& columns,
                 const std::vector<OwnedVariant>& values) {
  for (std::size_t index = 0; index < columns.size(); ++index) {
    if (Outcome outcome = writeField(records, columns[index], *values[index]); !outcome) return outcome;
  }
  return {};
}

}  // namespace

HRESULT RecordsetObject::get_Fields(IAdoceFields** fields) {
  return withRecords([&](store::Recordset&) -> Outcome {
    if (fields == nullptr) return nullPointer();
    if (!fields_) fields_ = makeObject<FieldsObject>(cursor_);
    *fields = ComPtr<FieldsObject>::share(fields_.get()).release();
    return {};
  });
}

HRESULT RecordsetObject::MoveFirst() {
  return withRecords([](store::Recordset& records) -> Outcome { return records.moveFirst(); });
}

HRESULT RecordsetObject::MoveLast() {
  return withRecords([](store::Recordset& records) -> Outcome { return records.moveLast(); });
}

HRESULT RecordsetObject::MoveNext() {
  return withRecords([](store::Recordset& records) -> Outcome { return records.moveNext(); });
}

HRESULT RecordsetObject::MovePrevious() {
  return withRecords([](store::Recordset& records) -> Outcome { return records.movePrevious(); });
}

HRESULT RecordsetObject::Move(long count, VARIANT start) {
  OwnedVariant holder;
  const VARIANT* plain = &start;
  return withRecords([&] { return readStart(start, &holder, &plain); },
                     [&](store::Recordset& records) { return moveFrom(records, count, *plain); });
}

HRESULT RecordsetObject::AddNew(VARIANT fieldList, VARIANT values) {
  FieldArguments arguments;
  const auto add = [&](store::Recordset& records) -> Outcome {
    std::vector<std::size_t> columns;
    if (Outcome outcome = findColumns(records, arguments.fields, &columns); !outcome) return outcome;
    if (store::Status status = records.addNew(); !status || columns.empty()) return status;
    Outcome outcome = writeAll(records, columns, arguments.values);
    if (outcome) outcome = records.update();
    if (outcome) return outcome;
    // Values that came with the call don't stay behind when it fails.
    if (store::Status status = records.cancelUpdate(); !status) return status;
    return outcome;
  };
  return withRecords([&] { return readFieldArguments(fieldList, values, &arguments); }, add);
}

HRESULT RecordsetObject::Update(VARIANT fieldList, VARIANT values) {
  FieldArguments arguments;
  const auto change = [&](store::Recordset& records) -> Outcome {
    std::vector<std::size_t> columns;
    if (Outcome outcome = findColumns(records, arguments.fields, &columns); !outcome) return outcome;
    if (Outcome outcome = writeAll(records, columns, arguments.values); !outcome) return outcome;
    return records.update();
  };
  return withRecords([&] { return readFieldArguments(fieldList, values, &arguments); }, change);
}

HRESULT RecordsetObject::CancelUpdate() {
  return withRecords([](store::Recordset& records) -> Outcome { return records.cancelUpdate(); });
}

HRESULT RecordsetObject::Delete(long affectRecords) {
  return withRecords([&](store::Recordset& records) -> Outcome {
    if (affectRecords == kCurrentRecordOnly) return records.remove();
    if (affectRecords > kCurrentRecordOnly && affectRecords <= kMostAffect) {
      return {kNotAvailable, "Only the current record can be deleted."};
    }
    return {kInvalidArgument, "There is no such way of deleting."};
  });
}

HRESULT RecordsetObject::GetRows(long rows, VARIANT start, VARIANT fields, VARIANT* values) {
  OwnedVariant holder;
  const VARIANT* plainStart = &start;
  std::vector<OwnedVariant> names;
  const auto readArguments = [&]() -> Outcome {
    if (values == nullptr) return nullPointer();
    if (Outcome outcome = readStart(start, &holder, &plainStart); !outcome) return outcome;
    return isMissing(fields) ? Outcome() : readList(fields, &names);
  };
  const auto get = [&](store::Recordset& records) -> Outcome {
    std::vector<std::size_t> columns(records.columns().size());
    std::iota(columns.begin(), columns.end(), std::size_t{0});
    if (!isMissing(fields)) {
      if (Outcome outcome = findColumns(records, names, &columns); !outcome) return outcome;
    }
    if (!isMissing(*plainStart)) {
      if (Outcome outcome = moveFrom(records, 0, *plainStart); !outcome) return outcome;
    }
    OwnedVariant read;
    if (Outcome outcome = readRows(records, columns, rows, &read); !outcome) return outcome;
    *values = read.release();
    return {};
  };
  return withRecords(readArguments, get);
}

HRESULT RecordsetObject::Supports(long cursorOptions, VARIANT_BOOL* supported) {
  return withRecords([&](store::Recordset& records) -> Outcome {
    if (supported == nullptr) return nullPointer();
    long all = 0;
    if (records.cursorType() == store::CursorType::keyset)
      all |= kMovesBackwards | kHasBookmarks | kHasPositions;
    if (records.isUpdatable()) all |= kAddsRecords | kDeletesRecords | kUpdatesRecords;
    *supported = (cursorOptions & all) == cursorOptions ? VARIANT_TRUE : VARIANT_FALSE;
    return {};
  });
}

HRESULT RecordsetObject::Clone(IAdoceRecordset** copy) {
  return withRecords([&](store::Recordset& records) -> Outcome {
    if (copy == nullptr) return nullPointer();
    std::unique_ptr<store::Recordset> second;
    if (store::Status status = records.clone(&second); !status) return status;
    ComPtr<RecordsetObject> made = makeObject<RecordsetObject>();
    made->bind(connection_, source_);
    made->cursorType_ = cursorType_;
    made->lockType_ = lockType_;
    made->cursor_ = std::make_shared<Cursor>(std::move(second), cursor_->errors());
    connection_->remember(made->cursor_);
    *copy = made.release();
    return {};
  });
}

HRESULT RecordsetObject::get_AbsolutePosition(long* position) {
  return withRecords([&](store::Recordset& records) -> Outcome {
    if (position == nullptr) return nullPointer();
    *position = saturated(records.position());
    return {};
  });
}

HRESULT RecordsetObject::put_AbsolutePosition(long position) {
  return withRecords([&](store::Recordset& records) -> Outcome { return records.setPosition(position); });
}

HRESULT RecordsetObject::ReadAhead(long position, long count) {
  return withRecords([&](store::Recordset& records) -> Outcome {
    records.readAhead(position, count);
    return {};
  });
}

HRESULT RecordsetObject::get_BOF(VARIANT_BOOL* bof) {
  return withRecords([&](store::Recordset& records) -> Outcome {
    if (bof == nullptr) return nullPointer();
    *bof = records.isBof() ? VARIANT_TRUE : VARIANT_FALSE;
    return {};
  });
}

HRESULT RecordsetObject::get_EOF(VARIANT_BOOL* eof) {
  return withRecords([&](store::Recordset& records) -> Outcome {
    if (eof == nullptr) return nullPointer();
    *eof = records.isEof() ? VARIANT_TRUE : VARIANT_FALSE;
    return {};
  });
}

HRESULT RecordsetObject::get_Bookmark(VARIANT* bookmark) {
  return withRecords([&](store::Recordset& records) -> Outcome {
    if (bookmark == nullptr) return nullPointer();
    std::string bytes;
    if (store::Status status = records.bookmark(&bytes); !status) return status;
    *bookmark = arrayOf(bytes).release();
    return {};
  });
}

HRESULT RecordsetObject::put_Bookmark(VARIANT bookmark) {
  OwnedVariant holder;
  const VARIANT* plain = &bookmark;
  const auto go = [&](store::Recordset& records) -> Outcome {
    const std::optional<std::string> bytes = bytesOf(*plain);
    if (!bytes) return {kInvalidArgument, "This is not a bookmark."};
    return records.setBookmark(*bytes);
  };
  return withRecords([&] { return plainVariant(bookmark, &holder, &plain); }, go);
}

HRESULT RecordsetObject::get_EditMode(long* mode) {
  return withRecords([&](store::Recordset& records) -> Outcome {
    if (mode == nullptr) return nullPointer();
    *mode = static_cast<long>(records.editMode());
    return {};
  });
}

HRESULT RecordsetObject::get_RecordCount(long* count) {
  return withRecords([&](store::Recordset& records) -> Outcome {
    if (count == nullptr) return nullPointer();
    *count = saturated(records.recordCount());
    return {};
  });
}

HRESULT RecordsetObject::Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                                DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                UINT* badArgument) {
  if (isOfTextSearch(member)) {
    return invokeTextSearch(member, reserved, flags, arguments, result, exception, badArgument);
  }
  // recordset(index) and recordset(index) = value go to the fields.
  const bool isIndexed = arguments != nullptr && arguments->cArgs > 0;
  if (member != DISPID_VALUE || !isIndexed || reserved != IID_NULL) {
    return AutomationObject::Invoke(member, reserved, locale, flags, arguments, result, exception,
                                    badArgument);
  }
  DISPPARAMS none = {nullptr, nullptr, 0, 0};
  OwnedVariant fields;
  const HRESULT found = AutomationObject::Invoke(DISPID_VALUE, reserved, locale, DISPATCH_PROPERTYGET, &none,
                                                 fields.get(), exception, badArgument);
  if (FAILED(found)) return found;
  return V_DISPATCH(fields.get())
      ->Invoke(DISPID_VALUE, reserved, locale, flags, arguments, result, exception, badArgument);
}

}  // namespace automation
