// Stories of a file that can only be read.
#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"

using testing::ElementsAre;

namespace {

constexpr int kName = 1200;

class ReadOnlyStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    makeDatabase(path(), {L"CREATE TABLE 'People' (Name VarChar(20))", L"INSERT INTO People VALUES ('Ada')",
                          L"INSERT INTO People VALUES ('Grace')"});
    SetFileAttributesW(path().c_str(), FILE_ATTRIBUTE_READONLY);
  }
  void TearDown() override {
    StoryTest::TearDown();
    SetFileAttributesW(path().c_str(), FILE_ATTRIBUTE_NORMAL);
  }

  static HWND editor(const User& user) { return remote::control(user.main(), kName); }
  static void awaitShown(const User& user, const wchar_t* text) {
    ASSERT_TRUE(remote::waitUntil([&] { return remote::text(editor(user)) == text; }));
  }
  static void typeLetter(const User& user) { PostMessageW(editor(user), WM_CHAR, L'x', 1); }
};

TEST_P(ReadOnlyStory, TheFirstKeyIsAnsweredWithTheReasonAndTheNextOnesAreNot) {
  User& user = start();
  user.showPage(OpenedDatabase::kFormPage);
  awaitShown(user, L"Ada");
  typeLetter(user);
  user.answer(L"Quivane", L"What is typed can't be stored.\nThe database can only be read.", IDOK);
  typeLetter(user);
  // Nothing is asked and nothing was changed.
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  awaitShown(user, L"Grace");
  typeLetter(user);
  user.useButton(ID_RECORD_PREVIOUS, 'P', VK_CONTROL);
  awaitShown(user, L"Ada");
  end();
  EXPECT_THAT(stored("SELECT Name FROM People ORDER BY rowid"), ElementsAre("Ada", "Grace"));
}

TELL_WITH_BOTH_HANDS(ReadOnlyStory);

}  // namespace
