// What only the records of a server's tables can be.
#include <new>

#include "platform/store/sql/dialect.h"
#include "tests/server/server_fixture.h"
#include "tests/store/allocation_probe.h"

namespace store {
namespace {

class ServerRowsTest : public ServerRowTest {};

TEST_F(ServerRowsTest, EveryTypeIsShownAndWrittenBackWithoutALoss) {
  struct Example {
    const char* type;
    const char* text;
    const char* other;
  };
  constexpr Example kExamples[] = {
      {"smallint", "-32768", "7"},
      {"bigint", "-9223372036854775808", "9223372036854775807"},
      {"numeric", "123456789012345678901234567890.123456789", "0.1"},
      {"numeric(5,2)", "1.50", "2.25"},
      {"money", "$1.50", "$2.25"},
      {"varchar(20)", "a 'b' \"c\" \\ {d} ?", "?"},
      {"char(5)", "ab", "cd"},
      {"text", "line\nline\r\nend", "\xE6\x97\xA5\xF0\x9F\x98\x80"},
      {"date", "2001-03-09", "0044-03-15 BC"},
      {"time", "14:05:07.25", "23:59:59.999999"},
      {"timestamp", "2001-03-09 14:05:07.123456", "infinity"},
      {"timestamptz", "2001-03-09 14:05:07+00", "2002-03-09 14:05:07+00"},
      {"interval", "1 year 2 mons 3 days 04:05:06", "00:00:01"},
      {"uuid", "a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11", "b0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11"},
      {"json", "{\"a\":  [1, null]}", "[]"},
      {"jsonb", "{\"a\": [1, null]}", "[]"},
      {"inet", "192.168.0.1/24", "::1/128"},
      {"integer[]", "{1,NULL,3}", "{}"},
      {"int4range", "[1,5)", "empty"},
      {"bit(4)", "1010", "0101"},
      {"point", "(1,2)", "(3,4)"},
      {"mood", "so-so", "fine"},
  };
  runOnServer("CREATE TYPE mood AS ENUM ('fine', 'so-so')", database_);
  for (const Example& example : kExamples) {
    SCOPED_TRACE(example.type);
    runOnServer("DROP TABLE IF EXISTS t", database_);
    openRow(std::string("v ") + example.type, quotedText(example.text));
    if (rows_ == nullptr) continue;
    EXPECT_EQ(example.text, textOf(*rows_, 1));
    ASSERT_TRUE(rows_->setValue(1, std::string(example.other)));
    const Status status = rows_->update();
    EXPECT_TRUE(status) << status.message();
    EXPECT_EQ(example.other, textOf(*rows_, 1));
    EXPECT_TRUE(rows_->setValue(1, std::monostate()));
    EXPECT_TRUE(rows_->update()) << "also beside a value that has many texts";
    EXPECT_EQ("(null)", textOf(*rows_, 1));
    rows_.reset();
  }
}

TEST_F(ServerRowsTest, NumbersBooleansAndBytesKeepTheirKind) {
  openRow("r double precision, f real, b boolean, x bytea, n double precision",
          "0.1, 0.1, true, '\\x00ff', 'NaN'");
  Cell cell;
  ASSERT_TRUE(rows_->cell(1, &cell));
  EXPECT_EQ(0.1, cell.real);
  ASSERT_TRUE(rows_->cell(3, &cell));
  EXPECT_EQ(CellKind::integer, cell.kind);
  EXPECT_EQ(1, cell.integer);
  EXPECT_EQ(std::string("x:\0\xFF", 4), textOf(*rows_, 4));
  EXPECT_EQ("NaN", textOf(*rows_, 5));
  ASSERT_TRUE(rows_->setValue(3, std::int64_t{0}));
  ASSERT_TRUE(rows_->setValue(4, Blob{std::string(1'000'000, '\0')}));
  const Status status = rows_->update();
  ASSERT_TRUE(status) << status.message();
  EXPECT_EQ("1000000", onServer("SELECT octet_length(x) FROM t WHERE NOT b AND f = 0.1::real"));
}

TEST_F(ServerRowsTest, ATextThatTheFieldCannotTakeIsRefusedAndNothingChanges) {
  openRow("n numeric(4,1), v varchar(3), d date", "1, 'abc', '2001-03-09'");
  for (const auto& [column, text] :
       {std::pair<std::size_t, const char*>{1, "abc"}, {2, "abcd"}, {3, "soon"}}) {
    ASSERT_TRUE(rows_->setValue(column, std::string(text)));
    EXPECT_EQ(ErrorCode::conversion, rows_->update().code()) << text;
    EXPECT_EQ(text, textOf(*rows_, column)) << "what was typed stays";
    EXPECT_TRUE(rows_->cancelUpdate());
  }
  ASSERT_TRUE(rows_->setValue(2, std::string("a\0b", 3)));
  EXPECT_EQ(ErrorCode::conversion, rows_->update().code());
  EXPECT_EQ("1.0 abc 2001-03-09", onServer("SELECT n || ' ' || v || ' ' || d FROM t"));
}

TEST_F(ServerRowsTest, WhatIsANumberToTheServerAloneIsOrderedAsOne) {
  runOnServer("CREATE TABLE o (k integer PRIMARY KEY, b bigint, n numeric, i interval, t text)", database_);
  runOnServer(
      "INSERT INTO o VALUES (1, 9, 9.5, '2 days', 'b'), (2, 10, 10, '1 mon', 'A'), (3, -1, 1e3, '3:00', 'c')",
      database_);
  open();
  EXPECT_EQ("3 1 2", columnOf("Select * from [o] ORDER BY quivane_fold([b])"));
  EXPECT_EQ("3 2 1", columnOf("Select * from [o] ORDER BY quivane_fold([n]) DESC"));
  EXPECT_EQ("3 1 2", columnOf("Select * from [o] ORDER BY quivane_fold([i])"));
  EXPECT_EQ("2 1 3", columnOf("Select * from [o] ORDER BY quivane_fold([t]), quivane_fold([n])"));
  EXPECT_EQ("1 2", columnOf("SELECT * FROM (SELECT k, n FROM o WHERE b > 0\n) ORDER BY quivane_fold([n])"));
}

TEST_F(ServerRowsTest, ANumberWithDecimalsOfAnySizeEqualsTheOneThatIsShown) {
  runOnServer("CREATE TABLE r (k integer PRIMARY KEY, s real, d double precision)", database_);
  runOnServer("INSERT INTO r VALUES (1, 0.1, 0.1), (2, -3.1415927, -3.1415926535), (3, 1e30, 1e300)",
              database_);
  open();
  for (const char* condition : {"[s] = 0.10000000000000001", "[d] = 0.1", "[s] >= 0.1 AND [s] < 1"})
    EXPECT_EQ("1", columnOf(std::string("Select * from [r] WHERE ") + condition)) << condition;
  EXPECT_EQ("2", columnOf("Select * from [r] WHERE [s] = -3.1415926999999999"));
  EXPECT_EQ("3", columnOf("Select * from [r] WHERE [s] = 1e+30"));
  EXPECT_EQ("1 2 3", columnOf("Select * from [r] WHERE [s] < 1e300"));
}

// A form writes what its editors hold, and the editor of a field that holds nothing holds an empty text.
TEST_F(ServerRowsTest, AnEmptyTextIsNothingInAFieldOfAnotherTypeAndTheDefaultInANewRecord) {
  runOnServer("CREATE TYPE mood AS ENUM ('fine', 'so-so')", database_);
  runOnServer("CREATE DOMAIN word AS varchar(9) CHECK (VALUE <> 'no')", database_);
  openRow(
      "n numeric(9,2), b bigint, u uuid DEFAULT 'a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11', m mood, j json, t "
      "text, "
      "w word, c char(3)",
      "9.5, 9, NULL, 'fine', '{}', 'text', 'word', 'abc'");
  constexpr std::size_t kCount = 8;
  for (std::size_t column = 1; column <= kCount; ++column)
    ASSERT_TRUE(
        rows_->setValue(column, std::string(column == 3 ? "b0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11" : "")));
  Status status = rows_->update();
  ASSERT_TRUE(status) << status.message();
  ASSERT_TRUE(rows_->setValue(3, std::string()));
  status = rows_->update();
  ASSERT_TRUE(status) << status.message();
  ASSERT_TRUE(rows_->addNew());
  ASSERT_TRUE(rows_->setValue(0, std::int64_t{2}));
  for (std::size_t column = 1; column <= kCount; ++column)
    ASSERT_TRUE(rows_->setValue(column, std::string()));
  status = rows_->update();
  ASSERT_TRUE(status) << status.message();
  EXPECT_EQ("a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11", textOf(*rows_, 3));
  const std::string kEmpty =
      "SELECT num_nulls(n, b, u, m, j) || ' ' || (t || w || c || '.') FROM t WHERE k = ";
  EXPECT_EQ("5 .", onServer(kEmpty + "1"));
  EXPECT_EQ("4 .", onServer(kEmpty + "2"));
}

TEST_F(ServerRowsTest, ATableWithoutAKeyIsReadOnlyAndItsFieldsSaySo) {
  runOnServer("CREATE TABLE loose (a integer, b text)", database_);
  runOnServer("INSERT INTO loose SELECT i, 'row ' || i FROM generate_series(1, 600) i", database_);
  open();
  const auto loose = records("Select * from [loose]");
  ASSERT_NE(nullptr, loose);
  EXPECT_FALSE(loose->isUpdatable());
  EXPECT_FALSE(loose->columns()[0].updatable);
  ASSERT_EQ(600, loose->recordCount());
  for (std::int64_t position : {600, 1, 300}) {
    ASSERT_TRUE(loose->setPosition(position));
    EXPECT_EQ("row " + std::to_string(position), textOf(*loose, 1));
  }
  EXPECT_EQ(ErrorCode::readOnly, loose->setValue(0, std::int64_t{7}).code());
  EXPECT_EQ(ErrorCode::readOnly, loose->addNew().code());
  EXPECT_EQ(ErrorCode::readOnly, loose->remove().code());
}

TEST_F(ServerRowsTest, KeysOfSeveralColumnsAndOfEveryTypeTellRowsApart) {
  runOnServer("CREATE TABLE c (a text, b date, v text, w bytea, PRIMARY KEY (b, a))", database_);
  runOnServer(
      "INSERT INTO c SELECT 'it''s ' || i, date '2001-01-01' + i, 'v' || i, '\\x00' FROM generate_series(1, "
      "300) i",
      database_);
  open();
  const auto rows = records("Select * from [c]");
  ASSERT_EQ(300, rows->recordCount());
  ASSERT_TRUE(rows->setPosition(200));
  EXPECT_EQ("v200", textOf(*rows, 2));
  ASSERT_TRUE(rows->setValue(0, std::string("moved")));
  ASSERT_TRUE(rows->update());
  EXPECT_EQ("v200", textOf(*rows, 2)) << "the set follows a key that was changed";
  ASSERT_TRUE(rows->remove());
  EXPECT_EQ("299", onServer("SELECT count(*) FROM c"));
  ASSERT_TRUE(rows->moveFirst());
  for (int number = 1; number <= 299; ++number) {
    ASSERT_EQ("v" + std::to_string(number < 200 ? number : number + 1), textOf(*rows, 2));
    ASSERT_TRUE(rows->moveNext());
  }
}

TEST_F(ServerRowsTest, RecordsThatAreToBeReadSoonComeTogether) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, n integer)", database_);
  runOnServer("INSERT INTO t SELECT i, i FROM generate_series(1, 100) i", database_);
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  rows->readAhead(41, 20);
  ASSERT_TRUE(rows->setPosition(41));
  EXPECT_EQ("41", textOf(*rows, 1));
  prepare("UPDATE t SET n = -n");
  // With the first one the others had come.
  for (const int place : {42, 59, 60}) {
    ASSERT_TRUE(rows->setPosition(place));
    EXPECT_EQ(std::to_string(place), textOf(*rows, 1));
  }
  ASSERT_TRUE(rows->setPosition(61));
  EXPECT_EQ("-61", textOf(*rows, 1));
}

