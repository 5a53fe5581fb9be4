#include <filesystem>

#include "tests/automation/automation_test.h"
#include "tests/automation/second_process.h"

namespace automationtest {
namespace {

using ScriptHost = AutomationTest;

// The system's own script host, which knows of the components nothing but their names.
TEST_F(ScriptHost, MakesWalksAndChangesADatabase) {
  const std::wstring script = (testsupport::programFolder() / "walk.vbs").make_preferred().wstring();
  DWORD exitCode = 0;
  const std::string output =
      outputOf(L"cscript.exe //nologo \"" + script + L"\"", folder_.path().wstring(), &exitCode);
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

}  // namespace
}  // namespace automationtest
