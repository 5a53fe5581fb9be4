// Stories of changes that are taken back and done again.
#include "base/settings/options.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/remote/user_input.h"
#include "views/form/form_ids.h"

using testing::ElementsAre;

namespace {

constexpr int kTablesPage = 0;
constexpr int kFormPage = 1;
constexpr int kListPage = 2;
constexpr int kName = 1200;

class HistoryStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions);
    SettingsStore::writeDword(SettingsStore::kOptions, L"WarningOnDeletion", 0);
    makeDatabase(path(),
                 {L"CREATE TABLE 'Books' (Title VarChar(40))", L"INSERT INTO Books VALUES ('Dubliners')",
                  L"INSERT INTO Books VALUES ('Ulysses')", L"INSERT INTO Books VALUES ('Emma')",
                  L"CREATE TABLE 'Notes' (Note VarChar(40))", L"INSERT INTO Notes VALUES ('mine')"});
  }

  static void awaitShown(const User& user, const wchar_t* text) {
    const auto shown = [&] { return remote::text(remote::control(user.main(), kName)); };
    ASSERT_TRUE(remote::waitUntil([&] { return shown() == text; })) << testing::PrintToString(shown());
  }
  static void awaitPosition(const User& user, const wchar_t* text) {
    constexpr int kPosition = 1012;
    const auto shown = [&] { return remote::text(remote::control(user.main(), kPosition)); };
    ASSERT_TRUE(remote::waitUntil([&] { return shown() == text; })) << testing::PrintToString(shown());
  }
  /// By the menu with the mouse, by the key with the keyboard.
  static void undo(User& user) { take(user, ID_HISTORY_UNDO, 'Z'); }
  static void redo(User& user) { take(user, ID_HISTORY_REDO, 'Y'); }
  static void take(User& user, int command, WORD key) {
    if (user.hasMouse()) {
      user.chooseDesktop(command);
    } else {
      userinput::press(key, VK_CONTROL);
    }
  }
  std::vector<std::string> titles() const { return stored("SELECT Title FROM Books ORDER BY rowid"); }
};

TEST_P(HistoryStory, ADeletedRecordComesBackInItsPlace) {
  User& user = start();
  user.showPage(kFormPage);
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  awaitShown(user, L"Ulysses");
  user.choose(ID_RECORD_DELETE);
  awaitShown(user, L"Dubliners");
  awaitPosition(user, L"    1 / 2");
  undo(user);
  awaitShown(user, L"Ulysses");
  awaitPosition(user, L"    2 / 3");
  EXPECT_THAT(titles(), ElementsAre("Dubliners", "Ulysses", "Emma"));
  redo(user);
  awaitPosition(user, L"    2 / 2");
  EXPECT_THAT(titles(), ElementsAre("Dubliners", "Emma"));
  undo(user);
  awaitPosition(user, L"    2 / 3");
  end();
  EXPECT_THAT(titles(), ElementsAre("Dubliners", "Ulysses", "Emma"));
}

TEST_P(HistoryStory, ChangesAreTakenBackFromAnotherTableAndFromTheList) {
  User& user = start();
  user.showPage(kFormPage);
  user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
  awaitShown(user, L"Ulysses");
  user.fillEditor(kName, L"Finnegans Wake");
  user.showPage(kTablesPage);
  EXPECT_THAT(titles(), ElementsAre("Dubliners", "Finnegans Wake", "Emma"));
  user.pickItem(1);
  user.showPage(kFormPage);
  awaitShown(user, L"mine");
  undo(user);
  awaitShown(user, L"Ulysses");
  EXPECT_THAT(titles(), ElementsAre("Dubliners", "Ulysses", "Emma"));
  user.showPage(kListPage);
  redo(user);
  ASSERT_TRUE(remote::waitUntil([&] { return titles()[1] == "Finnegans Wake"; }));
  awaitPosition(user, L"    2 / 3");
  end();
  EXPECT_THAT(titles(), ElementsAre("Dubliners", "Finnegans Wake", "Emma"));
}

TEST_P(HistoryStory, WhatIsTypedIsTheEditorsOwnToUndoByTheKey) {
  User& user = start();
  user.showPage(kFormPage);
  awaitShown(user, L"Dubliners");
  user.fillEditor(kName, L"typed");
  userinput::press('Z', VK_CONTROL);
  ASSERT_TRUE(
      remote::waitUntil([&] { return remote::text(remote::control(user.main(), kName)) != L"typed"; }));
  user.fillEditor(kName, L"typed");
  // The menu's is about records: it stores what is typed first.
  user.chooseDesktop(ID_HISTORY_UNDO);
  awaitShown(user, L"Dubliners");
  redo(user);
  awaitShown(user, L"typed");
  end();
  EXPECT_THAT(titles(), ElementsAre("typed", "Ulysses", "Emma"));
}

TELL_WITH_BOTH_HANDS(HistoryStory);

}  // namespace
