#include "data/database.h"

#include <windows.h>

#include "data/connection_handle.h"
#include "data/last_error.h"
#include "data/recordset_handle.h"
#include "data/statement_text.h"

namespace {

constexpr wchar_t kTooLong[] = L"The path is too long.";

}  // namespace

Database::Database()
    : recordset_(std::make_unique<RecordsetHandle>()), connection_(std::make_unique<ConnectionHandle>()) {
  currentRecord = 1;
}

Database::~Database() = default;

bool Database::open(const String& path) {
  close();
  connection_->setConnectionString(path.text());
  if (connection_->open() != ConnectionHandle::kOpened) {
    refusalText_ = takeLastErrorText();
    return false;
  }
  path_ = path;
  isOpen_ = true;
  return true;
}

bool Database::close() {
  connection_->close();
  clearFields();
  isOpen_ = false;
  path_.clear();
  setRecordCount(0);
  newRecordPending_ = false;
  return true;
}

bool Database::createDatabase(const String& path) {
  StatementText statement;
  if (!joinStatement({L"CREATE DATABASE '", path.text(), L"'"}, statement)) {
    refusalText_ = kTooLong;
    close();
    return false;
  }
  const bool created = openStore() && runInStore(statement.data());
  close();
  return created;
}

bool Database::dropDatabase(const String& path) {
  StatementText statement;
  if (!joinStatement({L"DROP DATABASE '", path.text(), L"'"}, statement)) {
    refusalText_ = kTooLong;
    return false;
  }
  const bool isOther = isOpen_ && CompareStringOrdinal(path_.text(), -1, path.text(), -1, TRUE) != CSTR_EQUAL;
  if (isOther) return dropBeside(statement.data());
  close();
  if (!openStore() || !runInStore(statement.data())) return false;
  connection_->close();
  return true;
}

/// By a connection of its own.
bool Database::dropBeside(const wchar_t* statement) {
  ConnectionHandle store;
  store.setConnectionString(L"");
  RecordsetHandle recordset;
  const bool dropped = store.open() == ConnectionHandle::kOpened &&
                       recordset.open(statement, &store, CursorType::dynamic, SourceKind::text);
  if (!dropped) refusalText_ = takeLastErrorText();
  return dropped;
}

/// Connects to the store without a file; the open file is closed.
bool Database::openStore() {
  connection_->setConnectionString(L"");
  if (connection_->open() == ConnectionHandle::kOpened) return true;
  refusalText_ = takeLastErrorText();
  return false;
}

/// Runs a statement that makes or deletes a file, as the source of a recordset.
bool Database::runInStore(const wchar_t* statement) {
  RecordsetHandle recordset;
  if (recordset.open(statement, connection_.get(), CursorType::dynamic, SourceKind::text)) return true;
  // Before the recordset's end, whose closing fails too and has a reason of its own.
  refusalText_ = takeLastErrorText();
  return false;
}
