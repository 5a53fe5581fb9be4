// The conversation with a server: lost, stopped, not answered and not to be had.
#include <atomic>
#include <chrono>
#include <future>
#include <new>
#include <thread>

#include "platform/store/dsn/file_dsn.h"
#include "platform/store/odbc/driver/answer.h"
#include "platform/store/odbc/driver/call_thread.h"
#include "platform/store/odbc/driver/odbc_session.h"
#include "platform/store/odbc/driver/odbc_statement.h"
#include "platform/store/odbc/driver/odbc_text.h"
#include "platform/store/odbc/sources/key_reading.h"
#include "tests/server/server_fixture.h"

namespace store {
namespace {

class ServerConnectionTest : public ServerRowTest {
 protected:
  /// A conversation of the test's own, by which the server can be told something when nobody else can.
  std::unique_ptr<OdbcConnection> ownConversation() const {
    FileDsn dsn;
    EXPECT_TRUE(readFileDsn(linkTo("postgres"), &dsn));
    auto made = std::make_unique<OdbcConnection>(connectionTextOf(dsn), std::vector<std::string>());
    EXPECT_TRUE(made->ensureOpen());
    return made;
  }
};

/// As long as it lives nobody answers who connects to the server: neither a new conversation nor who asks to
/// end a statement.
class SilentCaller {
 public:
  explicit SilentCaller(OdbcConnection& inside) : inside_(inside) { signal("STOP"); }
  ~SilentCaller() { signal("CONT"); }

 private:
  void signal(const std::string& name) {
    OdbcStatement statement(inside_);
    EXPECT_TRUE(statement.run("COPY (SELECT 1) TO PROGRAM 'cat >/dev/null; kill -" + name +
                              " $(head -n 1 postmaster.pid)'"));
  }

  OdbcConnection& inside_;
};

/// As long as it lives the process of a conversation does nothing. Left like that it would keep whoever drops
/// a database waiting for good.
class SilentConversation {
 public:
  explicit SilentConversation(std::string process) : process_(std::move(process)) { signal("STOP"); }
  ~SilentConversation() { signal("CONT"); }

 private:
  void signal(const std::string& name) {
    runOnServer("COPY (SELECT 1) TO PROGRAM 'cat >/dev/null; kill -" + name + " " + process_ + "'",
                "postgres");
  }

