// Tables that other programs make and rename while the database is open.
#include <cstdlib>

#include "tests/server/server_fixture.h"

namespace store {
namespace {

class ServerTablesTest : public StoreTest {
 protected:
  std::string onServer(const std::string& sql) { return OtherProgram(path_).ask(sql); }
  /// The second column of all records; only what the statement names is looked up.
  std::string secondColumn(std::string_view select) {
    const std::unique_ptr<Recordset> rows = records(select);
    return rows ? columnOf(*rows, 1) : "(failed)";
  }
  /// Opens the database so that the server writes down all that it is asked.
  void openWrittenDown() {
    runOnServer("ALTER DATABASE " + database_ + " SET log_statement TO 'all'", "postgres");
    open();
    runOnServer("ALTER DATABASE " + database_ + " RESET log_statement", "postgres");
  }
  /// How often the server was asked for a table's columns.
  static std::size_t tablesAskedFor() {
    const std::filesystem::path folder = std::getenv("QUIVANE_TEST_SERVER_FOLDER");
    const std::string log = testsupport::contentOf(folder / "data" / "server.log");
    constexpr std::string_view kQuestion = "FROM pg_catalog.pg_attribute a JOIN pg_catalog.pg_type";
    std::size_t count = 0;
    for (std::size_t at = log.find(kQuestion); at != std::string::npos; at = log.find(kQuestion, at + 1)) {
      ++count;
    }
    return count;
  }
};

TEST_F(ServerTablesTest, ATableThatTookTheNameOfARenamedOneIsKnownByItsOwnKeyAndColumns) {
  runOnServer("CREATE TABLE t (a integer PRIMARY KEY, b text)", database_);
  runOnServer("INSERT INTO t VALUES (1, 'former')", database_);
  open();
  EXPECT_EQ("former", secondColumn("Select * from [t]"));
  runOnServer("ALTER TABLE t RENAME TO t_old", database_);
  runOnServer("CREATE TABLE t (b integer PRIMARY KEY, a integer)", database_);
  runOnServer("INSERT INTO t VALUES (1, 7), (2, 7)", database_);
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  ASSERT_EQ(2u, rows->columns().size());
  EXPECT_EQ("b", rows->columns()[0].name);
  ASSERT_TRUE(rows->setValue(1, std::int64_t{8}));
  const Status status = rows->update();
  EXPECT_TRUE(status) << status.message();
  EXPECT_EQ("1 8, 2 7", onServer("SELECT string_agg(b || ' ' || a, ', ' ORDER BY b) FROM t"));
  TableSchema schema;
  ASSERT_TRUE(backend_->describeTable("t", &schema));
  ASSERT_EQ(2u, schema.columns.size());
  EXPECT_EQ(1, schema.columns[0].keyPosition);
}

TEST_F(ServerTablesTest, ATableMadeMeanwhileIsNotTakenForOneWithOtherLetterCases) {
  runOnServer("CREATE TABLE people (k integer PRIMARY KEY, v text)", database_);
  runOnServer("INSERT INTO people VALUES (1, 'small')", database_);
  open();
  EXPECT_EQ("small", secondColumn("Select * from [People]"))
      << "in any letter case as long as there is one alone";
  runOnServer("CREATE TABLE \"People\" (k integer PRIMARY KEY, v text)", database_);
  runOnServer("INSERT INTO \"People\" VALUES (1, 'large')", database_);
  EXPECT_EQ("large", secondColumn("Select * from [People]"));
  EXPECT_EQ("small", secondColumn("Select * from [people]"));
  run("DROP TABLE 'People'");
  EXPECT_EQ("people", onServer("SELECT string_agg(relname, ' ') FROM pg_class WHERE relname ILIKE 'people'"));
}

TEST_F(ServerTablesTest, ATableHiddenByOneOfAnotherSchemaMeanwhileIsNotTakenForIt) {
  runOnServer("CREATE TABLE t (a integer PRIMARY KEY, b text)", database_);
  runOnServer("INSERT INTO t VALUES (1, 'public')", database_);
  open();
  EXPECT_EQ("public", secondColumn("Select * from [t]"));
  // The schema that is called like its user comes first.
  runOnServer("CREATE SCHEMA quivane CREATE TABLE t (b text, a integer, c text PRIMARY KEY)", database_);
  runOnServer("INSERT INTO quivane.t VALUES ('own', 1, 'x'), ('own', 1, 'y')", database_);
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  ASSERT_EQ(3u, rows->columns().size());
  ASSERT_TRUE(rows->setValue(0, std::string("changed")));
  ASSERT_TRUE(rows->update());
  EXPECT_EQ("changed own", onServer("SELECT string_agg(b, ' ' ORDER BY c) FROM quivane.t"));
  EXPECT_EQ("public", onServer("SELECT b FROM public.t"));
}

TEST_F(ServerTablesTest, AnOpeningAsksTheServerOnceForEachTable) {
  runOnServer(
      "CREATE TABLE t (k integer PRIMARY KEY, v text); CREATE TABLE u (k integer PRIMARY KEY, w text)",
      database_);
  runOnServer("INSERT INTO t VALUES (1, 'a'); INSERT INTO u VALUES (1, 'b')", database_);
  openWrittenDown();
  struct Opening {
    const char* source;
    SourceKind kind;
    std::size_t tables;
  };
  for (const Opening& opening : {
           Opening{"t", SourceKind::table, 1},
           Opening{"T", SourceKind::unknown, 1},
           Opening{"Select * from [t]", SourceKind::text, 1},
           Opening{"Select V from [T] WHERE [K] > 0 ORDER BY v", SourceKind::text, 1},
           Opening{"Select * from t, t AS other", SourceKind::text, 1},
           Opening{"Select t.v, u.w from t INNER JOIN u ON t.k = u.k", SourceKind::text, 2},
       }) {
    SCOPED_TRACE(opening.source);
    const std::size_t before = tablesAskedFor();
    const std::unique_ptr<Recordset> rows = records(opening.source, opening.kind);
    ASSERT_NE(nullptr, rows);
    EXPECT_EQ(opening.tables, tablesAskedFor() - before);
    std::unique_ptr<RowStream> stream;
    ASSERT_TRUE(backend_->openStream(opening.source, opening.kind, &stream));
    EXPECT_EQ(2 * opening.tables, tablesAskedFor() - before) << "one that goes through the records once";
  }
}

TEST_F(ServerTablesTest, EachOpeningSeesWhatAnotherProgramHasMadeOfATable) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v text)", database_);
  open();
  for (const SourceKind kind : {SourceKind::table, SourceKind::unknown}) {
    EXPECT_EQ(2u, records("t", kind)->columns().size());
    runOnServer("ALTER TABLE t ADD COLUMN w text", database_);
    EXPECT_EQ(3u, records("t", kind)->columns().size());
    runOnServer("ALTER TABLE t DROP COLUMN w", database_);
  }
}

