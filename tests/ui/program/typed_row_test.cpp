// Letters that are typed over the grid of the real program.
#include <windows.h>

#include <chrono>

#include "resources/command_ids.h"
#include "tests/ui/support/ui_test.h"

namespace {

class TypedRowTest : public UiTest {
 protected:
  void SetUp() override {
    makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (t Text)",
                                 L"INSERT INTO T VALUES ('Ada'), ('nobody'), ('Bob'), "
                                 L"('nurse'), ('Zo\u00EB')"});
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
  sendCommand(opened.main(), ID_RECORD_PREVIOUS);
  EXPECT_EQ(remote::selectedItem(grid), 3);
}

TEST_F(TypedRowTest, LettersThatFollowEachOtherAreOneText) {
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  // Neither of the two leads there alone, which is what each is to the list once too much time has passed
  // between them: that may be the machine's doing.
  bool isOneText = false;
  for (int tries = 0; tries < 10 && !isOneText; ++tries) {
    ASSERT_TRUE(remote::selectItem(grid, 0));
    type(grid, L'n');
    type(grid, L'u');
    isOneText =
        remote::waitUntil([=] { return remote::selectedItem(grid) == 3; }, std::chrono::milliseconds(2000));
  }
  EXPECT_TRUE(isOneText);
}

TEST_F(TypedRowTest, LettersOfEveryAlphabetDo) {
  makeDatabase(file("b.cdb"),
               {L"CREATE TABLE 'T' (t Text)",
                L"INSERT INTO T VALUES ('Ada'), ('\u00C9mile'), ('\u03A9\u03BC\u03AD\u03B3\u03B1'), ('Bo')"});
  OpenedDatabase opened(file("b.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  type(grid, L'\u03C9');
  EXPECT_TRUE(comesTo(grid, 2));
  ASSERT_TRUE(remote::selectItem(grid, 0));
  bool isFound = false;
  for (int tries = 0; tries < 10 && !isFound; ++tries) {
    type(grid, L'\u00E9');
    isFound =
        remote::waitUntil([=] { return remote::selectedItem(grid) == 1; }, std::chrono::milliseconds(2000));
  }
  EXPECT_TRUE(isFound);
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
