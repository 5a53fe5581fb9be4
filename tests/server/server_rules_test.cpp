// What the server's own rules, rights and settings make of the records that are shown and changed.
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "platform/store/rows/table_load.h"
#include "tests/server/server_fixture.h"

namespace store {
namespace {

class ServerRulesTest : public ServerRowTest {
 protected:
  void run(const std::string& sql) const { runOnServer(sql, database_); }
  /// Opens the link for another user, whom the server lets in without a password.
  void openAs(const std::string& user) {
    std::string link = linkTo(database_);
    link.replace(link.find("UID=quivane"), 11, "UID=" + user);
    testsupport::writeFile(path_, link);
    open();
    testsupport::writeFile(path_, linkTo(database_));
  }
};

/// A user of the server's as long as it lives.
class Guest {
 public:
  explicit Guest(std::string database) : database_(std::move(database)) {
    runOnServer(
        "DO $$ BEGIN IF EXISTS (SELECT FROM pg_roles WHERE rolname = 'guest') THEN DROP OWNED BY guest; "
        "DROP ROLE guest; END IF; END $$",
        database_);
    runOnServer("CREATE ROLE guest LOGIN", database_);
  }
  ~Guest() { runOnServer("DROP OWNED BY guest; DROP ROLE guest", database_); }
  Guest(const Guest&) = delete;
  Guest& operator=(const Guest&) = delete;

 private:
  std::string database_;
};

/// A setting that every conversation about the database begins with, as long as it lives.
class DatabaseSetting {
 public:
  DatabaseSetting(std::string database, std::string name, const std::string& value)
      : database_(std::move(database)), name_(std::move(name)) {
    runOnServer("ALTER DATABASE " + database_ + " SET " + name_ + " TO " + value, "postgres");
  }
  ~DatabaseSetting() { runOnServer("ALTER DATABASE " + database_ + " RESET " + name_, "postgres"); }
  DatabaseSetting(const DatabaseSetting&) = delete;
  DatabaseSetting& operator=(const DatabaseSetting&) = delete;

