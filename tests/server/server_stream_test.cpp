// The rows of a SELECT from the first to the last, as an export reads them.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <iterator>
#include <optional>
#include <thread>
#include <vector>

#include "platform/store/dsn/file_dsn.h"
#include "platform/store/exchange/bytes/output_file.h"
#include "platform/store/exchange/export.h"
#include "platform/store/odbc/driver/odbc_statement.h"
#include "tests/server/server_fixture.h"
#include "tests/store/allocation_probe.h"
#include "tests/store/cell_text.h"

namespace store {
namespace {

namespace exchange = store::exchange;

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

class ServerStreamTest : public StoreTest {
 protected:
  std::unique_ptr<RowStream> stream(const std::string& sql) {
    std::unique_ptr<RowStream> rows;
    const Status status = backend_->openStream(sql, SourceKind::text, &rows);
    EXPECT_TRUE(status) << sql << ": " << status.message();
    return rows;
  }
  /// The first value of each row that is left, joined by blanks.
  static std::string restOf(RowStream& rows) {
    std::string text;
    for (bool hasRow = true;;) {
      const Status status = rows.next(&hasRow);
      if (!status) return text + "(failed: " + status.message() + ")";
      if (!hasRow) return text;
      text += (text.empty() ? "" : " ") + plainTextOf(rows.cell(0));
    }
  }
  static std::int64_t countRest(RowStream& rows) {
    std::int64_t count = 0;
    for (bool hasRow = true; rows.next(&hasRow) && hasRow;) ++count;
    return count;
  }
  std::string onServer(const std::string& sql) { return OtherProgram(path_).ask(sql); }
  /// How many conversations the server has about this database.
  std::string conversations() {
    // Not its own worker, which may be there to look after the tables.
    return onServer(
        "SELECT count(*) - 2 FROM pg_stat_activity WHERE backend_type = 'client backend' AND datname = '" +
        database_ + "'");
  }
};

TEST_F(ServerStreamTest, RowsOfEveryLengthComeWhole) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, n integer, v text, x bytea, e text)", database_);
  // Around what comes in one piece, in two and in three, and far beyond.
  runOnServer(
      "INSERT INTO t SELECT row_number() OVER (), n, left(repeat(E'\\u00e4\"\\\\,( \\n', n), n), CASE WHEN n "
      "% 2 = 0 "
      "THEN decode(repeat('00ff5c', n), 'hex') END, '' FROM (SELECT generate_series(0, 3) UNION ALL SELECT "
      "generate_series(120, 400) UNION ALL SELECT generate_series(1400, 1700) UNION ALL SELECT 10000 UNION "
      "ALL SELECT "
      "300000) AS s(n)",
      database_);
  open();
  const auto rows = stream("SELECT * FROM t ORDER BY k");
  ASSERT_NE(nullptr, rows);
  const std::string pattern = "\xC3\xA4\"\\,( \n";
  const std::size_t letters = pattern.size() - 1;
  int count = 0;
  for (bool hasRow = true;; ++count) {
    const Status status = rows->next(&hasRow);
    ASSERT_TRUE(status) << status.message();
    if (!hasRow) break;
    ASSERT_EQ(count + 1, rows->cell(0).integer);
    const auto length = static_cast<std::size_t>(rows->cell(1).integer);
    std::string text;
    for (std::size_t whole = 0; whole < length / letters; ++whole) text += pattern;
    if (length % letters > 0) text += pattern.substr(0, length % letters + 1);
    ASSERT_TRUE(text == rows->cell(2).bytes) << length;
    std::string bytes;
    for (std::size_t index = 0; index < length; ++index) bytes += std::string("\0\xFF\\", 3);
    if (length % 2 == 0) {
      ASSERT_TRUE(bytes == rows->cell(3).bytes) << length;
    } else {
      ASSERT_EQ(CellKind::null, rows->cell(3).kind);
    }
    ASSERT_EQ(CellKind::text, rows->cell(4).kind);
    ASSERT_EQ("", rows->cell(4).bytes);
  }
  EXPECT_EQ(588, count);
}

