// The commands for databases, tables and saved queries.
#include <fstream>
#include <iterator>

#include "resources/command_ids.h"
#include "tests/support/exclusive_lock.h"
#include "tests/ui/document/document_fixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class DocumentFilesTest : public DocumentTest {
 protected:
  void writeText(const std::filesystem::path& file) { std::ofstream(file) << "this is a shopping list\n"; }
  void choose(const std::filesystem::path& file) { window().prompts.file = String(file.c_str()); }
};

TEST_F(DocumentFilesTest, OpenTakesTheChosenFileInPlaceOfTheOpenOne) {
  makeDatabase(file("other.cdb"), {L"CREATE TABLE 'Other' (a Integer)"});
  open();
  choose(file("other.cdb"));
  EXPECT_EQ(document().openDatabaseCommand(), CommandResult::done);
  EXPECT_STREQ(document().databasePath().text(), file("other.cdb").c_str());
  EXPECT_THAT(window().tables->items, ElementsAre(L"Other"));
}

TEST_F(DocumentFilesTest, ACancelledOpenLeavesTheDatabaseOpen) {
  open();
  EXPECT_EQ(document().openDatabaseCommand(), CommandResult::cancelled);
  EXPECT_TRUE(document().isDatabaseOpen());
}

TEST_F(DocumentFilesTest, AFileThatIsNoDatabaseIsRefusedWithTheReason) {
  writeText(file("text.cdb"));
  open();
  choose(file("text.cdb"));
  EXPECT_EQ(document().openDatabaseCommand(), CommandResult::failed);
  EXPECT_FALSE(document().isDatabaseOpen());
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, HasSubstr(L"text.cdb could not be opened.\n"));
  EXPECT_GT(messages()[0].text.size(), messages()[0].text.find(L'\n') + 10) << "the reason is missing";
}

TEST_F(DocumentFilesTest, NewMakesTheFileAndOpensIt) {
  open();
  choose(file("made.cdb"));
  EXPECT_EQ(document().newDatabaseCommand(), CommandResult::done);
  EXPECT_TRUE(std::filesystem::exists(file("made.cdb")));
  EXPECT_TRUE(document().isDatabaseOpen());
  EXPECT_THAT(window().tables->items, IsEmpty());
}

TEST_F(DocumentFilesTest, NewClosesTheDatabaseAlsoWhenItIsCancelled) {
  open();
  EXPECT_EQ(document().newDatabaseCommand(), CommandResult::cancelled);
  EXPECT_FALSE(document().isDatabaseOpen());
}

TEST_F(DocumentFilesTest, NewReplacesTheFileThatWasChosenAndLeavesNothingBeside) {
  open();
  choose(path());
  EXPECT_EQ(document().newDatabaseCommand(), CommandResult::done);
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_THAT(window().tables->items, IsEmpty());
  EXPECT_STREQ(document().databasePath().text(), path().c_str());
  document().closeDatabase();
  const std::filesystem::directory_iterator folder(path().parent_path());
  EXPECT_EQ(std::distance(begin(folder), end(folder)), 1);
}

TEST_F(DocumentFilesTest, WhatCantBeReplacedStaysAndTheReasonIsTrue) {
  std::filesystem::create_directory(file("taken.cdb"));
  writeText(file("taken.cdb") / "list.txt");
  choose(file("taken.cdb"));
  EXPECT_EQ(document().newDatabaseCommand(), CommandResult::failed);
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, HasSubstr(L"could not be created.\n"));
  EXPECT_THAT(messages()[0].text, testing::Not(HasSubstr(L"recordset")));
  EXPECT_GT(messages()[0].text.size(), messages()[0].text.find(L'\n') + 10) << "the reason is missing";
  EXPECT_TRUE(std::filesystem::exists(file("taken.cdb") / "list.txt"));
  const std::filesystem::directory_iterator folder(path().parent_path());
  EXPECT_EQ(std::distance(begin(folder), end(folder)), 2) << "what was made beside it is left";
}

TEST_F(DocumentFilesTest, WhereThereIsNoFolderNewSaysSo) {
  choose(file("nowhere") / "made.cdb");
  EXPECT_EQ(document().newDatabaseCommand(), CommandResult::failed);
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, HasSubstr(L"could not be created.\n"));
  EXPECT_THAT(messages()[0].text, testing::Not(HasSubstr(L"recordset")));
}

