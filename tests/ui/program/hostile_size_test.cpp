// Files of a size that nobody would make by hand, in the real program.
#include <string>

#include "tests/automation/sqlite_file.h"
#include "tests/ui/support/ui_test.h"

namespace {

using HostileSizeTest = UiTest;

TEST_F(HostileSizeTest, FiveThousandTablesAreListedWithoutAWait) {
  const std::filesystem::path path = file("many.cdb");
  std::string tables = "BEGIN;";
  for (int number = 0; number < 5000; ++number) {
    tables += "CREATE TABLE [Table " + std::to_string(number) + "] (a Integer);";
  }
  automationtest::SqliteFile(path.wstring()).run(tables + "COMMIT");
  const ULONGLONG begin = GetTickCount64();
  OpenedDatabase opened(path);
  ASSERT_TRUE(opened.tables());
  EXPECT_EQ(remote::itemCount(opened.tables()), 5000);
  // Less than one on an idle machine; 25 where each name comes with a scroll bar of its own.
  EXPECT_LT(GetTickCount64() - begin, 10'000u);
  ASSERT_TRUE(remote::selectItem(opened.tables(), 4999));
  EXPECT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
  EXPECT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kTablesPage));
}

}  // namespace
