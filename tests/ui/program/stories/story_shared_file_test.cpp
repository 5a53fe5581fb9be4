// Stories of undo, filter and look-up while another program locks the file, changes its structure, or puts
// another file in its place.
#include <filesystem>
#include <string>

#include "dialogs/small/ask_text_ids.h"
#include "resources/command_ids.h"
#include "tests/support/exclusive_lock.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/remote/user_input.h"
#include "views/lookup/look_up_ids.h"

namespace fs = std::filesystem;
using automationtest::SqliteFile;
using testing::ElementsAre;

namespace {

constexpr int kFirst = 1200;  // of the editors
constexpr int kBook = 1201;
constexpr wchar_t kLocked[] = L"Another program is using the database.";

class SharedFileStory : public StoryTest {
 protected:
  User& startOnForm() {
    fs::create_directory(place_);
    makeFile(L"first");
    User& user = launch(ours_);
    awaitDatabase();
    user.showPage(OpenedDatabase::kFormPage);
    awaitShown(user, kFirst, L"first");
    return user;
  }
  void makeFile(const std::wstring& note) {
    const std::wstring insert = L"INSERT INTO Loans VALUES ('" + note + L"', 3), ('second', 8)";
    makeDatabase(ours_, {L"CREATE TABLE 'Loans' (Note Text, Book Integer REFERENCES Books (Id))",
                         L"CREATE TABLE 'Books' (Id Integer PRIMARY KEY, Title Text)",
                         L"INSERT INTO Books VALUES (3, 'Ulysses'), (8, 'Emma')", insert.c_str()});
  }
  /// Nobody can rename a file that is open, but Wine lets everybody rename the folder that holds it.
  void replace() {
    fs::rename(place_, away_);
    fs::create_directory(place_);
    makeFile(L"theirs");
  }
  /// A change of the first note, stored by the move to the next record.
  static void changeNote(User& user) {
    user.fillEditor(kFirst, L"changed");
    user.useButton(ID_RECORD_NEXT, 'T', VK_CONTROL);
    awaitShown(user, kFirst, L"second");
  }
  static void undo(User& user) {
    if (user.hasMouse()) {
      user.chooseDesktop(ID_HISTORY_UNDO);
    } else {
      userinput::press('Z', VK_CONTROL);
    }
  }
  /// Asks for the list, which may not come.
  static void askForList(User& user) {
    user.goTo(kBook);
    if (user.hasMouse()) {
      user.chooseDesktop(ID_LOOK_UP);
    } else {
      userinput::press(VK_F4);
    }
  }
  /// The question what the records that are shown have to contain, answered and not yet accepted.
  static HWND askForFilter(User& user, const std::wstring& text) {
    user.chooseDesktop(ID_FILTER_ALL);
    const HWND dialog = user.dialog(L"Containing");
    user.fill(dialog, IDC_ASKED_TEXT, text);
    return dialog;
  }
  static void awaitShown(const User& user, int id, const std::wstring& text) {
    const auto shown = [&] { return remote::text(remote::control(user.main(), id)); };
    ASSERT_TRUE(remote::waitUntil([&] { return shown() == text; })) << testing::PrintToString(shown());
  }
  static void awaitRows(const User& user, const std::vector<std::wstring>& notes) {
    const HWND grid = remote::recordGrid(user.main());
    ASSERT_TRUE(remote::waitUntil([&] { return remote::itemTexts(grid) == notes; }))
        << testing::PrintToString(remote::itemTexts(grid));
  }
  /// Closes each message until this one was among them. A grid that is painted behind the lock has one of its
  /// own.
  void awaitTold(const User& user, const std::wstring& wanted) {
    const std::wstring ofGrid = std::wstring(L"Records could not be read.\n") + kLocked;
    bool isTold = false;
    EXPECT_TRUE(remote::waitUntil([&] {
      const HWND box = remote::dialog(program().processId(), L"Quivane");
      const std::wstring text = box ? remote::messageBoxText(box) : L"";
      if (text != wanted && text != ofGrid) return isTold && !box && IsWindowEnabled(user.main()) != FALSE;
      isTold = isTold || text == wanted;
      PostMessageW(box, WM_COMMAND, IDOK, 0);
      remote::waitUntil([=] { return !IsWindow(box); });
      return false;
    }));
  }
  /// Gives up the waiting that is told in a line under the window.
  void giveUp(const User& user) {
    ASSERT_TRUE(remote::waitUntil([this] {
      for (HWND line = nullptr; (line = FindWindowExW(nullptr, line, L"Static", nullptr)) != nullptr;) {
        if (remote::processOf(line) != program().processId() || !IsWindowVisible(line)) continue;
        return remote::text(line) == L"Another program is using the file. Esc gives up.";
      }
      return false;
    }));
    PostMessageW(user.main(), WM_KEYDOWN, VK_ESCAPE, 0);
  }
  std::vector<std::string> notes(const fs::path& path) const {
    return automationtest::sqliteColumn(path.wstring(), "SELECT Note FROM Loans ORDER BY rowid");
  }

