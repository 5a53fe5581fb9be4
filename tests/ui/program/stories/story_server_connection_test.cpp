// Stories of the connection to a server: what it is, its loss, and the password that it takes.
#include "base/settings/kept_texts.h"
#include "dialogs/password/password_ids.h"
#include "dialogs/small/database_info_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/program/stories/server_story.h"

using store::restartServer;
using store::runOnServer;

namespace {

class ServerConnectionStory : public ServerStory {
 protected:
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
};

TEST_P(ServerConnectionStory, TheDatabaseInformationTellsWhatTheConnectionIs) {
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

TEST_P(ServerConnectionStory, ALostConnectionIsToldOnceAndWhatWasTypedIsStoredAfterwards) {
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

TEST_P(ServerConnectionStory, AServerThatIsKilledAndRestartedInTheMidstOfAWalkLosesNothing) {
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

TEST_P(ServerConnectionStory, ALostConnectionLeavesTheOrderThatWasChosen) {
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

TEST_P(ServerConnectionStory, APasswordThatTheLinkLacksIsAskedForOnceAndStoredNowhere) {
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

TEST_P(ServerConnectionStory, APasswordThatTheServerTakesNoLongerIsAskedForAnew) {
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

TEST_P(ServerConnectionStory, WhoGivesNoPasswordIsToldThatNothingWasOpened) {
  lockLink();
  User& user = launch(database_.link());
  user.leave(user.dialog(L"Server Password"));
  const std::wstring text = remote::messageBoxText(user.dialog(L"Quivane"));
  EXPECT_THAT(text, testing::HasSubstr(L"could not be opened.\nThe server wants a password."));
  user.answer(L"Quivane", text, IDOK);
  user.exit();
  EXPECT_EQ(program().exitCode(), 0u);
}

TELL_WITH_BOTH_HANDS(ServerConnectionStory);

}  // namespace
