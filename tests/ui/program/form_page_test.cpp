// The Form page of the real program: walking, editing, and what stands in the file afterwards.
#include <windows.h>

#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/ui/support/ui_test.h"

using automationtest::sqliteColumn;
using testing::ElementsAre;

namespace {

constexpr int kFirstTextEditor = 1200;
constexpr int kFirstCheckBox = 1400;
constexpr int kFirstDateEditor = 1600;
constexpr int kPositionBox = 1012;
constexpr int kRebar = 1000;

constexpr const wchar_t* kEveryType =
    L"CREATE TABLE 'Every Type' (s SmallInt, i Integer, d Double, t VarChar(20), m Text, b Boolean, w "
    L"DateTime)";

class FormPageTest : public UiTest {
 protected:
  /// Opens the file and shows the form of its first table.
  void showForm() {
    opened_.emplace(path());
    ASSERT_NE(opened_->tables(), nullptr);
    ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kFormPage));
  }
  void makeThreeRecords() {
    makeDatabase(
        path(), {kEveryType, L"INSERT INTO [Every Type] VALUES (1, 10, 1.5, 'one', 'first', 0, '2001-03-09')",
                 L"INSERT INTO [Every Type] VALUES (2, 20, 2.5, 'two', 'second', 1, '2002-04-10')",
                 L"INSERT INTO [Every Type] VALUES (3, 30, 3.5, 'three', 'third', 0, '2003-05-11')"});
  }

  std::filesystem::path path() const { return file("form.cdb"); }
  HWND main() const { return opened_->main(); }
  HWND editor(int number) const { return remote::control(main(), kFirstTextEditor + number); }
  std::wstring shown(int number) const { return remote::text(editor(number)); }
  std::wstring position() const { return remote::text(remote::control(main(), kPositionBox)); }
  void command(WORD id) { sendCommand(main(), id); }
  void close() {
    EXPECT_EQ(remote::close(main()), 0u);
    opened_.reset();
  }
  /// What another SQLite program reads of the first table.
  std::vector<std::string> stored(const char* column) {
    return sqliteColumn(path().wstring(),
                        std::string("SELECT quote(") + column + ") FROM [Every Type] ORDER BY rowid");
  }

 private:
  std::optional<OpenedDatabase> opened_;
};

TEST_F(FormPageTest, WalksToTheEndAndBack) {
  makeThreeRecords();
  showForm();
  EXPECT_EQ(shown(0), L"1");
  EXPECT_EQ(position(), L"    1 / 3");
  command(ID_RECORD_NEXT);
  EXPECT_EQ(shown(0), L"2");
  EXPECT_EQ(position(), L"    2 / 3");
  command(ID_RECORD_LAST);
  EXPECT_EQ(shown(0), L"3");
  command(ID_RECORD_NEXT);
  EXPECT_EQ(shown(0), L"3");
  command(ID_RECORD_PREVIOUS);
  EXPECT_EQ(shown(0), L"2");
  command(ID_RECORD_FIRST);
  command(ID_RECORD_PREVIOUS);
  EXPECT_EQ(shown(0), L"1");
  EXPECT_EQ(position(), L"    1 / 3");
  close();
  EXPECT_THAT(stored("s"), ElementsAre("1", "2", "3"));
}

TEST_F(FormPageTest, EachFieldTypeIsStoredAsItWasTyped) {
  makeThreeRecords();
  showForm();
  remote::typeText(editor(0), L"-12");
  remote::typeText(editor(1), L"123456");
  remote::typeText(editor(3), L"Ωmega 'quoted'");
  remote::typeText(editor(4), L"новый 😀 текст");
  const HWND box = remote::control(main(), kFirstCheckBox);
  remote::clickControl(box);
  ASSERT_TRUE(remote::waitUntil([&] { return SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED; }));
  command(ID_RECORD_NEXT);
  EXPECT_EQ(shown(3), L"two");
  close();
  EXPECT_THAT(stored("s"), ElementsAre("-12", "2", "3"));
  EXPECT_THAT(stored("i"), ElementsAre("123456", "20", "30"));
  EXPECT_THAT(stored("d"), ElementsAre("1.5", "2.5", "3.5"));
  EXPECT_THAT(stored("t"), ElementsAre("'Ωmega ''quoted'''", "'two'", "'three'"));
  EXPECT_THAT(stored("m"), ElementsAre("'новый 😀 текст'", "'second'", "'third'"));
  EXPECT_THAT(stored("b"), ElementsAre("1", "1", "0"));
  EXPECT_THAT(stored("w"),
              ElementsAre("'2001-03-09 00:00:00'", "'2002-04-10 00:00:00'", "'2003-05-11 00:00:00'"));
}

TEST_F(FormPageTest, WhatStandsInAnEditorIsStoredWhenTheProgramIsClosed) {
  makeThreeRecords();
  showForm();
  remote::typeText(editor(3), L"changed");
  close();
  EXPECT_THAT(stored("t"), ElementsAre("'changed'", "'two'", "'three'"));
}

TEST_F(FormPageTest, WhatStandsInAnEditorIsStoredWhenTheProgramIsLeftByItsMenu) {
  makeThreeRecords();
  showForm();
  remote::typeText(editor(3), L"changed");
  PostMessageW(main(), WM_COMMAND, ID_EXIT, 0);
  const DWORD process = remote::processOf(main());
  ASSERT_TRUE(remote::waitUntil([&] { return remote::mainWindow(process) == nullptr; }));
  ASSERT_TRUE(remote::waitUntil([&] { return stored("t").front() == "'changed'"; }));
}