TEST_F(ServerRowsTest, ATableThatIsMadeAnewInTheMidstIsReadAndChangedAsItIs) {
  openRow("a text", "'x'");
  EXPECT_EQ("x", textOf(*rows_, 1));
  runOnServer("ALTER TABLE t ALTER a TYPE integer USING 7", database_);
  ASSERT_TRUE(rows_->setPosition(1));
  EXPECT_EQ("7", textOf(*rows_, 1));
  runOnServer("DROP TABLE t", database_);
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, a text)", database_);
  runOnServer("INSERT INTO t VALUES (1, 'new')", database_);
  ASSERT_TRUE(rows_->setPosition(1));
  EXPECT_EQ("new", textOf(*rows_, 1));
  ASSERT_TRUE(rows_->setValue(1, std::string("newer")));
  EXPECT_TRUE(rows_->update());
  EXPECT_EQ("newer", onServer("SELECT a FROM t"));
  runOnServer("ALTER TABLE t DROP a", database_);
  ASSERT_TRUE(rows_->setPosition(1));
  Cell cell;
  EXPECT_EQ(ErrorCode::structureChanged, rows_->cell(1, &cell).code());
}

TEST_F(ServerRowsTest, AnotherProgramsChangeIsNotOverwrittenAndIsReadAnew) {
  openRow("a integer, b text", "1, 'b'");
  EXPECT_EQ("1", textOf(*rows_, 1));
  runOnServer("UPDATE t SET b = 'theirs'", database_);
  ASSERT_TRUE(rows_->setValue(1, std::int64_t{2}));
  EXPECT_EQ(ErrorCode::changedElsewhere, rows_->update().code());
  EXPECT_EQ("2", textOf(*rows_, 1)) << "what was typed stays";
  EXPECT_EQ(ErrorCode::changedElsewhere, rows_->remove().code());
  EXPECT_TRUE(rows_->cancelUpdate());
  EXPECT_EQ("theirs", textOf(*rows_, 2));
  EXPECT_EQ("1", textOf(*rows_, 1));
}

