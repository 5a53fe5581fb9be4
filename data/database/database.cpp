#include "data/database/database.h"

#include <windows.h>

#include "data/database/sql_names.h"
#include "data/database/statement_text.h"
#include "data/handles/connection_handle.h"
#include "data/handles/history_handle.h"
#include "data/handles/recordset_handle.h"

namespace {

constexpr wchar_t kTooLong[] = L"The path is too long.";

}  // namespace

Database::Database()
    : recordset_(std::make_unique<RecordsetHandle>()), connection_(std::make_unique<ConnectionHandle>()) {
  currentRecord = 1;
}

Database::~Database() = default;

void Database::setBusyListener(BusyListener* listener) {
  busyListener_ = listener;
  connection_->setBusyListener(listener);
}

Outcome Database::open(const String& path, const String& password) {
  close();
  if (Outcome opened = connection_->open(path.text(), password.text()); !opened) return opened;
  HistoryHandle(*connection_).keep();
  path_ = path;
  isOpen_ = true;
  rememberOthersChanges();
  return {};
}

bool Database::close() {
  dropListRows();
  connection_->close();
  clearFields();
  isOpen_ = false;
  path_.clear();
  setRecordCount(0);
  newRecordPending_ = false;
  return true;
}

Outcome Database::createDatabase(const String& path) {
  StatementText statement;
  Outcome created = joinStatement({L"CREATE DATABASE ", quotedName(path).c_str()}, statement)
                        ? openStore()
                        : Outcome::failure(kTooLong);
  if (created) created = runInStore(statement.data());
  close();
  return created;
}

Outcome Database::dropDatabase(const String& path) {
  StatementText statement;
  if (!joinStatement({L"DROP DATABASE ", quotedName(path).c_str()}, statement))
    return Outcome::failure(kTooLong);
  const bool isOther = isOpen_ && CompareStringOrdinal(path_.text(), -1, path.text(), -1, TRUE) != CSTR_EQUAL;
  if (isOther) return dropBeside(statement.data());
  close();
  if (Outcome opened = openStore(); !opened) return opened;
  if (Outcome dropped = runInStore(statement.data()); !dropped) return dropped;
  connection_->close();
  return {};
}

/// By a connection of its own.
Outcome Database::dropBeside(const wchar_t* statement) {
  ConnectionHandle store;
  store.setBusyListener(busyListener_);
  if (Outcome opened = store.open(L""); !opened) return opened;
  RecordsetHandle recordset;
  return recordset.open(statement, &store, CursorType::dynamic, SourceKind::text);
}

/// Connects to the store without a file; the open file is closed.
Outcome Database::openStore() {
  return connection_->open(L"");
}

/// Runs a statement that makes or deletes a file, as the source of a recordset.
Outcome Database::runInStore(const wchar_t* statement) {
  RecordsetHandle recordset;
  return recordset.open(statement, connection_.get(), CursorType::dynamic, SourceKind::text);
}