TEST_F(ServerStreamTest, AllAreOfOneMomentAndWhatFollowsIsNoPartOfIt) {
  runOnServer("CREATE TABLE t AS SELECT i AS k, repeat('x', 500) AS v FROM generate_series(1, 20000) i",
              database_);
  open();
  const auto rows = stream("SELECT k FROM t");
  bool hasRow = false;
  ASSERT_TRUE(rows->next(&hasRow));
  prepare("UPDATE t SET k = -k");
  prepare("DELETE FROM t WHERE k % 2 = 0");
  run("INSERT INTO t VALUES (7)");
  std::int64_t sum = rows->cell(0).integer;
  std::int64_t count = 1;
  for (; rows->next(&hasRow) && hasRow; ++count) sum += rows->cell(0).integer;
  EXPECT_EQ(20000, count);
  EXPECT_EQ(200010000, sum);
  ASSERT_TRUE(rows->next(&hasRow));
  EXPECT_FALSE(hasRow) << "behind the last it stays";
  EXPECT_EQ("10001", onServer("SELECT count(*) FROM t"));
}

TEST_F(ServerStreamTest, SeveralGoOnBesideEachOtherAndTheConversationsAreUsedAgain) {
  runOnServer("CREATE TABLE t AS SELECT i AS k FROM generate_series(1, 9000) i", database_);
  open();
  {
    const auto one = stream("SELECT k FROM t ORDER BY k");
    const auto other = stream("SELECT -k FROM t ORDER BY k");
    for (std::int64_t number = 1; number <= 9000; ++number) {
      bool hasRow = false;
      ASSERT_TRUE(one->next(&hasRow));
      ASSERT_EQ(number, one->cell(0).integer);
      ASSERT_TRUE(other->next(&hasRow));
      ASSERT_EQ(-number, other->cell(0).integer);
    }
  }
  for (int number = 0; number < 20; ++number) {
    EXPECT_EQ("1 2 3", restOf(*stream("SELECT k FROM t WHERE k < 4 ORDER BY k")));
  }
  // The server takes its time to end one.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (conversations() != "2" && std::chrono::steady_clock::now() < deadline) {
  }
  EXPECT_EQ("2", conversations())
      << "but for the one that counts them: "
      << onServer(
             "SELECT string_agg(concat_ws(' ', backend_type, state, query), '; ') FROM pg_stat_activity "
             "WHERE datname = '" +
             database_ + "'");
}