TEST_F(ServerRowsTest, OnlyWrittenFieldsAreStoredAndRulesOfTheServerAreTold) {
  openRow("a integer CHECK (a < 100), b text UNIQUE", "1, 'b'");
  runOnServer("CREATE FUNCTION keep() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RETURN NULL; END $$",
              database_);
  ASSERT_TRUE(rows_->setValue(1, std::int64_t{100}));
  EXPECT_EQ(ErrorCode::constraint, rows_->update().code());
  EXPECT_TRUE(rows_->cancelUpdate());
  runOnServer(
      "CREATE TRIGGER keep BEFORE INSERT OR UPDATE OR DELETE ON t FOR EACH ROW EXECUTE FUNCTION keep()",
      database_);
  ASSERT_TRUE(rows_->setValue(1, std::int64_t{2}));
  EXPECT_EQ(ErrorCode::constraint, rows_->update().code());
  EXPECT_TRUE(rows_->cancelUpdate());
  EXPECT_EQ(ErrorCode::constraint, rows_->remove().code());
  ASSERT_TRUE(rows_->addNew());
  ASSERT_TRUE(rows_->setValue(0, std::int64_t{9}));
  EXPECT_EQ(ErrorCode::constraint, rows_->update().code());
  EXPECT_EQ(1, rows_->recordCount());
  EXPECT_TRUE(rows_->cancelUpdate());
  EXPECT_EQ("1", onServer("SELECT a FROM t"));
}

