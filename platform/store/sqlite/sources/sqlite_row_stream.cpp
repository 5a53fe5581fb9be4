#include "platform/store/sqlite/sources/sqlite_row_stream.h"

namespace store {

namespace {

std::string_view bytesOf(sqlite3_stmt* statement, int index, const void* data) {
  const int length = sqlite3_column_bytes(statement, index);
  if (data == nullptr || length <= 0) return {};
  return {static_cast<const char*>(data), static_cast<std::size_t>(length)};
}

}  // namespace

Status SqliteRowStream::next(bool* hasRow) {
  int result = SQLITE_DONE;
  // A statement that has ended would begin anew.
  if (!isAtEnd_) {
    const StatementWatch::Asked asked(connection_.watch());
    result = sqlite3_step(statement_.get());
  }
  if (result != SQLITE_ROW) isAtEnd_ = true;
  if (Status status = statusOf(connection_.handle(), result); !status) return status;
  *hasRow = result == SQLITE_ROW;
  return {};
}

Cell SqliteRowStream::cell(std::size_t number) {
  const int index = static_cast<int>(number);
  sqlite3_stmt* statement = statement_.get();
  Cell cell;
  switch (sqlite3_column_type(statement, index)) {
    case SQLITE_INTEGER:
      cell.kind = CellKind::integer;
      cell.integer = sqlite3_column_int64(statement, index);
      break;
    case SQLITE_FLOAT:
      cell.kind = CellKind::real;
      cell.real = sqlite3_column_double(statement, index);
      break;
    case SQLITE_TEXT:
      cell.kind = CellKind::text;
      cell.bytes = bytesOf(statement, index, sqlite3_column_text(statement, index));
      break;
    case SQLITE_BLOB:
      cell.kind = CellKind::blob;
      cell.bytes = bytesOf(statement, index, sqlite3_column_blob(statement, index));
      break;
    default:
      break;
  }
  return cell;
}

}  // namespace store