TEST_F(FormPageTest, WhatStandsInAnEditorIsStoredWhenAnotherPageIsShown) {
  makeThreeRecords();
  showForm();
  remote::typeText(editor(3), L"changed");
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kTablesPage));
  EXPECT_THAT(stored("t"), ElementsAre("'changed'", "'two'", "'three'"));
}

TEST_F(FormPageTest, LookingAtRecordsChangesNothing) {
  makeDatabase(path(),
               {kEveryType, L"INSERT INTO [Every Type] VALUES (1, 10, 1.23456789, 'a', 'b', 7, '2001-03-09')",
                L"INSERT INTO [Every Type] VALUES (null, null, null, null, null, null, null)"});
  showForm();
  for (const int id : {ID_RECORD_NEXT, ID_RECORD_PREVIOUS, ID_RECORD_LAST, ID_RECORD_FIRST}) {
    command(static_cast<WORD>(id));
  }
  close();
  EXPECT_THAT(stored("d"), ElementsAre("1.23456789", "NULL"));
  EXPECT_THAT(stored("b"), ElementsAre("7", "NULL"));
  EXPECT_THAT(stored("s"), ElementsAre("1", "NULL"));
}

TEST_F(FormPageTest, TheRowChosenInTheGridIsOnTheForm) {
  makeThreeRecords();
  showForm();
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kListPage));
  ASSERT_TRUE(remote::selectItem(remote::recordGrid(main()), 2));
  EXPECT_EQ(position(), L"    3 / 3");
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kFormPage));
  EXPECT_EQ(shown(3), L"three");
}

TEST_F(FormPageTest, EditRecordGoesFromTheGridToTheForm) {
  makeThreeRecords();
  showForm();
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kListPage));
  ASSERT_TRUE(remote::selectItem(remote::recordGrid(main()), 1));
  command(ID_RECORD_EDIT);
  EXPECT_EQ(remote::selectedTab(remote::tabControl(main())), OpenedDatabase::kFormPage);
  EXPECT_EQ(shown(3), L"two");
}

TEST_F(FormPageTest, AnEmptyTableSaysThatThereAreNoRecords) {
  makeDatabase(path(), {kEveryType});
  showForm();
  EXPECT_EQ(position(), L"No Records");
  EXPECT_EQ(editor(0), nullptr);
  command(ID_RECORD_NEXT);
  command(ID_RECORD_LAST);
  EXPECT_EQ(position(), L"No Records");
  close();
}

TEST_F(FormPageTest, ClosingTheDatabaseTakesTheFormAndTheBarsAway) {
  makeThreeRecords();
  showForm();
  EXPECT_NE(remote::control(main(), kRebar), nullptr);
  remote::typeText(editor(3), L"changed");
  command(ID_DATABASE_CLOSE);
  EXPECT_EQ(remote::control(main(), kRebar), nullptr);
  EXPECT_EQ(remote::shownPage(main()), nullptr);
  EXPECT_THAT(stored("t"), ElementsAre("'changed'", "'two'", "'three'"));
  command(ID_RECORD_NEXT);
  command(ID_DATABASE_CLOSE);
  close();
}

TEST_F(FormPageTest, TheKeyboardStaysInItsEditorWhenTheZoomChanges) {
  constexpr WPARAM kZoom200 = 0xE030;
  constexpr WPARAM kZoom100 = 0xE010;
  makeThreeRecords();
  showForm();
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kListPage));
  ASSERT_TRUE(remote::switchToPage(main(), OpenedDatabase::kFormPage));
  ASSERT_EQ(remote::focus(main()), editor(0));
  for (const WPARAM zoom : {kZoom200, kZoom100}) {
    SendMessageW(main(), WM_SYSCOMMAND, zoom, 0);
    EXPECT_EQ(remote::focus(main()), editor(0));
    remote::pressKey(remote::focus(main()), VK_DOWN);
    ASSERT_TRUE(remote::awaitPosted(remote::recordGrid(main())));
    EXPECT_EQ(position(), L"    1 / 3");
  }
}

TEST_F(FormPageTest, AllFieldsOfAWideTableAreShownAndStored) {
  std::wstring create = L"CREATE TABLE 'Every Type' (f0 Integer";
  for (int field = 1; field < 120; ++field) create += L", f" + std::to_wstring(field) + L" Integer";
  makeDatabase(path(), {(create + L")").c_str(), L"INSERT INTO [Every Type] (f0) VALUES (0)"});
  showForm();
  for (int field = 0; field < 120; ++field) {
    ASSERT_NE(editor(field), nullptr) << field;
    SetWindowTextW(editor(field), std::to_wstring(field * 7).c_str());
  }
  // Typed once, so that the record counts as changed.
  remote::typeText(editor(0), L"1000");
  close();
  EXPECT_THAT(stored("f0"), ElementsAre("1000"));
  for (const int field : {1, 49, 50, 51, 119}) {
    EXPECT_THAT(stored(("f" + std::to_string(field)).c_str()), ElementsAre(std::to_string(field * 7)));
  }
}

TEST_F(FormPageTest, TheDateIsChosenInTheCalendar) {
  makeThreeRecords();
  showForm();
  const HWND date = remote::control(main(), kFirstDateEditor);
  ASSERT_NE(date, nullptr);
  PostMessageW(date, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
  PostMessageW(date, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  const DWORD process = remote::processOf(main());
  HWND calendar = nullptr;
  ASSERT_TRUE(remote::waitUntil([&] { return (calendar = remote::messageBox(process)) != nullptr; }));
  ASSERT_NE(remote::control(calendar, 40100), nullptr);
  PostMessageW(calendar, WM_COMMAND, 40101, 0);
  ASSERT_TRUE(remote::waitUntil([&] { return remote::text(date) == L"None"; }));
  command(ID_RECORD_NEXT);
  EXPECT_EQ(stored("w").front(), "NULL");
}

}  // namespace
