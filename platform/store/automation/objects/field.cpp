#include "platform/store/automation/objects/field.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <string>
#include <string_view>

#include "platform/store/automation/values/field_values.h"
#include "platform/store/automation/values/text.h"
#include "platform/store/automation/values/variant_values.h"
#include "platform/store/exchange/bytes/encoding.h"
#include "platform/store/exchange/formats/csv_writer.h"
#include "platform/store/exchange/formats/sql_writer.h"
#include "platform/store/rows/iso_date.h"
#include "platform/store/rows/utf.h"

namespace automation {

namespace exchange = store::exchange;

namespace {

// ADO's "FieldAttributeEnum".
constexpr long kUpdatable = 4;
constexpr long kFixedSize = 16;
constexpr long kNullable = 32;
constexpr long kMayBeNull = 64;
constexpr long kLong = 128;

long attributesOf(const store::Recordset& records, const store::Column& column) {
  long attributes = 0;
  if (column.updatable && records.isUpdatable()) attributes |= kUpdatable;
  if (column.type.fixedSize) attributes |= kFixedSize;
  if (column.nullable) attributes |= kNullable | kMayBeNull;
  if (column.type.isLong) attributes |= kLong;
  return attributes;
}

std::size_t sizeOf(const VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_BSTR:
      return SysStringByteLen(V_BSTR(&value));
    case VT_ARRAY | VT_UI1:
      return V_ARRAY(&value)->rgsabound[0].cElements;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return sizeof(SHORT);
    case VT_I4:
    case VT_UI4:
      return sizeof(LONG);
    case VT_R8:
    case VT_DATE:
      return sizeof(double);
    case VT_DECIMAL:
      return sizeof(LONGLONG);  // it stands for a whole number of 64 bits
    default:
      return 0;
  }
}

/// In UTF-16, of which each character takes a unit, those beyond the first 65,536 two.
std::size_t unitCount(std::string_view utf8) {
  std::size_t count = 0;
  for (const char byte : utf8) {
    const auto value = static_cast<unsigned char>(byte);
    count += static_cast<std::size_t>((value & 0xC0) != 0x80) + static_cast<std::size_t>(value >= 0xF0);
  }
  return count;
}

}  // namespace

template <class Read>
HRESULT FieldObject::withRecords(Read&& read) {
  return call([&]() -> Outcome {
    store::Recordset* records = cursor_->records();
    if (records == nullptr) return closedRecordset();
    return read(*records, records->columns()[column_]);
  });
}

HRESULT FieldObject::get_Value(VARIANT* value) {
  return withRecords([&](store::Recordset& records, const store::Column&) -> Outcome {
    if (value == nullptr) return nullPointer();
    OwnedVariant read;
    if (Outcome outcome = readField(records, column_, &read); !outcome) return outcome;
    *value = read.release();
    return {};
  });
}

HRESULT FieldObject::put_Value(VARIANT value) {
  return call([&]() -> Outcome {
    // First, because an object that is asked for its value could close this one's cursor.
    OwnedVariant holder;
    const VARIANT* plain = nullptr;
    if (Outcome outcome = plainVariant(value, &holder, &plain); !outcome) return outcome;
    store::Recordset* records = cursor_->records();
    if (records == nullptr) return closedRecordset();
    return writeField(*records, column_, *plain);
  });
}

HRESULT FieldObject::get_Name(BSTR* name) {
  return withRecords([&](store::Recordset&, const store::Column& column) -> Outcome {
    if (name == nullptr) return nullPointer();
    *name = newText(column.name);
    return {};
  });
}

HRESULT FieldObject::get_Type(long* type) {
  return withRecords([&](store::Recordset&, const store::Column& column) -> Outcome {
    if (type == nullptr) return nullPointer();
    *type = static_cast<long>(column.type.code);
    return {};
  });
}

HRESULT FieldObject::get_Attributes(long* attributes) {
  return withRecords([&](store::Recordset& records, const store::Column& column) -> Outcome {
    if (attributes == nullptr) return nullPointer();
    *attributes = attributesOf(records, column);
    return {};
  });
}

HRESULT FieldObject::get_DefinedSize(long* size) {
  return withRecords([&](store::Recordset&, const store::Column& column) -> Outcome {
    if (size == nullptr) return nullPointer();
    *size = column.type.definedSize;
    return {};
  });
}

