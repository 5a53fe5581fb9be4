#include <string>

#include "gmock/gmock.h"
#include "tests/ui/dialogs/password_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PasswordCheckTest : public PasswordTest {
 protected:
  static Box incorrect() {
    return warning(L"Incorrect Password!", L"You have entered the incorrect Password,\nplease try again");
  }
};

TEST_F(PasswordCheckTest, UpperAndLowerCaseAreTheSame) {
  store(L"ABC");
  for (const wchar_t* typed : {L"abc", L"Abc", L"ABC"}) {
    appUnlocked = false;
    thenEnter(typed);
    check();
    EXPECT_TRUE(appUnlocked) << testing::PrintToString(std::wstring(typed));
  }
  EXPECT_EQ(dialogCount(), 3);
  EXPECT_THAT(takeBoxes(), IsEmpty());
}

TEST_F(PasswordCheckTest, CaseIsFoldedInEveryScriptAndOnBothSides) {
  store(L"stra\u00DFe \u03C9\u044F");
  thenEnter(L"STRA\u00DFE \u03A9\u042F");
  check();
  EXPECT_TRUE(appUnlocked);
}

TEST_F(PasswordCheckTest, CancelInTheFirstDialogLeavesTheProgramLockedAndSaysNothing) {
  store(L"ABC");
  appUnlocked = true;
  thenCancel();
  check();
  EXPECT_FALSE(appUnlocked);
  EXPECT_THAT(takeBoxes(), IsEmpty());
  EXPECT_EQ(dialogCount(), 1);
}

TEST_F(PasswordCheckTest, CancelLeavesItLockedAlsoWhenTheTextOfTheDialogWouldMatch) {
  store(L"");
  thenCancel();
  check();
  EXPECT_FALSE(appUnlocked) << "the empty text";
  store(L"ABC");
  then([](HWND dialog) {
    SetDlgItemTextW(dialog, kPassword, L"abc");
    DialogScript::close(dialog, IDCANCEL);
  });
  check();
  EXPECT_FALSE(appUnlocked);
}

TEST_F(PasswordCheckTest, WithoutAStoredPasswordTheDialogShowsOnceAndUnlocksWhateverIsTyped) {
  thenEnter(L"anything");
  check();
  EXPECT_TRUE(appUnlocked);
  appUnlocked = false;
  thenCancel();
  check();
  EXPECT_TRUE(appUnlocked) << "Cancel too";
  EXPECT_EQ(dialogCount(), 2);
  EXPECT_THAT(takeBoxes(), IsEmpty());
}

TEST_F(PasswordCheckTest, AWrongPasswordIsToldAndAskedForAgainUntilItIsRight) {
  store(L"ABC");
  thenEnter(L"ab");
  thenEnter(L"");
  then([](HWND dialog) {
    EXPECT_EQ(textOf(dialog, kPassword), L"") << "the wrong one is not offered again";
    SetDlgItemTextW(dialog, kPassword, L"abc");
    DialogScript::close(dialog, IDOK);
  });
  check();
  EXPECT_TRUE(appUnlocked);
  EXPECT_THAT(takeBoxes(), ElementsAre(incorrect(), incorrect()));
}

TEST_F(PasswordCheckTest, CancelAfterAWrongPasswordEndsTheCheckLocked) {
  store(L"ABC");
  thenEnter(L"ABCD");
  thenCancel();
  check();
  EXPECT_FALSE(appUnlocked);
  EXPECT_THAT(takeBoxes(), ElementsAre(incorrect()));
}

TEST_F(PasswordCheckTest, AnEmptyStoredPasswordWantsAnEmptyEntry) {
  store(L"");
  thenEnter(L"x");
  thenEnter(L"");
  check();
  EXPECT_TRUE(appUnlocked);
  EXPECT_THAT(takeBoxes(), ElementsAre(incorrect()));
}

TEST_F(PasswordCheckTest, TheProgramIsLockedWhileTheDialogIsOpen) {
  appUnlocked = true;
  then([](HWND dialog) {
    EXPECT_FALSE(appUnlocked);
    DialogScript::close(dialog, IDOK);
  });
  check();
  EXPECT_TRUE(appUnlocked);
}

class PasswordChangeTest : public PasswordTest {
 protected:
  static Box oldIncorrect() {
    return warning(L"Incorrect Password!",
                   L"You have entered the old password incorrectly,\nplease try again");
  }
  static Box notTheSame() {
    return warning(L"Password not changed!", L"The new password and confirmation must be the same");
  }
  static Box changed() {
    return {.caption = L"Password",
            .text = L"Password successfully changed",
            .icon = LoadIconW(nullptr, IDI_INFORMATION),
            .isTopmost = true};
  }
};

