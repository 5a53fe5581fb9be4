#include <filesystem>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/second_process.h"
#include "tests/automation/support/sqlite_file.h"

namespace automationtest {
namespace {

class ScriptHost : public AutomationTest {
 protected:
  std::string outputOfScript(const wchar_t* name, const std::wstring& arguments, DWORD* exitCode) {
    const std::wstring script = (testsupport::programFolder() / name).make_preferred().wstring();
    return outputOf(L"cscript.exe //nologo \"" + script + L"\"" + arguments, folder_.path().wstring(),
                    exitCode);
  }
};

// The system's own script host, which knows of the components nothing but their names.
TEST_F(ScriptHost, MakesWalksAndChangesADatabase) {
  DWORD exitCode = 0;
  const std::string output = outputOfScript(L"walk.vbs", L"", &exitCode);
  EXPECT_EQ(output,
            "made, recordset state 0\r\n"
            "empty: 0 True True\r\n"
            "1: 1 Book 1 2001-3-1 False 0.25 (null)\r\n"
            "2: 2 Book 2 2001-3-2 True 0.5 (null)\r\n"
            "3: 3 Book 3 2001-3-3 False 0.75 3 letters\r\n"
            "rows: 1 1 Book 2 2\r\n"
            "left: 2, together 12.75\r\n"
            "title: CEB1D096E697A5\r\n"
            "changed: 2\r\n"
            "refused: 80040E37 no such table: Nowhere 1\r\n"
            "dropped\r\n");
  EXPECT_EQ(exitCode, 7u);
  EXPECT_FALSE(std::filesystem::exists(pathOf(L"script.cdb")));
}

TEST_F(ScriptHost, RunsAStatementOnceWhateverArgumentsAreLeftOut) {
  const std::wstring path = makeDatabase();
  SqliteFile(path).run(
      "CREATE TABLE Books (Id INTEGER PRIMARY KEY, Title TEXT, Pages INTEGER);"
      "CREATE TABLE Loans (Book INTEGER REFERENCES Books);"
      "INSERT INTO Books VALUES (1, 'thin', 60), (2, 'thick', 601), (3, 'thicker', 1200)");
  DWORD exitCode = 1;
  const std::string output = outputOfScript(L"arguments.vbs", L" \"" + path + L"\"", &exitCode);
  EXPECT_EQ(output,
            "thick\r\n"
            "thicker\r\n"
            "sql: 4\r\n"
            "sql, , 1: 5\r\n"
            "sql, n (1): 6\r\n"
            "sql, n, 1 (1): 7\r\n"
            "sql, (n), 1: 8\r\n"
            "sql, list(1), 1 (1): 9\r\n"
            "sql, Empty, 1: 10\r\n"
            "sql, Null: 11\r\n"
            "sql, 7, 1: 12\r\n"
            "call: 13\r\n"
            "left out in Open, and a record begun: 13\r\n"
            "cursor 1, lock 3\r\n"
            "thicker\r\n"
            "foreign key: E87 FOREIGN KEY constraint failed\r\n"
            "refused: 80040E14\r\n");
  EXPECT_EQ(exitCode, 0u);
  EXPECT_EQ(sqliteColumn(path, "SELECT count(*) FROM Books").at(0), "13");
}

}  // namespace
}  // namespace automationtest