  const fs::path place_ = file("place");
  const fs::path away_ = file("away");
  const fs::path ours_ = place_ / "data.cdb";
  const std::wstring replaced_ =
      L"Another file has taken the place of the one that is open:\n" + ours_.wstring() +
      L"\n\nNo change can be stored in the one that is open.\n\n"
      L"Yes: save what is open under another name and go on there.\n"
      L"No: open the file that is there now. What was typed and not stored is lost.\n"
      L"Cancel: decide later.";
};

TEST_P(SharedFileStory, AnUndoBehindALockIsGivenUpAndDoneAfterwards) {
  User& user = startOnForm();
  changeNote(user);
  auto lock = lockExclusively(ours_.wstring());
  ASSERT_TRUE(lock->isHeld());
  undo(user);
  giveUp(user);
  user.answer(L"Quivane", std::wstring(L"The change could not be undone.\n") + kLocked, IDOK);
  lock.reset();
  EXPECT_THAT(notes(ours_), ElementsAre("changed", "second"));
  undo(user);
  awaitShown(user, kFirst, L"first");
  EXPECT_THAT(notes(ours_), ElementsAre("first", "second"));
  end();
}

TEST_P(SharedFileStory, ALookUpBehindALockEndsByItselfAfterFiveSeconds) {
  User& user = startOnForm();
  auto lock = lockExclusively(ours_.wstring());
  ASSERT_TRUE(lock->isHeld());
  const ULONGLONG begin = GetTickCount64();
  askForList(user);
  user.answer(L"Quivane", std::wstring(L"The records of table 'Books' could not be opened.\n") + kLocked,
              IDOK);
  EXPECT_GT(GetTickCount64() - begin, 4500u);
  lock.reset();
  askForList(user);
  const HWND dialog = user.dialog(L"Book");
  const HWND list = remote::control(dialog, IDC_LOOK_UP_RECORDS);
  EXPECT_EQ(remote::itemTexts(list, 1), (std::vector<std::wstring>{L"Ulysses", L"Emma"}));
  user.pick(dialog, IDC_LOOK_UP_RECORDS, 1);
  user.accept(dialog);
  awaitShown(user, kBook, L"8");
  end();
}

TEST_P(SharedFileStory, AFilterBehindALockIsGivenUpAndChosenAgain) {
  User& user = startOnForm();
  user.showPage(OpenedDatabase::kListPage);
  awaitRows(user, {L"first", L"second"});
  HWND question = askForFilter(user, L"sec");
  auto lock = lockExclusively(ours_.wstring());
  ASSERT_TRUE(lock->isHeld());
  user.accept(question);
  giveUp(user);
  awaitTold(user, std::wstring(L"The records could not be ordered or filtered.\n") + kLocked);
  lock.reset();
  awaitRows(user, {L"first", L"second"});
  question = askForFilter(user, L"sec");
  user.accept(question);
  awaitRows(user, {L"second"});
  end();
}

TEST_P(SharedFileStory, InAFileThatWasReplacedNothingIsTakenBack) {
  User& user = startOnForm();
  changeNote(user);
  replace();
  undo(user);
  user.answer(L"Quivane", replaced_, IDNO);
  awaitShown(user, kFirst, L"theirs");
  EXPECT_THAT(notes(away_ / "data.cdb"), ElementsAre("changed", "second"));
  EXPECT_THAT(notes(ours_), ElementsAre("theirs", "second"));
  userinput::press('Z', VK_CONTROL);
  user.showPage(OpenedDatabase::kListPage);
  awaitRows(user, {L"theirs", L"second"});
  end();
  EXPECT_THAT(notes(ours_), ElementsAre("theirs", "second"));
}

TEST_P(SharedFileStory, WhatIsChosenInAFileThatWasReplacedIsNotStoredInTheOther) {
  User& user = startOnForm();
  replace();
  askForList(user);
  const HWND dialog = user.dialog(L"Book");
  user.pick(dialog, IDC_LOOK_UP_RECORDS, 1);
  user.accept(dialog);
  // As soon as the window is in front again.
  user.answer(L"Quivane", replaced_, IDNO);
  awaitShown(user, kFirst, L"theirs");
  awaitShown(user, kBook, L"3");
  end();
  EXPECT_THAT(automationtest::sqliteColumn(ours_.wstring(), "SELECT Book FROM Loans"), ElementsAre("3", "8"));
}

TEST_P(SharedFileStory, ATableThatWasDroppedIsToldOf) {
  User& user = startOnForm();
  changeNote(user);
  SqliteFile(ours_.wstring()).run("DROP TABLE Books");
  askForList(user);
  user.answer(L"Quivane", L"The records of table 'Books' could not be opened.\nno such table: Books", IDOK);
  user.showPage(OpenedDatabase::kTablesPage);
  SqliteFile(ours_.wstring()).run("DROP TABLE Loans; CREATE TABLE Other (a Text)");
  const HWND tables = remote::shownPage(user.main());
  ASSERT_TRUE(
      remote::waitUntil([=] { return remote::itemTexts(tables) == std::vector<std::wstring>{L"Other"}; }));
  undo(user);
  user.answer(
      L"Quivane",
      L"The change could not be undone.\nThe table Loans is no longer there, or has got another structure.",
      IDOK);
  end();
}

TEST_P(SharedFileStory, AFilterOfATableThatWasDroppedIsToldOf) {
  User& user = startOnForm();
  user.showPage(OpenedDatabase::kListPage);
  awaitRows(user, {L"first", L"second"});
  const HWND question = askForFilter(user, L"sec");
  SqliteFile(ours_.wstring()).run("DROP TABLE Loans");
  user.accept(question);
  user.answer(L"Quivane", L"The records could not be ordered or filtered.\nno such table: Loans", IDOK);
  end();
}

TELL_WITH_BOTH_HANDS(SharedFileStory);

}  // namespace
