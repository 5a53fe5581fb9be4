#include "platform/store/sqlite/connection/function_values.h"

namespace store {

CellKind kindOf(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return CellKind::integer;
    case SQLITE_FLOAT:
      return CellKind::real;
    case SQLITE_TEXT:
      return CellKind::text;
    case SQLITE_BLOB:
      return CellKind::blob;
    default:
      return CellKind::null;
  }
}

Cell cellOf(sqlite3_value* value, CellKind kind) {
  Cell cell;
  cell.kind = kind;
  switch (kind) {
    case CellKind::integer:
      cell.integer = sqlite3_value_int64(value);
      break;
    case CellKind::real:
      cell.real = sqlite3_value_double(value);
      break;
    case CellKind::text:
    case CellKind::blob: {
      const bool isText = kind == CellKind::text;
      const void* bytes = isText ? sqlite3_value_text(value) : sqlite3_value_blob(value);
      const int length = sqlite3_value_bytes(value);
      if (bytes != nullptr && length > 0) {
        cell.bytes = {static_cast<const char*>(bytes), static_cast<std::size_t>(length)};
      }
      break;
    }
    case CellKind::null:
      break;
  }
  return cell;
}

}  // namespace store