  std::string process_;
};

TEST_F(ServerConnectionTest, AConnectionThatWasLostIsToldOnceAndBeginsAnew) {
  openRow("a text", "'a'");
  EXPECT_EQ("a", textOf(*rows_, 1));
  const auto result = records("SELECT max(a) FROM t");
  runOnServer(
      "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE pid <> pg_backend_pid() AND datname = '" +
          database_ + "'",
      "postgres");
  ASSERT_TRUE(rows_->setValue(1, std::string("typed")));
  const Status lost = rows_->update();
  EXPECT_EQ(ErrorCode::inputOutput, lost.code());
  EXPECT_NE(std::string::npos, lost.message().find("connection to the server was lost")) << lost.message();
  EXPECT_EQ("typed", textOf(*rows_, 1));
  EXPECT_TRUE(rows_->update());
  EXPECT_EQ("typed", onServer("SELECT a FROM t"));
  Cell cell;
  EXPECT_EQ(ErrorCode::structureChanged, result->cell(0, &cell).code()) << "what the server kept is gone";
}

TEST_F(ServerConnectionTest, ALongStatementIsStoppedByWhoIsAsked) {
  openRow("a integer", "1");
  bool wasAsked = false;
  backend_->askWhileBusy([&](Busy) {
    wasAsked = true;
    return true;
  });
  const auto start = std::chrono::steady_clock::now();
  std::unique_ptr<Recordset> none;
  EXPECT_EQ(ErrorCode::stopped,
            tryOpen("SELECT max(i) FROM (SELECT pg_sleep(60), a AS i FROM t) AS s", &none).code());
  EXPECT_TRUE(wasAsked);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  backend_->askWhileBusy({});
  EXPECT_EQ("1", columnOf("SELECT a FROM t"));
}

TEST_F(ServerConnectionTest, AStatementIsStoppedFromAnotherThread) {
  openRow("a integer", "1");
  std::thread stopper([this] {
    // It has to be running before it can be stopped.
    EXPECT_TRUE(isMetSoon([this] {
      return OtherProgram(path_).ask(
                 "SELECT count(*) FROM pg_stat_activity WHERE state = 'active' AND query LIKE "
                 "'%pg_sleep(60)%' AND query NOT LIKE '%pg_stat_activity%'") != "0";
    }));
    backend_->stop();
  });
  std::unique_ptr<Recordset> none;
  EXPECT_EQ(ErrorCode::stopped,
            tryOpen("SELECT max(i) FROM (SELECT pg_sleep(60), a AS i FROM t) AS s", &none).code());
  stopper.join();
}

/// In the place of a driver manager that lets nobody at a statement until it has come back.
std::atomic<bool> mayCancel = false;
SQLRETURN SQL_API heldBackCancel(SQLHSTMT /*statement*/) {
  mayCancel.wait(false);
  return SQL_SUCCESS;
}

TEST_F(ServerConnectionTest, AStatementIsStoppedWhereTheDriverManagerHoldsTheWishBack) {
  const OdbcFunctions* system = nullptr;
  ASSERT_TRUE(findOdbc(&system));
  // Who cancels may use them when the test is over.
  static OdbcFunctions functions;
  functions = *system;
  functions.cancel = heldBackCancel;
  mayCancel = false;
  FileDsn dsn;
  ASSERT_TRUE(readFileDsn(linkTo(database_), &dsn));
  const auto text = std::make_shared<const SecretText>(connectionTextOf(dsn));
  const auto session = std::make_shared<OdbcSession>(functions);
  ASSERT_TRUE(session->connect(text->text()));
  auto statement = std::make_shared<OdbcStatementHandle>();
  ASSERT_TRUE(statement->make(functions, session->handle()));
  std::u16string sql = u"SELECT pg_sleep(60) AS held_back";
  session->beginRunning({statement, statement->get()});
  std::future<SQLRETURN> running = std::async(std::launch::async, [&] {
    return system->executeDirect(statement->get(), wideOf(sql), static_cast<SQLINTEGER>(sql.size()));
  });
  std::string process;
  EXPECT_TRUE(isMetSoon([&] {
    process = onServer(
        "SELECT coalesce(max(pid), 0) FROM pg_stat_activity WHERE state = 'active' AND query LIKE "
        "'%held_back%' AND pid <> pg_backend_pid()");
    return process != "0";
  }));
  session->noteProcess(text, process);
  session->cancel();
  EXPECT_EQ(std::future_status::ready, running.wait_for(std::chrono::seconds(20)));
  EXPECT_FALSE(SQL_SUCCEEDED(running.get()));
  EXPECT_FALSE(session->endRunning(std::chrono::milliseconds(0))) << "the driver's cancelling is under way";
  mayCancel = true;
  mayCancel.notify_all();
  EXPECT_TRUE(session->endRunning(std::chrono::seconds(20)));
}

TEST_F(ServerConnectionTest, AServerThatIsRestartedInTheMidstOfAWalkLosesNothingAndShowsNoOtherRow) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v text)", database_);
  runOnServer("INSERT INTO t SELECT i, 'row ' || i FROM generate_series(1, 60) i", database_);
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_EQ(60, rows->recordCount());
  int failures = 0;
  // An operation may fail as long as the server is away, and then says so.
  const auto untilDone = [&](const auto& operation) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    for (Status status = operation(); !status; status = operation()) {
      ++failures;
      ASSERT_TRUE(status.code() == ErrorCode::inputOutput || status.code() == ErrorCode::cannotOpen)
          << status.message();
      EXPECT_EQ(std::string::npos, status.message().find('\t')) << status.message();
      ASSERT_LT(std::chrono::steady_clock::now(), deadline) << status.message();
    }
  };
  // Once before reading and once after it.
  for (int number = 1; number <= 60; ++number) {
    if (number % 20 == 10) {
      ASSERT_NO_FATAL_FAILURE(restartServer());
    }
    Cell cell;
    ASSERT_NO_FATAL_FAILURE(untilDone([&] { return rows->cell(1, &cell); }));
    ASSERT_EQ("row " + std::to_string(number), cell.bytes);
    if (number % 20 == 15) {
      ASSERT_NO_FATAL_FAILURE(restartServer());
    }
    ASSERT_TRUE(rows->setValue(1, "new " + std::to_string(number)));
    ASSERT_NO_FATAL_FAILURE(untilDone([&] { return rows->update(); }));
    ASSERT_NO_FATAL_FAILURE(untilDone([&] { return rows->moveNext(); }));
  }
  EXPECT_GT(failures, 0) << "the server was never away";
  EXPECT_EQ("60", onServer("SELECT count(*) FROM t WHERE v = 'new ' || k"));
}

