// The bytes are a statement, which somebody runs in a sound database: it can fail, but neither damage the
// file nor leave it locked.
#include <memory>

#include "platform/store/rows/recordset.h"
#include "platform/store/sqlite/database_file.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

using store::Backend;

std::string soundDatabase(const fuzz::TempFile& file) {
  file.write({});
  std::filesystem::remove(file.path());
  fuzz::require(static_cast<bool>(store::createDatabase(file.path())), "a database can be made");
  std::unique_ptr<Backend> backend;
  fuzz::require(static_cast<bool>(store::openDatabase(file.path(), {}, &backend)), "it opens");
  for (const char* sql :
       {"CREATE TABLE t (a Integer, b Text, c Datetime, d Varbinary)",
        "INSERT INTO t VALUES (1, 'one', '2001-03-09 14:05:07', x'00FF'), (2, NULL, NULL, NULL)",
        "CREATE TABLE k (x Text, y Integer, PRIMARY KEY (x, y)) WITHOUT ROWID",
        "INSERT INTO k VALUES ('p', 1)", "CREATE VIEW v AS SELECT a, x FROM t, k"}) {
    std::int64_t affected = 0;
    std::unique_ptr<store::RowSource> rows;
    fuzz::require(static_cast<bool>(backend->run(sql, &affected, &rows)), sql);
  }
  backend.reset();
  return file.read();
}

void readAll(const std::shared_ptr<Backend>& backend, std::unique_ptr<store::RowSource> rows) {
  store::Recordset records(backend, std::move(rows), store::CursorType::keyset, store::LockType::optimistic);
  if (!records.load()) return;
  for (int count = 0; !records.isEof() && count < 20; ++count) {
    store::Cell cell;
    for (std::size_t column = 0; column < records.columns().size(); ++column) {
      static_cast<void>(records.cell(column, &cell));
    }
    if (!records.moveNext()) return;
  }
}

bool isSound(const std::shared_ptr<Backend>& backend) {
  backend->askWhileBusy(nullptr);
  std::unique_ptr<store::RowSource> rows;
  if (!backend->openRows("PRAGMA integrity_check", store::SourceKind::text, &rows) || rows == nullptr)
    return false;
  store::Recordset answer(backend, std::move(rows), store::CursorType::keyset, store::LockType::readOnly);
  store::Cell cell;
  return answer.load() && answer.recordCount() == 1 && answer.cell(0, &cell) && cell.bytes == "ok";
}

}  // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t length) {
  static const fuzz::TempFile file;
  static const std::string sound = soundDatabase(file);
  const std::string_view sql = fuzz::textOf(data, length);
  store::Statement statement;
  if (!readStatement(sql, &statement)) return 0;
  // These reach files of any name.
  if (statement.kind == store::StatementKind::createDatabase) return 0;
  if (statement.kind == store::StatementKind::dropDatabase) return 0;

  file.write(sound);
  std::unique_ptr<Backend> opened;
  fuzz::require(static_cast<bool>(store::openDatabase(file.path(), {.lockWait = 0}, &opened)),
                "it opens again");
  const std::shared_ptr<Backend> backend = std::move(opened);
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(200);
  backend->askWhileBusy([end](store::Busy) { return std::chrono::steady_clock::now() >= end; });
  std::unique_ptr<store::RowSource> rows;
  if (backend->openRows(sql, store::SourceKind::unknown, &rows) && rows != nullptr) {
    readAll(backend, std::move(rows));
  }
  rows.reset();
  fuzz::require(isSound(backend), "the file is sound afterwards");
  return 0;
}
