// SELECT statements: which rows come, which of them can be changed, and what their columns are called.
#include "tests/store/store_fixture.h"

namespace store {
namespace {

class SelectTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    prepare(
        "CREATE TABLE t (a Integer, b Varchar (20), c Double);"
        "INSERT INTO t VALUES (1, 'one', 1.5), (2, 'two', 2.5), (3, 'three', NULL), (4, 'one', 0.5);"
        "CREATE TABLE u (a Integer, d Text);"
        "INSERT INTO u VALUES (1, 'uno'), (3, 'tre'), (3, 'three again');"
        "CREATE VIEW v AS SELECT a, upper(b) AS big FROM t WHERE a < 4");
    open();
  }

  std::string inFile(const std::string& sql) { return OtherProgram(path_).ask(sql); }

  /// The first column of `sql` is `expected`, and nothing of it can be changed.
  void expectReadOnly(std::string_view sql, std::string_view expected) {
    SCOPED_TRACE(std::string(sql));
    const auto recordset = records(sql);
    ASSERT_NE(nullptr, recordset);
    EXPECT_FALSE(recordset->isUpdatable());
    for (const Column& column : recordset->columns()) EXPECT_FALSE(column.updatable) << column.name;
    EXPECT_EQ(ErrorCode::readOnly, recordset->addNew().code());
    EXPECT_EQ(expected, columnOf(*recordset));
    if (recordset->recordCount() == 0) return;
    ASSERT_TRUE(recordset->moveFirst());
    EXPECT_EQ(ErrorCode::readOnly, recordset->setValue(0, std::string("changed")).code());
    EXPECT_EQ(ErrorCode::readOnly, recordset->remove().code());
  }

  /// The column a of `sql` is `expected`; writing into it changes exactly that record; a deletion takes
  /// exactly it.
  void expectUpdatable(std::string_view sql, std::string_view expected) {
    SCOPED_TRACE(std::string(sql));
    const auto recordset = records(sql);
    ASSERT_NE(nullptr, recordset);
    EXPECT_TRUE(recordset->isUpdatable());
    const std::optional<std::size_t> a = recordset->columnIndex("a");
    ASSERT_TRUE(a);
    EXPECT_TRUE(recordset->columns()[*a].updatable);
    EXPECT_EQ(expected, columnOf(*recordset, *a));
    if (recordset->recordCount() == 0) return;
    ASSERT_TRUE(recordset->moveLast());
    const std::string last = textOf(*recordset, *a);
    ASSERT_TRUE(recordset->setValue(*a, std::int64_t{77}));
    ASSERT_TRUE(recordset->update());
    EXPECT_EQ("77", textOf(*recordset, *a));
    EXPECT_EQ("1", inFile("SELECT count(*) FROM t WHERE a = 77"));
    EXPECT_EQ("0", inFile("SELECT count(*) FROM t WHERE a = " + last));
    ASSERT_TRUE(recordset->remove());
    EXPECT_EQ("3", inFile("SELECT count(*) FROM t"));
    OtherProgram(path_).run(
        "DELETE FROM t; INSERT INTO t VALUES (1, 'one', 1.5), (2, 'two', 2.5), (3, 'three', NULL), (4, "
        "'one', 0.5)");
  }
};

