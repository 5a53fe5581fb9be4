// Files that go into a server's tables, and come out of them.
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "platform/store/exchange/export.h"
#include "platform/store/sqlite/database_file.h"
#include "tests/server/server_load_fixture.h"
#include "tests/store/allocation_probe.h"
#include "tests/store/cell_text.h"

namespace store {
namespace {

class Text : public exchange::ByteSink {
 public:
  Status write(std::string_view bytes) override {
    content += bytes;
    return {};
  }
  std::string content;
};

class ServerLoadTest : public ServerLoadFixture {
 protected:
  std::string exported() {
    Text sink;
    exchange::ExportResult result;
    exchange::ExportOptions how;
    how.isExact = options_.isExact;
    how.lineEnd = "\n";
    const Status status = exchange::exportSource(
        *backend_, {.source = "t", .kind = SourceKind::table, .name = "t"}, how, sink, observer_, &result);
    EXPECT_TRUE(status) << status.message();
    return sink.content;
  }
  /// Records with the numbers from 1 on.
  static std::string manyRecords(int count) {
    std::string file = "k,v\n";
    for (int number = 1; number <= count; ++number) {
      file += std::to_string(number) + ",value " + std::to_string(number) + "\n";
    }
    return file;
  }
};

TEST_F(ServerLoadTest, ANewTableIsMadeAndHoldsWhatTheFileHolds) {
  open();
  import("name,pages,seen,day,price\nA Book,120,true,2001-03-09,1.5\n\"007\",,false,,2\n");
  EXPECT_EQ(2, result_.added);
  EXPECT_TRUE(result_.isStored);
  EXPECT_EQ("A Book 007", columnOf("t", 0));
  EXPECT_EQ("120 (null)", columnOf("t", 1));
  EXPECT_EQ("1 0", columnOf("t", 2));
  EXPECT_EQ("2001-03-09 (null)", columnOf("t", 3));
  // Its records can be changed.
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  EXPECT_TRUE(rows->isUpdatable());
}

TEST_F(ServerLoadTest, EveryTextComesBackAsItWas) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v text)", database_);
  open();
  const std::string file =
      "k,v\n1,\"\"\"quoted\"\", {braces} (and) \\ back\\\\slash\"\n2,\"NULL\"\n3,\"\"\n4,\n5,\" ? $1 'x' :y "
      "\"\n"
      "6,\"line\nend\"\n7,\"\xE6\x97\xA5\xF0\x9F\x98\x80\"\n8,null\n";
  import(file);
  EXPECT_EQ(8, result_.added);
  EXPECT_EQ("\"quoted\", {braces} (and) \\ back\\\\slash", onServer("SELECT v FROM t WHERE k = 1"));
  EXPECT_EQ("NULL", onServer("SELECT v FROM t WHERE k = 2"));
  EXPECT_EQ(" ? $1 'x' :y ", onServer("SELECT v FROM t WHERE k = 5"));
  EXPECT_EQ("line\nend", onServer("SELECT v FROM t WHERE k = 6"));
  const std::string former = exported();
  prepare("DELETE FROM t");
  import(former);
  EXPECT_EQ(former, exported());
  EXPECT_EQ("8", onServer("SELECT count(*) FROM t"));
}

