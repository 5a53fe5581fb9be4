// The dialogs of the real program by the Tab key: the order is that in which the eye reads them, every
// control is reached, each shows that it has the keyboard, and F1 opens the manual from any of them.
#include <windows.h>

#include <algorithm>
#include <memory>

#include "base/settings/options.h"
#include "base/settings/settings_store.h"
#include "dialogs/exchange/import_ids.h"
#include "dialogs/table/new_table_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/form/sample_pictures.h"
#include "tests/ui/remote/focus_walk.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/remote/user.h"
#include "tests/ui/remote/user_input.h"
#include "tests/ui/support/ui_test.h"
#include "views/form/form_ids.h"

namespace {

constexpr int kAuthorEditor = kFirstTextEditorId + 1;
constexpr int kPictureEditor = kFirstTextEditorId + 2;
constexpr int kPagesEditor = kFirstTextEditorId + 3;

class KeyboardWalkTest : public UiTest {
 protected:
  void SetUp() override {
    forgetSettings();
    ASSERT_TRUE(
        SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions));
    makeDatabase(
        file("a.cdb"),
        {L"CREATE TABLE 'Authors' (AuthorID Varchar (9) PRIMARY KEY, '\u05E9\u05DD' Text)",
         L"INSERT INTO Authors VALUES ('a', 'Zoe'), ('b', 'Bo')",
         L"CREATE TABLE 'Books' (Title Text, AuthorID Varchar (9) REFERENCES Authors (AuthorID), Lent Bit, "
         L"Bought Datetime, Picture Image, Pages Integer)",
         (L"INSERT INTO Books VALUES ('One', 'a', 1, '2001-03-09', x'" +
          std::wstring(samples::kPng.begin(), samples::kPng.end()) + L"', 9), ('Two', 'b', 0, NULL, NULL, 8)")
             .c_str()});
    program_ = std::make_unique<RunningProgram>(quoted(file("a.cdb")));
    user_ = std::make_unique<User>(User::Hand::keyboard, *program_);
    ASSERT_NE(program_->tablesList(), nullptr);
    user_->pickItem(1);
  }
  void TearDown() override {
    user_.reset();
    program_.reset();
    forgetSettings();
  }

  User& user() { return *user_; }
  HWND main() const { return user_->main(); }

  HWND open(int command, const wchar_t* title) {
    PostMessageW(main(), WM_COMMAND, static_cast<WPARAM>(command), 0);
    return user_->dialog(title);
  }

  /// Both ways through a dialog.
  static void expectReadsByTab(HWND dialog) {
    SCOPED_TRACE(testing::PrintToString(remote::text(dialog)));
    ASSERT_TRUE(remote::shownArea(remote::mainWindow()));
    const std::vector<HWND> read = focuswalk::controlsAsRead(dialog);
    ASSERT_FALSE(read.empty());
    if (read.size() == 1) {
      EXPECT_EQ(focuswalk::controlWithFocus(dialog), read.front());
      return;
    }
    expectOrder(focuswalk::walk(dialog), read);
    expectOrder(focuswalk::walk(dialog, VK_SHIFT), {read.rbegin(), read.rend()});
  }

 private:
  std::unique_ptr<RunningProgram> program_;
  std::unique_ptr<User> user_;

  static void forgetSettings() { RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot); }

  static std::string list(const std::vector<HWND>& controls) {
    std::string text;
    for (const HWND control : controls) text += "\n  " + focuswalk::described(control);
    return text;
  }

  /// The same controls in the same order, wherever it begins.
  static void expectOrder(const std::vector<focuswalk::Stop>& stops, const std::vector<HWND>& read) {
    std::vector<HWND> found;
    for (const focuswalk::Stop& stop : stops) {
      found.push_back(stop.control);
      EXPECT_TRUE(stop.isSeen) << focuswalk::described(stop.control)
                               << " does not show that it has the keyboard";
    }
    const auto begin = std::ranges::find(found, read.front());
    ASSERT_NE(begin, found.end()) << "not reached: " << focuswalk::described(read.front());
    std::rotate(found.begin(), begin, found.end());
    EXPECT_EQ(found, read) << "by the Tab key:" << list(found) << "\nas the eye reads:" << list(read);
  }
};

TEST_F(KeyboardWalkTest, TheSmallDialogs) {
  user().showPage(OpenedDatabase::kFormPage);
  struct Row {
    int command;
    const wchar_t* title;
  };
  constexpr Row kDialogs[] = {{ID_FIND, L"Find"},
                              {ID_RECORD_NUMBER, L"Move to Record..."},
                              {ID_DATABASE_INFO, L"Database Information"},
                              {ID_PASSWORD_CHANGE, L"Change Password"},
                              {ID_ABOUT, L"About Quivane for Pocket PC"}};
  for (const Row& row : kDialogs) {
    const HWND dialog = open(row.command, row.title);
    expectReadsByTab(dialog);
    user().leave(dialog);
  }
}

TEST_F(KeyboardWalkTest, ANewTableAndANewField) {
  const HWND table = open(ID_TABLE_NEW, L"New Table");
  expectReadsByTab(table);
  user().press(table, IDC_NEW_TABLE_ADD);
  const HWND field = user().dialog(L"New Field");
  expectReadsByTab(field);
  user().leave(field);
  user().leave(table);
}