TEST_F(DocumentFilesTest, TheOpenFileIsNotDeleted) {
  open();
  choose(path());
  EXPECT_EQ(document().deleteDatabaseCommand(), CommandResult::failed);
  EXPECT_THAT(messages(),
              ElementsAre(FakePrompts::Message{
                  PromptOwner::none,
                  L"Database " + path().wstring() + L" cannot be deleted\nas it is currently open!",
                  L"Quivane", Notice::remark}));
  EXPECT_TRUE(std::filesystem::exists(path()));
}

TEST_F(DocumentFilesTest, TheOpenFileIsNotDeletedUnderAnotherSpelling) {
  open();
  window().prompts.agrees = true;
  for (const std::wstring& spelling : {path().parent_path().wstring() + L"\\.\\DOCUMENT.cdb",
                                       L"\\\\?\\" + path().wstring(), path().generic_wstring()}) {
    messages().clear();
    choose(spelling);
    EXPECT_EQ(document().deleteDatabaseCommand(), CommandResult::failed);
    ASSERT_EQ(messages().size(), 1u) << "only refused";
    EXPECT_EQ(messages()[0].text, L"Database " + spelling + L" cannot be deleted\nas it is currently open!");
    EXPECT_TRUE(std::filesystem::exists(path()));
  }
}

TEST_F(DocumentFilesTest, AnotherFileIsDeletedAndTheOpenOneStaysOpen) {
  makeDatabase(file("other.cdb"), {});
  open();
  document().setViewMode(ViewMode::form);
  choose(file("other.cdb"));
  window().prompts.agrees = false;
  EXPECT_EQ(document().deleteDatabaseCommand(), CommandResult::cancelled);
  EXPECT_TRUE(std::filesystem::exists(file("other.cdb")));
  window().prompts.agrees = true;
  EXPECT_EQ(document().deleteDatabaseCommand(), CommandResult::done);
  EXPECT_FALSE(std::filesystem::exists(file("other.cdb")));
  EXPECT_EQ(messages()[0], (FakePrompts::Message{PromptOwner::tabControl,
                                                 L"Are you sure you want to delete database file " +
                                                     file("other.cdb").wstring() + L" ?",
                                                 L"Quivane", Question::dropObject}));
  EXPECT_TRUE(document().isDatabaseOpen());
  document().moveNextRecord();
  EXPECT_EQ(value(), L"20");
  EXPECT_EQ(currentRecord, 2u);
}

TEST_F(DocumentFilesTest, AFileThatIsNoDatabaseIsNotDeleted) {
  writeText(file("text.cdb"));
  choose(file("text.cdb"));
  window().prompts.agrees = true;
  EXPECT_EQ(document().deleteDatabaseCommand(), CommandResult::failed);
  EXPECT_TRUE(std::filesystem::exists(file("text.cdb")));
  EXPECT_EQ(messages().size(), 2u);
}

TEST_F(DocumentFilesTest, TheChosenTableIsDeleted) {
  open();
  document().openTableSelection(1);
  window().prompts.agrees = true;
  EXPECT_EQ(document().deleteTableCommand(), CommandResult::done);
  EXPECT_EQ(messages()[0].text, L"Are you sure you want to delete table 'Second' ?");
  EXPECT_THAT(window().tables->items, ElementsAre(L"First One", L"Empty"));
}

TEST_F(DocumentFilesTest, AfterTheLastTableThereAreNoRecords) {
  makeDatabase(file("one.cdb"), {L"CREATE TABLE 'Only' (a Integer)", L"INSERT INTO Only VALUES (1)"});
  ASSERT_TRUE(document().openDatabase(file("one.cdb").c_str()));
  document().setViewMode(ViewMode::form);
  document().setViewMode(ViewMode::tables);
  window().prompts.agrees = true;
  ASSERT_EQ(document().deleteTableCommand(), CommandResult::done);
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(window().bar.position, L"No Records");
}

