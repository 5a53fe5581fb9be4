// Stories of a file that another program keeps locked, and of statements that never end.
#include <string>

#include "resources/command_ids.h"
#include "tests/support/exclusive_lock.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/remote/user_input.h"

using testing::ElementsAre;

namespace {

constexpr int kName = 1200;

class BusyStory : public StoryTest {
 protected:
  User& startOnForm() {
    makeDatabase(
        path(),
        {L"CREATE TABLE 'People' (Name VarChar(20))", L"INSERT INTO People VALUES ('Ada')",
         L"INSERT INTO People VALUES ('Grace')", L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)",
         L"INSERT INTO QuivaneQueries VALUES ('endless', 'WITH RECURSIVE s(n) AS (SELECT 1 UNION "
         L"ALL SELECT n + 1 FROM s) SELECT count(*) FROM s, People')"});
    User& user = start();
    user.showPage(OpenedDatabase::kFormPage);
    awaitShown(user, L"Ada");
    return user;
  }
  static std::wstring shown(const User& user) { return remote::text(remote::control(user.main(), kName)); }
  static void awaitShown(const User& user, const wchar_t* text) {
    ASSERT_TRUE(remote::waitUntil([&] { return shown(user) == text; }))
        << testing::PrintToString(shown(user));
  }

  /// The line under the window, once it is there.
  HWND awaitLine() {
    HWND line = nullptr;
    remote::waitUntil([&] {
      line = FindWindowExW(nullptr, nullptr, L"Static", nullptr);
      while (line && (remote::processOf(line) != program().processId() || !IsWindowVisible(line))) {
        line = FindWindowExW(nullptr, line, L"Static", nullptr);
      }
      return line != nullptr;
    });
    return line;
  }
  static void pressEsc(const User& user) { PostMessageW(user.main(), WM_KEYDOWN, VK_ESCAPE, 0); }
  static void awaitGone(HWND window) {
    EXPECT_TRUE(remote::waitUntil([&] { return !IsWindow(window); }));
  }
};

TEST_P(BusyStory, WaitingForAnotherProgramIsToldAndGivenUpByEsc) {
  User& user = startOnForm();
  auto lock = lockExclusively(path().wstring());
  ASSERT_TRUE(lock->isHeld());
  const ULONGLONG begin = GetTickCount64();
  PostMessageW(user.main(), WM_COMMAND, ID_RECORD_NEXT, 0);
  const HWND line = awaitLine();
  ASSERT_TRUE(line);
  EXPECT_GT(GetTickCount64() - begin, 900u);
  EXPECT_EQ(remote::text(line), L"Another program is using the file. Esc gives up.");
  pressEsc(user);
  user.answer(L"Quivane", L"The record could not be read.\nAnother program is using the database.", IDOK);
  EXPECT_LT(GetTickCount64() - begin, 4500u) << "before the five seconds were over";
  awaitGone(line);
  lock.reset();
  SendMessageW(user.main(), WM_COMMAND, ID_RECORD_PREVIOUS, 0);
  awaitShown(user, L"Ada");
  end();
}

TEST_P(BusyStory, AStatementThatNeverEndsIsToldAndStoppedByEsc) {
  User& user = startOnForm();
  user.showPage(OpenedDatabase::kQueriesPage);
  user.pickItem(0);
  const HWND tab = remote::tabControl(user.main());
  // Behind the choice of the query, which is entered in the same way. Each page opens its records.
  if (user.hasMouse()) {
    userinput::click(tab, remote::tabPlace(tab, OpenedDatabase::kFormPage));
  } else {
    userinput::press(VK_TAB, VK_CONTROL);
  }
  const HWND line = awaitLine();
  ASSERT_TRUE(line);
  EXPECT_EQ(remote::text(line), L"The database is working. Esc stops.");
  // No command runs beside it.
  SendMessageW(user.main(), WM_COMMAND, ID_DATABASE_CLOSE, 0);
  pressEsc(user);
  awaitGone(line);
  user.showPage(OpenedDatabase::kTablesPage);
  user.pickItem(0);
  user.showPage(OpenedDatabase::kFormPage);
  awaitShown(user, L"Ada");
  end();
}

TELL_WITH_BOTH_HANDS(BusyStory);

}  // namespace