TEST_F(ServerRowsTest, WhatTheUserMayNotDoIsSaidByTheFieldsOrTheServer) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, a text, g integer GENERATED ALWAYS AS (k + 1) STORED)",
              database_);
  runOnServer("INSERT INTO t VALUES (1, 'a')", database_);
  runOnServer("DROP ROLE IF EXISTS reader", database_);
  runOnServer("CREATE ROLE reader LOGIN; GRANT SELECT ON t TO reader", database_);
  std::string link = linkTo(database_);
  link.replace(link.find("UID=quivane"), 11, "UID=reader");
  testsupport::writeFile(path_, link);
  open();
  {
    const auto rows = records("Select * from [t]");
    ASSERT_NE(nullptr, rows);
    EXPECT_FALSE(rows->isUpdatable());
    EXPECT_FALSE(rows->columns()[1].updatable);
    EXPECT_EQ(ErrorCode::readOnly, tryRun("UPDATE t SET a = 'b'").code());
  }
  testsupport::writeFile(path_, linkTo(database_));
  open();
  {
    const auto rows = records("Select * from [t]");
    ASSERT_NE(nullptr, rows);
    EXPECT_TRUE(rows->columns()[1].updatable);
    EXPECT_FALSE(rows->columns()[2].updatable) << "the server computes it";
  }
  runOnServer("REVOKE ALL ON t FROM reader; DROP ROLE reader", database_);
}