TEST_F(ServerStreamTest, OneThatIsNotWantedAnyMoreEndsAtOnce) {
  runOnServer("CREATE TABLE t AS SELECT i AS k FROM generate_series(1, 100000) i", database_);
  open();
  const auto start = std::chrono::steady_clock::now();
  for (int number = 0; number < 20; ++number) {
    const auto rows = stream("SELECT a.k FROM t AS a, t AS b");
    bool hasRow = false;
    ASSERT_TRUE(rows->next(&hasRow));
    ASSERT_TRUE(hasRow);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_EQ("1 2", restOf(*stream("SELECT k FROM t WHERE k < 3 ORDER BY k")));
}

TEST_F(ServerStreamTest, MemoryIsBoundedWhateverTheRowsAre) {
  runOnServer("CREATE TABLE one AS SELECT 1 AS k", database_);
  open();
  struct Example {
    const char* what;
    std::string sql;
    std::int64_t count;
  };
  const Example examples[] = {
      {"many short ones", "SELECT i AS k FROM one, generate_series(1, 50000) i", 50000},
      {"long ones behind short ones",
       "SELECT CASE WHEN i <= 9000 THEN '' ELSE repeat('x', 2900) END AS v FROM one, generate_series(1, "
       "18000) i",
       18000},
      {"large ones", "SELECT repeat('x', 1 << 20) AS v FROM one, generate_series(1, 60) i", 60}};
  for (const Example& example : examples) {
    SCOPED_TRACE(example.what);
    const auto rows = stream(example.sql);
    ASSERT_NE(nullptr, rows);
    testsupport::resetPeak();
    const std::size_t before = testsupport::liveBytes();
    EXPECT_EQ(example.count, countRest(*rows));
    EXPECT_LT((testsupport::peakBytes() - before) / kMegabyte, 48u);
  }
}

TEST_F(ServerStreamTest, OnlySomeRowsAreReadAheadOfWhoTakesThem) {
  runOnServer("CREATE TABLE one AS SELECT 1 AS k", database_);
  open();
  const auto rows = stream("SELECT repeat('x', 2900) AS v FROM one, generate_series(1, 20000) i");
  ASSERT_NE(nullptr, rows);
  testsupport::resetPeak();
  const std::size_t before = testsupport::liveBytes();
  bool hasRow = false;
  ASSERT_TRUE(rows->next(&hasRow));
  // The server has been asked for the last ones that have room, and for nothing since.
  const std::string waits =
      "SELECT count(*) FROM pg_stat_activity WHERE state = 'idle in transaction' AND query LIKE 'FETCH%' AND "
      "clock_timestamp() - state_change > interval '500 ms' AND datname = '" +
      database_ + "'";
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  std::string waiting = "0";
  while (waiting != "1" && std::chrono::steady_clock::now() < deadline) waiting = onServer(waits);
  EXPECT_EQ("1", waiting);
  EXPECT_LT((testsupport::peakBytes() - before) / kMegabyte, 12u);
  EXPECT_EQ(19999, countRest(*rows));
}

TEST_F(ServerStreamTest, OneThatWaitsForTheServerIsStopped) {
  runOnServer("CREATE TABLE t AS SELECT 1 AS k", database_);
  open();
  const auto start = std::chrono::steady_clock::now();
  const auto rows = stream("SELECT k FROM t WHERE pg_sleep(60) IS NOT NULL");
  bool hasRow = false;
  backend_->askWhileBusy([](Busy) { return true; });
  EXPECT_EQ(ErrorCode::stopped, rows->next(&hasRow).code());
  EXPECT_EQ(ErrorCode::stopped, rows->next(&hasRow).code()) << "it does not go on";
  backend_->askWhileBusy({});
  const auto other = stream("SELECT k FROM t WHERE pg_sleep(61) IS NOT NULL");
  std::thread stopper([this] {
    // It has to be running before it can be stopped.
    EXPECT_TRUE(isMetSoon([this] {
      return onServer(
                 "SELECT count(*) FROM pg_stat_activity WHERE state = 'active' AND query LIKE 'FETCH%' AND "
                 "pid IN (SELECT pid FROM pg_stat_activity WHERE wait_event = 'PgSleep')") != "0";
    }));
    backend_->stop();
  });
  EXPECT_EQ(ErrorCode::stopped, other->next(&hasRow).code());
  stopper.join();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_EQ("1", restOf(*stream("SELECT k FROM t")));
}

TEST_F(ServerStreamTest, WhatFailsInTheMidstIsToldAndStaysSo) {
  runOnServer("CREATE TABLE t AS SELECT i AS k FROM generate_series(1, 9000) i", database_);
  open();
  const auto rows = stream("SELECT 1 / (8000 - k) AS k FROM t ORDER BY k");
  ASSERT_NE(nullptr, rows);
  EXPECT_LT(countRest(*rows), 8000);
  bool hasRow = false;
  const Status status = rows->next(&hasRow);
  EXPECT_FALSE(status);
  EXPECT_NE(std::string::npos, status.message().find("division by zero")) << status.message();
  EXPECT_EQ("1", restOf(*stream("SELECT k FROM t WHERE k = 1")));
}

TEST_F(ServerStreamTest, WhatAStatementDoesIsDoneOnceAndKeptWhenItIsReadToTheEnd) {
  runOnServer(
      "CREATE TABLE log (what text); CREATE TABLE t AS SELECT i AS k FROM generate_series(1, 3) i; CREATE "
      "FUNCTION "
      "note(k integer) RETURNS text LANGUAGE plpgsql AS $$ BEGIN INSERT INTO log VALUES ('row ' || k); "
      "RETURN "
      "repeat('long ', k * 3000); END $$",
      database_);
  open();
  const auto rows = stream("SELECT note(k) AS v FROM t");
  EXPECT_EQ("0", onServer("SELECT count(*) FROM log")) << "nothing runs before a row is wanted";
  EXPECT_EQ(3, countRest(*rows));
  EXPECT_EQ("row 1,row 2,row 3", onServer("SELECT string_agg(what, ',' ORDER BY what) FROM log"));
}

class Observer : public exchange::ExportObserver {
 public:
  bool goesOn(std::int64_t) override { return !whileWriting || whileWriting(); }
  std::function<bool()> whileWriting;
};

TEST_F(ServerStreamTest, AnExportWhoseServerIsKilledIsToldOnceAndLeavesNoFile) {
  runOnServer("CREATE TABLE t AS SELECT i AS k, repeat('x', 500) AS v FROM generate_series(1, 50000) i",
              database_);
  open();
  EXPECT_EQ("50000", columnOf("SELECT count(*) FROM t"));
  Observer observer;
  int looks = 0;
  observer.whileWriting = [&] {
    if (++looks == 2) restartServer();
    return true;
  };
  const std::filesystem::path target = folder_.file("rows.csv");
  const auto tryExport = [&] {
    exchange::OutputFile output;
    exchange::ExportResult result;
    Status status = output.create(utf8Of(target), false, {});
    if (status) {
      status = exchange::exportSource(*backend_, {.source = "t", .kind = SourceKind::table, .name = "t"}, {},
                                      output, observer, &result);
    }
    return status ? output.keep() : status;
  };
  const auto countFiles = [&] {
    const std::filesystem::directory_iterator files(target.parent_path());
    return std::distance(begin(files), end(files));
  };
  const auto before = countFiles();
  const Status status = tryExport();
  EXPECT_EQ(ErrorCode::inputOutput, status.code()) << status.message();
  EXPECT_NE(std::string::npos, status.message().find("connection to the server was lost"))
      << status.message();
  EXPECT_EQ(before, countFiles());
  // It is not told a second time.
  observer.whileWriting = nullptr;
  const Status again = tryExport();
  EXPECT_TRUE(again) << again.message();
  EXPECT_EQ(before + 1, countFiles());
}

TEST_F(ServerStreamTest, ATextIsTheSameAsBytesAndThroughUtf16) {
  FileDsn dsn;
  ASSERT_TRUE(readFileDsn(linkTo(database_, "LFConversion=0\n"), &dsn));
  OdbcConnection connection(connectionTextOf(dsn), {});
  OdbcStatement::TextBlock block;
  // More than come at once, among them some as long as they may be.
  const std::string sql =
      "SELECT CASE WHEN n % 70 = 0 THEN repeat(E'\\u00e4', " +
      std::to_string(OdbcStatement::kMostTextBytes / 2) +
      ") WHEN n % 5 = 0 THEN NULL WHEN n % 5 = 1 THEN '' WHEN n % 5 = 2 THEN E'\\u65e5\\U0001F600 \\\\ "
      "\\n\\r\\t\"' ELSE 'plain ' || n END FROM generate_series(1, 333) n";
  std::vector<std::string> read;
  OdbcStatement one(connection);
  ASSERT_TRUE(one.run(sql));
  for (bool hasRow = true;;) {
    ASSERT_TRUE(one.next(&hasRow));
    if (!hasRow) break;
    std::optional<std::string> text;
    ASSERT_TRUE(one.read(0, &text));
    read.push_back(text.value_or(""));
  }
  ASSERT_EQ(333u, read.size());
  ASSERT_EQ(OdbcStatement::kMostTextBytes, read[69].size());
  ASSERT_EQ("\xE6\x97\xA5\xF0\x9F\x98\x80 \\ \n\r\t\"", read[1]);
  for (int round = 0; round < 2; ++round) {
    std::vector<std::string> texts;
    OdbcStatement many(connection);
    ASSERT_TRUE(many.run(sql));
    const Status status = many.readTexts(block, [&](std::string_view text) {
      texts.emplace_back(text);
      return true;
    });
    EXPECT_TRUE(status) << status.message();
    EXPECT_TRUE(read == texts) << texts.size();
  }
}

TEST_F(ServerStreamTest, OfATextThatIsTooLongNoPartIsTaken) {
  FileDsn dsn;
  ASSERT_TRUE(readFileDsn(linkTo(database_), &dsn));
  OdbcConnection connection(connectionTextOf(dsn), {});
  OdbcStatement::TextBlock block;
  for (const std::size_t length : {OdbcStatement::kMostTextBytes + 1, 20 * OdbcStatement::kMostTextBytes}) {
    OdbcStatement statement(connection);
    ASSERT_TRUE(statement.run("SELECT v FROM (VALUES ('first'), (repeat('x', " + std::to_string(length) +
                              ")), ('last')) AS t(v)"));
    std::string texts;
    const Status status = statement.readTexts(block, [&](std::string_view text) {
      texts.append(text);
      return true;
    });
    EXPECT_EQ(ErrorCode::inputOutput, status.code());
    EXPECT_EQ("first", texts);
  }
}

TEST_F(ServerStreamTest, TextsAreReadUntilOneIsNotTaken) {
  FileDsn dsn;
  ASSERT_TRUE(readFileDsn(linkTo(database_), &dsn));
  OdbcConnection connection(connectionTextOf(dsn), {});
  OdbcStatement::TextBlock block;
  OdbcStatement statement(connection);
  ASSERT_TRUE(statement.run("SELECT n::text FROM generate_series(1, 1000) n"));
  std::string texts;
  const Status status = statement.readTexts(block, [&](std::string_view text) {
    texts.append(text);
    return text != "100";
  });
  EXPECT_EQ(ErrorCode::inputOutput, status.code());
  EXPECT_TRUE(texts.ends_with("99100")) << texts;
  ASSERT_TRUE(statement.run("SELECT 'on'")) << "the statement can be used again";
  bool hasRow = false;
  std::optional<std::string> text;
  ASSERT_TRUE(statement.next(&hasRow));
  ASSERT_TRUE(statement.read(0, &text));
  EXPECT_EQ("on", text);
}

}  // namespace
}  // namespace store
