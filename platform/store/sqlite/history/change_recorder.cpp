#include "platform/store/sqlite/history/change_recorder.h"

#include <algorithm>
#include <new>
#include <utility>

namespace store {

namespace {

constexpr const char* kMain = "main";

}  // namespace

UniqueSession makeSession(sqlite3* connection) {
  sqlite3_session* made = nullptr;
  if (sqlite3session_create(connection, kMain, &made) != SQLITE_OK) return nullptr;
  UniqueSession session(made);
  int isWanted = 1;
  if (sqlite3session_object_config(made, SQLITE_SESSION_OBJCONFIG_ROWID, &isWanted) != SQLITE_OK ||
      sqlite3session_attach(made, nullptr) != SQLITE_OK) {
    return nullptr;
  }
  return session;
}

void ChangeRecorder::begin(std::size_t mostBytes) {
  end();
  mostBytes_ = mostBytes;
  session_ = makeSession(connection_);
  isLost_ = session_ == nullptr;
  if (isLost_) return;
  sqlite3session_table_filter(session_.get(), &ChangeRecorder::onTable, this);
  sqlite3_update_hook(connection_, &ChangeRecorder::onRow, this);
}

void ChangeRecorder::end() {
  if (session_) sqlite3_update_hook(connection_, nullptr, nullptr);
  session_.reset();
  touched_.clear();
  touchedCount_ = 0;
  last_ = nullptr;
  isLost_ = true;
}

void ChangeRecorder::checkSize() {
  if (isLost_) return;
  const std::size_t bytes = static_cast<std::size_t>(sqlite3session_memory_used(session_.get())) +
                            touchedCount_ * sizeof(std::int64_t);
  if (bytes <= mostBytes_) return;
  isLost_ = true;
  sqlite3session_enable(session_.get(), 0);
}

Status ChangeRecorder::read(bool* isKnown, Changeset* changes) {
  *isKnown = false;
  checkSize();
  if (isLost_) return {};
  int size = 0;
  void* bytes = nullptr;
  const int result = sqlite3session_changeset(session_.get(), &size, &bytes);
  Changeset made(bytes, size);
  if (result == SQLITE_INTERRUPT) return {ErrorCode::stopped, "The statement was stopped."};
  if (result != SQLITE_OK || static_cast<std::size_t>(size) > mostBytes_) return {};
  *changes = std::move(made);
  *isKnown = true;
  return {};
}

// No exception may go through SQLite: what can't be remembered loses the step.

int ChangeRecorder::onTable(void* self, const char* name) {
  auto* recorder = static_cast<ChangeRecorder*>(self);
  try {
    recorder->touched_.push_back({.name = name, .rowIds = {}});
  } catch (const std::bad_alloc&) {
    recorder->isLost_ = true;
  }
  recorder->last_ = nullptr;
  return 1;
}

void ChangeRecorder::onRow(void* self, int, const char* database, const char* table, sqlite3_int64 rowId) {
  auto* recorder = static_cast<ChangeRecorder*>(self);
  if (recorder->isLost_ || sqlite3_stricmp(database, kMain) != 0) return;
  try {
    recorder->touch(table, rowId);
  } catch (const std::bad_alloc&) {
    recorder->isLost_ = true;
  }
  // One row may hold as much as all may take.
  recorder->checkSize();
}

void ChangeRecorder::touch(const char* table, std::int64_t rowId) {
  if (last_ == nullptr || last_->name != table) {
    const auto found = std::find_if(touched_.begin(), touched_.end(),
                                    [table](const TouchedTable& known) { return known.name == table; });
    if (found == touched_.end()) return;
    last_ = &*found;
  }
  last_->rowIds.push_back(rowId);
  ++touchedCount_;
}

}  // namespace store
