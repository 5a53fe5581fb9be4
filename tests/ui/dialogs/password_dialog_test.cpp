#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "tests/ui/dialogs/password_fixture.h"
#include "views/dialog/current_dialog.h"

namespace {

using testing::ElementsAre;

/// At a zoom in per cent.
class PasswordDialogTest : public PasswordTest, public testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    PasswordTest::SetUp();
    HandheldSetZoom(GetParam());
  }

  /// Each dialog once, the step called with it.
  void inBoth(const Step& step) {
    for (const bool change : {false, true}) {
      then([&](HWND dialog) {
        step(dialog);
        DialogScript::close(dialog, IDCANCEL);
      });
      change ? this->change() : check();
    }
    EXPECT_EQ(dialogCount(), 2);
  }

  static std::vector<HWND> editsOf(HWND dialog) {
    std::vector<HWND> edits = childrenOf(dialog);
    std::erase_if(edits, [](HWND control) { return classOf(control) != L"Edit"; });
    return edits;
  }
};

INSTANTIATE_TEST_SUITE_P(Zooms, PasswordDialogTest, testing::Values(100, 200));

TEST_P(PasswordDialogTest, TheirTitlesAndTexts) {
  then([](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"Enter Password");
    EXPECT_THAT(visibleTexts(dialog),
                ElementsAre(L"You must enter a valid password before\nusing this application!",
                            L"Enter\nPassword:", L"", L"OK", L"Cancel"));
    EXPECT_EQ(GetDlgCtrlID(childrenOf(dialog)[2]), kPassword);
    EXPECT_THAT(accessKeys(dialog), ElementsAre(L'P'));
    DialogScript::close(dialog, IDCANCEL);
  });
  check();
  then([](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"Change Password");
    EXPECT_THAT(visibleTexts(dialog), ElementsAre(L"Old Password:", L"", L"New Password:", L"", L"Confirm:",
                                                  L"", L"OK", L"Cancel"));
    EXPECT_EQ(GetDlgCtrlID(childrenOf(dialog)[1]), kOld);
    EXPECT_EQ(GetDlgCtrlID(childrenOf(dialog)[3]), kNew);
    EXPECT_EQ(GetDlgCtrlID(childrenOf(dialog)[5]), kConfirm);
    EXPECT_THAT(accessKeys(dialog), ElementsAre(L'C', L'N', L'O'));
    DialogScript::close(dialog, IDCANCEL);
  });
  change();
  EXPECT_EQ(dialogCount(), 2);
}

TEST_P(PasswordDialogTest, TheEditsHideWhatIsTypedAndEndAfter49Characters) {
  inBoth([](HWND dialog) {
    const std::vector<HWND> edits = editsOf(dialog);
    EXPECT_FALSE(edits.empty());
    for (const HWND edit : edits) {
      EXPECT_NE(styleOf(edit) & ES_PASSWORD, 0u);
      EXPECT_NE(SendMessageW(edit, EM_GETPASSWORDCHAR, 0, 0), 0);
      for (int i = 0; i < 60; ++i) SendMessageW(edit, WM_CHAR, L'x', 1);
      EXPECT_EQ(GetWindowTextLengthW(edit), 49);
    }
  });
}

TEST_P(PasswordDialogTest, TheyAreCentredInTheOwnersClientAreaAndRaiseTheInputPanel) {
  inBoth([&](HWND dialog) {
    EXPECT_TRUE(isPanelUp());
    EXPECT_EQ(GetWindow(dialog, GW_OWNER), frame());
    EXPECT_EQ(currentDialog, dialog);
    expectCentred(dialog);
    expectFits(dialog);
  });
}

TEST_P(PasswordDialogTest, AnInputPanelThatWasDownIsPutDownAgain) {
  inBoth([&](HWND) { EXPECT_TRUE(isPanelUp()); });
  EXPECT_FALSE(isPanelUp());
}

TEST_P(PasswordDialogTest, AnInputPanelThatWasUpStaysUp) {
  SHSipPreference(frame(), SIP_UP);
  inBoth([&](HWND) { EXPECT_TRUE(isPanelUp()); });
  EXPECT_TRUE(isPanelUp());
}

TEST_P(PasswordDialogTest, EverythingFitsAndIsInTheInterfaceFont) {
  inBoth([](HWND dialog) {
    expectFits(dialog);
    expectTextsFit(dialog);
  });
}

TEST_P(PasswordDialogTest, TheTabKeyGoesThroughTheEditsToOkAndCancel) {
  inBoth([](HWND dialog) {
    std::vector<int> expected;
    for (const HWND edit : editsOf(dialog)) expected.push_back(GetDlgCtrlID(edit));
    expected.push_back(IDOK);
    expected.push_back(IDCANCEL);
    EXPECT_EQ(tabOrder(dialog), expected);
  });
}

TEST_P(PasswordDialogTest, TheFirstEditHasTheFocus) {
  int looks = 0;
  const auto thenLook = [&](int first) {
    then([&looks, first](HWND dialog) {
      const WhenIdle later([&looks, first, dialog] {
        ++looks;
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, first));
        DialogScript::close(dialog, IDCANCEL);
      });
    });
  };
  thenLook(kPassword);
  check();
  thenLook(kOld);
  change();
  EXPECT_EQ(looks, 2);
}

TEST_P(PasswordDialogTest, TheTextsAreBlueOnWhite) {
  inBoth([](HWND dialog) { expectColors(dialog); });
}

TEST_P(PasswordDialogTest, EnterConfirmsAndEscapeCancels) {
  store(L"ABC");
  then([](HWND dialog) {
    SetDlgItemTextW(dialog, kPassword, L"abc");
    postKey(GetDlgItem(dialog, kPassword), VK_RETURN);
  });
  check();
  EXPECT_TRUE(appUnlocked);
  then([](HWND dialog) { postKey(GetDlgItem(dialog, kPassword), VK_ESCAPE); });
  check();
  EXPECT_FALSE(appUnlocked);
}

TEST_P(PasswordDialogTest, OneHundredOpeningsLeaveNothingBehind) {
  leavesNothingBehind([&] {
    check();
    change();
  });
  EXPECT_EQ(dialogCount(), 202);
}

}  // namespace