TEST_F(SelectTest, OneTableIsUpdatableHoweverItsRowsAreChosen) {
  expectUpdatable("Select * from [t]", "1 2 3 4");
  expectUpdatable("SELECT a FROM t", "1 2 3 4");
  expectUpdatable("SELECT ALL a FROM t", "1 2 3 4");
  expectUpdatable("SELECT b, a FROM t ORDER BY b, a DESC", "4 1 3 2");
  expectUpdatable("SELECT a, b FROM t ORDER BY 2 DESC, 1", "2 3 1 4");
  expectUpdatable("SELECT a, -a AS minus FROM t ORDER BY minus", "4 3 2 1");
  expectUpdatable("SELECT * FROM t ORDER BY c DESC", "2 1 4 3");
  expectUpdatable("SELECT * FROM t WHERE b LIKE 'T%'", "2 3");
  expectUpdatable("SELECT * FROM t WHERE b LIKE '_n_'", "1 4");
  expectUpdatable("SELECT * FROM t WHERE a = '2'", "2");
  expectUpdatable("SELECT * FROM t WHERE c IS NULL", "3");
  expectUpdatable("SELECT * FROM t LIMIT 2", "1 2");
  expectUpdatable("SELECT * FROM t ORDER BY a DESC LIMIT 2 OFFSET 1", "3 2");
  expectUpdatable("SELECT * FROM t LIMIT 1, 2", "2 3");
  expectUpdatable("SELECT x.* FROM t AS x WHERE x.a > 2", "3 4");
  expectUpdatable("SELECT x.a FROM t x ORDER BY x.a DESC", "4 3 2 1");
  expectUpdatable("SELECT * FROM main.t", "1 2 3 4");
  expectUpdatable("SELECT * FROM 't' WHERE \"a\" = 1", "1");
  expectUpdatable("SELECT [a] FROM \"t\" WHERE `a` = 1", "1");
  expectUpdatable("SELECT * FROM t WHERE a IN (SELECT a FROM u)", "1 3");
  expectUpdatable("SELECT * FROM t WHERE EXISTS (SELECT 1 FROM u WHERE u.a = t.a)", "1 3");
  expectUpdatable("SELECT a, (SELECT count(*) FROM u WHERE u.a = t.a) AS n FROM t ORDER BY n DESC, a",
                  "3 1 2 4");
  expectUpdatable("SELECT * FROM t WHERE a = (SELECT max(a) FROM u)", "3");
  expectUpdatable("SELECT * FROM t WHERE 0", "");
}

TEST_F(SelectTest, OneTableStaysUpdatableInsideASelectThatOnlyChooses) {
  expectUpdatable("SELECT * FROM (SELECT * FROM t) WHERE a > 1 ORDER BY a DESC", "4 3 2");
  expectUpdatable("SELECT * FROM (SELECT b AS x, a FROM t) WHERE x = 'one' ORDER BY a DESC", "4 1");
  expectUpdatable("SELECT * FROM (SELECT b AS c, a FROM t WHERE c > 1 ORDER BY a DESC) WHERE c <> 'one'",
                  "2");
  expectUpdatable("SELECT * FROM (SELECT a, a + 1 AS more FROM t) ORDER BY more DESC", "4 3 2 1");
  expectUpdatable("SELECT * FROM (SELECT * FROM t ORDER BY a DESC LIMIT 3) WHERE a <> 3 ORDER BY a", "2 4");
  expectUpdatable("SELECT * FROM (SELECT * FROM (SELECT * FROM t WHERE a > 1) WHERE a < 4) ORDER BY a DESC",
                  "3 2");
  expectUpdatable("SELECT * FROM (SELECT * FROM t -- all\n) WHERE 0", "");
  expectUpdatable("SELECT * FROM (\nSELECT * FROM t WHERE b IN ('one', 'two')\n) WHERE c > 1 LIMIT 2;",
                  "1 2");
}

TEST_F(SelectTest, WhatStandsAroundAJoinOrAnAggregateIsReadOnly) {
  expectReadOnly("SELECT * FROM (SELECT t.a FROM t INNER JOIN u ON t.a = u.a) ORDER BY a DESC", "3 3 1");
  expectReadOnly("SELECT * FROM (SELECT count(*) AS n FROM t) WHERE n = 4", "4");
  expectReadOnly("SELECT * FROM (SELECT DISTINCT a FROM t) WHERE a > 2 ORDER BY a", "3 4");
  expectReadOnly("SELECT * FROM (SELECT a FROM v) WHERE a > 1", "2 3");
  expectReadOnly("SELECT a FROM (SELECT a FROM t) WHERE a > 2", "3 4");
  expectReadOnly("SELECT * FROM (SELECT a FROM t) AS x WHERE a > 2", "3 4");
  expectReadOnly("SELECT * FROM (SELECT a FROM t), (SELECT 1) WHERE a > 2", "3 4");
}