TEST_F(ServerTablesTest, AKeyOfAnotherTypeIsAnotherStructure) {
  runOnServer("CREATE TABLE t (\"a \"\"key\"\"\" integer PRIMARY KEY, b text)", database_);
  runOnServer("INSERT INTO t VALUES (1, 'one'), (2, 'two'), (3, 'three')", database_);
  open();
  const char* other = "text";
  for (const char* next : {"integer USING \"a \"\"key\"\"\"::integer", "numeric"}) {
    const auto rows = records("Select * from [t]");
    ASSERT_NE(nullptr, rows);
    EXPECT_EQ("one", textOf(*rows, 1));
    runOnServer(std::string("ALTER TABLE t ALTER COLUMN \"a \"\"key\"\"\" TYPE ") + other, database_);
    ASSERT_TRUE(rows->setPosition(3));
    Cell cell;
    EXPECT_EQ(ErrorCode::structureChanged, rows->cell(1, &cell).code()) << other;
    other = next;
  }
}

TEST_F(ServerTablesTest, AnErrorOfTheStatementIsNoOtherStructure) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, b text)", database_);
  runOnServer("INSERT INTO t VALUES (1, '1'), (2, '2')", database_);
  runOnServer(
      "CREATE FUNCTION refuse(t text) RETURNS text LANGUAGE plpgsql AS $$ BEGIN IF t = 'two' THEN RAISE "
      "EXCEPTION 'Not this one'; END IF; RETURN t; END $$",
      database_);
  open();
  const auto rows = records("SELECT k, refuse(b) AS r FROM t");
  ASSERT_NE(nullptr, rows);
  EXPECT_EQ("1", textOf(*rows, 1));
  runOnServer("UPDATE t SET b = 'two' WHERE k = 2", database_);
  ASSERT_TRUE(rows->setPosition(2));
  Cell cell;
  const Status status = rows->cell(1, &cell);
  EXPECT_EQ(ErrorCode::errorsInCommand, status.code());
  EXPECT_NE(std::string::npos, status.message().find("Not this one")) << status.message();
}

}  // namespace
}  // namespace store
