#include "platform/store/exchange/import.h"

#include "tests/exchange/exchange_fixture.h"

namespace store::exchange {
namespace {

using Rejects = std::vector<std::string>;

class ImportTest : public ExchangeTest {};

TEST_F(ImportTest, ANewTableHoldsWhatTheFileHolds) {
  open();
  import("Name,Pages,Read,Day,Price\nA Book,120,true,2001-03-09,1.5\n\"007\",,false,,2\n");
  EXPECT_EQ(result_.added, 2);
  EXPECT_EQ(typesOf(), "Name TEXT, Pages INTEGER, Read Bit, Day Date, Price Float");
  EXPECT_EQ(contents("Name,Pages,Read,Day,Price"),
            "text:'A Book' integer:120 integer:1 text:'2001-03-09' real:1.5; text:'007' null:NULL integer:0 "
            "null:NULL real:2.0");
}

TEST_F(ImportTest, NoValueIsSpoiled) {
  open();
  import("a,b,c,d,e\n007,1e5,+3,\"1,5\",12345678901234567890\n");
  EXPECT_EQ(contents("a,b,c,d,e"), "text:'007' text:'1e5' text:'+3' text:'1,5' text:'12345678901234567890'");
}

TEST_F(ImportTest, UmlautsComeFromEveryEncoding) {
  using namespace std::string_literals;
  open();
  for (const std::string& file :
       {"a,b\nM\xC3\xBCnchen,1\n"s, "a,b\nM\xFCnchen,1\n"s, "\xEF\xBB\xBF"s + "a,b\nM\xC3\xBCnchen,1\n",
        "\xFF\xFE"s + "a\0,\0b\0\n\0M\0\xFC\0n\0c\0h\0e\0n\0,\0001\0\n\0"s}) {
    import(file);
    EXPECT_EQ(ask("SELECT a FROM T"), "M\xC3\xBCnchen");
    run("DROP TABLE T");
  }
}

TEST_F(ImportTest, AnExistingTablesTypesRule) {
  prepare("CREATE TABLE T (Zip TEXT, Count INTEGER, Price DECIMAL(8,2), Any, Big BIGINT)");
  open();
  import("Zip,Count,Price,Any,Big\n007,0012,1.50,5,9007199254740993\n,,,,\n");
  EXPECT_EQ(
      contents("Zip,Count,Price,Any,Big"),
      "text:'007' integer:12 real:1.5 integer:5 integer:9007199254740993; null:NULL null:NULL null:NULL "
      "null:NULL null:NULL");
}

TEST_F(ImportTest, AValueThatDoesNotFitIsToldWithItsColumn) {
  prepare("CREATE TABLE T (Count INTEGER, Day DATE)");
  open();
  ASSERT_TRUE(tryImport("Count,Day\n1,2001-03-09\nmany,2001-03-09\n2,9.3.2001\n3,\n"));
  EXPECT_EQ(observer_.rejects,
            (Rejects{"3: Count: \"many\" is no whole number that the column holds",
                     "4: Day: \"9.3.2001\" is no date of the form 2001-03-09 or 2001-03-09 14:05:07"}));
  EXPECT_FALSE(result_.isStored);
  EXPECT_EQ(ask("SELECT count(*) FROM T"), "0");
  ASSERT_TRUE(tryImport("Count,Day\n1,2001-03-09\nmany,2001-03-09\n3,\n", ImportMode::goodRecords));
  EXPECT_TRUE(result_.isStored);
  EXPECT_EQ(result_.added, 2);
  EXPECT_EQ(result_.leftOut, 1);
  EXPECT_EQ(contents("Count,Day"), "integer:1 text:'2001-03-09'; integer:3 null:NULL");
}

TEST_F(ImportTest, RulesOfTheDatabaseLeaveSingleRecordsOut) {
  prepare(
      "CREATE TABLE Kinds (Kind TEXT PRIMARY KEY); INSERT INTO Kinds VALUES ('a'); CREATE TABLE T (Id "
      "INTEGER "
      "PRIMARY KEY, Name TEXT NOT NULL, Age INTEGER CHECK (Age < 200), Kind TEXT REFERENCES Kinds, Mail TEXT "
      "UNIQUE)");
  open();
  ASSERT_TRUE(
      tryImport("Id,Name,Age,Kind,Mail\n1,x,10,a,m\n1,y,10,a,n\n2,,10,a,o\n3,z,300,a,p\n4,w,1,b,q\n5,v,1,a,"
                "m\n6,u,1,a,r\n",
                ImportMode::goodRecords));
  EXPECT_EQ(observer_.rejects,
            (Rejects{"3: UNIQUE constraint failed: T.Id", "4: NOT NULL constraint failed: T.Name",
                     "5: CHECK constraint failed: Age < 200", "6: FOREIGN KEY constraint failed",
                     "7: UNIQUE constraint failed: T.Mail"}));
  EXPECT_EQ(ask("SELECT group_concat(Id) FROM T"), "1,6");
}

TEST_F(ImportTest, ATriggerThatLeavesARecordOutIsTold) {
  prepare(
      "CREATE TABLE T (a); CREATE TRIGGER G BEFORE INSERT ON T WHEN new.a = 2 BEGIN SELECT RAISE(IGNORE); "
      "END");
  open();
  ASSERT_TRUE(tryImport("a\n1\n2\n3\n", ImportMode::goodRecords));
  EXPECT_EQ(observer_.rejects, Rejects{"3: A rule of the database left the record out."});
  EXPECT_EQ(result_.added, 2);
}

TEST_F(ImportTest, ARuleThatUndoesTheWholeEndsTheImport) {
  prepare("CREATE TABLE T (a UNIQUE ON CONFLICT ROLLBACK)");
  open();
  const Status status = tryImport("a\n1\n1\n3\n", ImportMode::goodRecords);
  EXPECT_EQ(status.code(), ErrorCode::illegalOperation);
  EXPECT_EQ(ask("SELECT count(*) FROM T"), "0");
  EXPECT_EQ(columnOf("SELECT count(*) FROM T"), "0");
}

TEST_F(ImportTest, ATrialStoresNothing) {
  open();
  const std::string before = bytesOf(path_);
  ASSERT_TRUE(tryImport("a,b\n1,2\n3,4\n", ImportMode::trial));
  EXPECT_EQ(result_.added, 2);
  EXPECT_FALSE(result_.isStored);
  EXPECT_TRUE(bytesOf(path_) == before);
}

TEST_F(ImportTest, ACancelledImportStoresNothing) {
  open();
  const std::string before = bytesOf(path_);
  MemorySource source("a,b\n1,2\n");
  ASSERT_TRUE(planImport(*backend_, source, options_, observer_, &plan_));
  observer_.cancels = true;
  const Status status = runImport(*backend_, source, plan_, ImportMode::allOrNothing, observer_, &result_);
  EXPECT_EQ(status.message(), "The import was cancelled. Nothing was changed.");
  EXPECT_TRUE(bytesOf(path_) == before);
  EXPECT_EQ(ask("SELECT count(*) FROM sqlite_schema"), "0");
}

TEST_F(ImportTest, RecordsAreReplacedByTheirKey) {
  prepare(
      "CREATE TABLE T (Id INTEGER PRIMARY KEY, Name TEXT, Note TEXT); INSERT INTO T VALUES (1, 'a', 'kept'), "
      "(2, 'b', 'n')");
  open();
  options_.replaces = true;
  import("Id,Name\n1,A\n3,C\n");
  EXPECT_EQ(result_.added, 1);
  EXPECT_EQ(result_.replaced, 1);
  EXPECT_EQ(contents("Id,Name,Note"),
            "integer:1 text:'A' text:'kept'; integer:2 text:'b' text:'n'; integer:3 text:'C' null:NULL");
}

// The handheld's own tables have no keys.
TEST_F(ImportTest, AnyColumnsCanBeTheKey) {
  prepare(
      "CREATE TABLE T (Name TEXT, Year INTEGER, N INTEGER); INSERT INTO T VALUES ('a', 1, 1), ('a', 2, 2), "
      "('b', 1, 3), ('b', 1, 4), (NULL, 1, 5)");
  open();
  options_.replaces = true;
  options_.keyColumns = {"name", "YEAR"};
  ASSERT_TRUE(tryImport("Name,Year,N\na,2,20\nb,1,30\n,1,50\nc,1,60\n", ImportMode::goodRecords));
  EXPECT_EQ(observer_.rejects, Rejects{"3: Several records have this key."});
  EXPECT_EQ(ask("SELECT group_concat(N) FROM T"), "1,20,3,4,50,60");
  EXPECT_EQ(ask("SELECT count(*) FROM sqlite_schema"), "1");
}

TEST_F(ImportTest, ManyRecordsAreReplacedQuickly) {
  std::string file = "Id,N\n";
  for (int row = 0; row < 20'000; ++row) file += std::to_string(row) + "," + std::to_string(row + 1) + "\n";
  prepare("CREATE TABLE T (Id Integer, N Integer)");
  open();
  import(file);
  options_.replaces = true;
  options_.keyColumns = {"Id"};
  import(file);
  EXPECT_EQ(result_.replaced, 20'000);
  EXPECT_EQ(ask("SELECT count(*) FROM T"), "20000");
}

// An index of the import's own, which it makes and drops, changes the version of the structure.
TEST_F(ImportTest, AnIndexThatCanNotFindTheKeyIsNotReliedOn) {
  prepare(
      "CREATE TABLE T (Id Integer, Name TEXT, N INTEGER); CREATE INDEX ofAnExpression ON T (lower(Name));"
      "CREATE INDEX otherwiseCollated ON T (Name COLLATE NOCASE); CREATE INDEX ofSome ON T (N) WHERE N > 5;"
      "CREATE INDEX ofTheFirst ON T (N, Id)");
  open();
  options_.replaces = true;
  for (const std::vector<std::string>& key :
       std::vector<std::vector<std::string>>{{"Id"}, {"Name"}, {"N", "Name"}}) {
    options_.keyColumns = key;
    const std::string before = ask("PRAGMA schema_version");
    import("Id,Name,N\n1,a,2\n");
    EXPECT_NE(before, ask("PRAGMA schema_version")) << key.front();
  }
  for (const std::vector<std::string>& key : std::vector<std::vector<std::string>>{{"N"}, {"Id", "N"}}) {
    options_.keyColumns = key;
    const std::string before = ask("PRAGMA schema_version");
    import("Id,Name,N\n1,a,2\n");
    EXPECT_EQ(before, ask("PRAGMA schema_version")) << key.front();
  }
  EXPECT_EQ(ask("SELECT count(*) FROM T"), "1");
}

TEST_F(ImportTest, JsonGoesIntoANewTable) {
  open();
  import("[{\"a\":1,\"b\":\"007\",\"c\":true},{\"a\":2.5,\"d\":{\"x\":[1]}}]");
  EXPECT_EQ(typesOf(), "a Float, b TEXT, c Bit, d TEXT");
  EXPECT_EQ(contents("a,b,c,d"),
            "real:1.0 text:'007' integer:1 null:NULL; real:2.5 null:NULL null:NULL text:'{\"x\":[1]}'");
}

TEST_F(ImportTest, AFileThatIsReadOnlyIsNotWritten) {
  std::filesystem::permissions(path_, std::filesystem::perms::owner_read);
  open();
  if (!backend_->isReadOnly()) GTEST_SKIP() << "this user may write everywhere";
  EXPECT_EQ(tryImport("a\n1\n").code(), ErrorCode::readOnly);
}

TEST_F(ImportTest, AnotherProgramsLockIsToldAndNothingIsStored) {
  open({.lockWait = 50});
  OtherProgram other(path_);
  other.run("CREATE TABLE Other (a); BEGIN IMMEDIATE; INSERT INTO Other VALUES (1)");
  EXPECT_EQ(tryImport("a\n1\n").code(), ErrorCode::locked);
  other.run("COMMIT");
  import("a\n1\n");
}

TEST_F(ImportTest, AFileThatWasReplacedMeanwhileIsNotWritten) {
  open();
  std::error_code error;
  std::filesystem::rename(path_, folder_.file("moved.cdb"), error);
  if (error) GTEST_SKIP() << "this system keeps the name of an open file: " << error.message();
  EXPECT_EQ(tryImport("a\n1\n").code(), ErrorCode::fileGone);
  std::filesystem::rename(folder_.file("moved.cdb"), path_);
}

TEST_F(ImportTest, TheDatabaseIsUsableAsBeforeAfterwards) {
  open();
  import("a\n1\n2\n");
  EXPECT_EQ(columnOf("T"), "1 2");
  run("INSERT INTO T VALUES (3)");
  import("a\n4\n");
  EXPECT_EQ(columnOf("T"), "1 2 3 4");
}

TEST_F(ImportTest, TwoThousandColumnsGoIn) {
  open();
  std::string names;
  std::string values;
  for (int column = 0; column < 2000; ++column) {
    names += (column > 0 ? ",c" : "c") + std::to_string(column);
    values += (column > 0 ? "," : "") + std::to_string(column);
  }
  import(names + "\n" + values + "\n");
  EXPECT_EQ(ask("SELECT c0 + c1999 FROM T"), "1999");
}

TEST_F(ImportTest, TooManyColumnsAreRefusedWithAReason) {
  open();
  std::string names = "c";
  for (int column = 0; column < 3000; ++column) names += ",c" + std::to_string(column);
  const Status status = tryImport(names + "\n");
  EXPECT_FALSE(status);
  EXPECT_NE(status.message().find("too many columns"), std::string::npos) << status.message();
}

TEST_F(ImportTest, AZeroIsPartOfAText) {
  using namespace std::string_literals;
  open();
  import("a,b\nx\0y,1\n"s);
  EXPECT_EQ(ask("SELECT hex(a) FROM T"), "780079");
}

}  // namespace
}  // namespace store::exchange
