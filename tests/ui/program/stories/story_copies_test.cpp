// Stories of former states that are looked at and put back.
#include "dialogs/copies/go_back_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"
#include "views/form/form_ids.h"

using testing::ElementsAre;
using testing::StartsWith;

namespace {

std::filesystem::path copiesPath() {
  std::wstring folder(MAX_PATH, L'\0');
  folder.resize(GetEnvironmentVariableW(L"LOCALAPPDATA", folder.data(), static_cast<DWORD>(folder.size())));
  return std::filesystem::path(folder) / L"Quivane copies";
}

class CopiesStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    forgetCopies();
    makeDatabase(path(),
                 {L"CREATE TABLE 'Books' (Title VarChar(40))", L"INSERT INTO Books VALUES ('Ulysses')",
                  L"CREATE TABLE 'People' (Name Text)", L"INSERT INTO People VALUES ('Joyce'), ('Bloom')"});
  }
  void TearDown() override {
    StoryTest::TearDown();
    forgetCopies();
  }

  /// The list of copies, once it has so many rows.
  HWND goBackTo(User& user, std::size_t rows) {
    user.chooseDesktop(ID_GO_BACK_TO);
    const HWND dialog = user.dialog(L"Go Back To");
    const HWND list = remote::control(dialog, IDC_GO_BACK_COPIES);
    EXPECT_TRUE(remote::waitUntil([=] { return remote::itemTexts(list).size() == rows; }))
        << remote::itemTexts(list).size();
    return dialog;
  }
  /// Answers the message box that begins so.
  void answerBeginning(User& user, const std::wstring& beginning, int button) {
    const std::wstring text = remote::messageBoxText(user.dialog(L"Quivane"));
    EXPECT_THAT(text, StartsWith(beginning));
    user.answer(L"Quivane", text, button);
  }
  void changeTitle(User& user, const wchar_t* title) {
    user.showPage(OpenedDatabase::kFormPage);
    user.fillEditor(kFirstTextEditorId, title);
    user.showPage(OpenedDatabase::kTablesPage);
  }
  std::wstring shownTitle(User& user) {
    return remote::text(remote::control(user.main(), kFirstTextEditorId));
  }
  std::wstring name() const { return path().wstring(); }

 private:
  static void forgetCopies() {
    std::error_code ignored;
    if (!std::filesystem::exists(copiesPath())) return;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(copiesPath())) {
      SetFileAttributesW(entry.path().c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    std::filesystem::remove_all(copiesPath(), ignored);
  }
};

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
  EXPECT_FALSE(std::filesystem::exists(copiesPath()));
  user.exit();
}

TELL_WITH_BOTH_HANDS(CopiesStory);

}  // namespace
