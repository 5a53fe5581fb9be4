// Stories of records: on the form, found, gone to, refused.
#include "base/settings/options.h"
#include "dialogs/find/find_dialog_ids.h"
#include "dialogs/small/database_info_ids.h"
#include "dialogs/small/go_to_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"

using testing::ElementsAre;

namespace {

constexpr int kName = 1200;
constexpr int kBorn = 1201;
constexpr int kAlive = 1400;

class RecordsStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions);
    SettingsStore::writeDword(SettingsStore::kOptions, L"WarningOnDeletion", 1);
  }

  void makePeople() {
    makeDatabase(path(), {L"CREATE TABLE 'People' (Name VarChar(20), Alive Boolean, Born Integer)",
                          L"INSERT INTO People VALUES ('Ada', 0, 1815)",
                          L"INSERT INTO People VALUES ('Grace', 0, 1906)",
                          L"INSERT INTO People VALUES ('Barbara', 1, 1939)"});
  }
  /// A table that takes no record without a name, as another program makes it.
  void makeStrictPeople() {
    ASSERT_TRUE(registerBinComponents());
    automationtest::SqliteFile file(path().wstring());
    file.run("CREATE TABLE People (Name VARCHAR(20) NOT NULL CHECK (length(Name) > 0), Born INTEGER)");
    file.run("INSERT INTO People VALUES ('Ada', 1815), ('Grace', 1906)");
  }

  User& startOnForm() {
    User& user = start();
    user.showPage(OpenedDatabase::kFormPage);
    return user;
  }
  static std::wstring shown(const User& user, int editor) {
    return remote::text(remote::control(user.main(), editor));
  }
  static void awaitShown(const User& user, int editor, const wchar_t* text) {
    ASSERT_TRUE(remote::waitUntil([&] { return shown(user, editor) == text; }))
        << testing::PrintToString(shown(user, editor)) << " and not " << testing::PrintToString(text);
  }
  static void awaitPosition(const User& user, const wchar_t* text) {
    constexpr int kPosition = 1012;
    ASSERT_NO_FATAL_FAILURE(awaitShown(user, kPosition, text));
  }
};

TEST_P(RecordsStory, ARecordIsAdded) {
  makePeople();
  User& user = startOnForm();
  user.useButton(ID_RECORD_NEW, 'W', VK_CONTROL);
  awaitPosition(user, L"    4 / 4");
  user.fillEditor(kName, L"Émilie 'Châtelet'");
  user.pressEditor(kAlive);
  user.fillEditor(kBorn, L"1706");
  user.useButton(ID_RECORD_PREVIOUS, 'P', VK_CONTROL);
  awaitShown(user, kName, L"Barbara");
  end();
  EXPECT_THAT(stored("SELECT Name FROM People ORDER BY rowid"),
              ElementsAre("Ada", "Grace", "Barbara", "Émilie 'Châtelet'"));
  EXPECT_THAT(stored("SELECT Born FROM People ORDER BY rowid"), ElementsAre("1815", "1906", "1939", "1706"));
  EXPECT_THAT(stored("SELECT Alive <> 0 FROM People ORDER BY rowid"), ElementsAre("0", "0", "1", "1"));
}

TEST_P(RecordsStory, ARecordIsChangedAndStoredWhenTheProgramIsLeft) {
  makePeople();
  User& user = startOnForm();
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  awaitShown(user, kName, L"Grace");
  user.fillEditor(kName, L"Grace Hopper");
  end();
  EXPECT_THAT(stored("SELECT Name FROM People ORDER BY rowid"),
              ElementsAre("Ada", "Grace Hopper", "Barbara"));
}

