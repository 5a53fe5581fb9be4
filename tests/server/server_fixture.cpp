#include "tests/server/server_fixture.h"

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "platform/store/dsn/file_dsn.h"
#include "platform/store/odbc/driver/answer.h"
#include "platform/store/odbc/server_database.h"
#include "platform/store/sql/sql_tokens.h"
#include "tests/store/cell_text.h"
#include "tests/support/process.h"

namespace store {

namespace {

constexpr const char* kServersOwn = "postgres";

std::string portOfServer() {
  const char* port = std::getenv("QUIVANE_TEST_SERVER");
  if (port == nullptr)
    throw std::runtime_error("There is no server: the program is run by tests/server/with-server.");
  return port;
}

/// When the server began; empty as long as it is away.
std::string beginningOfServer() {
  FileDsn dsn;
  EXPECT_TRUE(readFileDsn(linkTo(kServersOwn), &dsn));
  OdbcConnection connection(connectionTextOf(dsn), {});
  Answer answer;
  const Status status = ask(connection, "SELECT pg_postmaster_start_time()::text", {}, &answer);
  return status ? answer.at(0).at(0).value_or("") : "";
}

/// What the conversations about a database are doing; empty when there are none. The server's own worker may
/// be there to look after the tables.
std::string conversationsAbout(const std::string& database) {
  FileDsn dsn;
  EXPECT_TRUE(readFileDsn(linkTo(kServersOwn), &dsn));
  OdbcConnection connection(connectionTextOf(dsn), {});
  Answer answer;
  const Status status =
      ask(connection,
          "SELECT string_agg(concat_ws(' ', state, query), '; ') FROM pg_stat_activity WHERE backend_type = "
          "'client backend' AND datname = '" +
              database + "'",
          {}, &answer);
  return status ? answer.at(0).at(0).value_or("") : status.message();
}

/// The one database of this process, made at the first call and emptied at each: to make one takes the server
/// longer than most tests do.
const std::string& emptyDatabase() {
  static const std::string name = "test_" + std::to_string(testsupport::processNumber());
  static bool isMade = false;
  if (!std::exchange(isMade, true)) {
    runOnServer("CREATE DATABASE " + name, kServersOwn);
  } else {
    runOnServer(
        "DO $$ DECLARE s text; BEGIN FOR s IN SELECT nspname FROM pg_namespace WHERE nspname !~ '^pg_' AND "
        "nspname <> 'information_schema' LOOP EXECUTE 'DROP SCHEMA ' || quote_ident(s) || ' CASCADE'; END "
        "LOOP; "
        "END $$; CREATE SCHEMA public; GRANT USAGE ON SCHEMA public TO PUBLIC",
        name);
  }
  return name;
}

}  // namespace

std::string linkTo(const std::string& database, const std::string& more) {
  return "[ODBC]\nDRIVER=PostgreSQL Unicode\nSERVER=127.0.0.1\nPORT=" + portOfServer() +
         "\nDATABASE=" + database + "\nUID=quivane\n" + more;
}

void runOnServer(const std::string& sql, const std::string& database) {
  FileDsn dsn;
  ASSERT_TRUE(readFileDsn(linkTo(database), &dsn));
  OdbcConnection connection(connectionTextOf(dsn), {});
  OdbcStatement statement(connection);
  const Status status = statement.run(sql);
  ASSERT_TRUE(status) << sql << ": " << status.message();
}

void restartServer() {
  const char* folder = std::getenv("QUIVANE_TEST_SERVER_FOLDER");
  ASSERT_NE(nullptr, folder);
  const std::string former = beginningOfServer();
  testsupport::writeFile(std::filesystem::path(folder) / "restart", "");
  std::string present = former;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while ((present == former || present.empty()) && std::chrono::steady_clock::now() < deadline) {
    present = beginningOfServer();
  }
  ASSERT_NE("", present);
  ASSERT_NE(former, present);
}

bool isMetSoon(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
  }
  return true;
}

