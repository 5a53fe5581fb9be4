#include "data/database.h"

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
  if (!created) refusalText_ = takeLastErrorText();
  close();
  return created;
}

bool Database::dropDatabase(const String& path) {
  close();
  StatementText statement;
  if (!joinStatement({L"DROP DATABASE '", path.text(), L"'"}, statement)) return false;
  if (!openStore() || !runInStore(statement.data())) return false;
  connection_->close();
  return true;
}

bool Database::dropOtherDatabase(const String& path) {
  StatementText statement;
  if (!joinStatement({L"DROP DATABASE '", path.text(), L"'"}, statement)) {
    refusalText_ = kTooLong;
    return false;
  }
  ConnectionHandle store;
  store.setConnectionString(L"");
  RecordsetHandle recordset;
  const bool dropped = store.open() == ConnectionHandle::kOpened &&
                       recordset.open(statement.data(), &store, CursorType::dynamic, SourceKind::text);
  if (!dropped) refusalText_ = takeLastErrorText();
  return dropped;
}

/// Connects to the store without a file; the open file is closed.
bool Database::openStore() {
  connection_->setConnectionString(L"");
  return connection_->open() == ConnectionHandle::kOpened;
}

/// Runs a statement that makes or deletes a file, as the source of a recordset.
bool Database::runInStore(const wchar_t* statement) {
  RecordsetHandle recordset;
  return recordset.open(statement, connection_.get(), CursorType::dynamic, SourceKind::text);
}