TEST_F(DocumentFilesTest, TheFormGoesWithItsRecordset) {
  makeDatabase(file("one.cdb"), {L"CREATE TABLE 'Only' (a Integer)", L"INSERT INTO Only VALUES (1)"});
  ASSERT_TRUE(document().openDatabase(file("one.cdb").c_str()));
  window().form.pageTotal = 2;
  document().setViewMode(ViewMode::form);
  EXPECT_TRUE(window().bar.onToolbar(ID_PAGE_NEXT));
  document().setViewMode(ViewMode::tables);
  ASSERT_FALSE(window().form.fields.empty());
  window().prompts.agrees = true;
  ASSERT_EQ(document().deleteTableCommand(), CommandResult::done);
  EXPECT_THAT(window().form.fields, IsEmpty());
  document().setViewMode(ViewMode::form);
  EXPECT_FALSE(window().bar.onToolbar(ID_PAGE_NEXT));
  EXPECT_FALSE(window().bar.inMenu(PopupMenu::record, ID_PAGE_NEXT));
}

TEST_F(DocumentFilesTest, WhoDoesNotDeleteTheTableKeepsTheQueryInUse) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::tables);
  window().prompts.agrees = false;
  EXPECT_EQ(document().deleteTableCommand(), CommandResult::cancelled);
  EXPECT_EQ(messages()[0].text, L"Are you sure you want to delete table 'First One' ?");
  EXPECT_STREQ(document().queryName().text(), L"big");
}

TEST_F(DocumentFilesTest, WithTheirTableTheQueriesAreGone) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  ASSERT_THAT(window().queries->items, ElementsAre(L"big", L"wrong"));
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(3);
  window().prompts.agrees = true;
  ASSERT_EQ(document().deleteTableCommand(), CommandResult::done);
  document().setViewMode(ViewMode::queries);
  EXPECT_THAT(window().queries->items, IsEmpty());
  EXPECT_FALSE(window().bar.inMenu(PopupMenu::queries, ID_QUERY_EDIT));
}

TEST_F(DocumentFilesTest, ATableIsNotDeletedFromAnotherPage) {
  open();
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(document().deleteTableCommand(), CommandResult::cancelled);
  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DocumentFilesTest, ATableThatCantBeDeletedIsStillThere) {
  runStatements(path(), {L"CREATE TABLE 'Parent' (k Integer PRIMARY KEY)",
                         L"CREATE TABLE 'Child' (p Integer REFERENCES Parent(k))",
                         L"INSERT INTO Parent VALUES (1)", L"INSERT INTO Child VALUES (1)"});
  open();
  document().openTableSelection(3);
  window().prompts.agrees = true;
  EXPECT_EQ(document().deleteTableCommand(), CommandResult::failed);
  ASSERT_EQ(messages().size(), 2u);
  EXPECT_THAT(messages()[1].text, HasSubstr(L"Table 'Parent' could not be deleted.\n"));
  document().setViewMode(ViewMode::form);
  EXPECT_TRUE(document().isRecordsetOpen());
  EXPECT_EQ(recordCount, 1u);
}

TEST_F(DocumentFilesTest, ANewTableIsSelected) {
  open();
  EXPECT_TRUE(document().createTable(L"Made", L"Id Integer ,'Full name' Varchar (255)"));
  EXPECT_THAT(window().tables->items, Contains(L"Made"));
  EXPECT_EQ(window().tables->chosen(), L"Made");
  EXPECT_FALSE(document().createTable(L"Made", L"Id Integer"));
  EXPECT_EQ(messages().size(), 1u);
  std::wstring columns = L"Id Integer";
  for (int i = 0; i < 30; ++i) columns += L" ,Column" + std::to_wstring(i) + L" Integer";
  EXPECT_FALSE(document().createTable(L"Long", columns.c_str()));
  EXPECT_EQ(messages().size(), 2u);
}

TEST_F(DocumentFilesTest, TheChosenQueryIsDeleted) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  window().prompts.agrees = true;
  EXPECT_EQ(document().deleteQueryCommand(), CommandResult::done);
  EXPECT_EQ(messages()[0].text, L"Are you sure you want to delete query 'big' ?");
  EXPECT_THAT(window().queries->items, ElementsAre(L"wrong"));
}

TEST_F(DocumentFilesTest, AStatementThatDoesNotOpenHasItsReason) {
  open();
  String reason;
  EXPECT_TRUE(document().returnsRecords(L"Select * from Second", reason));
  EXPECT_TRUE(reason.isEmpty());
  EXPECT_FALSE(document().returnsRecords(L"Select * from nowhere", reason));
  EXPECT_THAT(reason.text(), HasSubstr(L"nowhere"));
}