TEST_F(ServerConnectionTest, AServerThatDoesNotAnswerIsGivenUpWhenTheUserWants) {
  openRow("a text", "'a'");
  const SilentConversation silent(columnOf("SELECT pg_backend_pid() FROM t"));
  const auto start = std::chrono::steady_clock::now();
  backend_->askWhileBusy(
      [&](Busy) { return std::chrono::steady_clock::now() - start > std::chrono::seconds(1); });
  Cell cell;
  const Status status = rows_->cell(1, &cell);
  EXPECT_EQ(ErrorCode::stopped, status.code()) << status.message();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  backend_->askWhileBusy({});
  ASSERT_TRUE(rows_->cell(1, &cell)) << "the next action connects anew";
  EXPECT_EQ("a", cell.bytes);
}

TEST_F(ServerConnectionTest, AServerThatHearsOfNoWishToStopIsGivenUpToo) {
  openRow("a text", "'a'");
  const std::unique_ptr<OdbcConnection> inside = ownConversation();
  const auto start = std::chrono::steady_clock::now();
  backend_->askWhileBusy(
      [&](Busy) { return std::chrono::steady_clock::now() - start > std::chrono::milliseconds(500); });
  auto silent = std::make_unique<SilentCaller>(*inside);
  std::future<Status> reading = std::async(std::launch::async, [this] {
    std::unique_ptr<Recordset> none;
    return tryOpen("SELECT max(i) FROM (SELECT pg_sleep(60), a AS i FROM t) AS s", &none);
  });
  const bool isOver = reading.wait_for(std::chrono::seconds(10)) == std::future_status::ready;
  silent.reset();
  EXPECT_TRUE(isOver);
  EXPECT_EQ(ErrorCode::stopped, reading.get().code());
  backend_->askWhileBusy({});
  EXPECT_EQ("a", columnOf("SELECT a FROM t")) << "the next action connects anew";
}

TEST_F(ServerConnectionTest, KeysThatNobodyWantsAnyMoreAreNotWaitedForLong) {
  // All but the first block take long.
  const std::string slow = " FROM generate_series(1, 5000) i WHERE i < 1500 OR pg_sleep(60) IS NOT NULL";
  FileDsn dsn;
  ASSERT_TRUE(readFileDsn(linkTo(database_, "Protocol=7.4-0\n"), &dsn));
  OdbcConnection connection(connectionTextOf(dsn), {});
  auto keys = std::make_unique<KeyReading>(
      connection, KeyReading::Statements{"SELECT i" + slow, "SELECT 5000", KeySet::Kind::rowId});
  KeySet read;
  std::size_t count = 0;
  ASSERT_TRUE(keys->begin(&read, &count));
  ASSERT_LT(read.count(), count);
  const std::unique_ptr<OdbcConnection> inside = ownConversation();
  auto silent = std::make_unique<SilentCaller>(*inside);
  std::future<void> ending = std::async(std::launch::async, [&] { keys.reset(); });
  EXPECT_EQ(std::future_status::ready, ending.wait_for(std::chrono::seconds(10)));
  silent.reset();
  ending.get();
}

TEST_F(ServerConnectionTest, AChangeThatTheServerIsLeftAloneWithIsNotSaidToBeUndone) {
  openRow("a text", "'a'");
  const std::string process = columnOf("SELECT pg_backend_pid() FROM t");
  ASSERT_TRUE(rows_->addNew());
  ASSERT_TRUE(rows_->setValue(0, std::int64_t{2}));
  auto silent = std::make_unique<SilentConversation>(process);
  const auto start = std::chrono::steady_clock::now();
  backend_->askWhileBusy(
      [&](Busy) { return std::chrono::steady_clock::now() - start > std::chrono::milliseconds(200); });
  const Status status = rows_->update();
  backend_->askWhileBusy({});
  silent.reset();
  EXPECT_EQ(ErrorCode::inputOutput, status.code());
  EXPECT_NE(std::string::npos, status.message().find("is not known")) << status.message();
  EXPECT_EQ(EditMode::adding, rows_->editMode());
}

