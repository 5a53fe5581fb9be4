// What becomes of keys while something takes its time, and afterwards.
#include "app/window/progress_line.h"

#include <string>

#include "gtest/gtest.h"

namespace {

constexpr wchar_t kText[] = L"The database is working. Esc stops.";
constexpr ULONGLONG kNever = 1000000;

class ProgressLineTest : public testing::Test {
 protected:
  ProgressLineTest()
      : owner_(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 100, 100, nullptr, nullptr,
                               GetModuleHandleW(nullptr), nullptr)) {}
  ~ProgressLineTest() override { DestroyWindow(owner_); }

  void press(WPARAM key) const { PostMessageW(owner_, WM_KEYDOWN, key, 0); }
  /// Whether a message of these is there, which is taken away.
  static bool holds(UINT first, UINT last, MSG* message) {
    return PeekMessageW(message, nullptr, first, last, PM_REMOVE) != FALSE;
  }
  static bool holdsKeys() {
    MSG message{};
    return holds(WM_KEYFIRST, WM_KEYLAST, &message);
  }

  HWND owner_;
  ProgressLine line_;
};

TEST_F(ProgressLineTest, EscStopsAndOtherKeysAreDroppedWhileItStands) {
  EXPECT_TRUE(line_.goesOn(owner_, kText, 0));
  press('A');
  EXPECT_TRUE(line_.goesOn(owner_, kText, 0));
  EXPECT_FALSE(holdsKeys());
  press('A');
  press(VK_ESCAPE);
  EXPECT_FALSE(line_.goesOn(owner_, kText, 0));
  line_.end();
}

TEST_F(ProgressLineTest, WhatIsPressedTooLateToStopAnythingIsDroppedToo) {
  ASSERT_TRUE(line_.goesOn(owner_, kText, 0));
  press(VK_ESCAPE);
  press('A');
  PostMessageW(owner_, WM_SYSKEYDOWN, 'F', 0);
  PostMessageW(owner_, WM_COMMAND, 7, 0);
  line_.end();
  EXPECT_FALSE(holdsKeys());
  MSG message{};
  ASSERT_TRUE(holds(WM_COMMAND, WM_COMMAND, &message)) << "all else waits for the end";
  EXPECT_EQ(7u, message.wParam);
}

TEST_F(ProgressLineTest, WhatIsPressedWhileNothingIsShownStays) {
  ASSERT_TRUE(line_.goesOn(owner_, kText, kNever));
  press(VK_ESCAPE);
  line_.end();
  EXPECT_TRUE(holdsKeys());
}

TEST_F(ProgressLineTest, WhatHasLastedLongEnoughIsShownHoweverSeldomItAsks) {
  constexpr ULONGLONG kQuiet = 500;
  press(VK_ESCAPE);
  EXPECT_TRUE(line_.goesOn(owner_, kText, kQuiet, kQuiet - 1)) << "nothing is heard yet";
  EXPECT_FALSE(line_.goesOn(owner_, kText, kQuiet, kQuiet)) << "it was pressed before the first question";
}

TEST_F(ProgressLineTest, WhatIsPressedBehindTheEndStays) {
  ASSERT_TRUE(line_.goesOn(owner_, kText, 0));
  line_.end();
  press(VK_ESCAPE);
  line_.end();
  EXPECT_TRUE(holdsKeys());
}

TEST_F(ProgressLineTest, ThatTheProgramIsToEndIsNotDropped) {
  ASSERT_TRUE(line_.goesOn(owner_, kText, 0));
  PostQuitMessage(3);
  EXPECT_FALSE(line_.goesOn(owner_, kText, 0)) << "it ends what is being done";
  line_.end();
  MSG message{};
  ASSERT_TRUE(holds(WM_QUIT, WM_QUIT, &message));
  EXPECT_EQ(3u, message.wParam);
}

}  // namespace
