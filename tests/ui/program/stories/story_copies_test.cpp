// Stories of former states that are looked at and put back.
#include "tests/ui/program/stories/copies_story.h"

using testing::ElementsAre;

namespace {

TEST_P(CopiesStory, AFormerStateIsLookedAtAndPutBack) {
  User& user = start();
  changeTitle(user, L"Dubliners");
  ASSERT_THAT(stored("SELECT Title FROM Books"), ElementsAre("Dubliners"));

  HWND dialog = goBackTo(user, 1);
  const HWND list = remote::control(dialog, IDC_GO_BACK_COPIES);
  EXPECT_THAT(remote::itemTexts(list, 2), ElementsAre(L"3"));
  EXPECT_THAT(remote::itemTexts(list, 3), ElementsAre(L"a change"));
  user.accept(dialog);
  answerBeginning(user, L"This is " + name() + L" as it was on ", IDOK);
  user.showPage(OpenedDatabase::kFormPage);
  EXPECT_EQ(shownTitle(user), L"Ulysses");

  // "Now" leads back to the file.
  dialog = goBackTo(user, 2);
  EXPECT_EQ(remote::itemTexts(remote::control(dialog, IDC_GO_BACK_COPIES))[0], L"Now");
  user.accept(dialog);
  ASSERT_TRUE(remote::waitUntil([&] { return shownTitle(user) == L"Dubliners"; }));

  dialog = goBackTo(user, 1);
  user.press(dialog, IDC_GO_BACK_PUT);
  answerBeginning(user, L"Do you want to put back " + name() + L" as it was on ", IDYES);
  ASSERT_TRUE(remote::waitUntil([&] { return shownTitle(user) == L"Ulysses"; }));
  EXPECT_THAT(stored("SELECT Title FROM Books"), ElementsAre("Ulysses"));

  // How it was before is a copy now.
  dialog = goBackTo(user, 2);
  EXPECT_THAT(remote::itemTexts(remote::control(dialog, IDC_GO_BACK_COPIES), 3),
              ElementsAre(L"going back", L"a change"));
  user.leave(dialog);
  end();
}

TEST_P(CopiesStory, WhoSaysNoHasChangedNothing) {
  User& user = start();
  changeTitle(user, L"Dubliners");
  const HWND dialog = goBackTo(user, 1);
  user.press(dialog, IDC_GO_BACK_PUT);
  answerBeginning(user, L"Do you want to put back ", IDNO);
  EXPECT_THAT(stored("SELECT Title FROM Books"), ElementsAre("Dubliners"));
  end();
}

TEST_P(CopiesStory, ADeletedTableComesBackAlone) {
  User& user = start();
  changeTitle(user, L"Dubliners");
  user.pickItem(1);
  user.choose(ID_TABLE_DELETE);
  user.answer(L"Quivane", L"Are you sure you want to delete table 'People' ?", IDYES);
  ASSERT_TRUE(remote::waitUntil([&] { return stored("SELECT name FROM sqlite_schema").size() == 1; }));
  HWND dialog = goBackTo(user, 2);
  EXPECT_THAT(remote::itemTexts(remote::control(dialog, IDC_GO_BACK_COPIES), 3),
              ElementsAre(L"deleting a table", L"a change"));
  user.press(dialog, IDC_GO_BACK_TABLE);
  user.accept(user.dialog(L"Put Table Back"));
  ASSERT_TRUE(remote::waitUntil([&] { return stored("SELECT name FROM sqlite_schema").size() == 2; }));
  EXPECT_THAT(stored("SELECT Name FROM People"), ElementsAre("Joyce", "Bloom"));
  EXPECT_THAT(stored("SELECT Title FROM Books"), ElementsAre("Dubliners"));
  end();
}

TEST_P(CopiesStory, ADeletedDatabaseComesBackWithoutOneThatIsOpen) {
  User& user = launch();
  user.choose(ID_DATABASE_DELETE);
  user.chooseFile(path());
  user.answer(L"Quivane", L"Are you sure you want to delete database file " + name() + L" ?", IDYES);
  ASSERT_TRUE(remote::waitUntil([&] { return !std::filesystem::exists(path()); }));
  const HWND dialog = goBackTo(user, 1);
  EXPECT_THAT(remote::itemTexts(remote::control(dialog, IDC_GO_BACK_COPIES), 3),
              ElementsAre(L"deleting the database"));
  user.press(dialog, IDC_GO_BACK_PUT);
  answerBeginning(user, L"Do you want to put back ", IDYES);
  ASSERT_TRUE(remote::waitUntil([&] { return std::filesystem::exists(path()); }));
  awaitDatabase();
  EXPECT_THAT(stored("SELECT Name FROM People"), ElementsAre("Joyce", "Bloom"));
  end();
}

TEST_P(CopiesStory, ThereAreNoneBeforeSomethingWasChanged) {
  User& user = launch();
  user.chooseDesktop(ID_GO_BACK_TO);
  user.answer(L"Quivane", L"There are no copies yet.", IDOK);
  EXPECT_FALSE(std::filesystem::exists(keptCopiesPath()));
  user.exit();
}

TELL_WITH_BOTH_HANDS(CopiesStory);

}  // namespace
