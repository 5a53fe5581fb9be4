// Stories of a file that another program takes away while it is open.
#include <filesystem>

#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"

namespace fs = std::filesystem;
using testing::ElementsAre;

namespace {

constexpr int kName = 1200;

class GoneFileStory : public StoryTest {
 protected:
  /// The program with three people on its form, the first one shown.
  User& startOnForm() {
    fs::create_directory(place_);
    makePeople(L"Ada", L"Grace", L"Barbara");
    User& user = launch(ours_);
    awaitDatabase();
    user.showPage(OpenedDatabase::kFormPage);
    awaitShown(user, L"Ada");
    return user;
  }
  void makePeople(const std::wstring& first, const std::wstring& second, const std::wstring& third) {
    const std::wstring insert = L"INSERT INTO People VALUES ('";
    makeDatabase(ours_, {L"CREATE TABLE 'People' (Name VarChar(20))", (insert + first + L"')").c_str(),
                         (insert + second + L"')").c_str(), (insert + third + L"')").c_str()});
  }
  /// Nobody can rename a file that is open, but Wine lets everybody rename the folder that holds it.
  void take() { fs::rename(place_, away_); }
  void replace() {
    take();
    fs::create_directory(place_);
    makePeople(L"Edith", L"Marie", L"Emmy");
  }
  static void comeToFront(const User& user) {
    SendMessageW(user.main(), WM_ACTIVATE, WA_INACTIVE, 0);
    SendMessageW(user.main(), WM_ACTIVATE, WA_ACTIVE, 0);
  }

  static std::wstring shown(const User& user) { return remote::text(remote::control(user.main(), kName)); }
  static void awaitShown(const User& user, const wchar_t* text) {
    ASSERT_TRUE(remote::waitUntil([&] { return shown(user) == text; }))
        << testing::PrintToString(shown(user));
  }
  static std::vector<std::string> names(const fs::path& path) {
    return automationtest::sqliteColumn(path.wstring(), "SELECT Name FROM People ORDER BY rowid");
  }

  const fs::path place_ = file("place");
  const fs::path away_ = file("away");
  const fs::path ours_ = place_ / "data.cdb";
  const fs::path copy_ = file("copy.cdb");
  const std::wstring gone_ = L"The file was deleted or renamed while it was open:\n" + ours_.wstring() +
                             L"\n\nNo change can be stored there any more.\n\n"
                             L"Do you want to save what is open under another name and go on there?";
  const std::wstring replaced_ =
      L"Another file has taken the place of the one that is open:\n" + ours_.wstring() +
      L"\n\nNo change can be stored in the one that is open.\n\n"
      L"Yes: save what is open under another name and go on there.\n"
      L"No: open the file that is there now. What was typed and not stored is lost.\n"
      L"Cancel: decide later.";
};

TEST_P(GoneFileStory, WhatWasTypedIsStoredInACopy) {
  User& user = startOnForm();
  user.fillEditor(kName, L"Ada Lovelace");
  take();
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  user.answer(L"Quivane", gone_, IDYES);
  user.chooseFile(copy_);
  awaitShown(user, L"Grace");
  EXPECT_THAT(names(copy_), ElementsAre("Ada Lovelace", "Grace", "Barbara"));
  user.fillEditor(kName, L"Grace Hopper");
  end();
  EXPECT_THAT(names(copy_), ElementsAre("Ada Lovelace", "Grace Hopper", "Barbara"));
  EXPECT_THAT(names(away_ / "data.cdb"), ElementsAre("Ada", "Grace", "Barbara"));
  EXPECT_FALSE(fs::exists(place_));
}

TEST_P(GoneFileStory, TheFileThatIsThereNowIsOpenedWhenTheWindowComesToTheFront) {
  User& user = startOnForm();
  replace();
  comeToFront(user);
  user.answer(L"Quivane", replaced_, IDNO);
  awaitShown(user, L"Edith");
  user.fillEditor(kName, L"Edith Clarke");
  end();
  EXPECT_THAT(names(ours_), ElementsAre("Edith Clarke", "Marie", "Emmy"));
  EXPECT_THAT(names(away_ / "data.cdb"), ElementsAre("Ada", "Grace", "Barbara"));
}

TEST_P(GoneFileStory, TheLossIsToldOnceAndWhatIsTypedAfterItIsKept) {
  User& user = startOnForm();
  take();
  comeToFront(user);
  user.answer(L"Quivane", gone_, IDNO);
  comeToFront(user);
  user.fillEditor(kName, L"Ada Lovelace");
  user.choose(ID_EXIT);
  user.answer(L"Quivane", gone_, IDYES);
  user.chooseFile(copy_);
  EXPECT_EQ(program().exitCode(), 0u);
  EXPECT_THAT(names(copy_), ElementsAre("Ada Lovelace", "Grace", "Barbara"));
}

TELL_WITH_BOTH_HANDS(GoneFileStory);

}  // namespace