TEST_F(ServerLoadTest, EveryTypeComesBackFromAFile) {
  struct Example {
    const char* type;
    const char* value;
  };
  constexpr Example kExamples[] = {{"smallint", "-32768"},
                                   {"bigint", "-9223372036854775808"},
                                   {"numeric", "'123456789012345678901234567890.123456789'"},
                                   {"real", "0.1"},
                                   {"double precision", "1e-300"},
                                   {"boolean", "false"},
                                   {"char(5)", "'ab'"},
                                   {"varchar(20)", "'a \"b\"'"},
                                   {"bytea", "'\\x00ff5c22'"},
                                   {"date", "'0044-03-15 BC'"},
                                   {"timestamp", "'2001-03-09 14:05:07.123456'"},
                                   {"timestamptz", "'2001-03-09 14:05:07+00'"},
                                   {"time", "'14:05:07.25'"},
                                   {"interval", "'1 year 2 mons'"},
                                   {"uuid", "'a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11'"},
                                   {"jsonb", "'{\"a\": [1, null]}'"},
                                   {"integer[]", "'{1,NULL,3}'"},
                                   {"int4range", "'[1,5)'"},
                                   {"bit(4)", "B'1010'"},
                                   {"point", "'(1,2)'"}};
  open();
  for (const bool isExact : {false, true}) {
    SCOPED_TRACE(isExact ? "exactly" : "as the columns have them");
    options_.isExact = isExact;
    std::string columns = "k integer PRIMARY KEY";
    std::string values = "1";
    for (const Example& example : kExamples) {
      const std::string type = example.type;
      // No file has their values as they are.
      if (!isExact && (type == "bytea" || type == "date")) continue;
      columns += ", \"of " + type + "\" " + type;
      values += std::string(", ") + example.value;
    }
    runOnServer("DROP TABLE IF EXISTS t", database_);
    runOnServer("CREATE TABLE t (" + columns + ")", database_);
    runOnServer("INSERT INTO t VALUES (" + values + "); INSERT INTO t VALUES (2)", database_);
    const std::string all = "SELECT string_agg(t::text, ' ' ORDER BY k) FROM t";
    const std::string former = onServer(all);
    const std::string file = exported();
    runOnServer("DELETE FROM t", database_);
    import(file);
    EXPECT_EQ(std::vector<std::string>(), observer_.rejects) << file;
    EXPECT_EQ(former, onServer(all));
    EXPECT_NE("(null)", former);
  }
}

TEST_F(ServerLoadTest, WhatTheServersOwnProgramHasWrittenIsTaken) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, seen boolean, image bytea, moment timestamptz, v text)",
              database_);
  open();
  import("k,seen,image,moment,v\n1,t,\\x00ff,2001-03-09 14:05:07+00,t\n2,f,\\x,,\"\"\n3,,,,\n");
  EXPECT_EQ(std::vector<std::string>(), observer_.rejects);
  EXPECT_EQ("1|t|\\x00ff|t 2|f|\\x| 3",
            onServer("SELECT string_agg(concat_ws('|', k, seen, image, v), ' ' ORDER BY k) FROM t"));
  EXPECT_EQ("1", onServer("SELECT k FROM t WHERE moment = '2001-03-09 14:05:07+00'"));
}

TEST_F(ServerLoadTest, ARecordThatTheServerRefusesIsToldWithItsLineAndInOrder) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v varchar(3) CHECK (v <> 'bad'))", database_);
  open();
  const std::string file = "k,v\n1,a\n2,b\nx,c\n2,d\n5,long\n6,bad\n7,\n";
  const std::vector<std::string> expected{
      "4: x,c, k: \"x\" is no whole number that the column holds",
      "5: 2,d, duplicate key value violates unique constraint \"t_pkey\"",
      "6: 5,long, value too long for type character varying(3)",
      "7: 6,bad, new row for relation \"t\" violates check constraint \"t_v_check\""};
  import(file);
  EXPECT_EQ(expected, observer_.rejects);
  EXPECT_FALSE(result_.isStored);
  EXPECT_EQ("0", onServer("SELECT count(*) FROM t"));
  import(file, exchange::ImportMode::goodRecords);
  EXPECT_EQ(expected, observer_.rejects);
  EXPECT_EQ(3, result_.added);
  EXPECT_EQ(4, result_.leftOut);
  EXPECT_EQ("6", onServer("SELECT sum(k) - 4 FROM t"));
}

TEST_F(ServerLoadTest, AConstraintThatIsBrokenFarInTheMidstLeavesNothing) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY CHECK (k <> 9876), v text)", database_);
  open();
  import(manyRecords(20000));
  EXPECT_FALSE(result_.isStored);
  EXPECT_EQ(1, result_.leftOut);
  ASSERT_EQ(1u, observer_.rejects.size());
  EXPECT_EQ("9877: 9876,", observer_.rejects[0].substr(0, 11));
  EXPECT_EQ("0", onServer("SELECT count(*) FROM t"));
  import(manyRecords(20000), exchange::ImportMode::goodRecords);
  EXPECT_EQ(19999, result_.added);
  EXPECT_EQ("19999", onServer("SELECT count(*) FROM t"));
}

