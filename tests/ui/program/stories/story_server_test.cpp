// Stories of a server's database: what a user does with a file's, on the same pages.
#include <algorithm>

#include "base/settings/kept_texts.h"
#include "base/settings/options.h"
#include "dialogs/copies/go_back_ids.h"
#include "dialogs/find/find_dialog_ids.h"
#include "dialogs/password/password_ids.h"
#include "dialogs/query/query_dialog_ids.h"
#include "dialogs/small/database_info_ids.h"
#include "dialogs/table/new_field_ids.h"
#include "dialogs/table/new_table_ids.h"
#include "resources/command_ids.h"
#include "tests/server/server_fixture.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/remote/user_input.h"

using store::OtherProgram;
using store::restartServer;
using store::runOnServer;

namespace {

constexpr int kName = 1200;
constexpr int kBorn = 1201;
constexpr int kAlive = 1400;
constexpr int kPosition = 1012;

/// Gives the tests of stories the database of the server's tests.
class ServersDatabase : public store::StoreTest {
 public:
  const std::string& name() const { return database_; }
  const std::filesystem::path& link() const { return path_; }

 private:
  void TestBody() override {}
};

class ServerStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions);
    SettingsStore::writeDword(SettingsStore::kOptions, L"WarningOnDeletion", 1);
  }

  void onServer(const std::string& sql) const { runOnServer(sql, database_.name()); }
  std::string stored(const std::string& sql) const { return OtherProgram(database_.link()).ask(sql); }

  void makePeople() const {
    onServer(
        "CREATE TABLE \"People\" (\"Name\" varchar(20), \"Alive\" boolean, \"Born\" integer PRIMARY KEY)");
    onServer(
        "INSERT INTO \"People\" VALUES ('Ada', false, 1815), ('Grace', false, 1906), ('Barbara', true, "
        "1939)");
  }
  std::string people() const {
    return stored("SELECT string_agg(Name || ' ' || Born || ' ' || Alive, ', ' ORDER BY Born) FROM People");
  }

  User& startHere() {
    User& user = launch(database_.link());
    awaitDatabase();
    return user;
  }
  User& startOnForm() {
    User& user = startHere();
    user.showPage(OpenedDatabase::kFormPage);
    return user;
  }
  void endHere(User& user) {
    user.exit();
    EXPECT_EQ(program().exitCode(), 0u);
    EXPECT_EQ(testsupport::contentOf(database_.link()), store::linkTo(database_.name()))
        << "a link is only read";
  }

  static std::wstring shown(const User& user, int editor) {
    return remote::text(remote::control(user.main(), editor));
  }
  static void awaitShown(const User& user, int editor, const wchar_t* text) {
    ASSERT_TRUE(remote::waitUntil([&] { return shown(user, editor) == text; }))
        << testing::PrintToString(shown(user, editor)) << " and not " << testing::PrintToString(text);
  }
  static void awaitNames(const User& user, const std::vector<std::wstring>& names) {
    ASSERT_TRUE(remote::waitUntil([&] { return remote::itemTexts(remote::shownPage(user.main())) == names; }))
        << testing::PrintToString(remote::itemTexts(remote::shownPage(user.main())));
  }

  /// Makes the link one of a user who needs the password "right one", which it lacks. Returns what is in it.
  std::string lockLink() const {
    runOnServer(
        "DO $$ BEGIN IF NOT EXISTS (SELECT FROM pg_roles WHERE rolname = 'quivane_locked') THEN CREATE ROLE "
        "quivane_locked LOGIN; END IF; END $$; ALTER ROLE quivane_locked PASSWORD 'right one'",
        "postgres");
    std::string link = store::linkTo(database_.name());
    link.replace(link.find("UID=quivane"), 11, "UID=quivane_locked");
    testsupport::writeFile(database_.link(), link);
    return link;
  }
  void awaitPopups(std::size_t count) const {
    ASSERT_TRUE(remote::waitUntil([&] { return remote::popups(program().processId()).size() == count; }));
  }
  /// A key that closes the menus that are open, after which another one opens.
  void pressForNextMenu(WORD key) const {
    const std::vector<HWND> former = remote::popups(program().processId());
    userinput::press(key);
    ASSERT_TRUE(remote::waitUntil([&] {
      const std::vector<HWND> open = remote::popups(program().processId());
      return open.size() == 1 && std::find(former.begin(), former.end(), open.front()) == former.end();
    }));
  }
  /// By the keys of the desktop menu, which are there for both hands.
  void chooseForColumn(int column, WORD key) const {
    userinput::press('M', VK_MENU);
    awaitPopups(1);
    userinput::press('O');
    awaitPopups(2);
    pressForNextMenu('C');
    for (int i = 0; i <= column; ++i) userinput::press(VK_DOWN);
    pressForNextMenu(VK_RETURN);
    userinput::press(key);
    awaitPopups(0);
  }
  void calculate(int column) const { chooseForColumn(column, 'L'); }
  void endConnections() const {
    runOnServer(
        "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE datname = '" + database_.name() + "'",
        "postgres");
  }
  /// Answers the box that tells of a lost connection.
  static void answerLoss(User& user, int button) {
    const std::wstring text = remote::messageBoxText(user.dialog(L"Quivane"));
    EXPECT_THAT(text, testing::HasSubstr(L"The connection to the server was lost"));
    user.answer(L"Quivane", text, button);
  }

  ServersDatabase database_;
};

