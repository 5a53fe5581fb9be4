#include <chrono>
#include <filesystem>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/second_process.h"
#include "tests/automation/support/sqlite_file.h"

// What is not a database, or not a statement, has a negative result and stays as it is.

namespace automationtest {
namespace {

class BadFile : public AutomationTest {
 protected:
  /// Opening the path must fail as a file that can't be opened and tell why.
  void expectRefused(const std::wstring& path) {
    const ComPtr<IAdoceConnection> connection = newConnection();
    EXPECT_EQ(openAt(connection.get(), path), objectModelError(3002)) << path;
    EXPECT_EQ(stateOf(connection.get()), 0);
    ComPtr<IAdoceErrors> errors;
    ComPtr<IAdoceError> error;
    UniqueBstr description;
    ASSERT_EQ(connection->get_Errors(errors.put()), S_OK);
    ASSERT_EQ(errors->get_Item(*variant(0L), error.put()), S_OK);
    ASSERT_EQ(error->get_Description(description.put()), S_OK);
    EXPECT_GT(SysStringLen(description.get()), 0u);
  }
  void expectRefusedAndUntouched(const std::string& content) {
    const std::wstring path = pathOf(L"bad.cdb");
    writeFile(path, content);
    const auto before = std::filesystem::last_write_time(path);
    expectRefused(path);
    EXPECT_EQ(contentOf(path), content);
    EXPECT_EQ(std::filesystem::last_write_time(path), before);
    EXPECT_THAT(filesInFolder(), testing::ElementsAre(L"bad.cdb"));
  }
  std::vector<std::wstring> filesInFolder() {
    std::vector<std::wstring> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      names.push_back(entry.path().filename().wstring());
    }
    return names;
  }
};

TEST_F(BadFile, Missing) {
  expectRefused(pathOf(L"missing.cdb"));
  expectRefused(pathOf(L"no folder\\missing.cdb"));
  EXPECT_THAT(filesInFolder(), testing::ElementsAre());
}

TEST_F(BadFile, Folder) {
  expectRefused(folder_.path().wstring());
}

TEST_F(BadFile, Empty) {
  expectRefusedAndUntouched("");
}

TEST_F(BadFile, Text) {
  expectRefusedAndUntouched(std::string(10000, 'x') + "\r\n");
}

TEST_F(BadFile, HeadOnly) {
  expectRefusedAndUntouched(std::string("SQLite format 3\0", 16));
}

TEST_F(BadFile, CutShort) {
  const std::wstring path = makeDatabase(L"whole.cdb");
  SqliteFile(path).run("CREATE TABLE T (A TEXT); INSERT INTO T VALUES (hex(zeroblob(20000)))");
  std::string content = contentOf(path);
  std::filesystem::remove(path);
  ASSERT_GT(content.size(), 20000u);
  content.resize(content.size() / 2 + 100);
  expectRefusedAndUntouched(content);
}

TEST_F(BadFile, PathsThatAreNone) {
  expectRefused(L"\x01?*<>|");
  expectRefused(std::wstring(40000, L'x'));
  expectRefused(L" ");
}

TEST_F(BadFile, PathThatIsAnotherOnesToItsFirstZero) {
  const std::wstring path = makeDatabase(L"good.cdb");
  expectRefused(path + std::wstring(L"\0x", 2));
  expectRefused(L"Data Source=" + path + std::wstring(L"\0x", 2));
}

class LockedFile : public AutomationTest {
 protected:
  LockedFile() { SqliteFile(path_).run("CREATE TABLE T (A TEXT); INSERT INTO T VALUES ('a')"); }

  std::wstring path_ = makeDatabase();
};

TEST_F(LockedFile, IsWaitedForFiveSecondsAtMost) {
  const std::string before = contentOf(path_);
  const LockHolder holder(path_);
  ASSERT_TRUE(holder.holds());
  const ComPtr<IAdoceConnection> connection = newConnection();
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(openAt(connection.get(), path_), objectModelError(3730));
  const auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_LT(waited, std::chrono::seconds(8));
  EXPECT_GT(waited, std::chrono::seconds(3));
  EXPECT_EQ(stateOf(connection.get()), 0);
}

TEST_F(LockedFile, CanBeUsedOnceTheLockIsGone) {
  const ComPtr<IAdoceConnection> connection = connectTo(path_);
  const ComPtr<IAdoceRecordset> recordset = recordsOf(connection.get(), L"Select * from [T]");
  ASSERT_EQ(put(recordset.get(), 0, variant(L"b")), S_OK);
  {
    const LockHolder holder(path_);
    ASSERT_TRUE(holder.holds());
    EXPECT_EQ(update(recordset.get()), objectModelError(3730));
  }
  EXPECT_EQ(update(recordset.get()), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"b");
}

class BadStatement : public AutomationTest {
 protected:
  BadStatement() { SqliteFile(path_).run("CREATE TABLE T (A TEXT); INSERT INTO T VALUES ('a')"); }

