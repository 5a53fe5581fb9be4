#include "platform/store/sqlite/connection/sqlite_statement.h"

#include <string>

namespace store {

namespace {

struct Binder {
  sqlite3_stmt* statement;
  int position;
  sqlite3_destructor_type lifetime;

  int operator()(std::monostate) const { return sqlite3_bind_null(statement, position); }
  int operator()(std::int64_t value) const { return sqlite3_bind_int64(statement, position, value); }
  int operator()(double value) const { return sqlite3_bind_double(statement, position, value); }
  int operator()(const std::string& text) const {
    return sqlite3_bind_text64(statement, position, text.data(), text.size(), lifetime, SQLITE_UTF8);
  }
  int operator()(const Blob& blob) const {
    // An empty blob has no address that would be told from null.
    if (blob.bytes.empty()) return sqlite3_bind_zeroblob(statement, position, 0);
    return sqlite3_bind_blob64(statement, position, blob.bytes.data(), blob.bytes.size(), lifetime);
  }
};

std::string_view columnBytes(sqlite3_stmt* statement, int index, const void* data) {
  const int length = sqlite3_column_bytes(statement, index);
  if (data == nullptr || length <= 0) return {};
  return {static_cast<const char*>(data), static_cast<std::size_t>(length)};
}

}  // namespace

int prepareKept(sqlite3* connection, SqliteStatement& statement, const char* sql) {
  if (statement) return SQLITE_OK;
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v3(connection, sql, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
  statement.reset(prepared);
  return result;
}

int runKept(sqlite3* connection, SqliteStatement& statement, const char* sql) {
  if (const int result = prepareKept(connection, statement, sql); result != SQLITE_OK) return result;
  const int result = sqlite3_step(statement.get());
  sqlite3_reset(statement.get());
  return result == SQLITE_DONE || result == SQLITE_ROW ? SQLITE_OK : result;
}

void undo(sqlite3* connection) {
  int result = SQLITE_INTERRUPT;
  while ((result & 0xFF) == SQLITE_INTERRUPT && sqlite3_get_autocommit(connection) == 0) {
    result = sqlite3_exec(connection, "ROLLBACK", nullptr, nullptr, nullptr);
  }
}

int bindValue(sqlite3_stmt* statement, int position, const Value& value) {
  return std::visit(Binder{statement, position, SQLITE_STATIC}, value);
}

int bindValueCopy(sqlite3_stmt* statement, int position, const Value& value) {
  return std::visit(Binder{statement, position, SQLITE_TRANSIENT}, value);
}

std::string_view columnText(sqlite3_stmt* statement, int index) {
  return columnBytes(statement, index, sqlite3_column_text(statement, index));
}

Value columnValue(sqlite3_stmt* statement, int index) {
  switch (sqlite3_column_type(statement, index)) {
    case SQLITE_INTEGER:
      return std::int64_t{sqlite3_column_int64(statement, index)};
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement, index);
    case SQLITE_TEXT:
      return std::string(columnText(statement, index));
    case SQLITE_BLOB:
      return Blob{std::string(columnBytes(statement, index, sqlite3_column_blob(statement, index)))};
    default:
      return std::monostate{};
  }
}

bool copyColumns(sqlite3_stmt* statement, int count, Row* row) {
  for (int index = 0; index < count; ++index) {
    switch (sqlite3_column_type(statement, index)) {
      case SQLITE_INTEGER:
        row->addInteger(sqlite3_column_int64(statement, index));
        break;
      case SQLITE_FLOAT:
        row->addReal(sqlite3_column_double(statement, index));
        break;
      case SQLITE_TEXT: {
        const unsigned char* text = sqlite3_column_text(statement, index);
        if (text == nullptr) return false;
        const std::string_view bytes = columnBytes(statement, index, text);
        row->addBytes(CellKind::text, bytes.data(), bytes.size());
        break;
      }
      case SQLITE_BLOB: {
        const void* data = sqlite3_column_blob(statement, index);
        if (data == nullptr && sqlite3_column_bytes(statement, index) > 0) return false;
        const std::string_view bytes = columnBytes(statement, index, data);
        row->addBytes(CellKind::blob, bytes.data(), bytes.size());
        break;
      }
      default:
        row->addNull();
        break;
    }
  }
  return true;
}

}  // namespace store