TEST_F(ServerConnectionTest, AChangeThatWasToBeStoppedTooLateIsNotSaidToHaveMetNoRecord) {
  openRow("a text", "'a'");
  runOnServer("CREATE FUNCTION slow(v text) RETURNS text LANGUAGE sql AS 'SELECT v FROM pg_sleep(1)'",
              database_);
  const std::unique_ptr<OdbcConnection> inside = ownConversation();
  const std::string ended =
      "SELECT count(*)::text FROM pg_stat_activity WHERE state = 'idle' AND query LIKE 'UPDATE%slow%' AND "
      "datname = '" +
      database_ + "'";
  std::atomic<bool> wasAsked = false;
  backend_->askWhileBusy([&](Busy) { return !wasAsked.exchange(true); });
  // Nobody hears of the wish to stop it before it has ended.
  auto silent = std::make_unique<SilentCaller>(*inside);
  std::int64_t affected = -1;
  std::future<Status> changing =
      std::async(std::launch::async, [&] { return tryRun("UPDATE t SET a = slow('b')", &affected); });
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  for (Answer answer; std::chrono::steady_clock::now() < deadline;) {
    ASSERT_TRUE(ask(*inside, ended, {}, &answer));
    if (answer[0][0] == "1") break;
  }
  silent.reset();
  const Status status = changing.get();
  backend_->askWhileBusy({});
  EXPECT_TRUE(wasAsked);
  EXPECT_EQ("b", onServer("SELECT a FROM t"));
  if (status) {
    EXPECT_EQ(1, affected);
  } else {
    EXPECT_EQ(ErrorCode::inputOutput, status.code());
    EXPECT_NE(std::string::npos, status.message().find("is not known")) << status.message();
  }
}

TEST_F(ServerConnectionTest,
       AServerThatDoesNotAnswerTheCallerIsGivenUpWithinTenSecondsAndAtOnceWhenTheUserWants) {
  const std::unique_ptr<OdbcConnection> inside = ownConversation();
  auto silent = std::make_unique<SilentCaller>(*inside);
  auto start = std::chrono::steady_clock::now();
  OpenOptions options;
  options.question = [&](Busy) { return std::chrono::steady_clock::now() - start > std::chrono::seconds(1); };
  std::unique_ptr<Backend> backend;
  const Status stopped = openPath(utf8Of(path_), options, &backend);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
  EXPECT_EQ(ErrorCode::stopped, stopped.code()) << stopped.message();
  start = std::chrono::steady_clock::now();
  const Status gaveUp = openPath(utf8Of(path_), {}, &backend);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(11));
  EXPECT_EQ(ErrorCode::cannotOpen, gaveUp.code()) << gaveUp.message();
  silent.reset();
  EXPECT_TRUE(openPath(utf8Of(path_), {}, &backend)) << "afterwards it answers again";
}

TEST_F(ServerConnectionTest, WhatCannotBeOpenedSaysWhy) {
  const auto reasonOf = [this](const std::string& link) {
    testsupport::writeFile(path_, link);
    std::unique_ptr<Backend> backend;
    const Status status = openPath(utf8Of(path_), {}, &backend);
    EXPECT_EQ(ErrorCode::cannotOpen, status.code());
    EXPECT_EQ(nullptr, backend);
    EXPECT_EQ(link, testsupport::contentOf(path_)) << "a link is only read";
    return status.message();
  };
  EXPECT_NE(std::string::npos, reasonOf(linkTo("no_such_database")).find("no_such_database"));
  EXPECT_NE(std::string::npos, reasonOf("[ODBC]\nDRIVER=No such driver\n").find("can't be opened"));
  EXPECT_NE(std::string::npos,
            reasonOf("[ODBC]\nDRIVER=PostgreSQL Unicode\nSERVER=127.0.0.1\nPORT=1\nDATABASE=x\nUID=y\n")
                .find("refused"));
  testsupport::writeFile(path_, linkTo(database_));
}

TEST(CallThreadTest, ACallThatMemoryWasRefusedComesBackAndAnotherOneIsMade) {
  constexpr std::chrono::seconds kPatience{30};
  CallThread thread;
  thread.begin([]() -> SQLRETURN { throw std::bad_alloc(); });
  ASSERT_TRUE(thread.waitFor(kPatience));
  EXPECT_EQ(SQL_ERROR, thread.result());
  thread.begin([] { return SQLRETURN{SQL_SUCCESS}; });
  ASSERT_TRUE(thread.waitFor(kPatience));
  EXPECT_EQ(SQL_SUCCESS, thread.result());
}

TEST_F(StoreTest, TheDriverThatKnowsNoUnicodeIsRefusedWithTheOneToTake) {
  std::string link = linkTo(database_);
  link.replace(link.find("PostgreSQL Unicode"), 18, "PostgreSQL ANSI");
  testsupport::writeFile(path_, link);
  std::unique_ptr<Backend> backend;
  const Status status = openPath(utf8Of(path_), {}, &backend);
  EXPECT_EQ(ErrorCode::cannotOpen, status.code());
  EXPECT_NE(std::string::npos, status.message().find("PostgreSQL Unicode instead of PostgreSQL ANSI"))
      << status.message();
}

}  // namespace
}  // namespace store