  /// The statement fails in every way to run it, with the same result, and the file stays as it is.
  HRESULT refused(const std::wstring& statement) {
    const std::string before = contentOf(path_);
    const ComPtr<IAdoceRecordset> recordset = newRecordset();
    const HRESULT result = openOn(recordset.get(), connection_.get(), statement);
    EXPECT_EQ(stateOf(recordset.get()), 0);
    EXPECT_EQ(execute(connection_.get(), statement), result);
    EXPECT_EQ(contentOf(path_), before);
    return result;
  }

  std::wstring path_ = makeDatabase();
  ComPtr<IAdoceConnection> connection_ = connectTo(path_);
};

TEST_F(BadStatement, Empty) {
  for (const wchar_t* statement : {L"", L" ", L";", L" ; ; ", L"-- only a comment", L"/* and another */"}) {
    EXPECT_EQ(refused(statement), kNoCommand) << statement;
  }
  EXPECT_EQ(connection_->Execute(nullptr, nullptr, kText, nullptr), kNoCommand);
}

TEST_F(BadStatement, ThatDoesNotParse) {
  for (const wchar_t* statement :
       {L"SELECTION", L"SELECT * FROM", L"SELECT * FROM T WHERE", L"Select * from [T", L"'", L"x",
        L"SELECT ( FROM T", L"SELECT \x01 FROM T"}) {
    EXPECT_EQ(refused(statement), kErrorsInCommand) << statement;
  }
}

TEST_F(BadStatement, OfUnknownTablesAndColumns) {
  EXPECT_EQ(refused(L"SELECT * FROM Nowhere"), kNoTable);
  EXPECT_EQ(refused(L"SELECT B FROM T"), kBadColumn);
  EXPECT_EQ(refused(L"DELETE FROM Nowhere"), kNoTable);
}

TEST_F(BadStatement, SelectWithoutATable) {
  EXPECT_EQ(refused(L"SELECT 1"), kNoTable);
  EXPECT_EQ(refused(L"SELECT 'a' AS b"), kNoTable);
}

TEST_F(BadStatement, SeveralAreRefusedWhole) {
  EXPECT_EQ(refused(L"DELETE FROM T; DELETE FROM T"), kErrorsInCommand);
  EXPECT_EQ(refused(L"SELECT * FROM T; DROP TABLE T"), kErrorsInCommand);
  EXPECT_EQ(refused(L"CREATE TABLE U (A TEXT); CREATE TABLE V (A TEXT)"), kErrorsInCommand);
}

TEST_F(BadStatement, OneMegabyte) {
  EXPECT_EQ(refused(L"SELECT * FROM T WHERE A = '" + std::wstring(1u << 20, L'x') + L"'"), kErrorsInCommand);
  EXPECT_LT(refused(std::wstring(1u << 20, L'(')), 0);
  EXPECT_LT(refused(L"Select * from [" + std::wstring(1u << 20, L'x') + L"]"), 0);
}

TEST_F(BadStatement, LongButNotTooLong) {
  const ComPtr<IAdoceRecordset> recordset =
      recordsOf(connection_.get(), L"SELECT * FROM T WHERE A <> '" + std::wstring(500000, L'x') + L"'");
  EXPECT_EQ(recordCount(recordset.get()), 1);
}

TEST_F(BadStatement, WithParameters) {
  EXPECT_EQ(refused(L"SELECT * FROM T WHERE A = ?"), kErrorsInCommand);
}

TEST_F(BadStatement, ThatReachesOutOfTheDatabase) {
  EXPECT_LT(refused(L"ATTACH DATABASE '" + pathOf(L"other.cdb") + L"' AS o"), 0);
  EXPECT_LT(refused(L"BEGIN"), 0);
  EXPECT_LT(refused(L"PRAGMA journal_mode=OFF"), 0);
  EXPECT_FALSE(std::filesystem::exists(pathOf(L"other.cdb")));
}

}  // namespace
}  // namespace automationtest