TEST_F(ServerLoadTest, ATrialAndACancelledImportLeaveNothingAndNoNewTable) {
  open();
  import(manyRecords(10), exchange::ImportMode::trial);
  EXPECT_EQ(10, result_.added);
  EXPECT_FALSE(result_.isStored);
  observer_.whileStoring = [] { return false; };
  EXPECT_EQ(ErrorCode::illegalOperation, tryImport(manyRecords(5000)).code());
  TableSchema schema;
  ASSERT_TRUE(backend_->describeTable("t", &schema));
  EXPECT_TRUE(schema.columns.empty());
  EXPECT_EQ(ErrorCode::noTable, OtherProgram(path_).tryRun("DELETE FROM t").code());
  // What follows is no part of the transaction that was undone.
  observer_.whileStoring = nullptr;
  import(manyRecords(10));
  EXPECT_EQ("10", onServer("SELECT count(*) FROM t"));
}

TEST_F(ServerLoadTest, AStatementThatIsStoppedWhileItRunsLeavesNothing) {
  runOnServer(
      "CREATE TABLE t (k integer PRIMARY KEY, v text); CREATE FUNCTION slow() RETURNS trigger LANGUAGE "
      "plpgsql AS 'BEGIN PERFORM pg_sleep(30); RETURN NEW; END'; CREATE TRIGGER slow BEFORE INSERT ON t FOR "
      "EACH ROW EXECUTE FUNCTION slow()",
      database_);
  open();
  bool isWanted = false;
  const std::string file = manyRecords(3);
  exchange::MemorySource source(file);
  exchange::ImportPlan plan;
  options_.table = "t";
  ASSERT_TRUE(exchange::planImport(*backend_, source, options_, observer_, &plan));
  backend_->askWhileBusy([&](Busy) { return std::exchange(isWanted, true); });
  EXPECT_EQ(ErrorCode::stopped, exchange::runImport(*backend_, source, plan,
                                                    exchange::ImportMode::allOrNothing, observer_, &result_)
                                    .code());
  backend_->askWhileBusy(nullptr);
  EXPECT_EQ("0", onServer("SELECT count(*) FROM t"));
}

TEST_F(ServerLoadTest, AServerThatIsKilledInTheMidstHasNothingAndNothingFollows) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v text)", database_);
  open();
  int looks = 0;
  observer_.whileStoring = [&] {
    // Behind the first rows that were sent.
    if (++looks == 6) restartServer();
    return true;
  };
  const Status status = tryImport(manyRecords(20000));
  EXPECT_EQ(ErrorCode::inputOutput, status.code()) << status.message();
  EXPECT_GE(looks, 6);
  EXPECT_EQ("0", onServer("SELECT count(*) FROM t"));
  observer_.whileStoring = nullptr;
  import(manyRecords(10));
  EXPECT_EQ("10", onServer("SELECT count(*) FROM t"));
}

TEST_F(ServerLoadTest, ATableWithoutAKeyTakesRecordsToo) {
  runOnServer("CREATE TABLE t (a integer, b text)", database_);
  open();
  import("a,b\n1,x\n1,x\n");
  EXPECT_EQ("2", onServer("SELECT count(*) FROM t WHERE a = 1 AND b = 'x'"));
}

TEST_F(ServerLoadTest, ARecordTakesThePlaceOfTheOneWithItsKeyAndTheLastOfSeveralStays) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v text, kept text)", database_);
  runOnServer("INSERT INTO t VALUES (1, 'a', 'one'), (2, 'b', 'two')", database_);
  open();
  options_.replaces = true;
  import("k,v\n1,A\n9,n\n1,Z\n9,m\n");
  EXPECT_EQ(1, result_.added);
  EXPECT_EQ(3, result_.replaced);
  EXPECT_EQ("1Zone 2btwo 9m",
            onServer("SELECT string_agg(k || v || coalesce(kept, ''), ' ' ORDER BY k) FROM t"));
}

