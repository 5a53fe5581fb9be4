// Other programs that read the cells of the record grid, shown or hidden, as assistive technology does.
#include <windows.h>

#include "base/settings/options.h"
#include "base/settings/settings_store.h"
#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/ui/support/ui_test.h"

using automationtest::sqliteColumn;
using testing::Each;
using testing::ElementsAre;

namespace {

constexpr int kPositionBox = 1012;
constexpr int kFirstTextEditor = 1200;

class GridReadingTest : public UiTest {
 protected:
  GridReadingTest() {
    SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions);
    makeDatabase(path(), {L"CREATE TABLE 'T' (a Integer, t VarChar(20))",
                          L"INSERT INTO T VALUES (1, 'one'), (2, 'two'), (3, 'three')"});
    opened_.emplace(path());
    EXPECT_NE(opened_->tables(), nullptr);
  }

  ~GridReadingTest() override { RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot); }

  std::filesystem::path path() const { return file("grid.cdb"); }
  OpenedDatabase& opened() { return *opened_; }
  HWND main() const { return opened_->main(); }
  std::wstring position() const { return remote::text(remote::control(main(), kPositionBox)); }
  std::wstring editor(int number) const {
    return remote::text(remote::control(main(), kFirstTextEditor + number));
  }
  /// Shows the records in the grid, and then the form of the first one.
  HWND showFormBehindGrid() {
    const HWND grid = opened_->showRecords(0);
    if (!grid || !remote::switchToPage(main(), OpenedDatabase::kFormPage)) return nullptr;
    EXPECT_FALSE(IsWindowVisible(grid));
    return grid;
  }
  void close() {
    EXPECT_EQ(remote::close(main()), 0u);
    opened_.reset();
  }

 private:
  std::optional<OpenedDatabase> opened_;
};

TEST_F(GridReadingTest, ReadingTheHiddenGridChangesNothingWhileANewRecordIsPending) {
  const HWND grid = showFormBehindGrid();
  ASSERT_NE(grid, nullptr);
  sendCommand(main(), ID_RECORD_NEW);
  ASSERT_EQ(position(), L"    4 / 4");
  remote::typeText(remote::control(main(), kFirstTextEditor), L"4");
  EXPECT_THAT(remote::itemTexts(grid), ElementsAre(L"1", L"2", L"3"));
  EXPECT_THAT(remote::itemTexts(grid, 1), ElementsAre(L"one", L"two", L"three"));
  EXPECT_EQ(position(), L"    4 / 4");
  EXPECT_EQ(editor(0), L"4");
  EXPECT_THAT(sqliteColumn(path().wstring(), "SELECT a FROM T"), ElementsAre("1", "2", "3"));
  remote::typeText(remote::control(main(), kFirstTextEditor + 1), L"four");
  EXPECT_THAT(remote::itemTexts(grid), ElementsAre(L"1", L"2", L"3"));
  sendCommand(main(), ID_RECORD_PREVIOUS);
  EXPECT_EQ(position(), L"    3 / 4");
  EXPECT_EQ(editor(1), L"three");
  close();
  EXPECT_THAT(sqliteColumn(path().wstring(), "SELECT a || t FROM T"),
              ElementsAre("1one", "2two", "3three", "4four"));
}

TEST_F(GridReadingTest, ReadingTheHiddenGridLeavesTheRecordThatIsEdited) {
  const HWND grid = showFormBehindGrid();
  ASSERT_NE(grid, nullptr);
  sendCommand(main(), ID_RECORD_NEXT);
  remote::typeText(remote::control(main(), kFirstTextEditor + 1), L"changed");
  EXPECT_THAT(remote::itemTexts(grid, 1), ElementsAre(L"one", L"two", L"three"));
  sendCommand(main(), ID_RECORD_NEXT);
  EXPECT_EQ(position(), L"    3 / 3");
  EXPECT_EQ(editor(1), L"three");
  EXPECT_THAT(remote::itemTexts(grid, 1), ElementsAre(L"one", L"changed", L"three"));
  close();
  EXPECT_THAT(sqliteColumn(path().wstring(), "SELECT t FROM T"), ElementsAre("one", "changed", "three"));
}

TEST_F(GridReadingTest, ATableThatAnotherProgramDropsIsToldOnce) {
  const HWND grid = opened().showRecords(0);
  ASSERT_NE(grid, nullptr);
  EXPECT_THAT(remote::itemTexts(grid), ElementsAre(L"1", L"2", L"3"));
  automationtest::SqliteFile(path().wstring()).run("DROP TABLE T");
  EXPECT_THAT(remote::itemTexts(grid), Each(L"<not readable>"));
  const HWND box = opened().program().messageBox();
  ASSERT_NE(box, nullptr);
  EXPECT_THAT(remote::messageBoxText(box), testing::StartsWith(L"Records could not be read."));
  SendMessageW(box, WM_COMMAND, IDOK, 0);
  ASSERT_TRUE(remote::waitUntil([&] { return IsWindowEnabled(main()) != FALSE; }));
  EXPECT_THAT(remote::itemTexts(grid), Each(L"<not readable>"));
  ASSERT_TRUE(remote::awaitPosted(grid));
  EXPECT_EQ(remote::messageBox(opened().program().processId()), nullptr);
  close();
}

}  // namespace