TEST_P(RecordsStory, ARecordThatIsLockedIsToldOnceAndKeepsItsValues) {
  makePeople();
  User& user = startOnForm();
  awaitShown(user, kName, L"Ada");
  {
    automationtest::SqliteFile other(path().wstring());
    other.run("BEGIN EXCLUSIVE");
    user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
    user.answer(L"Quivane", L"The record could not be read.\nAnother program is using the database.", IDOK);
    awaitPosition(user, L"    2 / 3");
    EXPECT_EQ(shown(user, kName), L"");
    const HWND born = remote::control(user.main(), kBorn);
    EXPECT_NE(GetWindowLongW(born, GWL_STYLE) & ES_READONLY, 0);
    SendMessageW(born, WM_CHAR, '7', 1);
    EXPECT_EQ(shown(user, kBorn), L"");
  }
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  awaitShown(user, kName, L"Barbara");
  user.useButton(ID_RECORD_PREVIOUS, 'P', VK_CONTROL);
  awaitShown(user, kName, L"Grace");
  user.fillEditor(kBorn, L"1907");
  end();
  EXPECT_THAT(stored("SELECT Name || ' ' || Alive || ' ' || Born FROM People ORDER BY rowid"),
              ElementsAre("Ada 0 1815", "Grace 0 1907", "Barbara 1 1939"));
}

TEST_P(RecordsStory, AColumnThatAnotherProgramRenamesAndATableThatItDropsAreTold) {
  makePeople();
  User& user = startOnForm();
  awaitShown(user, kName, L"Ada");
  automationtest::SqliteFile other(path().wstring());
  other.run("ALTER TABLE People RENAME COLUMN Born TO Birth");
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  user.answer(L"Quivane",
              L"Another program has changed the structure of the database.\nThe records were opened anew.",
              IDOK);
  awaitShown(user, kName, L"Grace");
  user.fillEditor(kBorn, L"1907");
  user.useButton(ID_RECORD_PREVIOUS, 'P', VK_CONTROL);
  awaitShown(user, kName, L"Ada");
  EXPECT_THAT(stored("SELECT Birth FROM People ORDER BY rowid"), ElementsAre("1815", "1907", "1939"));
  other.run("DROP TABLE People");
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  const HWND box = user.dialog(L"Quivane");
  const std::wstring text = remote::messageBoxText(box);
  EXPECT_THAT(text, testing::StartsWith(L"The records can no longer be read.\n"));
  user.answer(L"Quivane", text, IDOK);
  awaitPosition(user, L"No Records");
  EXPECT_EQ(remote::control(user.main(), kName), nullptr) << "something to type into";
  end();
}

TEST_P(RecordsStory, ARecordIsDeletedAfterAQuestion) {
  makePeople();
  User& user = startOnForm();
  user.choose(ID_RECORD_LAST);
  awaitShown(user, kName, L"Barbara");
  user.choose(ID_RECORD_DELETE);
  user.answer(L"Delete this record?", L"Are you sure you want to\ndelete this record?", IDNO);
  user.choose(ID_RECORD_DELETE);
  user.answer(L"Delete this record?", L"Are you sure you want to\ndelete this record?", IDYES);
  awaitPosition(user, L"    1 / 2");
  end();
  EXPECT_THAT(stored("SELECT Name FROM People ORDER BY rowid"), ElementsAre("Ada", "Grace"));
}

TEST_P(RecordsStory, TextIsFoundInOneFieldAndInAll) {
  makePeople();
  User& user = startOnForm();
  user.useButton(ID_FIND, 'F', VK_CONTROL);
  const HWND find = user.dialog(L"Find");
  user.fill(find, IDC_FIND_TEXT, L"grace");
  user.press(find, IDC_FIND_NEXT);
  awaitShown(user, kName, L"Grace");
  user.press(find, IDC_FIND_ALL_FIELDS);
  user.fill(find, IDC_FIND_TEXT, L"1815");
  user.press(find, IDC_FIND_NEXT);
  // The search has come round to where it began.
  user.answer(L"Searched all records", L"All records searched for '1815'", IDOK);
  awaitShown(user, kName, L"Ada");
  user.press(find, IDC_FIND_ALL_FIELDS);
  user.fill(find, IDC_FIND_TEXT, L"nobody");
  user.press(find, IDC_FIND_NEXT);
  user.answer(L"Searched all records", L"All records searched for 'nobody'", IDOK);
  user.leave(find);
  awaitShown(user, kName, L"Ada");
  end();
  EXPECT_THAT(stored("SELECT Name FROM People ORDER BY rowid"), ElementsAre("Ada", "Grace", "Barbara"));
}

