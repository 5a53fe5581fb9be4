// Stories of a server's records, tables and queries: what a user does with a file's, on the same pages.
#include <algorithm>

#include "dialogs/copies/go_back_ids.h"
#include "dialogs/find/find_dialog_ids.h"
#include "dialogs/query/query_dialog_ids.h"
#include "dialogs/table/new_field_ids.h"
#include "dialogs/table/new_table_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/program/stories/server_story.h"

namespace {

class ServerRecordsStory : public ServerStory {
 protected:
  void calculate(int column) const { chooseForColumn(column, 'L'); }
};

TEST_P(ServerRecordsStory, RecordsAreWalkedChangedAddedFoundAndDeleted) {
  makePeople();
  User& user = startOnForm();
  awaitShown(user, kName, L"Ada");
  awaitShown(user, kPosition, L"    1 / 3");
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  awaitShown(user, kName, L"Grace");
  user.fillEditor(kName, L"Grace 'Hopper'");
  user.pressEditor(kAlive);
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  awaitShown(user, kName, L"Barbara");
  user.useButton(ID_RECORD_NEW, 'W', VK_CONTROL);
  awaitShown(user, kPosition, L"    4 / 4");
  user.fillEditor(kName, L"Émilie");
  user.fillEditor(kBorn, L"1706");
  user.useButton(ID_RECORD_PREVIOUS, 'P', VK_CONTROL);
  awaitShown(user, kName, L"Barbara");
  user.choose(ID_RECORD_DELETE);
  user.answer(L"Delete this record?", L"Are you sure you want to\ndelete this record?", IDYES);
  awaitShown(user, kPosition, L"    1 / 3");
  user.useButton(ID_FIND, 'F', VK_CONTROL);
  const HWND find = user.dialog(L"Find");
  user.fill(find, IDC_FIND_TEXT, L"émil");
  user.press(find, IDC_FIND_NEXT);
  awaitShown(user, kName, L"Émilie");
  user.leave(find);
  endHere(user);
  EXPECT_EQ("Émilie 1706 false, Ada 1815 false, Grace 'Hopper' 1906 true", people());
}

TEST_P(ServerRecordsStory, TablesAndQueriesAreMadeUsedAndDeleted) {
  makePeople();
  User& user = startHere();
  awaitNames(user, {L"People"});
  user.useButton(ID_TABLE_NEW, VK_INSERT);
  const HWND design = user.dialog(L"New Table");
  user.fill(design, IDC_NEW_TABLE_NAME, L"Every Type");
  const HWND fields = remote::control(design, IDC_NEW_TABLE_FIELDS);
  for (int type = 0; type < 7; ++type) {
    user.press(design, IDC_NEW_TABLE_ADD);
    const HWND question = user.dialog(L"New Field");
    user.fill(question, IDC_NEW_FIELD_NAME, std::wstring(1, static_cast<wchar_t>(L'A' + type)));
    user.pick(question, IDC_NEW_FIELD_TYPE, type);
    user.accept(question);
    ASSERT_TRUE(remote::waitUntil([=] { return remote::itemCount(fields) == type + 1; }));
  }
  user.accept(design);
  awaitNames(user, {L"People", L"Every Type"});
  EXPECT_EQ(
      "A boolean, B timestamp without time zone, C double precision, D smallint, E integer, "
      "F character varying, G text",
      stored("SELECT string_agg(column_name || ' ' || data_type, ', ' ORDER BY ordinal_position) FROM "
             "information_schema.columns WHERE table_name = 'Every Type' AND column_name <> 'quivane_row'"));
  user.showPage(OpenedDatabase::kQueriesPage);
  user.useButton(ID_QUERY_NEW, VK_INSERT);
  HWND editor = user.dialog(L"Query");
  user.fill(editor, IDC_QUERY_NAME, L"young");
  user.fill(editor, IDC_QUERY_SQL, L"SELECT name, born FROM people WHERE born > 1900 ORDER BY born DESC");
  user.press(editor, IDC_QUERY_CHECK);
  user.answer(L"Quivane", L"Query is OK", IDOK);
  user.accept(editor);
  awaitNames(user, {L"young"});
  user.showPage(OpenedDatabase::kListPage);
  const HWND grid = remote::recordGrid(user.main());
  EXPECT_EQ(rowTexts(grid, 0), (std::vector<std::wstring>{L"Barbara", L"1939"}));
  EXPECT_EQ(rowTexts(grid, 1), (std::vector<std::wstring>{L"Grace", L"1906"}));
  user.showPage(OpenedDatabase::kQueriesPage);
  user.pickItem(0);
  user.choose(ID_QUERY_DELETE);
  user.answer(L"Quivane", L"Are you sure you want to delete query 'young' ?", IDYES);
  awaitNames(user, {});
  endHere(user);
  EXPECT_EQ("0", stored("SELECT count(*) FROM QuivaneQueries"));
}

TEST_P(ServerRecordsStory, ARecordThatSomeoneElseChangedIsNotOverwritten) {
  makePeople();
  User& user = startOnForm();
  awaitShown(user, kName, L"Ada");
  user.fillEditor(kName, L"mine");
  onServer("UPDATE \"People\" SET \"Name\" = 'theirs' WHERE \"Born\" = 1815");
  user.choose(ID_RECORD_NEXT);
  const std::wstring text = remote::messageBoxText(user.dialog(L"Quivane"));
  EXPECT_THAT(text, testing::StartsWith(L"The record could not be written.\n"));
  EXPECT_THAT(text, testing::HasSubstr(L"Another program has changed the record since it was read."));
  user.answer(L"Quivane", text, IDNO);
  EXPECT_EQ(shown(user, kName), L"mine") << "what was typed stays";
  user.choose(ID_RECORD_NEXT);
  user.answer(L"Quivane", text, IDYES);
  awaitShown(user, kName, L"Grace");
  user.useButton(ID_RECORD_PREVIOUS, 'P', VK_CONTROL);
  awaitShown(user, kName, L"theirs");
  endHere(user);
  EXPECT_EQ("theirs 1815 false, Grace 1906 false, Barbara 1939 true", people());
}

TEST_P(ServerRecordsStory, WhatSomeoneElseChangesShowsByItselfButNeverOverWhatIsTyped) {
  makePeople();
  User& user = startOnForm();
  awaitShown(user, kName, L"Ada");
  onServer("UPDATE \"People\" SET \"Name\" = 'Ada L' WHERE \"Born\" = 1815");
  awaitShown(user, kName, L"Ada L");
  onServer("INSERT INTO \"People\" VALUES ('Sophie', false, 1776)");
  awaitShown(user, kPosition, L"    2 / 4");
  EXPECT_EQ(shown(user, kName), L"Ada L") << "the record stays";
  user.fillEditor(kName, L"mine");
  onServer("DELETE FROM \"People\" WHERE \"Born\" = 1776");
  onServer("CREATE TABLE \"Towns\" (\"Name\" varchar(20) PRIMARY KEY)");
  user.choose(ID_RECORD_NEXT);
  awaitShown(user, kName, L"Grace");
  awaitShown(user, kPosition, L"    2 / 3");
  user.showPage(OpenedDatabase::kTablesPage);
  awaitNames(user, {L"People", L"Towns"});
  onServer("DROP TABLE \"Towns\"");
  awaitNames(user, {L"People"});
  endHere(user);
  EXPECT_EQ("mine 1815 false, Grace 1906 false, Barbara 1939 true", people());
}

TEST_P(ServerRecordsStory, AColumnOfTheRecordsThatAreShownIsCalculated) {
  onServer(
      "CREATE TABLE \"Books\" (\"Title\" text PRIMARY KEY, \"Pages\" integer, \"Price\" double precision, "
      "\"Bought\" "
      "date, \"Read\" boolean)");
  onServer(
      "INSERT INTO \"Books\" VALUES ('ulysses', 700, 0.1, '2001-03-09', true), ('Dubliners', 200, 0.2, NULL, "
      "false), "
      "('100% Wool', NULL, 2.5, '1999-12-31', NULL)");
  User& user = startHere();
  user.showPage(OpenedDatabase::kListPage);
  calculate(0);
  user.answer(L"Quivane", L"Column 'Title'\n\nRecords: 3\nNot empty: 3\nLeast: 100% Wool\nGreatest: ulysses",
              IDOK);
  calculate(1);
  user.answer(L"Quivane",
              L"Column 'Pages'\n\nRecords: 3\nNot empty: 2\nSum: 900\nMean: 450.0\nLeast: 200\nGreatest: 700",
              IDOK);
  calculate(2);
  user.answer(
      L"Quivane",
      L"Column 'Price'\n\nRecords: 3\nNot empty: 3\nSum: 2.8\nMean: 0.933333333333333\nLeast: 0.100000\n"
      L"Greatest: 2.500000",
      IDOK);
  calculate(3);
  user.answer(L"Quivane",
              L"Column 'Bought'\n\nRecords: 3\nNot empty: 2\nLeast: 12/31/1999\nGreatest: 3/9/2001", IDOK);
  calculate(4);
  user.answer(L"Quivane", L"Column 'Read'\n\nRecords: 3\nTrue: 1\nFalse: 2", IDOK);
  endHere(user);
}

TEST_P(ServerRecordsStory, TheUndoOfWhatIsTypedStoresNothing) {
  makePeople();
  User& user = startOnForm();
  awaitShown(user, kName, L"Ada");
  user.fillEditor(kName, L"typed");
  user.chooseDesktop(ID_HISTORY_UNDO);
  awaitShown(user, kName, L"Ada");
  EXPECT_EQ("Ada 1815 false, Grace 1906 false, Barbara 1939 true", people());
  endHere(user);
  EXPECT_EQ("Ada 1815 false, Grace 1906 false, Barbara 1939 true", people());
}

TEST_P(ServerRecordsStory, OfTwoTablesThatDifferByTheCaseOfTheirLettersTheOneReferredToIsShown) {
  onServer("CREATE TABLE \"Orders\" (\"Name\" varchar(20), \"Id\" integer PRIMARY KEY)");
  onServer("CREATE TABLE \"orders\" (\"Name\" varchar(20), \"Id\" integer PRIMARY KEY)");
  onServer(
      "CREATE TABLE \"Bills\" (\"Note\" varchar(20), \"Id\" integer PRIMARY KEY REFERENCES \"orders\" "
      "(\"Id\"))");
  onServer(
      "INSERT INTO \"Orders\" VALUES ('another', 1); INSERT INTO \"orders\" VALUES ('referred to', 1); "
      "INSERT "
      "INTO \"Bills\" VALUES ('bill', 1)");
  User& user = startHere();
  const std::vector<std::wstring> tables = remote::itemTexts(remote::shownPage(user.main()));
  const auto bills = std::find(tables.begin(), tables.end(), L"Bills");
  ASSERT_NE(bills, tables.end()) << testing::PrintToString(tables);
  user.pickItem(static_cast<int>(bills - tables.begin()));
  user.showPage(OpenedDatabase::kFormPage);
  awaitShown(user, kName, L"bill");
  user.goTo(kBorn);
  user.chooseDesktop(ID_GO_TO_LOOKED_UP);
  awaitShown(user, kName, L"referred to");
  endHere(user);
}

TEST_P(ServerRecordsStory, ATableGoesForGoodOnlyOnceItsUserKnowsThatNoCopyIsKept) {
  makePeople();
  onServer("CREATE TABLE \"Towns\" (\"Name\" varchar(20) PRIMARY KEY)");
  User& user = startHere();
  awaitNames(user, {L"People", L"Towns"});
  user.pickItem(0);
  const auto isSure = [&](int forGood) {
    user.choose(ID_TABLE_DELETE);
    user.answer(L"Quivane", L"Are you sure you want to delete table 'People' ?", IDYES);
    user.answer(
        L"Quivane",
        L"No copy of table 'People' can be kept.\nNo copies are kept of this database.\nDo you want to "
        L"delete it for good?",
        forGood);
  };
  isSure(IDNO);
  EXPECT_EQ("3", stored("SELECT count(*) FROM People"));
  awaitNames(user, {L"People", L"Towns"});
  isSure(IDYES);
  awaitNames(user, {L"Towns"});
  endHere(user);
}

TEST_P(ServerRecordsStory, GoingBackHasNothingToOfferAndLeavesTheLinkAsItIs) {
  makePeople();
  User& user = startOnForm();
  awaitShown(user, kName, L"Ada");
  user.fillEditor(kName, L"Ada Lovelace");
  user.chooseDesktop(ID_GO_BACK_TO);
  const HWND dialog = user.dialog(L"Go Back To");
  EXPECT_EQ(0, remote::itemCount(remote::control(dialog, IDC_GO_BACK_COPIES)));
  user.press(dialog, IDC_GO_BACK_PUT);
  user.answer(L"Quivane", L"Please choose a copy!", IDOK);
  user.leave(dialog);
  awaitShown(user, kName, L"Ada Lovelace");
  endHere(user);
  EXPECT_EQ("Ada Lovelace 1815 false, Grace 1906 false, Barbara 1939 true", people());
}

TELL_WITH_BOTH_HANDS(ServerRecordsStory);

}  // namespace
