#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "tests/ui/dialogs/password_fixture.h"

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

  static RECT inOwner(HWND dialog) {
    RECT frame{};
    GetWindowRect(dialog, &frame);
    MapWindowPoints(nullptr, GetWindow(dialog, GW_OWNER), reinterpret_cast<POINT*>(&frame), 2);
    return frame;
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
    const RECT place = inOwner(dialog);
    const SIZE area = clientSize(frame());
    EXPECT_LE(std::abs(place.left - (area.cx - place.right)), 3) << "as far from the left as from the right";
    EXPECT_LE(std::abs(place.top - (area.cy - place.bottom)), 3) << "as far from the top as from the bottom";
    EXPECT_GE(place.left, 0);
    EXPECT_LE(place.right, area.cx) << "wider than the screen";
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
    EXPECT_TRUE(everythingFits(dialog));
    for (const HWND control : childrenOf(dialog)) {
      EXPECT_EQ(SendMessageW(control, WM_GETFONT, 0, 0), reinterpret_cast<LRESULT>(HandheldGetFont()));
      EXPECT_TRUE(textFits(control, HandheldGetFont())) << testing::PrintToString(textOf(control));
    }
  });
}

TEST_P(PasswordDialogTest, TheTabKeyGoesThroughTheEditsToOkAndCancel) {
  inBoth([](HWND dialog) {
    std::vector<HWND> expected = editsOf(dialog);
    EXPECT_EQ(GetNextDlgTabItem(dialog, nullptr, FALSE), expected.front());
    expected.push_back(GetDlgItem(dialog, IDOK));
    expected.push_back(GetDlgItem(dialog, IDCANCEL));
    std::vector<HWND> order;
    for (HWND next = expected.front(); order.size() < expected.size();
         next = GetNextDlgTabItem(dialog, next, FALSE)) {
      order.push_back(next);
    }
    EXPECT_EQ(order, expected);
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
  inBoth([](HWND dialog) {
    const HDC dc = GetDC(dialog);
    EXPECT_EQ(SendMessageW(dialog, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc), 0),
              reinterpret_cast<LRESULT>(GetStockObject(WHITE_BRUSH)));
    EXPECT_EQ(GetTextColor(dc), RGB(0, 0, 255));
    EXPECT_EQ(GetBkColor(dc), RGB(255, 255, 255));
    ReleaseDC(dialog, dc);
  });
}

TEST_P(PasswordDialogTest, EnterConfirmsAndEscapeCancels) {
  store(L"ABC");
  then([](HWND dialog) {
    SetDlgItemTextW(dialog, kPassword, L"abc");
    PostMessageW(GetDlgItem(dialog, kPassword), WM_KEYDOWN, VK_RETURN, 1);
  });
  check();
  EXPECT_TRUE(appUnlocked);
  then([](HWND dialog) { PostMessageW(GetDlgItem(dialog, kPassword), WM_KEYDOWN, VK_ESCAPE, 1); });
  check();
  EXPECT_FALSE(appUnlocked);
}

TEST_P(PasswordDialogTest, OneHundredOpeningsLeaveNothingBehind) {
  for (int i = 0; i < 50; ++i) {
    check();
    change();
  }
  EXPECT_EQ(dialogCount(), 100);
}

}  // namespace
