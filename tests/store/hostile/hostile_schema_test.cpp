// Files whose own description is made to mislead, to run something or never to end.
#include <array>
#include <atomic>
#include <chrono>
#include <ctime>
#include <thread>

#include "tests/store/hostile/database_walk.h"
#include "tests/store/store_fixture.h"

namespace store {
namespace {

using namespace std::chrono_literals;

// Of the processor, where the system tells it: other programs may keep it busy.
constexpr std::clock_t kMostTime = 5 * CLOCKS_PER_SEC;

class HostileSchemaTest : public StoreTest {
 protected:
  /// Opens the file and walks over it, stopping what takes longer than a user would wait.
  int expectHarmless(bool writes = false) {
    const std::string before = bytesOf(path_);
    const std::clock_t start = std::clock();
    const int succeeded = walkDatabase(utf8Of(path_), {.writes = writes, .patience = 300ms});
    EXPECT_LT(std::clock() - start, kMostTime);
    if (!writes) {
      EXPECT_EQ(before, bytesOf(path_)) << "was written";
    }
    return succeeded;
  }

  void remake(const std::string& sql) {
    std::filesystem::remove(path_);
    OtherProgram other(path_);
    other.run("PRAGMA synchronous = OFF");
    const int result = other.tryRun(
        "BEGIN; CREATE TABLE t (a Integer, b Text); INSERT INTO t VALUES (1, 'one'), (2, 'two');"
        "CREATE TABLE u (a Text PRIMARY KEY, b Integer); INSERT INTO u VALUES ('x', 1);"
        "CREATE TABLE w (a Text PRIMARY KEY) WITHOUT ROWID; INSERT INTO w VALUES ('y');"
        "CREATE INDEX i ON t (b); CREATE VIEW v AS SELECT a FROM t;" +
        sql + "; COMMIT");
    // The statements may be longer than anybody wants to read.
    ASSERT_EQ(SQLITE_OK, result) << sqlite3_errmsg(other.handle());
  }
  void stopAfter(std::chrono::milliseconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    backend_->askWhileBusy([end](Busy) { return std::chrono::steady_clock::now() >= end; });
  }

