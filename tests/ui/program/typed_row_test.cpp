// Letters that are typed over the grid of the real program.
#include <windows.h>

#include "tests/ui/support/ui_test.h"

namespace {

class TypedRowTest : public UiTest {
 protected:
  void SetUp() override {
    makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (t Text)",
                                 L"INSERT INTO T VALUES ('Ada'), ('nobody'), ('Bob'), ('bo'), ('Zo\u00EB')"});
  }
  static void type(HWND grid, wchar_t letter) { PostMessageW(grid, WM_CHAR, letter, 1); }
  static bool comesTo(HWND grid, int row) {
    return remote::waitUntil([=] { return remote::selectedItem(grid) == row; });
  }
};

TEST_F(TypedRowTest, ChoosesTheRowThatTheCommandsGoOnFrom) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  type(grid, L'z');
  EXPECT_TRUE(comesTo(grid, 4));
  sendCommand(opened.main(), 32780);
  EXPECT_EQ(remote::selectedItem(grid), 3);
}

TEST_F(TypedRowTest, LettersThatFollowEachOtherAreOneText) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  // Posted at once, so that no time passes between them.
  type(grid, L'n');
  type(grid, L'o');
  EXPECT_TRUE(comesTo(grid, 1));
}

TEST_F(TypedRowTest, WhatNoRowBeginsWithChangesNothing) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  type(grid, L'q');
  // What is sent is answered after what was posted before.
  PostMessageW(grid, WM_KEYDOWN, VK_DOWN, 1);
  EXPECT_TRUE(comesTo(grid, 1));
}

}  // namespace
