// Stories of the options and of the password.
#include "base/settings/app_colors.h"
#include "base/settings/options.h"
#include "dialogs/options/options_ids.h"
#include "dialogs/password/password_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"

namespace {

constexpr int kGeneralPage = 0;
constexpr int kSecurityPage = 1;
constexpr int kViewPage = 2;
constexpr int kColorPage = 3;

class OptionsStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    makeDatabase(path(), {L"CREATE TABLE 'People' (Name VarChar(20))", L"INSERT INTO People VALUES ('Ada')"});
  }

  static std::wstring password() {
    String value;
    SettingsStore::readString(SettingsStore::kPassword, L"PasswordItem", value);
    return value.text();
  }
  static COLORREF storedColor(AppColor color) {
    std::uint32_t colors[15] = {};
    SettingsStore::readBinary(SettingsStore::kOptions, L"GeneralAppColors", colors, 15);
    return colors[color];
  }
  static void enterPassword(User& user, const wchar_t* typed) {
    const HWND question = user.dialog(L"Enter Password");
    user.fill(question, IDC_PASSWORD, typed);
    user.accept(question);
  }
  static void changePassword(User& user, const wchar_t* from, const wchar_t* to, const wchar_t* confirmed) {
    const HWND change = user.dialog(L"Change Password");
    user.fill(change, IDC_OLD_PASSWORD, from);
    user.fill(change, IDC_NEW_PASSWORD, to);
    user.fill(change, IDC_CONFIRM_PASSWORD, confirmed);
    user.accept(change);
  }
};

TEST_P(OptionsStory, EveryOptionAndAColorAreChanged) {
  User& user = start();
  user.choose(ID_OPTIONS);
  const HWND sheet = user.dialog(L"Options");
  user.pickRadio(sheet, IDC_RIGHTS_NEW_AND_DELETE);
  user.press(sheet, IDC_OPEN_LAST_TABLE);
  user.showSheetPage(sheet, kSecurityPage);
  user.press(sheet, IDC_USE_PASSWORD);
  user.press(sheet, IDC_WARNING_ON_DELETION);
  user.showSheetPage(sheet, kViewPage);
  user.press(sheet, IDC_REBARS_AT_TOP);
  user.pickRadio(sheet, IDC_TAB_TEXT_AND_ICON);
  user.showSheetPage(sheet, kColorPage);
  user.pick(sheet, IDC_COLORS, kTablesViewText);
  user.press(sheet, IDC_COLOR_PICK);
  const HWND colors = user.dialog(L"Color");
  user.fill(colors, 706, L"1");
  user.fill(colors, 707, L"2");
  user.fill(colors, 708, L"3");
  user.accept(colors);
  user.accept(sheet);
  end();
  EXPECT_EQ(setting(L"GenUpdateRights"), 2u);
  EXPECT_EQ(setting(L"OpenLastTableOnStartup"), 1u);
  EXPECT_EQ(setting(L"UsePassword"), 1u);
  EXPECT_EQ(setting(L"WarningOnDeletion"), 1u);
  EXPECT_EQ(setting(L"RebarsAtTop"), 1u);
  EXPECT_EQ(setting(L"TabLabelStyle"), 2u);
  EXPECT_EQ(storedColor(kTablesViewText), RGB(1, 2, 3));
}

TEST_P(OptionsStory, ThePasswordIsSetAskedForAndChanged) {
  User* user = &start();
  user->choose(ID_PASSWORD_CHANGE);
  changePassword(*user, L"", L"First", L"Second");
  user->answer(L"Password not changed!", L"The new password and confirmation must be the same", IDOK);
  changePassword(*user, L"", L"First", L"First");
  user->answer(L"Password", L"Password successfully changed", IDOK);
  end();
  EXPECT_EQ(password(), L"FIRST");

  SettingsStore::writeDword(SettingsStore::kOptions, L"UsePassword", 1);
  user = &launch(path());
  enterPassword(*user, L"wrong");
  user->answer(L"Incorrect Password!", L"You have entered the incorrect Password,\nplease try again", IDOK);
  enterPassword(*user, L"first");
  awaitDatabase();
  user->choose(ID_PASSWORD_CHANGE);
  changePassword(*user, L"wrong", L"Second", L"Second");
  user->answer(L"Incorrect Password!", L"You have entered the old password incorrectly,\nplease try again",
               IDOK);
  changePassword(*user, L"FIRST", L"Second", L"Second");
  user->answer(L"Password", L"Password successfully changed", IDOK);
  end();
  EXPECT_EQ(password(), L"SECOND");
}

TEST_P(OptionsStory, WhoLeavesThePasswordOutLeavesTheProgram) {
  SettingsStore::writeDword(SettingsStore::kOptions, L"UsePassword", 1);
  SettingsStore::writeString(SettingsStore::kPassword, L"PasswordItem", L"SECRET");
  User& user = launch(path());
  enterPassword(user, L"guess");
  user.answer(L"Incorrect Password!", L"You have entered the incorrect Password,\nplease try again", IDOK);
  user.leave(user.dialog(L"Enter Password"));
  EXPECT_EQ(program().exitCode(), 0u);
}

TEST_P(OptionsStory, APasswordThatIsNotChangedStays) {
  SettingsStore::writeString(SettingsStore::kPassword, L"PasswordItem", L"SECRET");
  User& user = start();
  user.choose(ID_PASSWORD_CHANGE);
  user.leave(user.dialog(L"Change Password"));
  end();
  EXPECT_EQ(password(), L"SECRET");
}

TELL_WITH_BOTH_HANDS(OptionsStory);

}  // namespace