TEST_F(DocumentFilesTest, AQueryThatTheStoreRefusesIsNotTakenForStored) {
  runStatements(path(), {L"CREATE TABLE 'QuivaneQueries' (QueryName Text PRIMARY KEY ,SQL Text)",
                         L"INSERT INTO QuivaneQueries VALUES ('one', 'Select 1')",
                         L"INSERT INTO QuivaneQueries VALUES ('two', 'Select 2')"});
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  SavedQuery chosen;
  ASSERT_TRUE(document().chosenQuery(chosen));
  EXPECT_FALSE(document().addQuery({L"two", L"Select 3"}));
  EXPECT_FALSE(document().changeChosenQuery({L"two", L"Select 3"}));
  ASSERT_EQ(messages().size(), 2u);
  for (const FakePrompts::Message& message : messages()) {
    EXPECT_THAT(message.text, testing::StartsWith(L"Query 'two' could not be stored.\n"));
    EXPECT_THAT(message.text, HasSubstr(L"QueryName"));
  }
  EXPECT_TRUE(document().addQuery({L"three", L"Select 3"}));
  EXPECT_THAT(window().queries->items, ElementsAre(L"one", L"three", L"two"));
}

TEST_F(DocumentFilesTest, AQueryThatCantBeDeletedIsStillThere) {
  runStatements(path(), {L"CREATE TABLE 'QuivaneQueries' (QueryName Text PRIMARY KEY ,SQL Text)",
                         L"INSERT INTO QuivaneQueries VALUES ('used', 'Select 1')",
                         L"CREATE TABLE 'Uses' (q Text REFERENCES QuivaneQueries(QueryName))",
                         L"INSERT INTO Uses VALUES ('used')"});
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  window().prompts.agrees = true;
  EXPECT_EQ(document().deleteQueryCommand(), CommandResult::failed);
  ASSERT_EQ(messages().size(), 2u);
  EXPECT_THAT(messages()[1].text, testing::StartsWith(L"Query 'used' could not be deleted.\n"));
  EXPECT_GT(messages()[1].text.size(), messages()[1].text.find(L'\n') + 10) << "the reason is missing";
  EXPECT_THAT(window().queries->items, ElementsAre(L"used"));
}

TEST_F(DocumentFilesTest, AQueryThatCantBeReadIsToldAndTheOneInUseStays) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().busyOver();
  ASSERT_STREQ(document().queryName().text(), L"big");
  {
    const auto lock = lockExclusively(path().wstring());
    ASSERT_TRUE(lock->isHeld());
    document().openQuerySelection(1);
    EXPECT_THAT(messages(), IsEmpty()) << "not while the list is at the choosing";
    document().openQuerySelection(1);
    EXPECT_TRUE(window().prompts.waitsForTheEnd);
    document().busyOver();
    EXPECT_THAT(window().prompts.takeTexts(),
                ElementsAre(L"Query 'wrong' could not be read.\nAnother program is using the database."));
    EXPECT_STREQ(document().queryName().text(), L"big");
    EXPECT_STREQ(document().sqlText().text(), L"Select * from [First One] where a > 10");
    EXPECT_EQ(window().queries->chosen(), L"big");
    SavedQuery query;
    EXPECT_FALSE(document().chosenQuery(query));
    EXPECT_THAT(window().prompts.takeTexts(),
                ElementsAre(L"Query 'big' could not be read.\nAnother program is using the database."));
  }
  document().openQuerySelection(1);
  document().busyOver();
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_STREQ(document().queryName().text(), L"wrong");
}

TEST_F(DocumentFilesTest, WhereATableIsInUseNoQueryStaysChosenThatCantBeRead) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  runStatements(path(), {L"DELETE FROM QuivaneQueries WHERE QueryName = 'big'"});
  window().queries->report = [this] { document().openQuerySelection(window().queries->selected); };
  document().openQuerySelection(0);
  document().busyOver();
  EXPECT_THAT(window().prompts.takeTexts(),
              ElementsAre(L"Query 'big' could not be read.\nAnother program has renamed or deleted it."));
  EXPECT_EQ(window().queries->chosen(), L"");
  EXPECT_STREQ(document().tableName().text(), L"First One");
  document().setViewMode(ViewMode::tables);
  document().setViewMode(ViewMode::queries);
  EXPECT_EQ(window().queries->chosen(), L"wrong") << "as at the first time";
  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DocumentFilesTest, AnotherQueryIsChosenAlsoBeforeItIsToldThatOneCantBeRead) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  runStatements(path(), {L"DELETE FROM QuivaneQueries WHERE QueryName = 'big'"});
  document().openQuerySelection(0);
  document().openQuerySelection(1);
  EXPECT_STREQ(document().queryName().text(), L"wrong");
  document().busyOver();
  EXPECT_THAT(window().prompts.takeTexts(),
              ElementsAre(L"Query 'big' could not be read.\nAnother program has renamed or deleted it."));
  EXPECT_EQ(window().queries->chosen(), L"wrong");
}