TEST_F(ServerRowsTest, FiltersAndOrdersOfTheListLeaveRecordsThatCanBeChanged) {
  runOnServer(
      "CREATE TABLE \"Books\" (id integer PRIMARY KEY, \"Title\" text, \"Pages\" integer, out boolean, image "
      "bytea)",
      database_);
  runOnServer(
      "INSERT INTO \"Books\" VALUES (1, 'b', 10, true, NULL), (2, 'A', 20, false, ''), (3, 'ab', NULL, NULL, "
      "'\\x00'), (4, '', 5, true, NULL), (5, E'\\\\x', 6, false, '\\x01')",
      database_);
  open();
  const std::string all = "Select * from [Books]";
  struct Example {
    const char* tail;
    const char* ids;
  };
  constexpr Example kExamples[] = {
      {" ORDER BY quivane_fold([Title])", "4 2 3 1 5"},
      {" ORDER BY [Pages] DESC, quivane_fold([Title])", "3 2 1 5 4"},
      {" WHERE quivane_contains('B', [Title])", "1 3"},
      {" WHERE quivane_contains('0', [Title], [Pages])", "1 2"},
      {" WHERE quivane_fold([Title]) = quivane_fold('a')", "2"},
      {" WHERE ifnull([Title], '') IN ('', x'')", "4"},
      {" WHERE ifnull([Title], '') NOT IN ('', x'')", "1 2 3 5"},
      {" WHERE ifnull([Pages], '') IN ('', x'')", "3"},
      {" WHERE ifnull([image], '') NOT IN ('', x'')", "3 5"},
      {" WHERE ifnull([out], 0) <> 0", "1 4"},
      {" WHERE ifnull([out], 0) = 0", "2 3 5"},
  };
  for (const Example& example : kExamples) {
    for (const std::string& sql : {all + example.tail, "SELECT * FROM (" + all + "\n)" + example.tail}) {
      SCOPED_TRACE(sql);
      const auto rows = records(sql);
      ASSERT_NE(nullptr, rows);
      EXPECT_TRUE(rows->isUpdatable());
      EXPECT_EQ(example.ids, columnOf(*rows));
    }
  }
  EXPECT_EQ(0, records("SELECT * FROM (" + all + "\n) WHERE 0")->recordCount());
  const std::string renamed = "SELECT * FROM (SELECT id, \"Title\" AS a, image AS b FROM [Books]\n) WHERE ";
  EXPECT_EQ("4", columnOf(renamed + "ifnull([a], '') IN ('', x'')"));
  EXPECT_EQ("1 2 4", columnOf(renamed + "ifnull([b], '') IN ('', x'')"));
  const auto filtered = records("SELECT * FROM (" + all + "\n) WHERE quivane_contains('ab', [Title])");
  ASSERT_TRUE(filtered->setValue(1, std::string("changed")));
  EXPECT_TRUE(filtered->update());
  EXPECT_EQ("changed", textOf(*filtered, 1)) << "it stays in the set";
  EXPECT_EQ("changed", onServer("SELECT Title FROM Books WHERE id = 3"));
}

TEST_F(ServerRowsTest, AnAggregateAJoinAndAViewAreReadOnly) {
  openRow("a integer", "5");
  runOnServer("CREATE VIEW v AS SELECT * FROM t", database_);
  for (const char* sql : {"SELECT max(a) FROM t", "SELECT t.a FROM t, t AS u", "SELECT DISTINCT a FROM t",
                          "SELECT a FROM t UNION SELECT 5 FROM t", "SELECT a FROM v",
                          "WITH w AS (SELECT a FROM t) SELECT "
                          "a FROM w"}) {
    SCOPED_TRACE(sql);
    const auto rows = records(sql);
    ASSERT_NE(nullptr, rows);
    EXPECT_FALSE(rows->isUpdatable());
    EXPECT_EQ("5", columnOf(*rows));
  }
}

