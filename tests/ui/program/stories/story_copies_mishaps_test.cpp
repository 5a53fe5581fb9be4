// Stories of former states where something stands in the way: what is typed or chosen at that moment, other
// programs, a second start.
#include "dialogs/small/ask_text_ids.h"
#include "tests/ui/program/stories/copies_story.h"

namespace fs = std::filesystem;
using automationtest::SqliteFile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class CopyMishapsStory : public CopiesStory {
 protected:
  /// Of so many copies that the list shows.
  void putOldestBack(User& user, std::size_t rows) {
    const HWND dialog = goBackTo(user, rows);
    user.pick(dialog, IDC_GO_BACK_COPIES, static_cast<int>(rows) - 1);
    user.press(dialog, IDC_GO_BACK_PUT);
    answerBeginning(user, L"Do you want to put back ", IDYES);
  }
  std::string title() const {
    const auto titles = stored("SELECT Title FROM Books");
    return titles.empty() ? std::string() : titles.front();
  }
  void awaitTitle(const char* wanted) const {
    ASSERT_TRUE(remote::waitUntil([&] { return title() == wanted; })) << title();
  }
  static std::string titleIn(const fs::path& database) {
    const auto titles = automationtest::sqliteColumn(database.wstring(), "SELECT Title FROM Books");
    return titles.empty() ? std::string() : titles.front();
  }
};

TEST_P(CopyMishapsStory, WhatIsTypedIsStoredAndKeptBeforeTheFormerStateComesBack) {
  User& user = start();
  changeTitle(user, L"Dubliners");
  user.showPage(OpenedDatabase::kFormPage);
  user.fillEditor(kFirstTextEditorId, L"typed and not stored");
  putOldestBack(user, 1);
  ASSERT_TRUE(remote::waitUntil([&] { return shownTitle(user) == L"Ulysses"; }));
  awaitTitle("Ulysses");
  ASSERT_EQ(keptCopies().size(), 2u);
  EXPECT_EQ(titleIn(keptCopies().back()), "typed and not stored");
  // What comes back is the user's to change.
  user.fillEditor(kFirstTextEditorId, L"Exiles");
  end();
  EXPECT_EQ(title(), "Exiles");
}

TEST_P(CopyMishapsStory, BackAndForth) {
  User& user = start();
  changeTitle(user, L"Dubliners");
  putOldestBack(user, 1);
  awaitTitle("Ulysses");
  const HWND dialog = goBackTo(user, 2);
  user.press(dialog, IDC_GO_BACK_PUT);
  answerBeginning(user, L"Do you want to put back ", IDYES);
  awaitTitle("Dubliners");
  putOldestBack(user, 3);
  awaitTitle("Ulysses");
  EXPECT_EQ(keptCopies().size(), 4u);
  end();
}

TEST_P(CopyMishapsStory, TheRecordsThatAFilterShowsAreThoseOfTheFormerState) {
  SqliteFile(path().wstring()).run("INSERT INTO Books VALUES ('Emma'), ('Ulrike')");
  User& user = start();
  changeTitle(user, L"Dubliners");
  user.showPage(OpenedDatabase::kListPage);
  const HWND grid = remote::recordGrid(user.main());
  user.chooseDesktop(ID_FILTER_ALL);
  const HWND question = user.dialog(L"Containing");
  user.fill(question, IDC_ASKED_TEXT, L"ul");
  user.accept(question);
  ASSERT_TRUE(remote::waitUntil([&] { return remote::itemCount(grid) == 1; }));
  putOldestBack(user, 1);
  ASSERT_TRUE(remote::waitUntil([&] {
    const HWND shown = remote::recordGrid(user.main());
    return shown != nullptr && remote::itemCount(shown) == 2;
  })) << remote::itemCount(remote::recordGrid(user.main()));
  EXPECT_EQ(remote::itemText(remote::recordGrid(user.main()), 0), L"Ulysses");
  EXPECT_EQ(remote::itemText(remote::recordGrid(user.main()), 1), L"Ulrike");
  end();
}

TEST_P(CopyMishapsStory, AQueryThatIsInUseIsTheOneOfTheFormerState) {
  SqliteFile(path().wstring())
      .run(
          "CREATE TABLE QuivaneQueries (QueryName Text, SQL Text); INSERT INTO QuivaneQueries VALUES "
          "('short', 'Select Title from Books where length(Title) < 9')");
  User& user = start();
  changeTitle(user, L"Dubliners and more");
  user.showPage(OpenedDatabase::kQueriesPage);
  user.pickItem(0);
  user.showPage(OpenedDatabase::kListPage);
  ASSERT_TRUE(remote::waitUntil([&] { return remote::itemCount(remote::recordGrid(user.main())) == 0; }));
  putOldestBack(user, 1);
  ASSERT_TRUE(remote::waitUntil([&] {
    const HWND grid = remote::recordGrid(user.main());
    return grid != nullptr && remote::itemTexts(grid) == std::vector<std::wstring>{L"Ulysses"};
  }));
  end();
}