TEST_F(KeyboardWalkTest, AFilter) {
  user().showPage(OpenedDatabase::kListPage);
  const HWND text = open(ID_FILTER_ALL, L"Containing");
  expectReadsByTab(text);
  user().leave(text);
}

TEST_F(KeyboardWalkTest, TheQueries) {
  user().showPage(OpenedDatabase::kQueriesPage);
  const HWND query = open(ID_QUERY_NEW, L"Query");
  expectReadsByTab(query);
  user().leave(query);
}

TEST_F(KeyboardWalkTest, TheOptions) {
  const HWND sheet = open(ID_OPTIONS, L"Options");
  for (int page = 0; page < 4; ++page) {
    ASSERT_TRUE(remote::turnSheet(sheet, page));
    expectReadsByTab(sheet);
  }
  user().leave(sheet);
}

TEST_F(KeyboardWalkTest, TheSearchInAllTables) {
  const HWND dialog = open(ID_FIND_EVERYWHERE, L"Find in All Tables");
  expectReadsByTab(dialog);
  user().leave(dialog);
}

TEST_F(KeyboardWalkTest, TheFormerStates) {
  const HWND dialog = open(ID_GO_BACK_TO, L"Go Back To");
  expectReadsByTab(dialog);
  user().leave(dialog);
}

TEST_F(KeyboardWalkTest, FilesInAndOut) {
  const HWND out = open(ID_EXPORT, L"Export");
  expectReadsByTab(out);
  user().leave(out);
  testsupport::writeFile(file("guests.csv"), "Name;Zip\nAda;00123\n");
  PostMessageW(main(), WM_COMMAND, ID_IMPORT, 0);
  user().chooseFile(file("guests.csv"));
  const HWND in = user().dialog(L"Import");
  expectReadsByTab(in);
  user().press(in, IDC_IMPORT_MORE);
  const HWND more = user().dialog(L"Import Details");
  expectReadsByTab(more);
  user().leave(more);
  user().leave(in);
}

TEST_F(KeyboardWalkTest, WhatAFieldOpens) {
  user().showPage(OpenedDatabase::kFormPage);
  userinput::press(VK_F2);
  const HWND zoom = user().dialog(L"Title");
  expectReadsByTab(zoom);
  user().leave(zoom);
  user().goTo(kAuthorEditor);
  userinput::press(VK_F4);
  const HWND lookUp = user().dialog(L"AuthorID");
  expectReadsByTab(lookUp);
  user().leave(lookUp);
  user().goTo(kPictureEditor);
  userinput::press(VK_F2);
  const HWND bytes = user().dialog(L"Picture");
  expectReadsByTab(bytes);
  user().leave(bytes);
}

/// Whether its letters are in the font of menus or not.
TEST_F(KeyboardWalkTest, AColumnByTheFirstLetterOfItsName) {
  user().pickItem(0);
  user().showPage(OpenedDatabase::kListPage);
  const HWND grid = remote::recordGrid(main());
  ASSERT_TRUE(remote::waitUntil([=] { return remote::itemText(grid, 0, 1) == L"Zoe"; }));
  const DWORD process = remote::processOf(main());
  const auto order = [&](const wchar_t* letter, WORD direction) {
    PostMessageW(main(), WM_COMMAND, ID_ORDER_COLUMN, 0);
    ASSERT_TRUE(remote::waitUntil([=] { return remote::popups(process).size() == 1; }));
    const HWND columns = remote::popups(process).front();
    userinput::type(letter);
    ASSERT_TRUE(remote::waitUntil([=] {
      const std::vector<HWND> open = remote::popups(process);
      return open.size() == 1 && open.front() != columns;
    })) << "no menu of the column opens";
    userinput::press(direction);
    ASSERT_TRUE(remote::waitUntil([=] { return remote::popups(process).empty(); }));
  };
  order(L"\u05E9", 'A');
  EXPECT_TRUE(remote::waitUntil([=] { return remote::itemText(grid, 0, 1) == L"Bo"; }));
  order(L"a", 'A');
  EXPECT_TRUE(remote::waitUntil([=] { return remote::itemText(grid, 0, 1) == L"Zoe"; }));
}

/// A field of numbers tells the Tab key that it takes numbers only, and then lets it go on.
TEST_F(KeyboardWalkTest, TheFieldsOfAForm) {
  user().showPage(OpenedDatabase::kFormPage);
  const HWND form = remote::shownPage(main());
  ASSERT_NE(form, nullptr);
  user().goTo(kPagesEditor);
  const HWND pages = remote::control(main(), kPagesEditor);
  for (const auto& [held, next] :
       {std::pair{WORD{0}, kFirstTextEditorId}, std::pair<WORD, int>{VK_SHIFT, kPictureEditor}}) {
    user().goTo(kPagesEditor);
    ASSERT_EQ(remote::focus(main()), pages);
    userinput::press(VK_TAB, held);
    user().answer(L"Quivane", L"Only numbers are allowed\nField 'Pages'", IDOK);
    EXPECT_TRUE(remote::waitUntil([&] { return remote::focus(main()) == remote::control(main(), next); }))
        << next;
  }
}

}  // namespace
