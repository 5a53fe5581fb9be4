// Stories of databases, tables and queries.
#include <fstream>

#include "dialogs/query/query_dialog_ids.h"
#include "dialogs/table/new_field_ids.h"
#include "dialogs/table/new_table_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/remote/user_input.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const wchar_t* kPeople = L"CREATE TABLE 'People' (Name VarChar(20), Born Integer)";

class DesignStory : public StoryTest {
 protected:
  /// Adds a field to the New Table dialog and waits for its row.
  static void addField(User& user, HWND design, const std::wstring& name, int type) {
    const HWND fields = remote::control(design, IDC_NEW_TABLE_FIELDS);
    const int before = remote::itemCount(fields);
    user.press(design, IDC_NEW_TABLE_ADD);
    const HWND question = user.dialog(L"New Field");
    user.fill(question, IDC_NEW_FIELD_NAME, name);
    user.pick(question, IDC_NEW_FIELD_TYPE, type);
    user.accept(question);
    ASSERT_TRUE(remote::waitUntil([=] { return remote::itemCount(fields) == before + 1; }));
  }
  static std::vector<std::wstring> fieldNames(HWND design) {
    return remote::itemTexts(remote::control(design, IDC_NEW_TABLE_FIELDS));
  }
  static void awaitNames(const User& user, const std::vector<std::wstring>& names) {
    ASSERT_TRUE(remote::waitUntil([&] { return remote::itemTexts(remote::shownPage(user.main())) == names; }))
        << testing::PrintToString(remote::itemTexts(remote::shownPage(user.main())));
  }
};

TEST_P(DesignStory, ADatabaseIsMade) {
  User& user = launch();
  user.choose(ID_DATABASE_NEW);
  user.chooseFile(path());
  awaitDatabase();
  EXPECT_EQ(remote::text(user.main()), L"Quivane");
  EXPECT_EQ(remote::selectedTab(remote::tabControl(user.main())), OpenedDatabase::kTablesPage);
  end();
  EXPECT_TRUE(std::filesystem::exists(path()));
}

TEST_P(DesignStory, ATableWithAFieldOfEachTypeIsDesigned) {
  makeDatabase(path(), {});
  User& user = start();
  user.useButton(ID_TABLE_NEW, VK_INSERT);
  const HWND design = user.dialog(L"New Table");
  user.fill(design, IDC_NEW_TABLE_NAME, L"Every Type");
  const std::vector<std::wstring> names = {L"a", L"b", L"c", L"d", L"e", L"f", L"with blank"};
  for (int type = 0; type < 7; ++type)
    ASSERT_NO_FATAL_FAILURE(addField(user, design, names[static_cast<std::size_t>(type)], type));
  ASSERT_NO_FATAL_FAILURE(addField(user, design, L"too much", 0));
  user.pick(design, IDC_NEW_TABLE_FIELDS, 7);
  user.press(design, IDC_NEW_TABLE_REMOVE);
  ASSERT_TRUE(remote::waitUntil([=] { return fieldNames(design).size() == 7; }));
  user.pick(design, IDC_NEW_TABLE_FIELDS, 1);
  user.press(design, IDC_NEW_TABLE_UP);
  ASSERT_TRUE(remote::waitUntil([=] { return fieldNames(design).front() == L"b"; }));
  user.accept(design);
  awaitNames(user, {L"Every Type"});
  end();
  EXPECT_THAT(stored("SELECT name FROM pragma_table_info('Every Type')"),
              ElementsAre("b", "a", "c", "d", "e", "f", "with blank"));
  EXPECT_THAT(stored("SELECT count(DISTINCT upper(type)) FROM pragma_table_info('Every Type')"),
              ElementsAre("7"));
}

TEST_P(DesignStory, ATableIsDeleted) {
  makeDatabase(path(), {kPeople, L"CREATE TABLE 'Pets' (Name Text)"});
  User& user = start();
  user.pickItem(1);
  user.choose(ID_TABLE_DELETE);
  user.answer(L"Quivane", L"Are you sure you want to delete table 'Pets' ?", IDNO);
  user.useButton(ID_TABLE_DELETE, VK_DELETE);
  user.answer(L"Quivane", L"Are you sure you want to delete table 'Pets' ?", IDYES);
  awaitNames(user, {L"People"});
  end();
  EXPECT_THAT(stored("SELECT name FROM sqlite_master"), ElementsAre("People"));
}

