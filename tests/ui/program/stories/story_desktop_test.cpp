// Stories of the desktop menu.
#include "base/settings/app_colors.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"
#include "views/form/form_ids.h"

namespace {

constexpr int kFormPage = 1;

class DesktopStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    makeDatabase(path(), {L"CREATE TABLE 'People' (Name VarChar(20))", L"INSERT INTO People VALUES ('Ada')"});
  }
  static AppColorTable storedColors() {
    AppColorTable colors{};
    SettingsStore::readBinary(SettingsStore::kOptions, L"GeneralAppColors", colors.data(), kAppColorCount);
    return colors;
  }
};

TEST_P(DesktopStory, ColorsAreChosenInOneStepAndWhatIsTypedStays) {
  User& user = start();
  user.showPage(kFormPage);
  user.fillEditor(kFirstTextEditorId, L"Grace");
  user.chooseDesktop(ID_COLORS_DARK);
  EXPECT_TRUE(remote::waitUntil([] { return storedColors() == colorsOfSet(ColorSet::dark); }));
  EXPECT_EQ(remote::text(remote::control(user.main(), kFirstTextEditorId)), L"Grace");
  user.chooseDesktop(ID_COLORS_OWN);
  EXPECT_TRUE(remote::waitUntil([] { return storedColors() == colorsOfSet(ColorSet::own); }));
  end();
  EXPECT_THAT(stored("SELECT Name FROM People"), testing::ElementsAre("Grace"));
}

TELL_WITH_BOTH_HANDS(DesktopStory);

}  // namespace