TEST_F(SelectTest, ADateAroundAQueryIsComparedAsAMoment) {
  prepare(
      "CREATE TABLE days (day datetime); INSERT INTO days VALUES ('2001-03-09 00:00:00.000'), "
      "('2001-03-09T00:00Z'), ('2001-03-10')");
  EXPECT_EQ("2", columnOf("SELECT count(*) FROM (SELECT * FROM days) WHERE [day] = '2001-03-09'"));
}

TEST_F(SelectTest, RowsThatNoTableTellsApartAreReadOnly) {
  expectReadOnly("SELECT t.a FROM t INNER JOIN u ON t.a = u.a ORDER BY 1", "1 3 3");
  expectReadOnly("SELECT t.a FROM t, u WHERE t.a = u.a ORDER BY 1", "1 3 3");
  expectReadOnly("SELECT a FROM t NATURAL JOIN u ORDER BY 1", "1 3 3");
  expectReadOnly("SELECT t.a FROM t LEFT JOIN u USING (a) ORDER BY 1", "1 2 3 3 4");
  expectReadOnly("SELECT count(*) FROM t", "4");
  expectReadOnly("SELECT count(*) FROM t WHERE 0", "0");
  expectReadOnly("SELECT sum(a) FROM t", "10");
  expectReadOnly("SELECT sum(a) FROM t GROUP BY b ORDER BY 1", "2 3 5");
  expectReadOnly("SELECT b FROM t GROUP BY b HAVING count(*) > 1", "one");
  expectReadOnly("SELECT max(a) FROM t", "4");
  expectReadOnly("SELECT group_concat(a, '+') FROM t", "1+2+3+4");
  expectReadOnly("SELECT DISTINCT b FROM t ORDER BY b", "one three two");
  expectReadOnly("SELECT a FROM t UNION SELECT a FROM u", "1 2 3 4");
  expectReadOnly("SELECT a FROM t UNION ALL SELECT a FROM u", "1 2 3 4 1 3 3");
  expectReadOnly("SELECT a FROM t INTERSECT SELECT a FROM u", "1 3");
  expectReadOnly("SELECT a FROM t EXCEPT SELECT a FROM u", "2 4");
  expectReadOnly("SELECT * FROM v", "1 2 3");
  expectReadOnly("SELECT big FROM v WHERE a = 1", "ONE");
  expectReadOnly("SELECT a FROM (SELECT a FROM t WHERE a > 1) ORDER BY a DESC", "4 3 2");
  expectReadOnly("WITH x(n) AS (SELECT a FROM t) SELECT n FROM x WHERE n > 2", "3 4");
  expectReadOnly(
      "WITH RECURSIVE r(n) AS (VALUES (1) UNION ALL SELECT n + 1 FROM r WHERE n < 5) SELECT n FROM r",
      "1 2 3 4 5");
  expectReadOnly("VALUES (1), (2)", "1 2");
  expectReadOnly("SELECT row_number() OVER (ORDER BY a DESC) FROM t", "1 2 3 4");
  expectReadOnly("SELECT value FROM json_each('[5,6]')", "5 6");
  expectReadOnly("SELECT name FROM sqlite_schema ORDER BY 1", "t u v");
  expectReadOnly("SELECT t.a FROM t JOIN u WHERE 0", "");
}

TEST_F(SelectTest, AggregatesOfEveryNameMakeOneRowOfAll) {
  for (const std::string name : {"count", "SUM", "total", "avg", "group_concat", "json_group_array", "min",
                                 "Max", "[count]", "\"sum\""}) {
    for (const std::string& sql :
         {"SELECT a, " + name + "(a) FROM t", "SELECT 1 + abs(" + name + " (a)) AS b FROM t",
          "SELECT total(a) FROM t WHERE b ORDER BY 1, " + name + "(a) LIMIT 1",
          "SELECT " + name + "(a) FILTER (WHERE a > 1) FROM t LIMIT 0"}) {
      const auto recordset = records(sql);
      ASSERT_NE(nullptr, recordset);
      EXPECT_FALSE(recordset->isUpdatable()) << sql;
      EXPECT_LE(recordset->recordCount(), 1) << sql;
    }
  }
}