TEST_F(ServerRowsTest, ANewRecordThatThereWasNoMemoryForIsNone) {
  runOnServer("CREATE TABLE t (k serial PRIMARY KEY, v text)", database_);
  open();
  rows_ = records("Select * from [t]");
  ASSERT_NE(nullptr, rows_);
  bool wasReached = true;
  for (std::size_t allowed = 0; wasReached; ++allowed) {
    const std::int64_t before = rows_->recordCount();
    ASSERT_TRUE(rows_->addNew());
    ASSERT_TRUE(rows_->setValue(1, std::string("new")));
    bool isStored = false;
    try {
      const testsupport::AllocationLimit limit(allowed);
      isStored = static_cast<bool>(rows_->update());
      wasReached = limit.wasReached();
    } catch (const std::bad_alloc&) {
      wasReached = true;
    }
    EXPECT_EQ(before + (isStored ? 1 : 0), rows_->recordCount()) << allowed;
    ASSERT_TRUE(rows_->cancelUpdate());
  }
  EXPECT_GT(rows_->recordCount(), 0);
}

TEST_F(ServerRowsTest, SeveralRecordsThatTheServerMakesOfOneRowAreOnlyRead) {
  openRow("tags text[]", "'{a,b,c}'");
  for (const char* statement : {"SELECT k, unnest(tags) AS tag FROM t",
                                "SELECT k, cardinality(tags) AS tag FROM t ORDER BY unnest(tags)"}) {
    const auto rows = records(statement);
    ASSERT_NE(nullptr, rows) << statement;
    EXPECT_EQ(3, rows->recordCount()) << statement;
    EXPECT_FALSE(rows->isUpdatable()) << statement;
  }
  EXPECT_EQ("a b c", columnOf("SELECT k, unnest(tags) AS tag FROM t", 1));
  const auto one = records("SELECT k, cardinality(tags) AS tag FROM t WHERE k = 1 ORDER BY k");
  EXPECT_TRUE(one->isUpdatable());
  EXPECT_EQ("3", textOf(*one, 1));
}

TEST_F(ServerRowsTest, RecordsThatShareAKeyWithThoseOfAnInheritingTableAreTheirOwn) {
  runOnServer(
      "CREATE TABLE t (k integer PRIMARY KEY, v text); CREATE TABLE heir () INHERITS (t); INSERT INTO t "
      "VALUES "
      "(1, 'own'); INSERT INTO heir VALUES (1, 'inherited')",
      database_);
  open();
  EXPECT_EQ("inherited own", columnOf("SELECT v FROM t ORDER BY v"));
  const auto rows = records("t", SourceKind::table);
  ASSERT_NE(nullptr, rows);
  EXPECT_FALSE(rows->isUpdatable()) << "nothing tells them apart";
  EXPECT_EQ("own inherited", columnOf(*rows, 1));
}

TEST_F(ServerRowsTest, ATableThatComesToInheritLosesNoRecord) {
  openRow("v text", "'own'");
  const auto other = records("t", SourceKind::table);
  runOnServer("CREATE TABLE heir () INHERITS (t); INSERT INTO heir VALUES (1, 'inherited')", database_);
  EXPECT_EQ("own", textOf(*rows_, 1));
  ASSERT_TRUE(rows_->setValue(1, std::string("changed")));
  ASSERT_TRUE(rows_->update());
  EXPECT_EQ("inherited changed", onServer("SELECT string_agg(v, ' ' ORDER BY v DESC) FROM t"));
  ASSERT_TRUE(other->remove()) << "which was never read";
  EXPECT_EQ("inherited", onServer("SELECT string_agg(v, ' ') FROM t"));
}

TEST_F(ServerRowsTest, ThePartsOfATableAreItsOwnRecords) {
  runOnServer(
      "CREATE TABLE t (k integer PRIMARY KEY, v text) PARTITION BY RANGE (k); CREATE TABLE low PARTITION OF "
      "t "
      "FOR VALUES FROM (0) TO (10); CREATE TABLE high PARTITION OF t FOR VALUES FROM (10) TO (20); INSERT "
      "INTO t "
      "VALUES (1, 'a'), (11, 'b')",
      database_);
  open();
  const auto rows = records("t", SourceKind::table);
  ASSERT_NE(nullptr, rows);
  EXPECT_TRUE(rows->isUpdatable());
  ASSERT_TRUE(rows->moveLast());
  ASSERT_TRUE(rows->setValue(1, std::string("c")));
  ASSERT_TRUE(rows->update());
  EXPECT_EQ("a c", columnOf("t", 1));
}

}  // namespace
}  // namespace store