TEST_F(DocumentFilesTest, AQueryThatCouldNotBeReadIsForgottenWithItsDatabase) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  runStatements(path(), {L"DELETE FROM QuivaneQueries WHERE QueryName = 'big'"});
  document().openQuerySelection(0);
  document().closeDatabase();
  document().busyOver();
  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DocumentFilesTest, AQueryThatAnotherProgramMovedIsFollowedByItsName) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  runStatements(path(), {L"INSERT INTO QuivaneQueries VALUES ('a new first', 'Select 1')"});
  document().openQuerySelection(0);
  EXPECT_STREQ(document().sqlText().text(), L"Select * from [First One] where a > 10");
  SavedQuery stored;
  ASSERT_TRUE(document().chosenQuery(stored));
  EXPECT_STREQ(stored.name.text(), L"big");
  EXPECT_STREQ(stored.sql.text(), L"Select * from [First One] where a > 10");
  EXPECT_TRUE(document().changeChosenQuery({L"big", L"Select 2"}));
  EXPECT_THAT(window().queries->items, ElementsAre(L"a new first", L"big", L"wrong"));
  ASSERT_TRUE(document().chosenQuery(stored));
  EXPECT_STREQ(stored.sql.text(), L"Select 2");
  runStatements(path(), {L"INSERT INTO QuivaneQueries VALUES ('a newer first', 'Select 1')"});
  window().prompts.agrees = true;
  EXPECT_EQ(document().deleteQueryCommand(), CommandResult::done);
  EXPECT_THAT(window().queries->items, ElementsAre(L"a new first", L"a newer first", L"wrong"));
}

TEST_F(DocumentFilesTest, AQueryThatAnotherProgramChangedWhileItWasEditedIsNotOverwritten) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  SavedQuery chosen;
  ASSERT_TRUE(document().chosenQuery(chosen));
  runStatements(path(), {L"UPDATE QuivaneQueries SET SQL = 'Select 7' WHERE QueryName = 'big'"});
  EXPECT_FALSE(document().changeChosenQuery({L"big", L"Select 2"}));
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_EQ(messages()[0].text,
            L"Query 'big' could not be stored.\nAnother program has changed it meanwhile.");
  ASSERT_TRUE(document().chosenQuery(chosen));
  EXPECT_STREQ(chosen.sql.text(), L"Select 7");
  EXPECT_TRUE(document().changeChosenQuery({L"big", L"Select 2"}));
}

TEST_F(DocumentFilesTest, InThePlaceOfAQueryThatAnotherProgramDeletedNoOtherIsTouched) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  runStatements(path(), {L"DELETE FROM QuivaneQueries WHERE QueryName = 'big'",
                         L"INSERT INTO QuivaneQueries VALUES ('beside', 'Select 1')"});
  EXPECT_FALSE(document().changeChosenQuery({L"big", L"Select 2"}));
  window().prompts.agrees = true;
  EXPECT_EQ(document().deleteQueryCommand(), CommandResult::failed);
  ASSERT_EQ(messages().size(), 3u);
  EXPECT_EQ(messages()[0].text,
            L"Query 'big' could not be stored.\nAnother program has renamed or deleted it.");
  EXPECT_EQ(messages()[2].text,
            L"Query 'big' could not be deleted.\nAnother program has renamed or deleted it.");
  EXPECT_THAT(window().queries->items, ElementsAre(L"beside", L"wrong"));
}

TEST_F(DocumentFilesTest, AfterTheLastQueryTheTableIsInUseAgain) {
  runStatements(path(),
                {L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)",
                 L"INSERT INTO QuivaneQueries VALUES ('big', 'Select * from [First One] where a > 10')"});
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  window().prompts.agrees = true;
  ASSERT_EQ(document().deleteQueryCommand(), CommandResult::done);
  document().setViewMode(ViewMode::form);
  EXPECT_TRUE(document().isRecordsetOpen());
  EXPECT_EQ(recordCount, 3u);
}

}  // namespace
