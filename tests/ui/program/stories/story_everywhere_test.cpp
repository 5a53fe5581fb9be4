// A story of the search through all tables.
#include "dialogs/find/everywhere_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"

using testing::ElementsAre;

namespace {

constexpr int kPosition = 1012;

class EverywhereStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    makeDatabase(path(), {L"CREATE TABLE 'Books' (Title VarChar(40), Pages Integer)",
                          L"INSERT INTO Books VALUES ('Ulysses', 700), ('Dubliners', 200)",
                          L"CREATE TABLE 'People' (Name Text, Remark Text)",
                          L"INSERT INTO People VALUES ('Joyce', NULL), ('Bloom', 'of ulysses')"});
  }
};

TEST_P(EverywhereStory, ATextIsFoundInTwoTablesAndTheRecordIsShown) {
  User& user = start();
  user.chooseDesktop(ID_FIND_EVERYWHERE);
  const HWND dialog = user.dialog(L"Find in All Tables");
  user.fill(dialog, IDC_EVERYWHERE_TEXT, L"ULYSSES");
  user.press(dialog, IDC_EVERYWHERE_SEARCH);
  const HWND list = remote::control(dialog, IDC_EVERYWHERE_PLACES);
  ASSERT_TRUE(remote::waitUntil([=] {
    return remote::itemTexts(list) == std::vector<std::wstring>{L"Books", L"People"};
  }));
  EXPECT_THAT(remote::itemTexts(list, 1), ElementsAre(L"Title", L"Remark"));
  EXPECT_THAT(remote::itemTexts(list, 2), ElementsAre(L"Ulysses", L"of ulysses"));
  ASSERT_TRUE(remote::waitUntil(
      [=] { return remote::text(remote::control(dialog, IDC_EVERYWHERE_STATE)) == L"2 places"; }));
  user.pick(dialog, IDC_EVERYWHERE_PLACES, 1);
  user.accept(dialog);
  ASSERT_TRUE(remote::waitUntil(
      [&] { return remote::text(remote::control(user.main(), kPosition)) == L"    2 / 2"; }));
  EXPECT_EQ(remote::text(remote::control(user.main(), 1200)), L"Bloom");
  EXPECT_EQ(remote::selectedTab(remote::tabControl(user.main())), OpenedDatabase::kFormPage);
  end();
}

TELL_WITH_BOTH_HANDS(EverywhereStory);

}  // namespace