TEST_F(ServerLoadTest, AKeyOfNullsAndOneThatSeveralRecordsHave) {
  runOnServer("CREATE TABLE t (k integer, v text)", database_);
  runOnServer("INSERT INTO t VALUES (1, 'a'), (1, 'b'), (NULL, 'n')", database_);
  open();
  options_.replaces = true;
  options_.keyColumns = {"k"};
  import("k,v\n1,A\n,N\n3,c\n", exchange::ImportMode::goodRecords);
  EXPECT_EQ((std::vector<std::string>{"2: 1,A, Several records have this key."}), observer_.rejects);
  EXPECT_EQ(1, result_.replaced);
  EXPECT_EQ("1a 1b 3c N", onServer("SELECT string_agg(concat(k, v), ' ' ORDER BY k, v) FROM t"));
}

TEST_F(ServerLoadTest, KeysThatMayBeNullAreFoundByTheirIndex) {
  runOnServer(
      "CREATE TABLE t (k integer, v text); INSERT INTO t SELECT i, 'old' FROM generate_series(1, 20000) i; "
      "CREATE INDEX t_k ON t (k)",
      database_);
  runOnServer("ANALYZE t", database_);
  open();
  options_.replaces = true;
  options_.keyColumns = {"k"};
  import("k,v\n7,new\n8,new\n");
  EXPECT_EQ(2, result_.replaced);
  EXPECT_EQ("2", onServer("SELECT count(*) FROM t WHERE v = 'new' AND k + 0 IN (7, 8)"));
  backend_.reset();
  // The server notes it at the end of the conversation at the latest.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  std::string uses = "0";
  while (uses == "0" && std::chrono::steady_clock::now() < deadline) {
    uses = onServer("SELECT pg_stat_get_numscans('t_k'::regclass) FROM t LIMIT 1");
  }
  EXPECT_NE("0", uses);
  open();
  import("k,v\n7,newer\n,none\n");
  EXPECT_EQ(1, result_.replaced);
  import("k,v\n,noone\n9,nine\n");
  EXPECT_EQ(2, result_.replaced);
  EXPECT_EQ("newer new nine noone", onServer("SELECT string_agg(v, ' ' ORDER BY k) FROM t WHERE v <> 'old'"));
}

TEST_F(ServerLoadTest, ARuleThatKeepsARecordOutIsTold) {
  runOnServer(
      "CREATE TABLE t (k integer PRIMARY KEY, v text); CREATE FUNCTION no() RETURNS trigger LANGUAGE plpgsql "
      "AS 'BEGIN IF NEW.k = 2 THEN RETURN NULL; END IF; RETURN NEW; END'; CREATE TRIGGER no BEFORE INSERT ON "
      "t FOR EACH ROW EXECUTE FUNCTION no()",
      database_);
  open();
  import("k,v\n1,a\n2,b\n3,c\n", exchange::ImportMode::goodRecords);
  EXPECT_EQ((std::vector<std::string>{"3: 2,b, A rule of the database left the record out."}),
            observer_.rejects);
  EXPECT_EQ("2", onServer("SELECT count(*) FROM t"));
}

TEST_F(ServerLoadTest, LargeRecordsThatAreRefusedAreNotAllKept) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v text)", database_);
  open();
  constexpr std::size_t kMegabyte = std::size_t{1} << 20;
  std::string file = "k,v\n";
  for (int number = 0; number < 40; ++number) file += "x," + std::string(kMegabyte, 'v') + "\n";
  file += "1,good\n";
  observer_.keepsFields = false;
  testsupport::resetPeak();
  const std::size_t before = testsupport::liveBytes();
  import(file, exchange::ImportMode::goodRecords);
  EXPECT_LT((testsupport::peakBytes() - before) / kMegabyte, 40u);
  EXPECT_EQ(40, result_.leftOut);
  EXPECT_EQ(1, result_.added);
  EXPECT_EQ("2: ", observer_.rejects.front().substr(0, 3));
}

TEST_F(ServerLoadTest, ARuleThatIsLookedAtAtTheEndLeavesNothing) {
  runOnServer(
      "CREATE TABLE o (k integer PRIMARY KEY); CREATE TABLE t (k integer PRIMARY KEY REFERENCES o DEFERRABLE "
      "INITIALLY DEFERRED, v text)",
      database_);
  open();
  EXPECT_EQ(ErrorCode::constraint, tryImport("k,v\n1,a\n").code());
  EXPECT_EQ("0", onServer("SELECT count(*) FROM t"));
}