TEST_F(PasswordChangeTest, TheFirstPasswordIsSetWithAnEmptyOldOneAndStoredInUpperCase) {
  thenChange(L"", L"Secret \u00E4\u044F", L"sECRET \u00C4\u042F");
  change();
  EXPECT_THAT(takeBoxes(), ElementsAre(changed()));
  EXPECT_EQ(stored(), textValue(L"SECRET \u00C4\u042F"));
}

TEST_F(PasswordChangeTest, TheFirstPasswordIsNotSetWithAnOldOne) {
  thenChange(L"something", L"a", L"a");
  thenCancel();
  change();
  EXPECT_THAT(takeBoxes(), ElementsAre(oldIncorrect()));
  EXPECT_EQ(stored().type, static_cast<DWORD>(REG_NONE));
}

TEST_F(PasswordChangeTest, AWrongOldPasswordIsReportedBeforeAMismatchOfNewAndConfirmation) {
  store(L"OLD");
  thenChange(L"wrong", L"one", L"two");
  thenChange(L"old", L"one", L"two");
  thenChange(L"old", L"one", L"ONE");
  change();
  EXPECT_THAT(takeBoxes(), ElementsAre(oldIncorrect(), notTheSame(), changed()));
  EXPECT_EQ(stored(), textValue(L"ONE"));
}

TEST_F(PasswordChangeTest, EachDialogBeginsEmpty) {
  store(L"OLD");
  thenChange(L"wrong", L"one", L"one");
  then([](HWND dialog) {
    for (const int id : {kOld, kNew, kConfirm}) EXPECT_EQ(textOf(dialog, id), L"") << id;
    DialogScript::close(dialog, IDCANCEL);
  });
  change();
  EXPECT_EQ(dialogCount(), 2);
}

TEST_F(PasswordChangeTest, CancelChangesNothingAndSaysNothing) {
  store(L"OLD");
  then([](HWND dialog) {
    SetDlgItemTextW(dialog, kOld, L"old");
    SetDlgItemTextW(dialog, kNew, L"new");
    SetDlgItemTextW(dialog, kConfirm, L"new");
    DialogScript::close(dialog, IDCANCEL);
  });
  change();
  EXPECT_THAT(takeBoxes(), IsEmpty());
  EXPECT_EQ(stored(), textValue(L"OLD"));
}

TEST_F(PasswordChangeTest, AnEmptyNewPasswordIsStoredAsAnEmptyText) {
  store(L"OLD");
  thenChange(L"old", L"", L"");
  change();
  EXPECT_THAT(takeBoxes(), ElementsAre(changed()));
  EXPECT_EQ(stored(), textValue(L""));
}

TEST_F(PasswordChangeTest, APasswordThatCantBeWrittenIsReported) {
  forbidWriting();
  thenChange(L"", L"new", L"new");
  change();
  EXPECT_THAT(takeBoxes(), ElementsAre(warning(L"Password", L"Password could not be changed")));
}

TEST_F(PasswordChangeTest, AnEmptyPasswordThatCantBeWrittenIsReportedToo) {
  forbidWriting();
  thenChange(L"", L"", L"");
  change();
  EXPECT_THAT(takeBoxes(), ElementsAre(warning(L"Password", L"Password could not be changed")));
}

TEST_F(PasswordChangeTest, ThePasswordThatWasSetUnlocksAndChangesAgain) {
  const std::wstring odd = L"'\"%s%n\\ \u05D0\u0628 \U0001F511 \t";
  thenChange(L"", odd, odd);
  change();
  thenEnter(odd);
  check();
  EXPECT_TRUE(appUnlocked);
  thenChange(odd, L"plain", L"plain");
  change();
  EXPECT_THAT(takeBoxes(), ElementsAre(changed(), changed()));
  EXPECT_EQ(stored(), textValue(L"PLAIN"));
}

TEST_F(PasswordChangeTest, APasswordOf60CharactersIsCutToItsFirst49InEveryDialog) {
  const std::wstring kept = L"ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQRSTUVW";
  ASSERT_EQ(kept.size(), 49u);
  const std::wstring typed = kept + L"12345678901";
  const std::wstring otherEnd = kept + L"98765432109";
  thenChange(L"", typed, otherEnd);
  change();
  EXPECT_EQ(stored(), textValue(kept));
  thenEnter(typed);
  check();
  EXPECT_TRUE(appUnlocked);
  thenChange(otherEnd, L"", L"");
  change();
  EXPECT_EQ(stored(), textValue(L""));
  EXPECT_THAT(takeBoxes(), ElementsAre(changed(), changed()));
}

TEST_F(PasswordChangeTest, FortyThousandCharactersAreCutToo) {
  const std::wstring typed(40000, L'q');
  thenChange(L"", typed, typed);
  change();
  EXPECT_EQ(stored(), textValue(std::wstring(49, L'Q')));
}

}  // namespace
