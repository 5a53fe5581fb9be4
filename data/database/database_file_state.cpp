// The open file was deleted, or another one has taken its place.
#include <algorithm>
#include <memory>
#include <utility>

#include "data/database/database.h"
#include "data/handles/adoce_constants.h"
#include "data/handles/connection_handle.h"
#include "data/handles/copies_handle.h"
#include "data/handles/history_handle.h"
#include "data/handles/recordset_handle.h"

FileState Database::fileState() {
  return isOpen_ ? connection_->fileState() : FileState::present;
}

Outcome Database::tryWriting() {
  return connection_->tryWriting();
}

bool Database::isServers() const {
  return isOpen_ && connection_->isServers();
}

Outcome Database::describeServer(String& text) {
  if (isOpen_) return connection_->describeServer(text);
  text.clear();
  return {};
}

Outcome Database::takeRefusal() {
  return isOpen_ ? connection_->takeRefusal() : Outcome();
}

Outcome Database::givePassword(const String& password) {
  return connection_->givePassword(password.text());
}

Outcome Database::saveCopy(const String& path) {
  return connection_->saveCopy(path.text());
}

Outcome Database::tryOpening(const String& path) {
  ConnectionHandle connection;
  connection.setBusyListener(busyListener_);
  return connection.open(path.text());
}

Outcome Database::goOnIn(const String& copy, bool keepsRecords) {
  auto connection = std::make_unique<ConnectionHandle>();
  connection->setBusyListener(busyListener_);
  CopiesHandle(*connection).keepIn(copiesFolder_);
  if (Outcome opened = connection->open(copy.text()); !opened) return opened;
  HistoryHandle(*connection).keep();
  auto records = std::make_unique<RecordsetHandle>();
  if (keepsRecords) {
    if (Outcome opened =
            records->open(recordsetSql_.text(), connection.get(), CursorType::keyset, SourceKind::text);
        !opened) {
      return opened;
    }
    if (Outcome taken = takeOver(records); !taken) return taken;
  } else {
    recordset_.swap(records);
  }
  dropListRows();
  // The former recordset before the connection that it reads by.
  records.reset();
  connection_ = std::move(connection);
  path_ = copy;
  rememberOthersChanges();
  return {};
}

/// Puts `records` in the place of the current recordset, which it then holds; not when they are others.
Outcome Database::takeOver(std::unique_ptr<RecordsetHandle>& records) {
  const Outcome others = Outcome::failure(L"The records are not the same there.");
  if (!hasSameFields(*records)) return others;
  // Other programs may have added and deleted some since the former recordset was opened.
  const auto count = static_cast<std::uint32_t>(std::max(records->recordCount(), 0L));
  if (newRecordPending_) {
    if (Outcome begun = records->addNew(); !begun) return begun;
    recordset_.swap(records);
    setRecordCount(count + 1);
    currentRecord = count + 1;
    return {};
  }
  // A search may have left the cursor behind the last record.
  const bool hasRecord = currentRecord >= 1 && currentRecord <= recordCount_;
  RecordSnapshot before;
  if (hasRecord && moveTo(currentRecord)) before = readRecord();
  recordset_.swap(records);
  const bool moved = currentRecord == 0 || moveTo(currentRecord);
  if (hasRecord && (!moved || !before.isReadable() || !holds(readRecord(), before))) {
    recordset_.swap(records);
    return others;
  }
  setRecordCount(count);
  return {};
}