 private:
  std::string database_;
  std::string name_;
};

TEST_F(ServerRulesTest, AChangeThatFailsOnlyAtItsEndIsNotStoredAndSaysSo) {
  openRow("a text", "'a'");
  run("CREATE FUNCTION no() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RAISE EXCEPTION ''not %'', TG_OP; "
      "END'; "
      "CREATE CONSTRAINT TRIGGER no AFTER INSERT OR UPDATE OR DELETE ON t DEFERRABLE INITIALLY DEFERRED FOR "
      "EACH "
      "ROW EXECUTE FUNCTION no()");
  ASSERT_TRUE(rows_->setValue(1, std::string("b")));
  const Status changed = rows_->update();
  EXPECT_FALSE(changed);
  EXPECT_NE(std::string::npos, changed.message().find("not UPDATE")) << changed.message();
  EXPECT_EQ("b", textOf(*rows_, 1)) << "what was typed stays";
  ASSERT_TRUE(rows_->cancelUpdate());
  EXPECT_EQ("a", textOf(*rows_, 1));
  EXPECT_FALSE(rows_->remove());
  EXPECT_EQ(1, rows_->recordCount());
  ASSERT_TRUE(rows_->addNew());
  ASSERT_TRUE(rows_->setValue(0, std::int64_t{2}));
  EXPECT_FALSE(rows_->update());
  ASSERT_TRUE(rows_->cancelUpdate());
  EXPECT_EQ(1, rows_->recordCount());
  std::int64_t affected = 0;
  EXPECT_FALSE(tryRun("UPDATE t SET a = 'c'", &affected));
  EXPECT_EQ("1a", onServer("SELECT string_agg(k || a, ' ') FROM t"));
}

TEST_F(ServerRulesTest, WhatATriggerMakesOfAChangeIsShownAndCanBeChangedAgain) {
  openRow("a text", "'a'");
  run("CREATE FUNCTION loud() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN NEW.a := upper(NEW.a); IF NEW.k < "
      "100 "
      "THEN NEW.k := NEW.k + 100; END IF; RETURN NEW; END'; CREATE TRIGGER loud BEFORE INSERT OR UPDATE ON t "
      "FOR "
      "EACH ROW EXECUTE FUNCTION loud()");
  ASSERT_TRUE(rows_->setValue(1, std::string("b")));
  Status status = rows_->update();
  ASSERT_TRUE(status) << status.message();
  EXPECT_EQ("101 B", textOf(*rows_, 0) + " " + textOf(*rows_, 1));
  ASSERT_TRUE(rows_->setValue(1, std::string("c")));
  status = rows_->update();
  EXPECT_TRUE(status) << status.message();
  EXPECT_EQ("C", textOf(*rows_, 1));
  ASSERT_TRUE(rows_->addNew());
  ASSERT_TRUE(rows_->setValue(0, std::int64_t{2}));
  ASSERT_TRUE(rows_->setValue(1, std::string("new")));
  status = rows_->update();
  ASSERT_TRUE(status) << status.message();
  EXPECT_EQ("102 NEW", textOf(*rows_, 0) + " " + textOf(*rows_, 1));
  EXPECT_EQ("101C 102NEW", onServer("SELECT string_agg(k || a, ' ' ORDER BY k) FROM t"));
}

TEST_F(ServerRulesTest, AChangeThatARuleSwallowsIsToldAndLeavesTheRecord) {
  openRow("a text", "'a'");
  run("CREATE FUNCTION no() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NULL; END'; CREATE TRIGGER no "
      "BEFORE INSERT OR UPDATE OR DELETE ON t FOR EACH ROW EXECUTE FUNCTION no()");
  ASSERT_TRUE(rows_->setValue(1, std::string("b")));
  EXPECT_EQ(ErrorCode::constraint, rows_->update().code());
  EXPECT_EQ("b", textOf(*rows_, 1)) << "what was typed stays";
  ASSERT_TRUE(rows_->cancelUpdate());
  EXPECT_EQ(ErrorCode::constraint, rows_->remove().code());
  EXPECT_EQ(1, rows_->recordCount());
  run("DROP TRIGGER no ON t; CREATE RULE no AS ON UPDATE TO t DO INSTEAD NOTHING; CREATE RULE nor AS ON "
      "DELETE "
      "TO t DO INSTEAD NOTHING");
  ASSERT_TRUE(rows_->setValue(1, std::string("b")));
  const Status status = rows_->update();
  EXPECT_FALSE(status);
  EXPECT_NE("", status.message());
  ASSERT_TRUE(rows_->cancelUpdate());
  EXPECT_FALSE(rows_->remove());
  EXPECT_EQ(1, rows_->recordCount());
  EXPECT_EQ("a", onServer("SELECT a FROM t"));
}

TEST_F(ServerRulesTest, ARecordThatWouldLeaveWhatTheUserMaySeeStays) {
  const Guest guest(database_);
  run("CREATE TABLE t (k integer PRIMARY KEY, owner text, v text); INSERT INTO t VALUES (1, 'guest', 'a'), "
      "(2, "
      "'other', 'b'), (3, 'guest', 'c'); ALTER TABLE t ENABLE ROW LEVEL SECURITY; CREATE POLICY own ON t "
      "USING "
      "(owner = current_user) WITH CHECK (true); GRANT ALL ON t TO guest");
  openAs("guest");
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  EXPECT_EQ(2, rows->recordCount());
  ASSERT_TRUE(rows->setValue(1, std::string("other")));
  const Status status = rows->update();
  EXPECT_FALSE(status);
  EXPECT_NE(std::string::npos, status.message().find("policy")) << status.message();
  ASSERT_TRUE(rows->cancelUpdate());
  // One that was hidden meanwhile is gone for this user.
  run("UPDATE t SET owner = 'other' WHERE k = 3");
  ASSERT_TRUE(rows->moveNext());
  EXPECT_EQ(ErrorCode::noCurrentRecord, rows->setValue(2, std::string("x")).code());
  EXPECT_EQ("guest other other", onServer("SELECT string_agg(owner, ' ' ORDER BY k) FROM t"));
}

TEST_F(ServerRulesTest, FieldsThatTheUserMayNotReadAreLeftOut) {
  const Guest guest(database_);
  run("CREATE TABLE t (k integer PRIMARY KEY, secret text DEFAULT 's', v text); INSERT INTO t VALUES (1, "
      "'x', "
      "'a'); GRANT SELECT (k, v), INSERT, UPDATE (k, v), DELETE ON t TO guest");
  openAs("guest");
  EXPECT_EQ("t", columnOf("SELECT TableName FROM MSysTables WHERE TableName = 't'"));
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  ASSERT_EQ(2u, rows->columns().size());
  EXPECT_EQ("v", rows->columns()[1].name);
  EXPECT_TRUE(rows->isUpdatable());
  ASSERT_TRUE(rows->setValue(1, std::string("b")));
  Status status = rows->update();
  EXPECT_TRUE(status) << status.message();
  ASSERT_TRUE(rows->addNew());
  ASSERT_TRUE(rows->setValue(1, std::string("new")));
  ASSERT_TRUE(rows->setValue(0, std::int64_t{2}));
  status = rows->update();
  EXPECT_TRUE(status) << status.message();
  EXPECT_EQ("1xb 2snew", onServer("SELECT string_agg(k || secret || v, ' ' ORDER BY k) FROM t"));
  // Without the whole key no record can be told from others.
  run("CREATE TABLE u (a integer, b integer, v text, PRIMARY KEY (a, b)); INSERT INTO u VALUES (1, 1, 'x'), "
      "(1, 2, "
      "'y'); GRANT SELECT (a, v), UPDATE (v) ON u TO guest");
  const auto parts = records("Select * from [u]");
  ASSERT_NE(nullptr, parts);
  EXPECT_FALSE(parts->isUpdatable());
  EXPECT_EQ(2, parts->recordCount());
}

TEST_F(ServerRulesTest, OnlyTablesThatTheUserMayReadAreListed) {
  const Guest guest(database_);
  run("CREATE TABLE readable (v text); GRANT SELECT ON readable TO guest; CREATE TABLE everybodys (v text); "
      "GRANT SELECT ON everybodys TO PUBLIC; CREATE TABLE by_a_column (secret text, v text); GRANT SELECT "
      "(v) "
      "ON by_a_column TO guest; CREATE TABLE parted (v integer) PARTITION BY RANGE (v); CREATE TABLE part "
      "PARTITION OF parted DEFAULT; GRANT SELECT ON parted TO guest; CREATE TABLE hidden (v text); CREATE "
      "TABLE hidden_parted (v integer) PARTITION BY RANGE (v); CREATE TABLE inbox (v text); GRANT INSERT, "
      "UPDATE, DELETE ON inbox TO guest");
  run("CREATE VIEW readable_view AS SELECT * FROM hidden; GRANT SELECT ON readable_view TO guest; CREATE "
      "VIEW "
      "hidden_view AS SELECT * FROM hidden; CREATE MATERIALIZED VIEW readable_copy AS SELECT * FROM hidden; "
      "GRANT SELECT ON readable_copy TO guest; CREATE MATERIALIZED VIEW hidden_copy AS SELECT * FROM hidden; "
      "CREATE EXTENSION postgres_fdw; CREATE SERVER other FOREIGN DATA WRAPPER postgres_fdw; CREATE FOREIGN "
      "TABLE hidden_abroad (v text) SERVER other; CREATE FOREIGN TABLE readable_abroad (v text) SERVER "
      "other; "
      "GRANT SELECT ON readable_abroad TO guest");
  run("CREATE SCHEMA other; GRANT USAGE ON SCHEMA other TO guest; CREATE TABLE other.readable (v text); "
      "GRANT "
      "SELECT ON other.readable TO guest; CREATE TABLE other.hidden (v text); CREATE SCHEMA closed; CREATE "
      "TABLE closed.readable (v text); GRANT SELECT ON closed.readable TO guest");
  openAs("guest");
  EXPECT_EQ(
      "by_a_column everybodys other.readable parted readable readable_abroad readable_copy readable_view",
      columnOf("SELECT TableName FROM MSysTables WHERE TableName NOT LIKE 'MSys%' ORDER BY TableName"));
  EXPECT_EQ("v", columnOf("SELECT DISTINCT FieldName FROM MSysFields JOIN MSysTables ON MSysTables.TableID = "
                          "MSysFields.TableID WHERE TableName = 'readable'"));
  EXPECT_EQ("", columnOf("SELECT FieldName FROM MSysFields WHERE TableID NOT IN (SELECT TableID FROM "
                         "MSysTables)"));
}

TEST_F(ServerRulesTest, SavedQueriesThatMayNotBeReadAreListed) {
  const Guest guest(database_);
  run("CREATE TABLE \"QuivaneQueries\" (\"QueryName\" text, \"SQL\" text)");
  openAs("guest");
  EXPECT_EQ("QuivaneQueries", columnOf("SELECT TableName FROM MSysTables WHERE TableName NOT LIKE 'MSys%'"));
}

TEST_F(ServerRulesTest, ATableThatIsNotListedIsKnownToStatementsThatNameIt) {
  const Guest guest(database_);
  run("CREATE TABLE \"Inbox\" (\"Letter\" text); GRANT INSERT ON \"Inbox\" TO guest");
  openAs("guest");
  EXPECT_EQ("", columnOf("SELECT TableName FROM MSysTables WHERE TableName NOT LIKE 'MSys%'"));
  ASSERT_TRUE(tryRun("INSERT INTO inbox (letter) VALUES ('Dear')"));
  EXPECT_EQ("Dear", onServer("SELECT \"Letter\" FROM \"Inbox\""));
  std::unique_ptr<Recordset> rows;
  const Status status = tryOpen("inbox", &rows, SourceKind::table);
  EXPECT_NE(std::string::npos, status.message().find("permission denied")) << status.message();
  EXPECT_EQ(nullptr, rows);
}

TEST_F(ServerRulesTest, ViewsOfAnyKindAndOtherServersTablesAreRead) {
  run("CREATE TABLE b (k integer PRIMARY KEY, v text); INSERT INTO b VALUES (1, 'a'); CREATE VIEW w AS "
      "SELECT * "
      "FROM b; CREATE FUNCTION on_w() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN UPDATE b SET v = NEW.v "
      "WHERE k = "
      "OLD.k; RETURN NEW; END'; CREATE TRIGGER on_w INSTEAD OF UPDATE ON w FOR EACH ROW EXECUTE FUNCTION "
      "on_w(); "
      "CREATE MATERIALIZED VIEW m AS SELECT * FROM b; CREATE EXTENSION postgres_fdw; CREATE SERVER other "
      "FOREIGN "
      "DATA WRAPPER postgres_fdw OPTIONS (host '127.0.0.1', port '" +
      std::string(std::getenv("QUIVANE_TEST_SERVER")) + "', dbname '" + database_ +
      "'); CREATE USER MAPPING FOR quivane SERVER other OPTIONS (user 'quivane'); CREATE FOREIGN TABLE f (k "
      "integer, v text) SERVER other OPTIONS (table_name 'b')");
  open();
  for (const char* name : {"w", "m", "f"}) {
    SCOPED_TRACE(name);
    const auto rows = records(name, SourceKind::table);
    ASSERT_NE(nullptr, rows);
    EXPECT_EQ("a", columnOf(*rows, 1));
    EXPECT_FALSE(rows->isUpdatable());
  }
  // A statement of the user's own reaches what the server lets through.
  ServerRowTest::run("UPDATE w SET v = 'b'");
  EXPECT_EQ("b", columnOf("SELECT v FROM f"));
  runOnServer("DROP EXTENSION postgres_fdw CASCADE", database_);
}

TEST_F(ServerRulesTest, NumbersThatTheServerGivesAreGiven) {
  run("CREATE TABLE t (a integer GENERATED ALWAYS AS IDENTITY PRIMARY KEY, b integer GENERATED BY DEFAULT AS "
      "IDENTITY, v text)");
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  EXPECT_FALSE(rows->columns()[0].updatable);
  EXPECT_TRUE(rows->columns()[1].updatable);
  for (int number = 1; number <= 2; ++number) {
    ASSERT_TRUE(rows->addNew());
    ASSERT_TRUE(rows->setValue(2, std::string("v")));
    const Status status = rows->update();
    ASSERT_TRUE(status) << status.message();
    EXPECT_EQ(std::to_string(number), textOf(*rows, 0));
    EXPECT_EQ(std::to_string(number), textOf(*rows, 1));
  }
}

TEST_F(ServerRulesTest, TextsInAKeyOfSeveralPartsAreThemselves) {
  run("CREATE TABLE t (town text, no integer, v text, PRIMARY KEY (town, no)); INSERT INTO t VALUES "
      "(E'K\\u00f6ln', 1, 'a'), (E'k\\u00d6LN', 1, 'b'), ('O''Hara \"x\", \\ (1)', 1, 'c'), ('', 1, 'd'), "
      "('NULL', "
      "1, 'e'), (E'\\u6771\\u4eac', 1, 'f')");
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  EXPECT_EQ(6, rows->recordCount());
  while (!rows->isEof()) {
    ASSERT_TRUE(rows->setValue(2, textOf(*rows, 2) + "!"));
    const Status status = rows->update();
    ASSERT_TRUE(status) << status.message();
    ASSERT_TRUE(rows->moveNext());
  }
  EXPECT_EQ("a!b!c!d!e!f!", onServer("SELECT string_agg(v, '' ORDER BY v) FROM t"));
  // A key that is written becomes the record's.
  ASSERT_TRUE(rows->moveFirst());
  const std::string former = textOf(*rows, 2);
  ASSERT_TRUE(rows->setValue(0, std::string("\xC3\x84rger")));
  ASSERT_TRUE(rows->update());
  ASSERT_TRUE(rows->setValue(2, std::string("moved")));
  const Status status = rows->update();
  EXPECT_TRUE(status) << status.message();
  EXPECT_EQ("moved", onServer("SELECT v FROM t WHERE town = E'\\u00c4rger'")) << former;
}

TEST_F(ServerRulesTest, ATableThatIsAlteredWhileItIsOpenLosesNothing) {
  openRow("a integer, b text", "5, 'x'");
  EXPECT_EQ("5", textOf(*rows_, 1));
  run("ALTER TABLE t ALTER a TYPE text USING a || '!'");
  ASSERT_TRUE(rows_->moveFirst());
  EXPECT_EQ("5!", textOf(*rows_, 1));
  ASSERT_TRUE(rows_->setValue(2, std::string("y")));
  Status status = rows_->update();
  EXPECT_TRUE(status) << status.message();
  EXPECT_EQ("5!y", onServer("SELECT a || b FROM t"));
  run("ALTER TABLE t RENAME b TO c");
  ASSERT_TRUE(rows_->moveFirst());
  Cell cell;
  EXPECT_EQ(ErrorCode::structureChanged, rows_->cell(2, &cell).code());
  EXPECT_EQ("5!y", onServer("SELECT a || c FROM t"));
}

TEST_F(ServerRulesTest, SettingsOfTheDatabaseChangeNoValue) {
  const DatabaseSetting settings[] = {{database_, "standard_conforming_strings", "off"},
                                      {database_, "array_nulls", "off"},
                                      {database_, "datestyle", "'SQL, DMY'"},
                                      {database_, "bytea_output", "escape"},
                                      {database_, "intervalstyle", "iso_8601"},
                                      {database_, "extra_float_digits", "-10"},
                                      {database_, "transform_null_equals", "on"}};
  run("CREATE TABLE t (k integer PRIMARY KEY, a text, d date, x bytea, r double precision)");
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  ASSERT_TRUE(rows->addNew());
  ASSERT_TRUE(rows->setValue(0, std::int64_t{1}));
  ASSERT_TRUE(rows->setValue(1, std::string("back\\slash 'n'")));
  ASSERT_TRUE(rows->setValue(2, std::string("2001-03-09")));
  ASSERT_TRUE(rows->setValue(3, Blob{std::string("\0\\\xFF", 3)}));
  ASSERT_TRUE(rows->setValue(4, 0.1));
  const Status status = rows->update();
  ASSERT_TRUE(status) << status.message();
  EXPECT_EQ("back\\slash 'n'", textOf(*rows, 1));
  EXPECT_EQ("2001-03-09", textOf(*rows, 2));
  EXPECT_EQ(std::string("x:\0\\\xFF", 5), textOf(*rows, 3));
  EXPECT_EQ("1", onServer("SELECT count(*) FROM t WHERE a = 'back\\slash ''n''' AND r = 0.1"));
  // Many at once, where nothing is not the word for it.
  std::unique_ptr<TableLoad> load;
  ASSERT_TRUE(backend_->beginLoad({.table = "t", .columns = {"k", "a"}}, &load));
  Cell number;
  number.kind = CellKind::integer;
  number.integer = 2;
  const Cell values[] = {number, Cell()};
  ASSERT_TRUE(load->add(values));
  ASSERT_TRUE(load->beginSettling());
  std::vector<TableLoad::Refusal> refused;
  ASSERT_TRUE(load->settle(&refused));
  ASSERT_TRUE(load->commit());
  EXPECT_EQ("2", onServer("SELECT k FROM t WHERE a IS NULL"));
}

TEST_F(ServerRulesTest, ADatabaseThatIsOnlyReadSaysSoFromTheBeginning) {
  run("CREATE TABLE t (k integer PRIMARY KEY, a text); INSERT INTO t VALUES (1, 'a')");
  const DatabaseSetting setting(database_, "default_transaction_read_only", "on");
  open();
  EXPECT_TRUE(backend_->isReadOnly());
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  EXPECT_FALSE(rows->isUpdatable());
  EXPECT_FALSE(rows->columns()[1].updatable);
  EXPECT_EQ(ErrorCode::readOnly, tryRun("UPDATE t SET a = 'b'").code());
  EXPECT_EQ(ErrorCode::readOnly, backend_->tryWriting().code());
}

TEST_F(ServerRulesTest, WhatTheServerEndsByItselfIsNotSaidToHaveBeenStopped) {
  run("CREATE TABLE t (k integer PRIMARY KEY); INSERT INTO t VALUES (1)");
  const DatabaseSetting setting(database_, "statement_timeout", "'100ms'");
  open();
  std::unique_ptr<Recordset> none;
  const Status status = tryOpen("SELECT k FROM t WHERE pg_sleep(60) IS NOT NULL", &none);
  EXPECT_EQ(ErrorCode::inputOutput, status.code());
  EXPECT_NE(std::string::npos, status.message().find("The server has stopped the statement"))
      << status.message();
  EXPECT_NE(std::string::npos, status.message().find("timeout")) << status.message();
  EXPECT_EQ("1", columnOf("SELECT k FROM t"));
}

/// A database with letters of its own.
class ServerLettersTest : public ServerRulesTest, public testing::WithParamInterface<const char*> {
 protected:
  ServerLettersTest() {
    database_ += "_letters";
    runOnServer("CREATE DATABASE " + database_ +
                    " TEMPLATE template0 LC_COLLATE 'C' LC_CTYPE 'C' ENCODING '" + std::string(GetParam()) +
                    "'",
                "postgres");
    testsupport::writeFile(path_, linkTo(database_));
  }
  ~ServerLettersTest() override {
    backend_.reset();
    runOnServer("DROP DATABASE " + database_ + " WITH (FORCE)", "postgres");
  }
};

TEST_P(ServerLettersTest, LettersComeAsTheyAre) {
  run("CREATE TABLE t (k text PRIMARY KEY, v text)");
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  // Of one byte to the server, and of up to three here.
  const std::map<std::string, std::string> others = {{"LATIN9", "\xE2\x82\xAC"}, {"WIN1251", "\xD0\xB6"}};
  const auto other = others.find(GetParam());
  const std::string letter = other != others.end() ? other->second : "\xC3\xA4";
  std::vector<std::string> texts;
  for (const int count : {2, 2990, 5000}) {
    texts.emplace_back();
    for (int number = 0; number < count; ++number) texts.back() += letter;
  }
  for (const std::string& text : texts) {
    ASSERT_TRUE(rows->addNew());
    ASSERT_TRUE(rows->setValue(0, letter + std::to_string(text.size())));
    ASSERT_TRUE(rows->setValue(1, text));
    const Status status = rows->update();
    ASSERT_TRUE(status) << status.message();
    EXPECT_EQ(text, textOf(*rows, 1));
  }
  std::unique_ptr<RowStream> stream;
  ASSERT_TRUE(backend_->openStream("SELECT v FROM t ORDER BY length(v)", SourceKind::text, &stream));
  bool hasRow = false;
  for (const std::string& text : texts) {
    const Status status = stream->next(&hasRow);
    ASSERT_TRUE(status) << status.message();
    ASSERT_TRUE(hasRow);
    EXPECT_EQ(text, stream->cell(0).bytes);
  }
  stream.reset();
  // What the database has no letters for is refused.
  if (std::string(GetParam()) == "LATIN1") {
    ASSERT_TRUE(rows->moveFirst());
    ASSERT_TRUE(rows->setValue(1, std::string("\xE6\x97\xA5")));
    EXPECT_FALSE(rows->update());
  }
}

INSTANTIATE_TEST_SUITE_P(Encodings, ServerLettersTest,
                         testing::Values("UTF8", "LATIN1", "LATIN9", "WIN1251", "SQL_ASCII"));

}  // namespace
}  // namespace store