TEST_F(SelectTest, MinAndMaxOfSeveralArgumentsAndNamesLikeAggregatesAreNoAggregates) {
  prepare("CREATE TABLE n (count, max); INSERT INTO n VALUES (1, 2), (3, 4)");
  for (const char* sql : {"SELECT min(count, max) FROM n", "SELECT count, (max) FROM n",
                          "SELECT count AS sum FROM n ORDER BY max(count, max)"}) {
    const auto recordset = records(sql);
    ASSERT_NE(nullptr, recordset);
    EXPECT_TRUE(recordset->isUpdatable()) << sql;
    EXPECT_EQ("1 3", columnOf(*recordset)) << sql;
  }
}

TEST_F(SelectTest, AnAggregateInASubqueryBelongsToTheSelectWhoseColumnsItIsMadeOf) {
  expectReadOnly("SELECT (SELECT sum(b || 1) FROM u) FROM t", "0.000000");
  expectReadOnly("SELECT (SELECT sum(c) FROM u) FROM t", "4.500000");
  expectReadOnly("SELECT (SELECT sum(t.a) FROM u) FROM t", "10");
  expectReadOnly("SELECT (SELECT 1 + max(abs([x].a)) FROM u) FROM t x", "5");
  expectReadOnly("SELECT (SELECT sum(c)) FROM t", "4.500000");
  expectReadOnly("SELECT count(*), (SELECT sum(c) FROM u) FROM t", "4");
  expectUpdatable("SELECT a, (SELECT sum(a) FROM u) AS s FROM t ORDER BY s, a DESC", "4 3 2 1");
  expectUpdatable("SELECT a, (SELECT count(*) FROM u) FROM t", "1 2 3 4");
  expectUpdatable("SELECT a, EXISTS (SELECT count(*)) FROM t", "1 2 3 4");
  expectUpdatable("SELECT a FROM t ORDER BY (SELECT max(d) FROM u), a", "1 2 3 4");
  expectUpdatable("SELECT a, a IN (WITH w AS (SELECT 1 AS x) SELECT sum(x) FROM w) FROM t", "1 2 3 4");
}

TEST_F(SelectTest, SqlitesOwnTablesAreReadOnly) {
  prepare("CREATE TABLE counted (a INTEGER PRIMARY KEY AUTOINCREMENT); INSERT INTO counted DEFAULT VALUES");
  expectReadOnly("SELECT name FROM sqlite_master WHERE type = 'view'", "v");
  expectReadOnly("SELECT name FROM sqlite_sequence", "counted");
}

TEST_F(SelectTest, ExpressionsAndAliasesHaveNamesAndOnlyColumnsAreWritable) {
  const auto mixed = records("SELECT a AS number, a + 1, upper(b) AS big, b FROM t");
  ASSERT_NE(nullptr, mixed);
  EXPECT_EQ("number", mixed->columns()[0].name);
  EXPECT_EQ("a + 1", mixed->columns()[1].name);
  EXPECT_EQ("big", mixed->columns()[2].name);
  EXPECT_TRUE(mixed->columns()[0].updatable);
  EXPECT_FALSE(mixed->columns()[1].updatable);
  EXPECT_FALSE(mixed->columns()[2].updatable);
  EXPECT_TRUE(mixed->columns()[3].updatable);
  EXPECT_EQ(ErrorCode::readOnly, mixed->setValue(1, std::int64_t{5}).code());
  ASSERT_TRUE(mixed->setValue(0, std::int64_t{10}));
  ASSERT_TRUE(mixed->update());
  EXPECT_EQ("11", textOf(*mixed, 1)) << "computed anew";
  EXPECT_EQ("10", inFile("SELECT max(a) FROM t"));
}