TEST_P(CopyMishapsStory, ACopyThatIsLookedAtStaysOpenAtASecondStartAndGoesWhenAnotherFileIsOpened) {
  const fs::path other = file("other.cdb");
  makeDatabase(other, {L"CREATE TABLE 'Films' (Name Text)", L"INSERT INTO Films VALUES ('Metropolis')"});
  User& user = start();
  changeTitle(user, L"Dubliners");
  user.accept(goBackTo(user, 1));
  answerBeginning(user, L"This is " + name() + L" as it was on ", IDOK);
  {
    const RunningProgram second(quoted(other));
    constexpr DWORD kExitNoWindow = 16;
    EXPECT_EQ(second.exitCode(), kExitNoWindow);
  }
  user.leave(goBackTo(user, 2));
  user.choose(ID_DATABASE_OPEN);
  user.chooseFile(other);
  ASSERT_TRUE(remote::waitUntil([&] {
    return remote::itemTexts(remote::shownPage(user.main())) == std::vector<std::wstring>{L"Films"};
  }));
  // The copies of the other one are listed still, without a state that would be the present one.
  user.chooseDesktop(ID_GO_BACK_TO);
  const HWND dialog = user.dialog(L"Go Back To");
  EXPECT_THAT(remote::itemTexts(remote::control(dialog, IDC_GO_BACK_COPIES)), IsEmpty());
  user.pick(dialog, IDC_GO_BACK_FILE, 1);
  ASSERT_TRUE(
      remote::waitUntil([&] { return remote::itemCount(remote::control(dialog, IDC_GO_BACK_COPIES)) == 1; }));
  user.press(dialog, IDC_GO_BACK_PUT);
  answerBeginning(user, L"Do you want to put back " + name() + L" as it was on ", IDYES);
  awaitTitle("Ulysses");
  EXPECT_EQ(remote::itemTexts(remote::shownPage(user.main())), std::vector<std::wstring>{L"Films"})
      << "what is open stays open";
  end();
}

TEST_P(CopyMishapsStory, ACopyThatGetsItsNumberWhileTheListIsShownIsPutBackAllTheSame) {
  User& user = start();
  changeTitle(user, L"Dubliners");
  const HWND dialog = goBackTo(user, 1);
  ASSERT_EQ(keptCopies().size(), 1u);
  const fs::path listed = keptCopies().front();
  std::wstring counted = listed.stem().wstring();
  counted = counted.substr(0, counted.find(L" change")) + L" change 33.cdb";
  SetFileAttributesW(listed.c_str(), FILE_ATTRIBUTE_NORMAL);
  fs::rename(listed, listed.parent_path() / counted);
  user.press(dialog, IDC_GO_BACK_PUT);
  answerBeginning(user, L"Do you want to put back ", IDYES);
  awaitTitle("Ulysses");
  end();
}

TEST_P(CopyMishapsStory, WhileAnotherProgramWritesNothingIsPutBackAndLaterItIs) {
  User& user = start();
  changeTitle(user, L"Dubliners");
  {
    SqliteFile other(path().wstring());
    other.run("BEGIN IMMEDIATE; INSERT INTO People VALUES ('unfinished')");
    const ULONGLONG begin = GetTickCount64();
    putOldestBack(user, 1);
    user.answer(L"Quivane",
                L"Database " + name() + L" could not be put back.\nAnother program is using the database.",
                IDOK);
    EXPECT_GT(GetTickCount64() - begin, 4000u) << "it may be over in a moment";
    EXPECT_LT(GetTickCount64() - begin, 20'000u);
    other.run("ROLLBACK");
  }
  EXPECT_EQ(title(), "Dubliners");
  EXPECT_EQ(keptCopies().size(), 1u);
  putOldestBack(user, 1);
  awaitTitle("Ulysses");
  end();
}

TEST_P(CopyMishapsStory, IntoAFileThatIsNotToBeWrittenNothingIsPutBack) {
  User& user = start();
  changeTitle(user, L"Dubliners");
  SetFileAttributesW(path().c_str(), FILE_ATTRIBUTE_READONLY);
  putOldestBack(user, 1);
  user.answer(L"Quivane",
              L"Database " + name() + L" could not be put back.\nThe file is marked as not to be written.",
              IDOK);
  EXPECT_EQ(title(), "Dubliners");
  SetFileAttributesW(path().c_str(), FILE_ATTRIBUTE_NORMAL);
  putOldestBack(user, 1);
  awaitTitle("Ulysses");
  end();
}

TEST_P(CopyMishapsStory, AFileThatWasTakenAwayIsMadeAnewInItsPlace) {
  const fs::path place = file("place");
  const fs::path ours = place / "ours.cdb";
  fs::create_directory(place);
  fs::copy_file(path(), ours);
  User& user = launch(ours);
  awaitDatabase();
  changeTitle(user, L"Dubliners");
  // Nobody can rename a file that is open, but Wine lets everybody rename the folder that holds it.
  fs::rename(place, file("away"));
  fs::create_directory(place);
  SendMessageW(user.main(), WM_ACTIVATE, WA_INACTIVE, 0);
  SendMessageW(user.main(), WM_ACTIVATE, WA_ACTIVE, 0);
  answerBeginning(user, L"The file was deleted or renamed while it was open:\n" + ours.wstring(), IDNO);
  const HWND dialog = goBackTo(user, 1);
  user.press(dialog, IDC_GO_BACK_PUT);
  answerBeginning(user, L"Do you want to put back ", IDYES);
  ASSERT_TRUE(remote::waitUntil([&] { return fs::exists(ours); }));
  awaitDatabase();
  EXPECT_EQ(titleIn(ours), "Ulysses");
  EXPECT_EQ(titleIn(file("away") / "ours.cdb"), "Dubliners");
  changeTitle(user, L"Exiles");
  user.exit();
  EXPECT_EQ(titleIn(ours), "Exiles");
}

TELL_WITH_BOTH_HANDS(CopyMishapsStory);

}  // namespace