  /// Changes the description itself behind SQLite's back.
  void lie(const std::string& sql) {
    OtherProgram other(path_);
    other.run("PRAGMA synchronous = OFF; PRAGMA writable_schema = ON");
    other.run(sql);
  }
};

TEST_F(HostileSchemaTest, ADescriptionThatLiesIsHarmless) {
  const std::array lies{
      "UPDATE sqlite_schema SET rootpage = 0 WHERE name = 't'",
      "UPDATE sqlite_schema SET rootpage = -1 WHERE name = 't'",
      "UPDATE sqlite_schema SET rootpage = 1 WHERE name = 't'",
      "UPDATE sqlite_schema SET rootpage = 99999 WHERE name = 't'",
      "UPDATE sqlite_schema SET rootpage = 4294967298 WHERE name = 't'",
      "UPDATE sqlite_schema SET rootpage = 'two' WHERE name = 't'",
      "UPDATE sqlite_schema SET rootpage = NULL WHERE name = 't'",
      "UPDATE sqlite_schema SET rootpage = (SELECT rootpage FROM sqlite_schema WHERE name = 'u')",
      "UPDATE sqlite_schema SET rootpage = (SELECT rootpage FROM sqlite_schema WHERE name = 'i') WHERE name "
      "= "
      "'t'",
      "UPDATE sqlite_schema SET rootpage = (SELECT rootpage FROM sqlite_schema WHERE name = 't') WHERE name "
      "= "
      "'w'",
      "UPDATE sqlite_schema SET rootpage = (SELECT rootpage FROM sqlite_schema WHERE name = 't') WHERE name "
      "= "
      "'i'",
      "UPDATE sqlite_schema SET sql = NULL WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = '' WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = zeroblob(100) WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE' WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE other (z)' WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE t (a, b) WITHOUT ROWID' WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE t (a PRIMARY KEY, b) WITHOUT ROWID' WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE w (a Text PRIMARY KEY)' WHERE name = 'w'",
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE t (a, b, c, d, e DEFAULT (1), f AS (e))' WHERE name = "
      "'t'",
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE t (a AS (b), b AS (a))' WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE t (a, b CHECK (t.a IN (SELECT a FROM t)))' WHERE name = "
      "'t'",
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE t (b Text, a INTEGER PRIMARY KEY)' WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = 'CREATE TABLE t (a, a)' WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = 'CREATE VIEW t AS SELECT * FROM t' WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = 'CREATE INDEX i ON t (z)' WHERE name = 'i'",
      "UPDATE sqlite_schema SET sql = 'CREATE INDEX i ON u (b)' WHERE name = 'i'",
      "UPDATE sqlite_schema SET sql = 'CREATE INDEX i ON v (a)' WHERE name = 'i'",
      "UPDATE sqlite_schema SET sql = 'CREATE UNIQUE INDEX i ON t (b, a, b, a, b)' WHERE name = 'i'",
      "UPDATE sqlite_schema SET sql = 'CREATE VIEW v AS SELECT * FROM v' WHERE name = 'v'",
      "UPDATE sqlite_schema SET sql = 'DELETE FROM t' WHERE name = 'v'",
      "UPDATE sqlite_schema SET sql = 'CREATE VIEW v AS SELECT 1; DROP TABLE t' WHERE name = 'v'",
      "UPDATE sqlite_schema SET sql = 'CREATE VIRTUAL TABLE t USING fts5(a)', rootpage = 0 WHERE name = 't'",
      "UPDATE sqlite_schema SET sql = 'CREATE VIRTUAL TABLE t USING rtree(a, b, c)', rootpage = 0 WHERE name "
      "= "
      "'t'",
      "UPDATE sqlite_schema SET sql = 'CREATE VIRTUAL TABLE t USING MSysTables', rootpage = 0 WHERE name = "
      "'t'",
      "UPDATE sqlite_schema SET sql = 'CREATE VIRTUAL TABLE t USING unknown(a)', rootpage = 0 WHERE name = "
      "'t'",
      "UPDATE sqlite_schema SET type = 'nonsense' WHERE name = 't'",
      "UPDATE sqlite_schema SET type = 'view' WHERE name = 't'",
      "UPDATE sqlite_schema SET type = 'trigger' WHERE name = 't'",
      "UPDATE sqlite_schema SET type = NULL",
      "UPDATE sqlite_schema SET name = NULL WHERE name = 't'",
      "UPDATE sqlite_schema SET name = 'u', tbl_name = 'u' WHERE name = 't'",
      "UPDATE sqlite_schema SET name = 'sqlite_schema' WHERE name = 't'",
      "UPDATE sqlite_schema SET name = 'MSysTables', tbl_name = 'MSysTables', "
      "sql = 'CREATE TABLE MSysTables (a, b)' WHERE name = 't'",
      "UPDATE sqlite_schema SET tbl_name = 'u' WHERE name = 'i'",
      "UPDATE sqlite_schema SET name = 'sqlite_autoindex_t_9' WHERE name = 'i'",
      "INSERT INTO sqlite_schema SELECT * FROM sqlite_schema",
      "INSERT INTO sqlite_schema VALUES ('table', 'sqlite_stat1', 'sqlite_stat1', 2, "
      "'CREATE TABLE sqlite_stat1 (tbl, idx, stat)')",
      "INSERT INTO sqlite_schema VALUES ('table', 'sqlite_sequence', 'sqlite_sequence', 3, "
      "'CREATE TABLE sqlite_sequence (name, seq)')",
      "DELETE FROM sqlite_schema WHERE name = 'sqlite_autoindex_u_1'",
      "DELETE FROM sqlite_schema",
  };
  for (const char* sql : lies) {
    for (const bool writes : {false, true}) {
      SCOPED_TRACE(std::string(sql) + (writes ? ", written" : ""));
      remake("");
      lie(sql);
      expectHarmless(writes);
    }
  }
}

TEST_F(HostileSchemaTest, StatisticsThatLieAreHarmless) {
  remake("ANALYZE");
  lie("UPDATE sqlite_stat1 SET stat = '99999999999999999999 1 -5 x unordered noskipscan sz=-1'");
  EXPECT_GT(expectHarmless(), 20);
}

TEST_F(HostileSchemaTest, ViewsOnViewsWithoutEndLeaveTheTablesReadable) {
  std::string views = "CREATE VIEW v0 AS SELECT a FROM t";
  for (int n = 1; n <= 40; ++n) {
    const std::string former = "v" + std::to_string(n - 1);
    views += "; CREATE VIEW v" + std::to_string(n) + " AS SELECT a FROM " + former +
             " UNION ALL SELECT a FROM " + former;
  }
  remake(views);
  const std::clock_t start = std::clock();
  open();
  EXPECT_EQ("t u w v v0 v1 v2", columnOf("SELECT TableName FROM MSysTables WHERE TableID > 4 LIMIT 7"));
  EXPECT_EQ("1 2", columnOf("Select * from [t]"));
  EXPECT_EQ("1 2 1 2", columnOf("Select * from [v1]"));
  EXPECT_LT(std::clock() - start, kMostTime);
  stopAfter(200ms);
  std::unique_ptr<Recordset> rows;
  const ErrorCode code = tryOpen("v40", &rows, SourceKind::table).code();
  EXPECT_TRUE(code == ErrorCode::stopped || code == ErrorCode::errorsInCommand);
}

TEST_F(HostileSchemaTest, AChainOfManyViewsLeavesTheTablesReadable) {
  std::string views = "CREATE VIEW v0 AS SELECT a FROM t";
  for (int n = 1; n <= 1000; ++n) {
    views += "; CREATE VIEW v" + std::to_string(n) + " AS SELECT a FROM v" + std::to_string(n - 1);
  }
  remake(views);
  EXPECT_GT(expectHarmless(), 20);
  open();
  stopAfter(300ms);
  std::unique_ptr<Recordset> rows;
  static_cast<void>(tryOpen("v1000", &rows, SourceKind::table));
  backend_->askWhileBusy(nullptr);
  EXPECT_EQ("1 2", columnOf("Select * from [t]"));
}

TEST_F(HostileSchemaTest, LongAndDeepDefinitionsThatOtherProgramsCanMakeOpen) {
  std::string deep = "a";
  for (int n = 0; n < 200; ++n) deep = "abs(" + deep + ")";
  for (int n = 0; n < 750; ++n) deep += "+0";
  std::string wide = "CREATE TABLE wide (c0";
  for (int n = 1; n < 2000; ++n) wide += ", [column " + std::string(300, 'x') + std::to_string(n) + "] Text";
  remake("CREATE VIEW deep AS SELECT " + deep + " FROM t; CREATE VIEW long AS SELECT a /*" +
         std::string(3'000'000, ' ') + "*/ FROM t; " + wide + ")");
  open();
  EXPECT_EQ("1 2", columnOf("deep"));
  EXPECT_EQ("1 2", columnOf("long"));
  const auto rows = records("wide", SourceKind::table);
  ASSERT_NE(nullptr, rows);
  EXPECT_EQ(2000u, rows->columns().size());
}

TEST_F(HostileSchemaTest, NothingButHarmlessFunctionsRunsInAFile) {
  remake("");
  // What runs when somebody only looks, and what runs when somebody writes.
  for (const char* call : {"quivane_readable('t')", "quivane_length('Text')", "load_extension('x')"}) {
    SCOPED_TRACE(call);
    remake("");
    const std::string view = std::string("CREATE VIEW harm AS SELECT ") + call + " FROM t";
    const std::string trigger =
        std::string("CREATE TRIGGER harm2 AFTER UPDATE ON t BEGIN SELECT ") + call + "; END";
    lie("INSERT INTO sqlite_schema VALUES ('view', 'harm', 'harm', 0, \"" + view +
        "\"), ('trigger', 'harm2', 't', 0, \"" + trigger + "\")");
    open();
    std::unique_ptr<Recordset> rows;
    EXPECT_FALSE(tryOpen("harm", &rows));
    EXPECT_FALSE(tryRun("UPDATE t SET a = 3"));
    EXPECT_EQ("1 2", columnOf("Select * from [t]"));
    backend_.reset();
  }
}

TEST_F(HostileSchemaTest, NothingWeakensTheProtection) {
  remake("");
  open();
  for (const char* sql :
       {"PRAGMA writable_schema = ON", "PRAGMA trusted_schema = ON", "PRAGMA cell_size_check = OFF",
        "PRAGMA journal_mode = OFF", "PRAGMA temp_store_directory = '/'", "UPDATE sqlite_schema SET sql = ''",
        "DELETE FROM sqlite_schema", "ATTACH 'other.cdb' AS other", "VACUUM INTO 'other.cdb'",
        "SELECT load_extension('x') FROM t", "CREATE VIRTUAL TABLE x USING unknown"}) {
    EXPECT_FALSE(tryRun(sql)) << sql;
  }
}

// A tree of 512-byte pages in which every page leads many times to the next one.
std::string treeWithoutEnd() {
  constexpr std::size_t kPage = 512;
  constexpr int kDepth = 10;
  constexpr int kChildren = 60;
  std::string pages;
  for (int depth = 0; depth < kDepth; ++depth) {
    std::string page(kPage, '\0');
    const auto child = static_cast<char>(3 + depth);
    page[0] = 5;
    page[4] = kChildren;
    page[11] = child;
    for (int cell = 0; cell < kChildren; ++cell) {
      const std::size_t offset = kPage - 5 * static_cast<std::size_t>(cell + 1);
      page[offset + 3] = child;
      page[offset + 4] = static_cast<char>(cell + 1);
      page[12 + 2 * static_cast<std::size_t>(cell)] = static_cast<char>(offset >> 8);
      page[13 + 2 * static_cast<std::size_t>(cell)] = static_cast<char>(offset & 0xFF);
    }
    // The least of the offsets is where the cells begin.
    page[5] = static_cast<char>((kPage - 5 * kChildren) >> 8);
    page[6] = static_cast<char>((kPage - 5 * kChildren) & 0xFF);
    pages += page;
  }
  // One row with the numbers 1 and 2.
  std::string leaf(kPage, '\0');
  leaf.replace(0, 10, std::string("\x0D\0\0\0\x01\x01\xF9\0\x01\xF9", 10));
  leaf.replace(505, 7, std::string("\x05\x01\x03\x01\x01\x01\x02", 7));
  return pages + leaf;
}

TEST_F(HostileSchemaTest, ATableWithoutEndIsToldAndWhatGoesOnInItCanBeStopped) {
  std::filesystem::remove(path_);
  prepare(
      "PRAGMA page_size = 512; CREATE TABLE t (a Integer, b Integer); INSERT INTO t VALUES (1, "
      "zeroblob(7000))");
  std::string bytes = bytesOf(path_);
  ASSERT_GT(bytes.size(), 12u * 512);
  bytes.replace(512, 11 * 512, treeWithoutEnd());
  writeBytes(path_, bytes);
  open();
  std::unique_ptr<Recordset> rows;
  EXPECT_EQ(ErrorCode::damaged, tryOpen("Select * from [t]", &rows).code());
  // What SQLite puts in order first is stopped by who waits for it.
  stopAfter(300ms);
  EXPECT_EQ(ErrorCode::stopped, tryOpen("SELECT a FROM t WHERE a > 0 ORDER BY b", &rows).code());
  backend_->askWhileBusy(nullptr);

  std::atomic<bool> isDone = false;
  std::thread stopper([&] {
    while (!isDone) {
      backend_->stop();
      std::this_thread::yield();
    }
  });
  EXPECT_EQ(ErrorCode::stopped, tryOpen("SELECT count(*) FROM t", &rows).code());
  isDone = true;
  stopper.join();
}

TEST_F(HostileSchemaTest, WhatStandsBehindTheLastPageIsNoDamage) {
  remake("");
  const std::string sound = bytesOf(path_);
  for (const std::size_t surplus : {1u, 511u, 4096u, 5000u}) {
    SCOPED_TRACE(surplus);
    writeBytes(path_, sound + std::string(surplus, 'x'));
    open();
    EXPECT_EQ("1 2", columnOf("Select * from [t]"));
    run("INSERT INTO t VALUES (3, 'three')");
    EXPECT_EQ("1 2 3", columnOf("Select * from [t]"));
    backend_.reset();
    EXPECT_EQ("ok", OtherProgram(path_).ask("PRAGMA integrity_check"));
  }
  writeBytes(path_, sound.substr(0, sound.size() - 1));
  std::unique_ptr<Backend> backend;
  EXPECT_EQ(ErrorCode::cannotOpen, openDatabase(utf8Of(path_), {}, &backend).code());
}

}  // namespace
}  // namespace store