TEST_F(SelectTest, AColumnShownTwiceIsOneColumn) {
  const auto twice = records("SELECT a, a, a AS again FROM t");
  ASSERT_NE(nullptr, twice);
  ASSERT_TRUE(twice->setValue(0, std::int64_t{10}));
  ASSERT_TRUE(twice->setValue(2, std::int64_t{20}));
  ASSERT_TRUE(twice->update());
  EXPECT_EQ("20", textOf(*twice, 0)) << "the last one written holds";
  EXPECT_EQ("20", textOf(*twice, 1));
  ASSERT_TRUE(twice->addNew());
  ASSERT_TRUE(twice->setValue(1, std::int64_t{30}));
  ASSERT_TRUE(twice->update());
  EXPECT_EQ("30", textOf(*twice, 2));
}

TEST_F(SelectTest, ColumnsThatAreCalledLikeTheRowIdAreColumns) {
  prepare("CREATE TABLE r (rowid Text, oid Integer); INSERT INTO r VALUES ('x', 10), ('y', 20)");
  prepare("CREATE TABLE r3 (rowid Text, oid Text, _rowid_ Text); INSERT INTO r3 VALUES ('a', 'b', 'c')");
  prepare("CREATE TABLE r4 (rowid Text, oid Text, _rowid_ Text, k INTEGER PRIMARY KEY)");
  prepare("INSERT INTO r4 VALUES ('a', 'b', 'c', 9)");
  const auto two = records("Select * from [r]");
  ASSERT_NE(nullptr, two);
  EXPECT_TRUE(two->isUpdatable());
  ASSERT_TRUE(two->moveNext());
  EXPECT_EQ("y", textOf(*two, 0));
  ASSERT_TRUE(two->setValue(0, std::string("z")));
  ASSERT_TRUE(two->update());
  EXPECT_EQ("xz", inFile("SELECT group_concat(rowid, '') FROM r"));
  expectReadOnly("Select * from [r3]", "a");
  const auto keyed = records("Select * from [r4] where rowid = 'a'");
  ASSERT_NE(nullptr, keyed);
  ASSERT_TRUE(keyed->setValue(1, std::string("B")));
  ASSERT_TRUE(keyed->update());
  EXPECT_EQ("B", inFile("SELECT oid FROM r4 WHERE k = 9"));
}

TEST_F(SelectTest, TheRowIdCanBeAskedFor) {
  const auto rows = records("SELECT rowid, a FROM t WHERE rowid > 2");
  ASSERT_NE(nullptr, rows);
  EXPECT_EQ("3 4", columnOf(*rows));
}

TEST_F(SelectTest, NamesWithQuotesAreReadAndChanged) {
  prepare("CREATE TABLE \"we \"\"quote\"\" it's\" (\"a \"\"b\"\" [c]\" Integer, \"select\" Text)");
  prepare("INSERT INTO \"we \"\"quote\"\" it's\" VALUES (1, 'x')");
  const auto rows = records("we \"quote\" it's", SourceKind::table);
  ASSERT_NE(nullptr, rows);
  EXPECT_EQ("a \"b\" [c]", rows->columns()[0].name);
  ASSERT_TRUE(rows->setValue(0, std::int64_t{2}));
  ASSERT_TRUE(rows->setValue(1, std::string("y")));
  ASSERT_TRUE(rows->update());
  EXPECT_EQ("2", textOf(*rows, 0));
  EXPECT_EQ("y", inFile("SELECT \"select\" FROM \"we \"\"quote\"\" it's\""));
}