TEST_P(DesignStory, AQueryIsWrittenCheckedSavedEditedAndDeleted) {
  makeDatabase(path(), {kPeople, L"INSERT INTO People VALUES ('Ada', 1815)"});
  User& user = start();
  user.showPage(OpenedDatabase::kQueriesPage);
  user.useButton(ID_QUERY_NEW, VK_INSERT);
  HWND editor = user.dialog(L"Query");
  user.fill(editor, IDC_QUERY_NAME, L"born");
  user.fill(editor, IDC_QUERY_SQL, L"SELECT Nothing FROM People");
  user.press(editor, IDC_QUERY_CHECK);
  user.answer(L"Quivane", L"near \"Nothing\": syntax error", IDOK);
  user.answer(L"Quivane", L"Query does not return records", IDOK);
  user.fill(editor, IDC_QUERY_SQL, L"SELECT ");
  user.pick(editor, IDC_QUERY_FIELDS, 0);
  user.press(editor, IDC_QUERY_INSERT_FIELD);
  const HWND sql = remote::control(editor, IDC_QUERY_SQL);
  ASSERT_TRUE(remote::waitUntil([=] { return remote::focus(sql) == sql; }));
  userinput::type(L" FROM ");
  user.press(editor, IDC_QUERY_INSERT_TABLE);
  ASSERT_TRUE(remote::waitUntil([=] { return remote::text(sql) == L"SELECT Born FROM [People]"; }))
      << testing::PrintToString(remote::text(sql));
  user.press(editor, IDC_QUERY_CHECK);
  user.answer(L"Quivane", L"Query is OK", IDOK);
  user.accept(editor);
  awaitNames(user, {L"born"});
  EXPECT_THAT(stored("SELECT QueryName || ': ' || SQL FROM QuivaneQueries"),
              ElementsAre("born: SELECT Born FROM [People]"));
  user.showPage(OpenedDatabase::kListPage);
  EXPECT_EQ(remote::itemText(remote::recordGrid(user.main()), 0), L"1815");
  user.showPage(OpenedDatabase::kQueriesPage);
  user.pickItem(0);
  user.choose(ID_QUERY_EDIT);
  editor = user.dialog(L"Query");
  user.fill(editor, IDC_QUERY_NAME, L"names");
  user.fill(editor, IDC_QUERY_SQL, L"SELECT Name FROM People");
  user.accept(editor);
  awaitNames(user, {L"names"});
  EXPECT_THAT(stored("SELECT QueryName || ': ' || SQL FROM QuivaneQueries"),
              ElementsAre("names: SELECT Name FROM People"));
  user.choose(ID_QUERY_DELETE);
  user.answer(L"Quivane", L"Are you sure you want to delete query 'names' ?", IDYES);
  awaitNames(user, {});
  end();
  EXPECT_THAT(stored("SELECT QueryName FROM QuivaneQueries"), IsEmpty());
}

TEST_P(DesignStory, AQueryThatIsLeftIsNotSaved) {
  makeDatabase(path(), {kPeople});
  User& user = start();
  user.showPage(OpenedDatabase::kQueriesPage);
  user.useButton(ID_QUERY_NEW, VK_INSERT);
  const HWND editor = user.dialog(L"Query");
  user.fill(editor, IDC_QUERY_NAME, L"born");
  user.leave(editor);
  end();
  EXPECT_THAT(stored("SELECT name FROM sqlite_master"), ElementsAre("People"));
}

TEST_P(DesignStory, ADatabaseIsDeletedButNotTheOpenOne) {
  makeDatabase(path(), {kPeople});
  makeDatabase(file("other.cdb"), {kPeople});
  User& user = start();
  user.choose(ID_DATABASE_DELETE);
  user.chooseFile(path());
  user.answer(L"Quivane", L"Database " + path().wstring() + L" cannot be deleted\nas it is currently open!",
              IDOK);
  user.choose(ID_DATABASE_DELETE);
  user.chooseFile(file("other.cdb"));
  const std::wstring question =
      L"Are you sure you want to delete database file " + file("other.cdb").wstring() + L" ?";
  user.answer(L"Quivane", question, IDNO);
  EXPECT_TRUE(std::filesystem::exists(file("other.cdb")));
  user.choose(ID_DATABASE_DELETE);
  user.chooseFile(file("other.cdb"));
  user.answer(L"Quivane", question, IDYES);
  EXPECT_TRUE(remote::waitUntil([this] { return !std::filesystem::exists(file("other.cdb")); }));
  end();
  EXPECT_TRUE(std::filesystem::exists(path()));
}

TEST_P(DesignStory, ATextFileIsNotOpenedAndTheReasonIsTold) {
  const std::filesystem::path text = file("letter.cdb");
  std::ofstream(text) << std::string(2000, 'x');
  makeDatabase(path(), {kPeople});
  User& user = start();
  user.choose(ID_DATABASE_OPEN);
  user.chooseFile(text);
  const HWND box = user.dialog(L"Quivane");
  const std::wstring shown = remote::messageBoxText(box);
  EXPECT_THAT(shown, testing::StartsWith(L"Database " + text.wstring() + L" could not be opened.\n"));
  EXPECT_GT(shown.substr(shown.find(L'\n')).size(), 10u);
  user.answer(L"Quivane", shown, IDOK);
  user.choose(ID_DATABASE_OPEN);
  user.chooseFile(path());
  awaitDatabase();
  awaitNames(user, {L"People"});
  end();
  EXPECT_EQ(std::filesystem::file_size(text), 2000u);
}

TELL_WITH_BOTH_HANDS(DesignStory);

}  // namespace
