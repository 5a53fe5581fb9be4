// Letters that are typed over the lists of names of the real program.
#include <windows.h>

#include <chrono>
#include <string>

#include "resources/command_ids.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/support/ui_test.h"

namespace {

class TypedNameTest : public UiTest {
 protected:
  void SetUp() override {
    makeDatabase(
        file("a.cdb"),
        {L"CREATE TABLE 'Authors' (Name Text, Place Text, Year Integer)",
         L"INSERT INTO Authors VALUES ('Ada', 'Ankara', 3), ('Bo', 'Zagreb', 1)",
         L"CREATE TABLE 'Members' (m Text)", L"INSERT INTO Members VALUES ('a member')",
         L"CREATE TABLE 'Loans' (l Text)", L"CREATE TABLE 'Lists' (x Text)",
         L"CREATE TABLE '\u00C4mter' (o Text)", L"CREATE TABLE '\u03A9\u03BC\u03AD\u03B3\u03B1' (o Text)",
         L"CREATE TABLE '\u56F3\u66F8\u9928' (j Text)", L"CREATE TABLE '\u56F3\u8868' (z Text)",
         L"CREATE TABLE 'QuivaneQueries' (QueryName Text, SQL Text)",
         L"INSERT INTO QuivaneQueries VALUES ('all authors', 'Select Name from Authors'), "
         L"('young members', 'Select m from Members'), ('lists', 'Select x from Lists')"});
  }

  static void type(HWND list, const std::wstring& letters) {
    for (const wchar_t letter : letters) PostMessageW(list, WM_CHAR, static_cast<WPARAM>(letter), 1);
  }
  static bool comesTo(HWND list, const wchar_t* name,
                      std::chrono::milliseconds patience = std::chrono::seconds(10)) {
    return remote::waitUntil(
        [=] {
          const int selected = remote::selectedItem(list);
          return selected >= 0 && remote::itemText(list, selected) == name;
        },
        patience);
  }
  /// Letters that follow each other are one text, unless so much time has passed between them that they are
  /// not: that may be the machine's doing.
  static bool comesToByOneText(HWND list, const std::wstring& letters, const wchar_t* name) {
    for (int tries = 0; tries < 10; ++tries) {
      remote::selectItem(list, 0);
      type(list, letters);
      if (comesTo(list, name, std::chrono::seconds(2))) return true;
    }
    return false;
  }
};

TEST_F(TypedNameTest, ALetterChoosesTheTableWhoseRecordsAreThenShown) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND list = opened.tables();
  ASSERT_NE(list, nullptr);
  type(list, L"m");
  EXPECT_TRUE(comesTo(list, L"Members"));
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  const HWND grid = remote::recordGrid(opened.main());
  EXPECT_EQ(columnTitles(grid), std::vector<std::wstring>{L"m"});
  EXPECT_EQ(remote::itemText(grid, 0), L"a member");
}

TEST_F(TypedNameTest, LettersThatFollowEachOtherTellTablesApart) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND list = opened.tables();
  ASSERT_NE(list, nullptr);
  EXPECT_TRUE(comesToByOneText(list, L"lo", L"Loans"));
  EXPECT_TRUE(comesToByOneText(list, L"li", L"Lists"));
}

TEST_F(TypedNameTest, LettersOfEveryAlphabetDo) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND list = opened.tables();
  ASSERT_NE(list, nullptr);
  type(list, L"\u00E4");
  EXPECT_TRUE(comesTo(list, L"\u00C4mter"));
  EXPECT_TRUE(comesToByOneText(list, L"\u03C9\u03BC", L"\u03A9\u03BC\u03AD\u03B3\u03B1"));
  EXPECT_TRUE(comesToByOneText(list, L"\u56F3\u66F8", L"\u56F3\u66F8\u9928"));
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  EXPECT_EQ(columnTitles(remote::recordGrid(opened.main())), std::vector<std::wstring>{L"j"});
}

TEST_F(TypedNameTest, ALetterThatIsTypedAgainGoesOnToTheNextName) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND list = opened.tables();
  ASSERT_NE(list, nullptr);
  bool isNext = false;
  for (int tries = 0; tries < 10 && !isNext; ++tries) {
    ASSERT_TRUE(remote::selectItem(list, 0));
    type(list, L"\u56F3\u56F3");
    isNext = comesTo(list, L"\u56F3\u8868", std::chrono::seconds(2));
  }
  EXPECT_TRUE(isNext);
}

TEST_F(TypedNameTest, WhatNoTableBeginsWithLeavesTheChoice) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND list = opened.tables();
  ASSERT_NE(list, nullptr);
  type(list, L"m");
  ASSERT_TRUE(comesTo(list, L"Members"));
  type(list, L"q");
  SendMessageW(list, WM_NULL, 0, 0);
  ASSERT_TRUE(remote::awaitPosted(list));
  EXPECT_TRUE(comesTo(list, L"Members"));
}

TEST_F(TypedNameTest, ALetterChoosesTheQueryThatIsThenRun) {
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  const HWND list = remote::shownPage(opened.main());
  ASSERT_EQ(remote::itemCount(list), 3);
  type(list, L"y");
  EXPECT_TRUE(comesTo(list, L"young members"));
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
  EXPECT_EQ(remote::itemText(remote::recordGrid(opened.main()), 0), L"a member");
}

/// The menu of the columns, whose letter leads to that of the column, where "A" orders by it.
TEST_F(TypedNameTest, ALetterChoosesTheColumnThatIsOrderedBy) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  const DWORD process = opened.program().processId();
  PostMessageW(opened.main(), WM_COMMAND, ID_ORDER_COLUMN, 0);
  ASSERT_TRUE(remote::waitUntil([=] { return remote::popups(process).size() == 1; }));
  const std::vector<HWND> columns = remote::popups(process);
  PostMessageW(opened.main(), WM_CHAR, L'y', 1);
  ASSERT_TRUE(remote::waitUntil([&] {
    const std::vector<HWND> now = remote::popups(process);
    return !now.empty() && now != columns;
  }));
  PostMessageW(opened.main(), WM_CHAR, L'a', 1);
  EXPECT_TRUE(
      remote::waitUntil([&] { return remote::itemText(remote::recordGrid(opened.main()), 0) == L"Bo"; }));
}

}  // namespace