TEST_F(SelectTest, ASourceIsTheNameOfATableOrAStatement) {
  prepare("CREATE TABLE \"SELECT a FROM t\" (only Text); INSERT INTO \"SELECT a FROM t\" VALUES ('named')");
  EXPECT_EQ("1 2 3 4", columnOf(*records("t", SourceKind::table)));
  EXPECT_EQ("1 2 3 4", columnOf(*records("T", SourceKind::table)));
  EXPECT_EQ("1 2 3", columnOf(*records("v", SourceKind::unknown)));
  EXPECT_EQ("named", columnOf(*records("SELECT a FROM t", SourceKind::table)));
  EXPECT_EQ("named", columnOf(*records("SELECT a FROM t", SourceKind::unknown)));
  EXPECT_EQ("1 2 3 4", columnOf(*records("SELECT a FROM t", SourceKind::text)));
  EXPECT_EQ("1 2", columnOf(*records("SELECT a FROM t WHERE a < 3", SourceKind::unknown)));
  std::unique_ptr<Recordset> none;
  EXPECT_EQ(ErrorCode::noTable, tryOpen("no such", &none, SourceKind::table).code());
  EXPECT_EQ(ErrorCode::noTable, tryOpen("", &none, SourceKind::table).code());
  EXPECT_EQ(ErrorCode::noTable, tryOpen("SELECT a FROM u", &none, SourceKind::table).code());
  EXPECT_EQ(ErrorCode::noTable, tryOpen("t; DROP TABLE t", &none, SourceKind::table).code());
  EXPECT_EQ(ErrorCode::errorsInCommand, tryOpen("t", &none, SourceKind::text).code());
  EXPECT_EQ(ErrorCode::noCommand, tryOpen("", &none, SourceKind::unknown).code());
  EXPECT_EQ(ErrorCode::noTable, tryOpen(std::string(1'048'576, 't'), &none, SourceKind::table).code());
}

TEST_F(SelectTest, ANewRecordOfAFilteredSelectNeedNotFitTheFilter) {
  const auto few = records("SELECT * FROM t WHERE a < 3");
  ASSERT_NE(nullptr, few);
  ASSERT_TRUE(few->addNew());
  ASSERT_TRUE(few->setValue(0, std::int64_t{50}));
  ASSERT_TRUE(few->update());
  EXPECT_EQ("50", textOf(*few, 0));
  EXPECT_EQ(3, few->recordCount());
  EXPECT_EQ("1 2", columnOf("SELECT * FROM t WHERE a < 3"));
}

TEST_F(SelectTest, ResultsStayAsTheyWereTaken) {
  const auto sums = records("SELECT b, count(*) FROM t GROUP BY b ORDER BY b");
  prepare("DELETE FROM t");
  EXPECT_EQ("one three two", columnOf(*sums));
  ASSERT_TRUE(sums->moveFirst());
  EXPECT_EQ("2", textOf(*sums, 1));
}

TEST_F(SelectTest, ManyResultsLiveAndDieBesideEachOther) {
  const std::string before = columnOf("SELECT count(*) FROM sqlite_temp_schema");
  std::vector<std::unique_ptr<Recordset>> open;
  for (int n = 0; n < 50; ++n)
    open.push_back(records("SELECT DISTINCT a + " + std::to_string(n) + " FROM t"));
  for (std::size_t n = 0; n < open.size(); n += 2) open[n].reset();
  for (std::size_t n = 1; n < open.size(); n += 2) EXPECT_EQ(std::to_string(n + 1), textOf(*open[n], 0));
  open.clear();
  EXPECT_EQ(before, columnOf("SELECT count(*) FROM sqlite_temp_schema"));
}

// A change takes over the transaction in which the records of a statement were taken down.
TEST_F(SelectTest, RecordsOfAStatementStayWhenAChangeFailsRightAfterwards) {
  run("CREATE UNIQUE INDEX i ON t (a)");
  const auto rows = records("SELECT * FROM t");
  const auto sums = records("SELECT DISTINCT b FROM t");
  ASSERT_TRUE(rows->addNew());
  ASSERT_TRUE(rows->setValue(0, std::int64_t{1}));
  EXPECT_EQ(ErrorCode::constraint, rows->update().code());
  EXPECT_EQ("one two three", columnOf(*sums));
}

}  // namespace
}  // namespace store
