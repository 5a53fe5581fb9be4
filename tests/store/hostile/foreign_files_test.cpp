// Files that other programs made: every ordinary SQLite file opens, shows its values, and keeps what it has.
#include "tests/store/store_fixture.h"

namespace store {
namespace {

class ForeignFilesTest : public StoreTest {
 protected:
  std::string inFile(const std::string& sql) { return OtherProgram(path_).ask(sql); }

  /// Makes a new file whose pages and encoding `settings` decide.
  void remake(const std::string& settings) {
    std::filesystem::remove(path_);
    prepare(settings);
  }
};

TEST_F(ForeignFilesTest, AnyDeclaredTypeIsShownAndWrittenBack) {
  prepare(
      "CREATE TABLE odd (a, b NVARCHAR(7), c BIGINT, d DECIMAL(10,2), e \"my own type\", f GEOMETRY, g "
      "CHAR(3),"
      "h TINYINT, i UNSIGNED BIG INT, j JSON, k NUMERIC, l INT8, m DOUBLE PRECISION, n CLOB, o NONE, p "
      "GUID)");
  prepare(
      "INSERT INTO odd VALUES (1, 'b', 3, 4.25, 'e', x'0506', 'g', 8, 9, '{}', 11, 12, 13.5, 'n', NULL, "
      "'p')");
  open();
  const auto odd = records("Select * from [odd]");
  ASSERT_NE(nullptr, odd);
  ASSERT_EQ(16u, odd->columns().size());
  std::string values;
  for (std::size_t column = 0; column < 16; ++column) values += textOf(*odd, column) + " ";
  EXPECT_EQ("1 b 3 4.250000 e x:\x05\x06 g 8 9 {} 11 12 13.500000 n (null) p ", values);
  for (std::size_t column = 0; column < 16; ++column) {
    ASSERT_TRUE(odd->setValue(column, std::string("new"))) << column;
  }
  ASSERT_TRUE(odd->update());
  EXPECT_EQ("new", inFile("SELECT p FROM odd WHERE a = 'new' AND c = 'new'"));
}

TEST_F(ForeignFilesTest, IntegersOfSixtyFourBitsAreWhole) {
  prepare("CREATE TABLE big (id INTEGER PRIMARY KEY, n BIGINT)");
  prepare(
      "INSERT INTO big VALUES (-9223372036854775808, 9223372036854775807), (0, 0), "
      "(9223372036854775807, -9223372036854775808)");
  open();
  const auto big = records("Select * from [big]");
  ASSERT_NE(nullptr, big);
  EXPECT_EQ("9223372036854775807 0 -9223372036854775808", columnOf(*big, 1));
  ASSERT_TRUE(big->moveLast());
  EXPECT_EQ("9223372036854775807", textOf(*big, 0));
  ASSERT_TRUE(big->setValue(1, std::int64_t{-9007199254740993}));
  ASSERT_TRUE(big->update());
  EXPECT_EQ("-9007199254740993", inFile("SELECT n FROM big WHERE id = 9223372036854775807"));
}

TEST_F(ForeignFilesTest, BytesAndTextsKeepTheirZerosAndTheirFaults) {
  prepare("CREATE TABLE raw (id INTEGER PRIMARY KEY, t Text, b Blob)");
  prepare(
      "INSERT INTO raw VALUES (1, CAST(x'61006200' AS TEXT), x'0001FF00'), (2, CAST(x'FFFE80C3' AS TEXT), "
      "x''),"
      "(3, CAST(x'EDA080' AS TEXT), zeroblob(70000)), (4, '', NULL)");
  open();
  const auto raw = records("Select * from [raw]");
  ASSERT_NE(nullptr, raw);
  using namespace std::string_literals;
  EXPECT_EQ("a\0b\0"s, textOf(*raw, 1));
  EXPECT_EQ("x:\0\x01\xFF\0"s, textOf(*raw, 2));
  ASSERT_TRUE(raw->moveNext());
  EXPECT_EQ("\xFF\xFE\x80\xC3", textOf(*raw, 1));
  EXPECT_EQ("x:", textOf(*raw, 2));
  ASSERT_TRUE(raw->moveNext());
  EXPECT_EQ("\xED\xA0\x80", textOf(*raw, 1)) << "an unpaired surrogate";
  EXPECT_EQ(70002u, textOf(*raw, 2).size());
  ASSERT_TRUE(raw->moveNext());
  EXPECT_EQ("", textOf(*raw, 1));
  EXPECT_EQ("(null)", textOf(*raw, 2));

  ASSERT_TRUE(raw->setValue(1, "\0\xED\xBF\xBFz\0"s));
  ASSERT_TRUE(raw->setValue(2, Blob{""}));
  ASSERT_TRUE(raw->update());
  EXPECT_EQ("00EDBFBF7A00", inFile("SELECT hex(t) FROM raw WHERE id = 4"));
  EXPECT_EQ("blob", inFile("SELECT typeof(b) FROM raw WHERE id = 4"));
  ASSERT_TRUE(raw->setValue(1, std::string()));
  ASSERT_TRUE(raw->update());
  EXPECT_EQ("text", inFile("SELECT typeof(t) FROM raw WHERE id = 4")) << "empty is not null";
}

TEST_F(ForeignFilesTest, AFaultyTextInOneFieldSurvivesTheChangeOfAnother) {
  prepare("CREATE TABLE raw (t Text, n Integer); INSERT INTO raw VALUES (CAST(x'61FF00ED' AS TEXT), 1)");
  open();
  const auto raw = records("Select * from [raw]");
  ASSERT_TRUE(raw->setValue(0, textOf(*raw, 0))) << "written back as it was read";
  ASSERT_TRUE(raw->setValue(1, std::int64_t{2}));
  ASSERT_TRUE(raw->update());
  EXPECT_EQ("61FF00ED", inFile("SELECT hex(t) FROM raw WHERE n = 2"));
}

TEST_F(ForeignFilesTest, FilesInUtf16AreReadAndWritten) {
  struct Encoding {
    const char* name;
    const char* order;  // by the bytes of the file
  };
  for (const Encoding& encoding : {Encoding{"UTF-16le", "\xF0\x9F\x93\x9A z \xCE\xB1"},
                                   Encoding{"UTF-16be", "z \xCE\xB1 \xF0\x9F\x93\x9A"}}) {
    SCOPED_TRACE(encoding.name);
    remake("PRAGMA encoding = '" + std::string(encoding.name) +
           "'; CREATE TABLE \"t\xC3\xA4\" (a Text PRIMARY KEY) "
           "WITHOUT ROWID; INSERT INTO \"t\xC3\xA4\" VALUES ('\xCE\xB1'), ('\xF0\x9F\x93\x9A'), ('z')");
    open();
    const auto texts = records("Select * from [t\xC3\xA4]");
    ASSERT_NE(nullptr, texts);
    EXPECT_EQ(encoding.order, columnOf(*texts));
    ASSERT_TRUE(texts->moveFirst());
    ASSERT_TRUE(texts->setValue(0, std::string("\xE6\x9C\xAC \xF0\x9F\x98\x80")));
    ASSERT_TRUE(texts->update());
    EXPECT_EQ("\xE6\x9C\xAC \xF0\x9F\x98\x80", textOf(*texts, 0));
    EXPECT_EQ("1", inFile("SELECT count(*) FROM \"t\xC3\xA4\" WHERE a = '\xE6\x9C\xAC \xF0\x9F\x98\x80'"));
    EXPECT_EQ("t\xC3\xA4", columnOf("SELECT TableName FROM MSysTables WHERE TableID > 4"));
    EXPECT_EQ("1", columnOf("SELECT DISTINCT 1 FROM \"t\xC3\xA4\" WHERE a = '\xCE\xB1'"));
    backend_.reset();
  }
}

TEST_F(ForeignFilesTest, GeneratedColumnsAreReadOnlyAndFollow) {
  prepare("CREATE TABLE g (a Integer, twice Integer AS (a * 2), kept Integer AS (a * 3) STORED, b Text)");
  prepare("INSERT INTO g (a, b) VALUES (1, 'x')");
  open();
  const auto g = records("Select * from [g]");
  ASSERT_NE(nullptr, g);
  ASSERT_EQ(4u, g->columns().size());
  EXPECT_FALSE(g->columns()[1].updatable);
  EXPECT_FALSE(g->columns()[2].updatable);
  EXPECT_EQ(ErrorCode::readOnly, g->setValue(1, std::int64_t{9}).code());
  EXPECT_TRUE(g->setValue(1, std::int64_t{2})) << "what it shows";
  ASSERT_TRUE(g->setValue(0, std::int64_t{5}));
  ASSERT_TRUE(g->update());
  EXPECT_EQ("10", textOf(*g, 1));
  EXPECT_EQ("15", textOf(*g, 2));
  ASSERT_TRUE(g->addNew());
  ASSERT_TRUE(g->setValue(0, std::int64_t{7}));
  ASSERT_TRUE(g->setValue(3, std::string("y")));
  ASSERT_TRUE(g->update());
  EXPECT_EQ("21", textOf(*g, 2));
  EXPECT_EQ("14", inFile("SELECT twice FROM g WHERE b = 'y'"));
}

TEST_F(ForeignFilesTest, StrictTablesRefuseWhatTheirTypesDo) {
  prepare(
      "CREATE TABLE s (i INT, r REAL, t TEXT, b BLOB, a ANY) STRICT; INSERT INTO s VALUES (1, 2.0, 't', "
      "x'00', 5)");
  open();
  const auto s = records("Select * from [s]");
  ASSERT_NE(nullptr, s);
  ASSERT_TRUE(s->setValue(0, std::string("no number")));
  EXPECT_EQ(ErrorCode::constraint, s->update().code());
  EXPECT_EQ(EditMode::inProgress, s->editMode());
  ASSERT_TRUE(s->cancelUpdate());
  ASSERT_TRUE(s->setValue(0, std::string("42")));
  ASSERT_TRUE(s->setValue(4, std::string("anything")));
  ASSERT_TRUE(s->update());
  EXPECT_EQ("42", textOf(*s, 0));
  EXPECT_EQ("integer", inFile("SELECT typeof(i) FROM s"));
}

TEST_F(ForeignFilesTest, TriggersRun) {
  prepare("CREATE TABLE t (a Integer); CREATE TABLE log (what Text)");
  prepare("CREATE TRIGGER i AFTER INSERT ON t BEGIN INSERT INTO log VALUES ('insert ' || new.a); END");
  prepare("CREATE TRIGGER u AFTER UPDATE ON t BEGIN INSERT INTO log VALUES ('update ' || new.a); END");
  prepare("CREATE TRIGGER d AFTER DELETE ON t BEGIN INSERT INTO log VALUES ('delete ' || old.a); END");
  prepare(
      "CREATE TRIGGER never BEFORE UPDATE ON t WHEN new.a = 13 BEGIN SELECT RAISE(ABORT, 'unlucky'); END");
  open();
  const auto t = records("Select * from [t]");
  ASSERT_TRUE(t->addNew());
  ASSERT_TRUE(t->setValue(0, std::int64_t{1}));
  ASSERT_TRUE(t->update());
  ASSERT_TRUE(t->setValue(0, std::int64_t{13}));
  const Status refused = t->update();
  EXPECT_EQ(ErrorCode::constraint, refused.code());
  EXPECT_EQ("unlucky", refused.message());
  ASSERT_TRUE(t->setValue(0, std::int64_t{2}));
  ASSERT_TRUE(t->update());
  ASSERT_TRUE(t->remove());
  EXPECT_EQ("insert 1,update 2,delete 2", inFile("SELECT group_concat(what) FROM log"));
}

TEST_F(ForeignFilesTest, AViewWithATriggerIsStillReadOnly) {
  prepare("CREATE TABLE t (a Integer); INSERT INTO t VALUES (1); CREATE VIEW v AS SELECT a FROM t");
  prepare("CREATE TRIGGER i INSTEAD OF DELETE ON v BEGIN DELETE FROM t; END");
  open();
  const auto v = records("Select * from [v]");
  ASSERT_NE(nullptr, v);
  EXPECT_EQ("1", textOf(*v, 0));
  EXPECT_EQ(ErrorCode::readOnly, v->remove().code());
}

TEST_F(ForeignFilesTest, ForeignKeysKeepRecordsTogether) {
  prepare("CREATE TABLE p (id INTEGER PRIMARY KEY); INSERT INTO p VALUES (1), (2)");
  prepare("CREATE TABLE c (p Integer REFERENCES p ON DELETE RESTRICT); INSERT INTO c VALUES (1)");
  open();
  const auto p = records("Select * from [p]");
  EXPECT_EQ(ErrorCode::constraint, p->remove().code());
  EXPECT_EQ(2, p->recordCount());
  EXPECT_EQ("1", textOf(*p, 0)) << "still current and readable";
  const auto c = records("Select * from [c]");
  ASSERT_TRUE(c->setValue(0, std::int64_t{9}));
  EXPECT_EQ(ErrorCode::constraint, c->update().code());
}

TEST_F(ForeignFilesTest, VirtualTablesAreReadOnlyRows) {
  prepare("CREATE VIRTUAL TABLE words USING fts5(body); INSERT INTO words VALUES ('a fox'), ('a dog')");
  prepare(
      "CREATE VIRTUAL TABLE boxes USING rtree(id, x0, x1); INSERT INTO boxes VALUES (1, 0, 2), (2, 5, 6)");
  open();
  const auto words = records("Select * from [words]");
  ASSERT_NE(nullptr, words);
  EXPECT_FALSE(words->isUpdatable());
  EXPECT_EQ("a fox a dog", columnOf(*words));
  EXPECT_EQ("a dog", columnOf("SELECT body FROM words WHERE words MATCH 'dog'"));
  EXPECT_EQ("2", columnOf("SELECT id FROM boxes WHERE x0 > 3"));
  run("INSERT INTO words VALUES ('a cat')");
  EXPECT_EQ("3", columnOf("SELECT count(*) FROM words"));
  const auto shadow = records("Select * from [words_content]");
  ASSERT_NE(nullptr, shadow);
  EXPECT_FALSE(shadow->isUpdatable());
  EXPECT_FALSE(tryRun("DELETE FROM words_content")) << "the table's own store is not for others";
}

TEST_F(ForeignFilesTest, ATableOfAThousandColumnsIsReadSortedAndChanged) {
  std::string columns;
  std::string values;
  for (int n = 0; n < 1000; ++n) {
    columns += (n == 0 ? "c" : ", c") + std::to_string(n) + " Integer";
    values += (n == 0 ? "" : ", ") + std::to_string(n);
  }
  prepare("CREATE TABLE wide (" + columns + "); INSERT INTO wide VALUES (" + values + ")");
  open();
  for (const char* sql :
       {"Select * from [wide]", "SELECT * FROM wide ORDER BY c999", "SELECT DISTINCT * FROM wide"}) {
    const auto wide = records(sql);
    ASSERT_NE(nullptr, wide);
    ASSERT_EQ(1000u, wide->columns().size());
    for (std::size_t n = 0; n < 1000; ++n) ASSERT_EQ(std::to_string(n), textOf(*wide, n));
  }
  const auto wide = records("Select * from [wide]");
  for (std::size_t n = 0; n < 1000; ++n) ASSERT_TRUE(wide->setValue(n, std::int64_t{-1}));
  ASSERT_TRUE(wide->update());
  EXPECT_EQ("-1", inFile("SELECT max(c0, c500, c999) FROM wide"));
  EXPECT_EQ("1000", columnOf("SELECT count(*) FROM MSysFields WHERE TableID > 4"));
}

TEST_F(ForeignFilesTest, IndexesOfAllKindsDoNotDisturb) {
  prepare("CREATE TABLE t (a Integer, b Text, c Text COLLATE NOCASE)");
  prepare(
      "CREATE INDEX part ON t (a) WHERE a > 5; CREATE INDEX ex ON t (lower(b), a DESC); CREATE UNIQUE INDEX "
      "u ON t (c)");
  prepare("INSERT INTO t VALUES (1, 'X', 'k'), (9, 'y', 'l')");
  open();
  const auto t = records("Select * from [t]");
  EXPECT_EQ("1 9", columnOf(*t));
  ASSERT_TRUE(t->moveFirst());
  ASSERT_TRUE(t->setValue(2, std::string("L")));
  EXPECT_EQ(ErrorCode::constraint, t->update().code());
  ASSERT_TRUE(t->setValue(2, std::string("m")));
  ASSERT_TRUE(t->update());
  EXPECT_EQ("-2 0", columnOf("SELECT FieldID FROM MSysIndexes WHERE IndexName = 'ex'"));
}

TEST_F(ForeignFilesTest, NumbersThatCountOnAreGivenOut) {
  prepare(
      "CREATE TABLE t (id INTEGER PRIMARY KEY AUTOINCREMENT, a Text); INSERT INTO t (a) VALUES ('x'), ('y')");
  prepare("DELETE FROM t WHERE id = 2");
  open();
  const auto t = records("Select * from [t]");
  ASSERT_TRUE(t->addNew());
  ASSERT_TRUE(t->setValue(1, std::string("z")));
  ASSERT_TRUE(t->update());
  EXPECT_EQ("3", textOf(*t, 0));
}

TEST_F(ForeignFilesTest, DefaultsFillWhatIsNotWritten) {
  prepare(
      "CREATE TABLE t (a Integer DEFAULT 7, b Text DEFAULT 'd' NOT NULL, c Datetime DEFAULT '2001-02-03')");
  open();
  const auto t = records("Select * from [t]");
  EXPECT_FALSE(t->columns()[1].nullable);
  ASSERT_TRUE(t->addNew());
  ASSERT_TRUE(t->setValue(0, std::int64_t{1}));
  ASSERT_TRUE(t->update());
  EXPECT_EQ("1", textOf(*t, 0));
  EXPECT_EQ("d", textOf(*t, 1));
  EXPECT_EQ("2001-02-03", textOf(*t, 2));
  ASSERT_TRUE(t->setValue(1, Value{}));
  EXPECT_EQ(ErrorCode::constraint, t->update().code());
}

TEST_F(ForeignFilesTest, AnUnknownCollationStopsOnlyWhatNeedsIt) {
  prepare("CREATE TABLE t (a Text, b Text)");
  prepare("INSERT INTO t VALUES ('x', 'y')");
  prepare(
      "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = 'CREATE TABLE t (a Text COLLATE german, b "
      "Text)'");
  open();
  EXPECT_EQ("x", columnOf("Select * from [t]"));
  EXPECT_EQ("x", columnOf("SELECT a FROM t WHERE b = 'y'"));
  EXPECT_EQ("x", columnOf("SELECT * FROM t ORDER BY b DESC"));
  const auto t = records("SELECT b, a FROM t ORDER BY 1");
  ASSERT_TRUE(t->setValue(1, std::string("z")));
  ASSERT_TRUE(t->update());
  EXPECT_EQ("z", textOf(*t, 1));
  std::unique_ptr<Recordset> sorted;
  EXPECT_EQ(ErrorCode::errorsInCommand, tryOpen("SELECT a FROM t ORDER BY a", &sorted).code());
  EXPECT_EQ("t", columnOf("SELECT TableName FROM MSysTables WHERE TableID > 4"));
}

TEST_F(ForeignFilesTest, EveryPageSizeOpens) {
  for (const char* size : {"512", "1024", "65536"}) {
    SCOPED_TRACE(size);
    remake("PRAGMA page_size = " + std::string(size) + "; CREATE TABLE t (a Integer, b Text)");
    prepare(
        "WITH RECURSIVE s(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM s WHERE i < 500) "
        "INSERT INTO t SELECT i, printf('%0100d', i) FROM s");
    open();
    const auto t = records("Select * from [t]");
    ASSERT_EQ(500, t->recordCount());
    ASSERT_TRUE(t->moveLast());
    EXPECT_EQ("500", textOf(*t, 0));
    ASSERT_TRUE(t->setValue(1, std::string(200'000, 'x')));
    ASSERT_TRUE(t->update());
    EXPECT_EQ(200'000u, textOf(*t, 1).size());
    ASSERT_TRUE(t->moveFirst());
    backend_.reset();
  }
}

TEST_F(ForeignFilesTest, AFileThatShrinksByItselfIsWalkedWhileItShrinks) {
  for (const char* mode : {"FULL", "INCREMENTAL"}) {
    SCOPED_TRACE(mode);
    remake("PRAGMA auto_vacuum = " + std::string(mode) + "; CREATE TABLE t (a Integer, b Blob)");
    prepare(
        "WITH RECURSIVE s(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM s WHERE i < 200) "
        "INSERT INTO t SELECT i, zeroblob(5000) FROM s");
    open();
    const auto t = records("Select * from [t]");
    ASSERT_TRUE(t->setPosition(150));
    EXPECT_EQ("150", textOf(*t, 0));
    OtherProgram other(path_);
    other.run("DELETE FROM t WHERE a > 50; PRAGMA incremental_vacuum");
    // (On Windows a file can't shrink while it is mapped; the rest of it is then unused.)
    EXPECT_LT(std::stoi(other.ask("PRAGMA page_count")), 120);
    ASSERT_TRUE(t->setPosition(200));
    Cell cell;
    EXPECT_EQ(ErrorCode::noCurrentRecord, t->cell(0, &cell).code());
    ASSERT_TRUE(t->setPosition(50));
    EXPECT_EQ("50", textOf(*t, 0));
    backend_.reset();
  }
}

TEST_F(ForeignFilesTest, AKeyOfManyKindsIsToldApart) {
  prepare("CREATE TABLE k (a, b, c Text, PRIMARY KEY (b, a)) WITHOUT ROWID");
  prepare(
      "INSERT INTO k VALUES (1, x'00', 'blob'), (1.5, '', 'real'), ('1', 'x', 'text'), (1, 'x', 'integer'), "
      "(-9223372036854775808, 9e99, 'big')");
  open();
  const auto k = records("Select * from [k]");
  ASSERT_EQ(5, k->recordCount());
  EXPECT_EQ("big real integer text blob", columnOf(*k, 2));
  ASSERT_TRUE(k->setPosition(5));
  ASSERT_TRUE(k->setValue(0, std::string("moved")));
  ASSERT_TRUE(k->update());
  EXPECT_EQ("blob", textOf(*k, 2));
  ASSERT_TRUE(k->setPosition(3));
  ASSERT_TRUE(k->remove());
  EXPECT_EQ("big,real,text,blob", inFile("SELECT group_concat(c) FROM (SELECT c FROM k ORDER BY b, a)"));
}

TEST_F(ForeignFilesTest, AColumnThatAnotherProgramTakesAwayIsNotShownAsTheNext) {
  prepare(
      "CREATE TABLE t (id INTEGER PRIMARY KEY, a Text, b Text); INSERT INTO t VALUES (1, 'A', 'B'), (2, 'C', "
      "'D')");
  open();
  const auto t = records("Select * from [t]");
  EXPECT_EQ("A", textOf(*t, 1));
  OtherProgram other(path_);
  other.run("ALTER TABLE t DROP COLUMN a");
  ASSERT_TRUE(t->moveNext());
  Cell cell;
  EXPECT_EQ(ErrorCode::structureChanged, t->cell(1, &cell).code());
  EXPECT_EQ(ErrorCode::structureChanged, t->cell(2, &cell).code());
  EXPECT_EQ("B D", columnOf("Select b from [t]"));
}

TEST_F(ForeignFilesTest, AColumnThatAnotherProgramAddsLeavesTheRecordsReadable) {
  prepare("CREATE TABLE t (id INTEGER PRIMARY KEY, a Text); INSERT INTO t VALUES (1, 'A'), (2, 'C')");
  open();
  const auto t = records("Select * from [t]");
  OtherProgram(path_).run("ALTER TABLE t ADD COLUMN b Text DEFAULT 'new'");
  ASSERT_TRUE(t->moveNext());
  EXPECT_EQ("C", textOf(*t, 1));
  ASSERT_TRUE(t->setValue(1, std::string("E")));
  ASSERT_TRUE(t->update());
  EXPECT_EQ("E", inFile("SELECT a FROM t WHERE id = 2"));
}

TEST_F(ForeignFilesTest, ATableThatAnotherProgramChangedShowsItsPresentColumns) {
  prepare("CREATE TABLE t (a Integer, b Text); INSERT INTO t VALUES (1, 'x')");
  open();
  EXPECT_EQ(2u, records("Select * from [t]")->columns().size());
  OtherProgram(path_).run("ALTER TABLE t DROP COLUMN a; ALTER TABLE t ADD COLUMN c Text DEFAULT 'new'");
  const auto t = records("Select * from [t]");
  ASSERT_EQ(2u, t->columns().size());
  EXPECT_EQ("b", t->columns()[0].name);
  EXPECT_EQ("c", t->columns()[1].name);
  EXPECT_EQ("x", textOf(*t, 0));
  EXPECT_EQ("b c", columnOf("SELECT FieldName FROM MSysFields WHERE TableID > 4"));
  EXPECT_EQ("new", columnOf("SELECT DISTINCT * FROM t", 1));
}

}  // namespace
}  // namespace store
