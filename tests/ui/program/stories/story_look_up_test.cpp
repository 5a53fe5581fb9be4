// Stories of fields that refer to records of another table.
#include "base/settings/options.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/remote/user_input.h"
#include "views/lookup/look_up_ids.h"

using automationtest::SqliteFile;
using testing::ElementsAre;

namespace {

constexpr int kLoansTable = 1;
constexpr int kFirst = 1200;  // the note of a loan, and the title of a book
constexpr int kBook = 1201;   // of a loan
constexpr int kPosition = 1012;

class LookUpStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions);
    makeDatabase(path(), {L"CREATE TABLE 'Books' (Title Text, Id Integer PRIMARY KEY)",
                          L"INSERT INTO Books VALUES ('Ulysses', 3), ('Persuasion', 8), ('Emma', 31)",
                          L"CREATE TABLE 'Loans' (Note Text, Book Integer REFERENCES Books (Id))",
                          L"INSERT INTO Loans VALUES ('first', 3), ('second', 31), ('third', NULL)"});
  }
  User& startOnLoans() {
    User& user = start();
    user.pickItem(kLoansTable);
    user.showPage(OpenedDatabase::kFormPage);
    awaitShown(user, kFirst, L"first");
    return user;
  }

  static HWND control(const User& user, int id) { return remote::control(user.main(), id); }
  static void awaitShown(const User& user, int id, const std::wstring& text) {
    ASSERT_TRUE(remote::waitUntil([&] { return remote::text(control(user, id)) == text; }))
        << testing::PrintToString(remote::text(control(user, id)));
  }
  static HWND openList(User& user) {
    user.goTo(kBook);
    if (user.hasMouse()) {
      user.chooseDesktop(ID_LOOK_UP);
    } else {
      userinput::press(VK_F4);
    }
    return user.dialog(L"Book");
  }
  static void awaitListed(HWND dialog, const std::vector<std::wstring>& names) {
    const HWND list = remote::control(dialog, IDC_LOOK_UP_RECORDS);
    ASSERT_TRUE(remote::waitUntil([&] { return remote::itemTexts(list, 1) == names; }))
        << testing::PrintToString(remote::itemTexts(list, 1));
  }
  static void undo(User& user) {
    if (user.hasMouse()) {
      user.chooseDesktop(ID_HISTORY_UNDO);
    } else {
      userinput::press('Z', VK_CONTROL);
    }
  }
  std::vector<std::string> books() const { return stored("SELECT Book FROM Loans ORDER BY rowid"); }
};

TEST_P(LookUpStory, ARecordIsChosenFromTheListAndTheChoiceTakenBack) {
  User& user = startOnLoans();
  const HWND dialog = openList(user);
  awaitListed(dialog, {L"Ulysses", L"Persuasion", L"Emma"});
  user.pick(dialog, IDC_LOOK_UP_RECORDS, 1);
  user.accept(dialog);
  awaitShown(user, kBook, L"8");
  EXPECT_THAT(books(), ElementsAre("3", "31", "")) << "it is stored with the record";
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  awaitShown(user, kFirst, L"second");
  EXPECT_THAT(books(), ElementsAre("8", "31", ""));
  undo(user);
  awaitShown(user, kFirst, L"first");
  awaitShown(user, kBook, L"3");
  EXPECT_THAT(books(), ElementsAre("3", "31", ""));
  end();
}

TEST_P(LookUpStory, TheListNarrowsAsOneTypesAndEnterTakesTheFirst) {
  User& user = startOnLoans();
  HWND dialog = openList(user);
  user.fill(dialog, IDC_LOOK_UP_TEXT, L"s");
  awaitListed(dialog, {L"Ulysses", L"Persuasion"});
  user.fill(dialog, IDC_LOOK_UP_TEXT, L"SUAS");
  awaitListed(dialog, {L"Persuasion"});
  user.leave(dialog);
  awaitShown(user, kBook, L"3");
  dialog = openList(user);
  user.fill(dialog, IDC_LOOK_UP_TEXT, L"no such book");
  awaitListed(dialog, {});
  user.fill(dialog, IDC_LOOK_UP_TEXT, L"31");
  awaitListed(dialog, {L"Emma"});
  user.accept(dialog);
  awaitShown(user, kBook, L"31");
  user.showPage(OpenedDatabase::kTablesPage);
  EXPECT_THAT(books(), ElementsAre("31", "31", ""));
  undo(user);
  ASSERT_TRUE(remote::waitUntil([&] { return books() == std::vector<std::string>{"3", "31", ""}; }));
  end();
}

TEST_P(LookUpStory, TheUserGoesToTheRecordChangesItAndComesBack) {
  User& user = startOnLoans();
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  awaitShown(user, kFirst, L"second");
  user.goTo(kBook);
  user.chooseDesktop(ID_GO_TO_LOOKED_UP);
  awaitShown(user, kFirst, L"Emma");
  awaitShown(user, kPosition, L"    3 / 3");
  user.fillEditor(kFirst, L"Emma, a novel");
  // Before the record that was left.
  SqliteFile(path().wstring()).run("INSERT INTO Loans (rowid, Note) VALUES (0, 'new'), (-1, 'newer')");
  user.chooseDesktop(ID_GO_BACK);
  awaitShown(user, kFirst, L"second");
  awaitShown(user, kPosition, L"    4 / 5");
  EXPECT_THAT(stored("SELECT Title FROM Books"), ElementsAre("Ulysses", "Persuasion", "Emma, a novel"));
  undo(user);
  awaitShown(user, kFirst, L"Emma");
  EXPECT_THAT(stored("SELECT Title FROM Books"), ElementsAre("Ulysses", "Persuasion", "Emma"));
  end();
}

TEST_P(LookUpStory, FromAnotherPageTheWayBackLeadsToTheFormAndWhatIsTypedThereIsStored) {
  User& user = startOnLoans();
  user.goTo(kBook);
  user.chooseDesktop(ID_GO_TO_LOOKED_UP);
  awaitShown(user, kFirst, L"Ulysses");
  user.showPage(OpenedDatabase::kListPage);
  user.chooseDesktop(ID_GO_BACK);
  awaitShown(user, kFirst, L"first");
  ASSERT_TRUE(remote::waitUntil([&] { return remote::focus(user.main()) == control(user, kBook); }));
  if (!user.hasMouse()) {
    // A field of numbers tells the Tab key that it takes numbers only, and then lets it go on.
    userinput::press(VK_TAB);
    user.answer(L"Quivane", L"Only numbers are allowed\nField 'Book'", IDOK);
  }
  user.fillEditor(kFirst, L"typed");
  user.showPage(OpenedDatabase::kListPage);
  EXPECT_THAT(stored("SELECT Note FROM Loans ORDER BY rowid"), ElementsAre("typed", "second", "third"));
  end();
}

TEST_P(LookUpStory, WhatReferencesNothingIsToldAndTheRecordStays) {
  User& user = startOnLoans();
  user.choose(ID_RECORD_LAST);
  awaitShown(user, kFirst, L"third");
  user.goTo(kBook);
  user.chooseDesktop(ID_GO_TO_LOOKED_UP);
  user.answer(L"Quivane", L"This field refers to no record.", IDOK);
  awaitShown(user, kFirst, L"third");
  end();
}

TELL_WITH_BOTH_HANDS(LookUpStory);

}  // namespace