HRESULT FieldObject::get_ActualSize(long* size) {
  return withRecords([&](store::Recordset& records, const store::Column&) -> Outcome {
    if (size == nullptr) return nullPointer();
    OwnedVariant value;
    if (Outcome outcome = readField(records, column_, &value); !outcome) return outcome;
    constexpr std::size_t kMost = std::numeric_limits<long>::max();
    *size = static_cast<long>(std::min(sizeOf(*value), kMost));
    return {};
  });
}

HRESULT FieldObject::ReadBeginning(long mostBytes, VARIANT* value, hyper* length, hyper* fingerprint) {
  return withRecords([&](store::Recordset& records, const store::Column& column) -> Outcome {
    if (value == nullptr || length == nullptr || fingerprint == nullptr) return nullPointer();
    store::Cell cell;
    if (store::Status status = records.cell(column_, &cell); !status) return status;
    const bool isText = cell.kind == store::CellKind::text;
    std::size_t whole = 0;
    std::size_t digest = 0;
    if (isText || cell.kind == store::CellKind::blob) {
      const auto most = static_cast<std::size_t>(std::max(mostBytes, 0L));
      whole = isText ? unitCount(cell.bytes) : cell.bytes.size();
      if (cell.bytes.size() > most) {
        digest = std::hash<std::string_view>()(cell.bytes) | 1;  // never 0
        cell.bytes = isText ? store::beginningOf(cell.bytes, most) : cell.bytes.substr(0, most);
      }
    }
    OwnedVariant shown = shownValue(cell, column.type);
    *value = shown.release();
    *length = static_cast<hyper>(whole);
    *fingerprint = static_cast<hyper>(digest);
    return {};
  });
}

HRESULT FieldObject::ReadSeparated(BSTR* text) {
  return withRecords([&](store::Recordset& records, const store::Column& column) -> Outcome {
    if (text == nullptr) return nullPointer();
    store::Cell cell;
    if (store::Status status = records.cell(column_, &cell); !status) return status;
    const bool isText = cell.kind == store::CellKind::text;
    if (isText && (!exchange::isWellFormed(cell.bytes) || cell.bytes.find('\0') != std::string_view::npos)) {
      return {kConversion, "The text of " + column.name + " is not made of characters alone."};
    }
    std::string written;
    exchange::TextSink sink(written);
    exchange::TextOutput output(sink);
    exchange::CsvWriter writer({.format = {.separator = '\t'}});
    writer.writeCell(cell, {exchange::kindOf(column.declaredType), exchange::affinityOf(column.declaredType)},
                     output);
    if (store::Status status = output.flush(); !status) return status;
    *text = newText(std::string_view(written));
    return {};
  });
}

HRESULT FieldObject::get_ReferencedTable(BSTR* name) {
  return withRecords([&](store::Recordset&, const store::Column& column) -> Outcome {
    if (name == nullptr) return nullPointer();
    *name = newText(column.reference.table);
    return {};
  });
}

HRESULT FieldObject::get_ReferencedField(BSTR* name) {
  return withRecords([&](store::Recordset&, const store::Column& column) -> Outcome {
    if (name == nullptr) return nullPointer();
    *name = newText(column.reference.column);
    return {};
  });
}

HRESULT FieldObject::ReadLiteral(long mostBytes, BSTR* text) {
  return withRecords([&](store::Recordset& records, const store::Column& column) -> Outcome {
    if (text == nullptr) return nullPointer();
    store::Cell cell;
    if (store::Status status = records.cell(column_, &cell); !status) return status;
    if (cell.bytes.size() > static_cast<std::size_t>(std::max(mostBytes, 0L))) {
      return {kConversion, "The value of " + column.name + " is too long."};
    }
    // What is no day would be refused beside a field of dates.
    const bool isOdd = column.type.code == store::TypeCode::date && cell.kind == store::CellKind::text &&
                       !store::parseIsoDate(cell.bytes);
    std::string written;
    exchange::TextSink sink(written);
    exchange::TextOutput output(sink);
    exchange::putLiteral(cell, isOdd, output);
    if (store::Status status = output.flush(); !status) return status;
    *text = newText(std::string_view(written));
    return {};
  });
}

}  // namespace automation
