// Files: open, close, create, drop.
#include <filesystem>
#include <string>

#include "gmock/gmock.h"
#include "owners/live_resources.h"
#include "tests/unit/data/fake_store.h"
#include "tests/unit/data/store_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DatabaseTest : public DataTest {};

TEST_F(DatabaseTest, IsClosedAtFirst) {
  EXPECT_FALSE(database_.isOpen());
  EXPECT_STREQ(database_.path().text(), L"");
  EXPECT_EQ(database_.fieldCount(), 0u);
  EXPECT_EQ(database_.recordCount(), 0u);
  EXPECT_FALSE(database_.fieldsLoaded());
  EXPECT_FALSE(database_.newRecordPending());
}

TEST_F(DatabaseTest, TheConstructorSetsTheCurrentRecordTo1) {
  currentRecord = 9;
  const Database another;
  EXPECT_EQ(currentRecord, 1u);
}

TEST_F(DatabaseTest, OpensAFile) {
  openWith({});
  EXPECT_TRUE(database_.isOpen());
  EXPECT_STREQ(database_.path().text(), path_.c_str());
}

TEST_F(DatabaseTest, AMissingFileDoesNotOpenAndIsNotMade) {
  EXPECT_FALSE(database_.open(path_.c_str()));
  EXPECT_FALSE(database_.isOpen());
  EXPECT_STREQ(database_.path().text(), L"");
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(DatabaseTest, AFailedOpenLeavesNoFileOpen) {
  openTable(L"a integer", {L"1"});
  EXPECT_FALSE(database_.open(pathOf("missing.cdb").c_str()));
  EXPECT_FALSE(database_.isOpen());
  EXPECT_STREQ(database_.path().text(), L"");
  EXPECT_EQ(database_.recordCount(), 0u);
  EXPECT_EQ(database_.fieldCount(), 0u);
}

TEST_F(DatabaseTest, OpeningAnotherFileClosesTheFirst) {
  const std::wstring other = pathOf("other.cdb");
  openWith({L"CREATE TABLE one (a integer)"});
  makeDatabase(other, {L"CREATE TABLE two (a integer)"});
  ASSERT_TRUE(database_.open(other.c_str()));
  NameList names;
  database_.listTables(names);
  EXPECT_THAT(namesOf(names), ElementsAre(L"two"));
  EXPECT_TRUE(std::filesystem::remove(path_)) << "the first file is still held";
}

TEST_F(DatabaseTest, ClosingForgetsAllOfTheFile) {
  openTable(L"a integer, b integer", {L"1, 2", L"3, 4"});
  EXPECT_EQ(database_.fieldCount(), 2u);
  EXPECT_EQ(recordCount, 2u);
  EXPECT_TRUE(database_.close());
  EXPECT_FALSE(database_.isOpen());
  EXPECT_STREQ(database_.path().text(), L"");
  EXPECT_EQ(database_.fieldCount(), 0u);
  EXPECT_EQ(database_.recordCount(), 0u);
  EXPECT_EQ(recordCount, 0u);
  EXPECT_STREQ(database_.fieldName(0).text(), L"");
  EXPECT_STREQ(database_.valueText(0).text(), L"");
  EXPECT_TRUE(database_.close()) << "closing twice";
  EXPECT_TRUE(std::filesystem::remove(path_)) << "the file is still held";
}

TEST_F(DatabaseTest, CreatesAFileAndLeavesNothingOpen) {
  EXPECT_TRUE(database_.createDatabase(path_.c_str()));
  EXPECT_FALSE(database_.isOpen());
  EXPECT_TRUE(std::filesystem::exists(path_));
  EXPECT_TRUE(database_.open(path_.c_str()));
}

TEST_F(DatabaseTest, CreatingClosesTheOpenFileAlsoWhenItFails) {
  openTable(L"a integer", {L"1"});
  EXPECT_FALSE(database_.createDatabase(path_.c_str())) << "the path is taken";
  EXPECT_FALSE(database_.isOpen());
  EXPECT_STREQ(database_.path().text(), L"");
  EXPECT_EQ(stored(L"Select a from t"), L"1") << "the file was changed";
}

TEST_F(DatabaseTest, CreatesAFileWithBlanksAndAnApostropheInItsName) {
  const std::wstring path = pathOf("Anna's books.cdb");
  EXPECT_TRUE(database_.createDatabase(path.c_str()));
  EXPECT_TRUE(std::filesystem::exists(path));
  EXPECT_TRUE(database_.open(path.c_str()));
  EXPECT_TRUE(database_.dropDatabase(path.c_str()));
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(DatabaseTest, DropsAFile) {
  makeDatabase(path_, {});
  EXPECT_TRUE(database_.dropDatabase(path_.c_str()));
  EXPECT_FALSE(std::filesystem::exists(path_));
  EXPECT_FALSE(database_.isOpen());
}

TEST_F(DatabaseTest, DropsTheFileThatIsOpen) {
  openTable(L"a integer", {L"1"});
  EXPECT_TRUE(database_.dropDatabase(path_.c_str()));
  EXPECT_FALSE(std::filesystem::exists(path_));
  EXPECT_FALSE(database_.isOpen());
  EXPECT_EQ(database_.recordCount(), 0u);
  EXPECT_FALSE(database_.moveFirst());
  EXPECT_STREQ(database_.valueText(0).text(), L"");
}

TEST_F(DatabaseTest, AFileThatIsMissingOrNoDatabaseIsNotDropped) {
  EXPECT_FALSE(database_.dropDatabase(path_.c_str()));
  const std::wstring folder = folder_.path().wstring();
  EXPECT_FALSE(database_.dropDatabase(folder.c_str()));
  EXPECT_TRUE(std::filesystem::exists(folder));
}

TEST_F(DatabaseTest, ReleasesAllThatItHeld) {
  makeDatabase(path_, {L"CREATE TABLE t (a integer, b text)", L"INSERT INTO t VALUES (1, 'x')"});
  const long before = LiveResources::countOfAll();
  {
    Database database;
    ASSERT_TRUE(database.open(path_.c_str()));
    ASSERT_TRUE(database.openRecordset(L"Select * from [t]"));
    EXPECT_STREQ(database.valueText(1).text(), L"x");
    EXPECT_TRUE(database.setValueFromEditor(1, FakeEditor::withText(L"y")));
    EXPECT_TRUE(database.addQuery({L"q", L"s"}));
    NameList names;
    database.listTables(names);
    EXPECT_GT(LiveResources::countOfAll(), before);
  }
  EXPECT_EQ(LiveResources::countOfAll(), before);
  EXPECT_TRUE(std::filesystem::remove(path_)) << "the file is still held";
}

// ---- Against a store of our own

class DatabaseStatementsTest : public testing::Test {
 protected:
  void expectNothingOpen() {
    EXPECT_FALSE(store_.isConnected);
    EXPECT_EQ(store_.openCursorCount(), 0);
  }

  FakeStore store_;
  FakeStoreRegistration registration_{store_};
  Database database_;
};

TEST_F(DatabaseStatementsTest, CreatingRunsItsStatementAsARecordsetOfTheStoreWithoutAFile) {
  EXPECT_TRUE(database_.createDatabase(L"a b.cdb"));
  EXPECT_THAT(store_.statements,
              ElementsAre("Open CREATE DATABASE 'a b.cdb' cursor 2 lock 3 options 1 in the store"));
  EXPECT_EQ(store_.connectOptions, -1);
  expectNothingOpen();
}

TEST_F(DatabaseStatementsTest, DroppingRunsItsStatementAsARecordsetOfTheStoreWithoutAFile) {
  ASSERT_TRUE(database_.open(L"other.cdb"));
  EXPECT_EQ(store_.connectedTo, "other.cdb");
  EXPECT_TRUE(database_.dropDatabase(L"other.cdb"));
  EXPECT_THAT(store_.statements,
              ElementsAre("Open DROP DATABASE 'other.cdb' cursor 2 lock 3 options 1 in the store"));
  EXPECT_EQ(store_.connectOptions, -1);
  expectNothingOpen();
}

TEST_F(DatabaseStatementsTest, AfterAFailedDropTheConnectionStaysWithTheStoreAndAfterAFailedCreateItDoesNot) {
  store_.statementResult = E_FAIL;
  EXPECT_FALSE(database_.dropDatabase(L"a.cdb"));
  EXPECT_TRUE(store_.isConnected);
  EXPECT_EQ(store_.connectedTo, "");
  EXPECT_FALSE(database_.createDatabase(L"a.cdb"));
  expectNothingOpen();
}

/// The path with which the statement fills its 199 characters.
std::wstring longestPath(const wchar_t* verb) {
  return std::wstring(199 - std::wstring(verb).size() - std::wstring(L" DATABASE ''").size(), L'x');
}

TEST_F(DatabaseStatementsTest, APathThatJustFitsIsSent) {
  EXPECT_TRUE(database_.createDatabase(longestPath(L"CREATE").c_str()));
  EXPECT_TRUE(database_.dropDatabase(longestPath(L"DROP").c_str()));
}

TEST_F(DatabaseStatementsTest, APathThatWouldOverflowTheStatementIsRefusedAndNothingSent) {
  EXPECT_FALSE(database_.createDatabase((longestPath(L"CREATE") + L"x").c_str()));
  EXPECT_FALSE(database_.dropDatabase((longestPath(L"DROP") + L"x").c_str()));
  EXPECT_FALSE(database_.dropDatabase(std::wstring(100'000, L'x').c_str()));
  EXPECT_THAT(store_.statements, IsEmpty());
  expectNothingOpen();
}

TEST_F(DatabaseStatementsTest, AStoreThatDoesNotOpenCreatesAndDropsNothing) {
  store_.openResult = E_FAIL;
  EXPECT_FALSE(database_.createDatabase(L"a.cdb"));
  EXPECT_FALSE(database_.dropDatabase(L"a.cdb"));
  EXPECT_THAT(store_.statements, IsEmpty());
}

}  // namespace