TEST_F(ServerLoadTest, AsStatementsATableIsMadeAgainInAFile) {
  runOnServer(
      "CREATE TABLE t (k integer PRIMARY KEY, v varchar(20), n numeric(9,2), day timestamp(3) without time "
      "zone, span interval day to second, list integer[], x bytea)",
      database_);
  runOnServer(
      "INSERT INTO t VALUES (1, 'it''s', 1.25, '2001-03-09 14:05:07', '1 day', '{1,2}', '\\x00ff'), (2, "
      "NULL, "
      "NULL, NULL, NULL, NULL, NULL)",
      database_);
  open();
  Text sink;
  exchange::ExportResult result;
  exchange::ExportOptions how;
  how.format = exchange::ExportFormat::sql;
  const Status status = exchange::exportSource(
      *backend_, {.source = "t", .kind = SourceKind::table, .name = "t"}, how, sink, observer_, &result);
  ASSERT_TRUE(status) << status.message();
  EXPECT_EQ(2, result.rows);
  const std::string file = utf8Of(folder_.file("made.cdb"));
  ASSERT_TRUE(createDatabase(file));
  std::unique_ptr<Backend> made;
  ASSERT_TRUE(openPath(file, {}, &made));
  std::unique_ptr<RowSource> none;
  std::int64_t count = 0;
  for (std::size_t begin = 0, end = 0; (end = sink.content.find(";\n", begin)) != std::string::npos;
       begin = end + 2) {
    const std::string line = sink.content.substr(begin, end - begin);
    // One statement is one transaction here.
    if (!line.starts_with("CREATE") && !line.starts_with("INSERT")) continue;
    const Status taken = made->run(line, &count, &none);
    ASSERT_TRUE(taken) << line << ": " << taken.message();
  }
  std::unique_ptr<RowStream> rows;
  ASSERT_TRUE(made->openStream("t", SourceKind::table, &rows));
  bool hasRow = false;
  ASSERT_TRUE(rows->next(&hasRow));
  std::string texts;
  for (std::size_t index = 0; index < 7; ++index) texts += plainTextOf(rows->cell(index)) + "|";
  EXPECT_EQ("1|it's|1.250000|2001-03-09 14:05:07|1 day|{1,2}|" + std::string("x:\0\xFF|", 5), texts);
  ASSERT_TRUE(rows->next(&hasRow));
  EXPECT_EQ(CellKind::null, rows->cell(1).kind);
}

TEST_F(ServerLoadTest, WhatTakesNoRecordsIsRefusedBeforeAnyIsRead) {
  runOnServer("CREATE TABLE b (k integer); CREATE VIEW t AS SELECT k, 1 AS v FROM b", database_);
  open();
  std::unique_ptr<TableLoad> load;
  EXPECT_EQ(ErrorCode::readOnly, backend_->beginLoad({.table = "t", .columns = {"k"}}, &load).code());
  EXPECT_EQ(ErrorCode::noTable, backend_->beginLoad({.table = "none", .columns = {"k"}}, &load).code());
  EXPECT_EQ(ErrorCode::badColumn, backend_->beginLoad({.table = "b", .columns = {"x"}}, &load).code());
  EXPECT_EQ(ErrorCode::invalidArgument, backend_->beginLoad({.table = "b"}, &load).code());
  EXPECT_EQ(
      ErrorCode::invalidArgument,
      backend_->beginLoad({.createStatement = "DROP TABLE b", .table = "b", .columns = {"k"}}, &load).code());
  EXPECT_EQ(ErrorCode::badColumn,
            backend_->beginLoad({.table = "b", .columns = {"k"}, .keyColumns = {"x"}}, &load).code());
  EXPECT_EQ(nullptr, load);
  run("INSERT INTO b VALUES (1)");
  EXPECT_EQ("1", onServer("SELECT count(*) FROM b"));
}

}  // namespace
}  // namespace store
