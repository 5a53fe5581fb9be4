// F1, from wherever the keyboard is.
#include "dialogs/table/new_table_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/remote/user.h"
#include "tests/ui/remote/user_input.h"
#include "tests/ui/support/viewer_test.h"
#include "views/form/form_ids.h"

namespace {

class HelpKeyTest : public ViewerTest {
 protected:
  void SetUp() override {
    ViewerTest::SetUp();
    installViewer();
    makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Text, b Bit, c Datetime, d Integer)",
                                 L"INSERT INTO T VALUES ('one', 1, '2001-03-09', 5)"});
    program_ = std::make_unique<RunningProgram>(file("program.exe"), quoted(file("a.cdb")));
    user_ = std::make_unique<User>(User::Hand::keyboard, *program_);
    ASSERT_NE(program_->tablesList(), nullptr);
  }
  void TearDown() override {
    user_.reset();
    program_.reset();
    ViewerTest::TearDown();
  }

  User& user() { return *user_; }
  HWND main() const { return user_->main(); }
  HWND open(int command, const wchar_t* title) {
    PostMessageW(main(), WM_COMMAND, static_cast<WPARAM>(command), 0);
    return user_->dialog(title);
  }
  void expectHelp(const char* where) const {
    userinput::press(VK_F1);
    EXPECT_EQ(commandLineOfViewer(), L"\\Windows\\file:Quivane.htm#Main_Contents") << where;
    forgetViewer();
  }

 private:
  std::unique_ptr<RunningProgram> program_;
  std::unique_ptr<User> user_;
};

TEST_F(HelpKeyTest, OnEachPage) {
  constexpr const char* kPages[] = {"Tables", "Form", "List", "Queries"};
  for (int page = 0; page < 4; ++page) {
    user().showPage(page);
    expectHelp(kPages[page]);
  }
}

TEST_F(HelpKeyTest, WithoutADatabase) {
  PostMessageW(main(), WM_COMMAND, ID_DATABASE_CLOSE, 0);
  ASSERT_TRUE(remote::waitUntil([this] { return remote::control(main(), 1000) == nullptr; }));
  expectHelp("no database");
}

TEST_F(HelpKeyTest, InEachEditorOfAForm) {
  user().showPage(OpenedDatabase::kFormPage);
  for (const int editor :
       {kFirstTextEditorId, kFirstCheckBoxId, kFirstDateEditorId, kFirstTextEditorId + 1}) {
    user().goTo(editor);
    expectHelp(std::to_string(editor).c_str());
  }
}

TEST_F(HelpKeyTest, InDialogs) {
  struct Row {
    int page;
    int command;
    const wchar_t* title;
    const char* name;
  };
  constexpr Row kDialogs[] = {
      {OpenedDatabase::kTablesPage, ID_TABLE_NEW, L"New Table", "New Table"},
      {OpenedDatabase::kTablesPage, ID_OPTIONS, L"Options", "Options"},
      {OpenedDatabase::kTablesPage, ID_EXPORT, L"Export", "Export"},
      {OpenedDatabase::kTablesPage, ID_FIND_EVERYWHERE, L"Find in All Tables", "Find in All Tables"},
      {OpenedDatabase::kTablesPage, ID_TABLE_DELETE, L"Quivane", "a question"},
      {OpenedDatabase::kFormPage, ID_FIND, L"Find", "Find"},
      {OpenedDatabase::kFormPage, ID_ABOUT, L"About Quivane for Pocket PC", "About"},
      {OpenedDatabase::kQueriesPage, ID_QUERY_NEW, L"Query", "Query"}};
  for (const Row& row : kDialogs) {
    user().showPage(row.page);
    const HWND dialog = open(row.command, row.title);
    expectHelp(row.name);
    user().leave(dialog);
  }
}

}  // namespace
