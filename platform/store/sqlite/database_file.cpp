#include "platform/store/sqlite/database_file.h"

#include <array>
#include <filesystem>
#include <system_error>

#include "platform/store/dsn/file_dsn.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/files/file_head.h"
#include "platform/store/sqlite/files/new_file.h"
#include "platform/store/sqlite/sqlite_backend.h"

namespace store {

namespace {

// Marks the files made here, so that file(1) and the desktop can tell them from other SQLite files.
constexpr const char* kApplicationId = "PRAGMA application_id=1367766638";  // "Qvn."

// A file that is to be deleted is either free now or in use.
constexpr int kDropWait = 500;

struct Closer {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
using Connection = std::unique_ptr<sqlite3, Closer>;

Status openConnection(const std::string& path, int flags, Connection* connection) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
  connection->reset(opened);
  if (result == SQLITE_OK) return {};
  return {ErrorCode::cannotOpen, statusOf(opened, result).message()};
}

bool isUsedByOthers(sqlite3* connection) {
  sqlite3_busy_timeout(connection, kDropWait);
  // Leaving the write-ahead mode needs the file alone; in other modes it changes nothing.
  int result = sqlite3_exec(connection, "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr);
  if (result == SQLITE_OK) result = sqlite3_exec(connection, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
  if (result == SQLITE_OK) sqlite3_exec(connection, "ROLLBACK", nullptr, nullptr, nullptr);
  // A damaged database may be deleted all the same.
  return result == SQLITE_BUSY || result == SQLITE_LOCKED;
}

bool isSameFile(const std::string& left, const std::string& right) {
  std::error_code error;
  return std::filesystem::equivalent(pathOf(left), pathOf(right), error) && !error;
}

Status linkStays() {
  return {ErrorCode::illegalOperation,
          "The file is a link to a server's database, which is not deleted here. To be rid of the link, "
          "delete the "
          "file."};
}

class StoreWithoutDatabase : public Backend {
 public:
  bool isReadOnly() const override { return true; }
  // What it does, the making and deleting of files, is done at once.
  void askWhileBusy(BusyQuestion) override {}
  void stop() override {}

  Status openRows(std::string_view source, SourceKind, std::unique_ptr<RowSource>* rows) override {
    std::int64_t affected = 0;
    return run(source, &affected, rows);
  }

  Status run(std::string_view sql, std::int64_t* affected, std::unique_ptr<RowSource>* rows) override {
    Statement statement;
    if (Status status = readStatement(sql, &statement); !status) return status;
    if (Status status = runDatabaseStatement(statement, {}); !status) return status;
    *affected = 0;
    rows->reset();
    return {};
  }

  Status openStream(std::string_view, SourceKind, std::unique_ptr<RowStream>*) override {
    return {ErrorCode::noTable, "No database is open."};
  }
  Status describeTable(std::string_view, TableSchema*) override {
    return {ErrorCode::noTable, "No database is open."};
  }
  Status beginLoad(const LoadTarget&, std::unique_ptr<TableLoad>*) override {
    return {ErrorCode::noTable, "No database is open."};
  }
  Status checkFile() override { return {}; }
  Status tryWriting() override { return {ErrorCode::noTable, "No database is open."}; }
  Status countOthersChanges(std::int64_t*) override { return {ErrorCode::noTable, "No database is open."}; }
  Status saveCopy(const std::string&) override { return {ErrorCode::noTable, "No database is open."}; }
};

}  // namespace

Status openDatabase(const std::string& path, const OpenOptions& options, std::unique_ptr<Backend>* backend) {
  auto connection = std::make_unique<SqliteConnection>();
  if (Status status = connection->open(path, options); !status) return status;
  *backend = std::make_unique<SqliteBackend>(std::move(connection), options.dateOrder, options.copies);
  return {};
}

std::unique_ptr<Backend> storeWithoutDatabase() {
  return std::make_unique<StoreWithoutDatabase>();
}

Status createDatabase(const std::string& path) {
  NewFileRemoval removal(path);
  if (Status status = createNewFile(path); !status) return status;
  removal.begin();
  Connection connection;
  if (Status status = openConnection(path, SQLITE_OPEN_READWRITE, &connection); !status) return status;
  const int result = sqlite3_exec(connection.get(), kApplicationId, nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) return statusOf(connection.get(), result);
  removal.cancel();
  return {};
}

Status dropDatabase(const std::string& path) {
  if (Status status = checkOrdinaryFile(path); !status) return status;
  {
    Connection connection;
    Status status = openConnection(path, SQLITE_OPEN_READWRITE, &connection);
    if (status) status = checkFileHead(connection.get());
    // Only now, because the closing of a handle may give up the locks that this program has on a database.
    if (status.code() == ErrorCode::cannotOpen && isFileDsnAt(path)) return linkStays();
    if (!status) return status;
    // Some systems delete such a file all the same.
    if (isMarkedReadOnly(path)) return {ErrorCode::readOnly, "The file is marked as not to be written."};
    if (isUsedByOthers(connection.get())) {
      return {ErrorCode::locked, "Another program is using the database."};
    }
  }
  std::error_code error;
  if (!std::filesystem::remove(pathOf(path), error) || error) {
    return {ErrorCode::locked, "The file can't be deleted: " + error.message()};
  }
  // What may be left beside the file after a crash is worth nothing without it, and would be taken for
  // the journal of a later file of this name.
  for (const char* suffix : {"-journal", "-wal", "-shm"})
    std::filesystem::remove(pathOf(path + suffix), error);
  return {};
}

Status runDatabaseStatement(const Statement& statement, const std::string& openPath) {
  switch (statement.kind) {
    case StatementKind::createDatabase:
      return createDatabase(statement.path);
    case StatementKind::dropDatabase:
      if (!openPath.empty() && isSameFile(statement.path, openPath)) {
        return {ErrorCode::locked, "The database is open."};
      }
      return dropDatabase(statement.path);
    default:
      return {ErrorCode::noTable, "No database is open."};
  }
}

}  // namespace store
