#include "app/editing_commands.h"

#include "gmock/gmock.h"
#include "platform/pocketshell/handheld_windows.h"
#include "tests/ui/bar_host.h"

namespace {

class EditingCommandsTest : public testing::Test {
 protected:
  void SetUp() override {
    // Only a window that is shown takes the focus.
    ShowWindow(host_.main(), SW_SHOW);
    edit_ = add(WC_EDITW, L"word");
    SetFocus(edit_);
    ASSERT_EQ(GetFocus(), edit_);
    SendMessageW(edit_, EM_SETSEL, 0, -1);
  }

  HWND add(const wchar_t* className, const wchar_t* text) {
    return HandheldCreateWindow(0, className, text, WS_CHILD | WS_VISIBLE, 0, 0, 100, 20, host_.main(),
                                nullptr, ownInstance(), nullptr);
  }
  std::wstring text() const {
    wchar_t buffer[40] = L"";
    GetWindowTextW(edit_, buffer, ARRAYSIZE(buffer));
    return buffer;
  }

  BarHost host_;
  HWND edit_ = nullptr;
};

}  // namespace

TEST_F(EditingCommandsTest, WhatIsCopiedCanBePasted) {
  copyInFocus();
  EXPECT_EQ(text(), L"word");
  SendMessageW(edit_, EM_SETSEL, 4, 4);
  pasteInFocus();
  EXPECT_EQ(text(), L"wordword");
}

TEST_F(EditingCommandsTest, WhatIsCutCanBeTakenBack) {
  cutInFocus();
  EXPECT_EQ(text(), L"");
  undoInFocus();
  EXPECT_EQ(text(), L"word");
}

TEST_F(EditingCommandsTest, WithNothingToTakeBackNothingHappens) {
  undoInFocus();
  EXPECT_EQ(text(), L"word");
}

TEST_F(EditingCommandsTest, OnlyAnEditControlIsAskedToUndo) {
  int asked = 0;
  const auto answer = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                         DWORD_PTR count) -> LRESULT {
    if (message == EM_CANUNDO || message == EM_UNDO) return ++*reinterpret_cast<int*>(count);
    return DefSubclassProc(window, message, wParam, lParam);
  };
  const HWND button = add(WC_BUTTONW, L"other");
  SetWindowSubclass(button, answer, 1, reinterpret_cast<DWORD_PTR>(&asked));
  SetFocus(button);
  undoInFocus();
  EXPECT_EQ(asked, 0);
  RemoveWindowSubclass(button, answer, 1);
}

TEST_F(EditingCommandsTest, WithoutFocusNothingHappens) {
  SetFocus(nullptr);
  ASSERT_EQ(GetFocus(), nullptr);
  cutInFocus();
  copyInFocus();
  pasteInFocus();
  undoInFocus();
  EXPECT_EQ(text(), L"word");
}