TEST_P(ServerStory, RecordsAreWalkedChangedAddedFoundAndDeleted) {
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

TEST_P(ServerStory, TablesAndQueriesAreMadeUsedAndDeleted) {
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

TEST_P(ServerStory, TheDatabaseInformationTellsWhatTheConnectionIs) {
  makePeople();
  User& user = startOnForm();
  user.choose(ID_DATABASE_INFO);
  const HWND information = user.dialog(L"Database Information");
  EXPECT_EQ(remote::text(remote::control(information, IDC_INFO_TABLE)), L"People");
  const std::wstring server = remote::text(remote::control(information, IDC_INFO_SERVER));
  EXPECT_THAT(server, testing::StartsWith(L"Not encrypted, PostgreSQL "));
  EXPECT_THAT(server, testing::EndsWith(L" at 127.0.0.1"));
  user.accept(information);
  endHere(user);
}

TEST_P(ServerStory, ARecordThatSomeoneElseChangedIsNotOverwritten) {
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

TEST_P(ServerStory, WhatSomeoneElseChangesShowsByItselfButNeverOverWhatIsTyped) {
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

TEST_P(ServerStory, AColumnOfTheRecordsThatAreShownIsCalculated) {
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

TEST_P(ServerStory, ALostConnectionIsToldOnceAndWhatWasTypedIsStoredAfterwards) {
  makePeople();
  User& user = startOnForm();
  awaitShown(user, kName, L"Ada");
  user.fillEditor(kName, L"Ada L");
  endConnections();
  user.choose(ID_RECORD_NEXT);
  answerLoss(user, IDNO);
  EXPECT_EQ(shown(user, kName), L"Ada L");
  user.choose(ID_RECORD_NEXT);
  awaitShown(user, kName, L"Grace");
  endHere(user);
  EXPECT_EQ("Ada L 1815 false, Grace 1906 false, Barbara 1939 true", people());
}

TEST_P(ServerStory, AServerThatIsKilledAndRestartedInTheMidstOfAWalkLosesNothing) {
  makePeople();
  User& user = startOnForm();
  awaitShown(user, kName, L"Ada");
  user.fillEditor(kName, L"Ada L");
  ASSERT_NO_FATAL_FAILURE(restartServer());
  user.choose(ID_RECORD_NEXT);
  answerLoss(user, IDNO);
  EXPECT_EQ(shown(user, kName), L"Ada L");
  user.choose(ID_RECORD_NEXT);
  awaitShown(user, kName, L"Grace");
  ASSERT_NO_FATAL_FAILURE(restartServer());
  // The next one may have come together with this one.
  user.choose(ID_RECORD_PREVIOUS);
  answerLoss(user, IDOK);
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  awaitShown(user, kName, L"Grace");
  user.useButton(ID_RECORD_PREVIOUS, 'P', VK_CONTROL);
  awaitShown(user, kName, L"Ada L");
  endHere(user);
  EXPECT_EQ("Ada L 1815 false, Grace 1906 false, Barbara 1939 true", people());
}

TEST_P(ServerStory, TheUndoOfWhatIsTypedStoresNothing) {
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

TEST_P(ServerStory, ALostConnectionLeavesTheOrderThatWasChosen) {
  makePeople();
  onServer("CREATE TABLE \"Towns\" (\"Name\" varchar(20) PRIMARY KEY)");
  User& user = startHere();
  user.showPage(OpenedDatabase::kListPage);
  chooseForColumn(0, 'D');
  const HWND grid = remote::recordGrid(user.main());
  const std::vector<std::wstring> names = {L"Grace", L"Barbara", L"Ada"};
  ASSERT_TRUE(remote::waitUntil([&] { return remote::itemTexts(grid) == names; }));
  const auto kept = [&] { return kepttexts::read(database_.link().c_str(), false, L"People"); };
  const std::wstring order = kept();
  ASSERT_NE(order, L"");
  user.showPage(OpenedDatabase::kTablesPage);
  user.pickItem(1);
  user.showPage(OpenedDatabase::kFormPage);
  user.showPage(OpenedDatabase::kTablesPage);
  user.pickItem(0);
  endConnections();
  const HWND tab = remote::tabControl(user.main());
  if (user.hasMouse()) {
    userinput::click(tab, remote::tabPlace(tab, OpenedDatabase::kFormPage));
  } else {
    userinput::press(VK_TAB, VK_CONTROL);
  }
  answerLoss(user, IDOK);
  EXPECT_EQ(kept(), order);
  user.showPage(OpenedDatabase::kTablesPage);
  user.showPage(OpenedDatabase::kFormPage);
  awaitShown(user, kName, L"Grace");
  endHere(user);
  EXPECT_EQ(kept(), order);
}

TEST_P(ServerStory, OfTwoTablesThatDifferByTheCaseOfTheirLettersTheOneReferredToIsShown) {
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

TEST_P(ServerStory, ATableGoesForGoodOnlyOnceItsUserKnowsThatNoCopyIsKept) {
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

TEST_P(ServerStory, GoingBackHasNothingToOfferAndLeavesTheLinkAsItIs) {
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

TEST_P(ServerStory, APasswordThatTheLinkLacksIsAskedForOnceAndStoredNowhere) {
  makePeople();
  const std::string link = lockLink();
  onServer("GRANT SELECT ON \"People\" TO quivane_locked");
  User& user = launch(database_.link());
  HWND question = user.dialog(L"Server Password");
  EXPECT_EQ(remote::text(remote::control(question, IDC_PASSWORD_REASON)), L"The server wants a password.");
  user.fill(question, IDC_PASSWORD, L"wrong");
  user.accept(question);
  question = user.dialog(L"Server Password");
  EXPECT_THAT(remote::text(remote::control(question, IDC_PASSWORD_REASON)),
              testing::StartsWith(L"The server does not take the password: "));
  user.fill(question, IDC_PASSWORD, L"right one");
  user.accept(question);
  awaitDatabase();
  awaitNames(user, {L"People"});
  // The next opening asks for none.
  user.choose(ID_DATABASE_CLOSE);
  user.choose(ID_DATABASE_OPEN);
  user.chooseFile(database_.link());
  awaitNames(user, {L"People"});
  user.exit();
  EXPECT_EQ(program().exitCode(), 0u);
  EXPECT_EQ(testsupport::contentOf(database_.link()), link);
}

TEST_P(ServerStory, APasswordThatTheServerTakesNoLongerIsAskedForAnew) {
  makePeople();
  lockLink();
  onServer("GRANT SELECT, UPDATE ON \"People\" TO quivane_locked");
  User& user = launch(database_.link());
  HWND question = user.dialog(L"Server Password");
  user.fill(question, IDC_PASSWORD, L"right one");
  user.accept(question);
  awaitDatabase();
  user.showPage(OpenedDatabase::kFormPage);
  awaitShown(user, kName, L"Ada");
  user.fillEditor(kName, L"Ada L");
  runOnServer(
      "ALTER ROLE quivane_locked PASSWORD 'next one'; SELECT pg_terminate_backend(pid) FROM pg_stat_activity "
      "WHERE usename = 'quivane_locked'",
      "postgres");
  user.choose(ID_RECORD_NEXT);
  answerLoss(user, IDNO);
  user.choose(ID_RECORD_NEXT);
  const std::wstring text = remote::messageBoxText(user.dialog(L"Quivane"));
  EXPECT_THAT(text, testing::HasSubstr(L"\nThe server does not take the password any more: "));
  user.answer(L"Quivane", text, IDNO);
  question = user.dialog(L"Server Password");
  EXPECT_THAT(remote::text(remote::control(question, IDC_PASSWORD_REASON)),
              testing::StartsWith(L"The server does not take the password any more: "));
  user.fill(question, IDC_PASSWORD, L"wrong");
  user.accept(question);
  question = user.dialog(L"Server Password");
  user.fill(question, IDC_PASSWORD, L"next one");
  user.accept(question);
  EXPECT_EQ(shown(user, kName), L"Ada L") << "what was typed stays";
  user.choose(ID_RECORD_NEXT);
  awaitShown(user, kName, L"Grace");
  user.exit();
  EXPECT_EQ(program().exitCode(), 0u);
  testsupport::writeFile(database_.link(), store::linkTo(database_.name()));
  EXPECT_EQ("Ada L", stored("SELECT Name FROM People WHERE Born = 1815"));
}

TEST_P(ServerStory, WhoGivesNoPasswordIsToldThatNothingWasOpened) {
  lockLink();
  User& user = launch(database_.link());
  user.leave(user.dialog(L"Server Password"));
  const std::wstring text = remote::messageBoxText(user.dialog(L"Quivane"));
  EXPECT_THAT(text, testing::HasSubstr(L"could not be opened.\nThe server wants a password."));
  user.answer(L"Quivane", text, IDOK);
  user.exit();
  EXPECT_EQ(program().exitCode(), 0u);
}

TELL_WITH_BOTH_HANDS(ServerStory);

}  // namespace