TEST_P(RecordsStory, ARecordIsGoneToByItsNumber) {
  makePeople();
  User& user = startOnForm();
  user.choose(ID_RECORD_NUMBER);
  HWND question = user.dialog(L"Move to Record...");
  user.fill(question, IDC_GO_TO_NUMBER, L"4");
  user.accept(question);
  user.answer(L"Error", L"Enter number in range 1 to 3", IDOK);
  user.fill(question, IDC_GO_TO_NUMBER, L"3");
  user.accept(question);
  awaitShown(user, kName, L"Barbara");
  user.choose(ID_RECORD_NUMBER);
  question = user.dialog(L"Move to Record...");
  user.fill(question, IDC_GO_TO_NUMBER, L"1");
  user.leave(question);
  EXPECT_EQ(shown(user, kName), L"Barbara");
  end();
}

TEST_P(RecordsStory, TheDatabaseInformationIsRead) {
  makePeople();
  User& user = startOnForm();
  user.choose(ID_DATABASE_INFO);
  HWND information = user.dialog(L"Database Information");
  EXPECT_EQ(remote::text(remote::control(information, IDC_INFO_DATABASE)), path().wstring());
  EXPECT_EQ(remote::text(remote::control(information, IDC_INFO_TABLE)), L"People");
  EXPECT_EQ(remote::text(remote::control(information, IDC_INFO_QUERY)), L"");
  EXPECT_NE(remote::text(remote::control(information, IDC_INFO_SQL)), L"");
  user.accept(information);
  user.choose(ID_DATABASE_INFO);
  information = user.dialog(L"Database Information");
  user.leave(information);
  // The form has the keyboard again.
  user.fillEditor(kName, L"Ada L");
  end();
  EXPECT_THAT(stored("SELECT Name FROM People ORDER BY rowid"), ElementsAre("Ada L", "Grace", "Barbara"));
}

TEST_P(RecordsStory, WhatTheStoreRefusesIsKeptOrDiscarded) {
  makeStrictPeople();
  User& user = startOnForm();
  user.useButton(ID_RECORD_NEW, 'W', VK_CONTROL);
  awaitPosition(user, L"    3 / 3");
  user.fillEditor(kBorn, L"1706");
  user.choose(ID_RECORD_PREVIOUS);
  const std::wstring text = remote::messageBoxText(user.dialog(L"Quivane"));
  EXPECT_THAT(text, testing::StartsWith(L"The record could not be written.\n"));
  EXPECT_THAT(text, testing::EndsWith(L"\n\nDo you want to discard what was typed?"));
  user.answer(L"Quivane", text, IDNO);
  EXPECT_EQ(shown(user, kBorn), L"1706");
  EXPECT_THAT(stored("SELECT count(*) FROM People"), ElementsAre("2"));
  user.choose(ID_EXIT);
  user.answer(L"Quivane", text, IDNO);
  EXPECT_EQ(shown(user, kBorn), L"1706");
  user.choose(ID_RECORD_PREVIOUS);
  user.answer(L"Quivane", text, IDYES);
  awaitShown(user, kName, L"Grace");
  awaitPosition(user, L"    2 / 2");
  end();
  EXPECT_THAT(stored("SELECT Name FROM People ORDER BY rowid"), ElementsAre("Ada", "Grace"));
}

TELL_WITH_BOTH_HANDS(RecordsStory);

}  // namespace