OtherProgram::OtherProgram(const std::filesystem::path& link) {
  const Status status = openPath(utf8Of(link), {}, &backend_);
  if (!status) throw std::runtime_error(status.message());
}

Status OtherProgram::tryRun(const std::string& sql) {
  const Tokens tokens(sql);
  Status status;
  std::size_t first = 0;
  for (std::size_t index = 0; index <= tokens.count() && status; ++index) {
    if (index < tokens.count() && tokens[index].kind != TokenKind::semicolon) continue;
    std::int64_t affected = 0;
    std::unique_ptr<RowSource> rows;
    if (index > first) status = backend_->run(tokens.slice(first, index), &affected, &rows);
    first = index + 1;
  }
  return status;
}

void OtherProgram::run(const std::string& sql) {
  const Status status = tryRun(sql);
  ASSERT_TRUE(status) << sql << ": " << status.message();
}

std::string OtherProgram::ask(const std::string& sql) {
  std::unique_ptr<RowStream> rows;
  bool hasRow = false;
  Status status = backend_->openStream(sql, SourceKind::text, &rows);
  if (status) status = rows->next(&hasRow);
  EXPECT_TRUE(status) << sql << ": " << status.message();
  return status && hasRow ? plainTextOf(rows->cell(0)) : "(none)";
}

StoreTest::StoreTest() : database_(emptyDatabase()), path_(folder_.file("some data.cdb")) {
  testsupport::writeFile(path_, linkTo(database_));
}

StoreTest::~StoreTest() {
  backend_.reset();
  std::string left;
  EXPECT_TRUE(isMetSoon([&] { return (left = conversationsAbout(database_)).empty(); })) << left;
}

void StoreTest::open(const OpenOptions& options) {
  std::unique_ptr<Backend> backend;
  const Status status = openPath(utf8Of(path_), options, &backend);
  ASSERT_TRUE(status) << status.message();
  backend_ = std::move(backend);
}

Status StoreTest::tryRun(std::string_view sql, std::int64_t* affected) {
  std::int64_t count = 0;
  std::unique_ptr<RowSource> rows;
  return backend_->run(sql, affected != nullptr ? affected : &count, &rows);
}

void StoreTest::run(std::string_view sql) {
  const Status status = tryRun(sql);
  ASSERT_TRUE(status) << sql << ": " << status.message();
}

Status StoreTest::tryOpen(std::string_view source, std::unique_ptr<Recordset>* recordset, SourceKind kind,
                          CursorType cursor, LockType lock) {
  std::unique_ptr<RowSource> rows;
  if (Status status = backend_->openRows(source, kind, &rows); !status) return status;
  if (rows == nullptr) return {ErrorCode::illegalOperation, "no rows"};
  auto made = std::make_unique<Recordset>(backend_, std::move(rows), cursor, lock);
  if (Status status = made->load(); !status) return status;
  *recordset = std::move(made);
  return {};
}

std::unique_ptr<Recordset> StoreTest::records(std::string_view source, SourceKind kind) {
  std::unique_ptr<Recordset> recordset;
  const Status status = tryOpen(source, &recordset, kind);
  EXPECT_TRUE(status) << source << ": " << status.message();
  return recordset;
}

std::string StoreTest::textOf(Recordset& recordset, std::size_t column) {
  Cell cell;
  if (const Status status = recordset.cell(column, &cell); !status)
    return "(failed: " + status.message() + ")";
  return plainTextOf(cell);
}

std::string StoreTest::columnOf(Recordset& recordset, std::size_t column) {
  std::string text;
  while (!recordset.isEof()) {
    if (!text.empty()) text += ' ';
    text += textOf(recordset, column);
    if (!recordset.moveNext()) break;
  }
  return text;
}

std::string StoreTest::columnOf(std::string_view source, std::size_t column) {
  const std::unique_ptr<Recordset> recordset = records(source, SourceKind::unknown);
  return recordset ? columnOf(*recordset, column) : "(failed)";
}

}  // namespace store
