#include "app/bars/menu_bar.h"

#include "gmock/gmock.h"
#include "platform/pocketshell/aygshell.h"
#include "tests/ui/bars/bar_host.h"
#include "tests/ui/remote/menu_texts.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int kTables = 0;
constexpr int kForm = 1;
constexpr int kList = 2;
constexpr int kQueries = 3;
constexpr PopupMenu kPopups[] = {PopupMenu::none,   PopupMenu::file,   PopupMenu::edit,
                                 PopupMenu::record, PopupMenu::tables, PopupMenu::queries};

BarFacts records(int page, std::uint32_t count) {
  return {page, true, true, count};
}

BarFacts noRecordset(int page) {
  return {page, true, false, 0};
}

class MenuBarTest : public testing::Test {
 protected:
  void create(const BarFacts& facts) { ASSERT_TRUE(bar_.create(ownInstance(), host_.main(), facts)); }

  /// The commands behind the drop-down buttons.
  std::vector<int> addedCommands() const {
    std::vector<int> added;
    for (const TBBUTTON& button : toolbarButtons(bar_.window())) {
      if ((button.fsStyle & TBSTYLE_DROPDOWN) == 0) added.push_back(button.idCommand);
    }
    return added;
  }

  std::vector<PopupMenu> popups() const {
    std::vector<PopupMenu> found;
    for (const PopupMenu menu : kPopups) {
      if (bar_.popup(menu)) found.push_back(menu);
    }
    return found;
  }

  BarHost host_;
  MenuBar bar_;
};

}  // namespace

TEST(MenuBarLayoutTest, FollowsPageRecordsetAndRecords) {
  const MenuBarLayout closed = {217, 0, 0};
  for (const int page : {-1, kTables, kForm, kList, kQueries, 4})
    EXPECT_EQ(menuBarLayout({page, false, false, 0}), closed) << page;
  EXPECT_EQ(menuBarLayout(noRecordset(4)), closed);
  EXPECT_EQ(menuBarLayout(noRecordset(-1)), closed);
  for (const std::uint32_t count : {0u, 1u, 20000u}) {
    EXPECT_EQ(menuBarLayout(records(kTables, count)), (MenuBarLayout{218, 0, 0}));
    EXPECT_EQ(menuBarLayout(records(kQueries, count)), (MenuBarLayout{222, 0, 0}));
  }
  EXPECT_EQ(menuBarLayout(noRecordset(kForm)), (MenuBarLayout{216, 0, 0}));
  EXPECT_EQ(menuBarLayout(noRecordset(kList)), (MenuBarLayout{221, 0, 0}));
  EXPECT_EQ(menuBarLayout(records(kForm, 0)), (MenuBarLayout{216, 232, 1}));
  EXPECT_EQ(menuBarLayout(records(kList, 0)), (MenuBarLayout{221, 232, 1}));
  EXPECT_EQ(menuBarLayout(records(kForm, 1)), (MenuBarLayout{216, 217, 3}));
  EXPECT_EQ(menuBarLayout(records(kList, 1)), (MenuBarLayout{221, 233, 2}));
}

TEST_F(MenuBarTest, WithoutADatabaseThereIsOnlyFile) {
  create({});
  EXPECT_THAT(toolbarCommands(bar_.window()), ElementsAre(40024));
  EXPECT_THAT(popups(), ElementsAre(PopupMenu::file));
}

TEST_F(MenuBarTest, EachPageHasItsMenus) {
  create(noRecordset(kTables));
  EXPECT_THAT(toolbarCommands(bar_.window()), ElementsAre(40024, 40027, 40057));
  EXPECT_THAT(popups(), ElementsAre(PopupMenu::file, PopupMenu::edit, PopupMenu::tables));
  create(noRecordset(kForm));
  EXPECT_THAT(toolbarCommands(bar_.window()), ElementsAre(40024, 40027, 40030));
  EXPECT_THAT(popups(), ElementsAre(PopupMenu::file, PopupMenu::edit, PopupMenu::record));
  create(noRecordset(kList));
  EXPECT_THAT(popups(), ElementsAre(PopupMenu::file, PopupMenu::edit, PopupMenu::record));
  create(noRecordset(kQueries));
  EXPECT_THAT(toolbarCommands(bar_.window()), ElementsAre(40024, 40027, 40080));
  EXPECT_THAT(popups(), ElementsAre(PopupMenu::file, PopupMenu::edit, PopupMenu::queries));
}

TEST_F(MenuBarTest, ThePopupsAreThoseOfTheirButtons) {
  create(noRecordset(kList));
  EXPECT_EQ(menuLines(bar_.popup(PopupMenu::file)).front(), "New DB... 40072");
  EXPECT_EQ(menuLines(bar_.popup(PopupMenu::edit)).front(), "Password >");
  EXPECT_EQ(menuLines(bar_.popup(PopupMenu::record)).front(), "Edit 40085");
}

TEST_F(MenuBarTest, TheFormOfAnEmptyTableHasOneButtonAndWithARecordThree) {
  create(records(kForm, 0));
  EXPECT_THAT(addedCommands(), ElementsAre(32787));
  create(records(kForm, 1));
  EXPECT_THAT(addedCommands(), ElementsAre(32787, 40001, 32793));
}

TEST_F(MenuBarTest, TheListHasNewAndDeleteButNoFind) {
  create(records(kList, 7));
  EXPECT_THAT(addedCommands(), ElementsAre(32787, 40001));
  create(records(kList, 0));
  EXPECT_THAT(addedCommands(), ElementsAre(32787));
  create(noRecordset(kList));
  EXPECT_THAT(addedCommands(), IsEmpty());
}

TEST_F(MenuBarTest, TheButtonsAreEnabledAndPlainWithTheirImages) {
  create(records(kForm, 7));
  const std::vector<TBBUTTON> buttons = toolbarButtons(bar_.window());
  ASSERT_EQ(buttons.size(), 6u);
  for (std::size_t i = 3; i < buttons.size(); ++i) {
    EXPECT_EQ(buttons[i].iBitmap, static_cast<int>(i) - 3);
    EXPECT_EQ(buttons[i].fsState & ~TBSTATE_WRAP, TBSTATE_ENABLED);
    EXPECT_EQ(buttons[i].fsStyle, TBSTYLE_BUTTON);
  }
}

TEST_F(MenuBarTest, TheButtonsHaveTipsAndTheMenusNone) {
  create(records(kForm, 7));
  EXPECT_EQ(buttonTip(bar_.window(), 32787), L"Add new record");
  EXPECT_EQ(buttonTip(bar_.window(), 40001), L"Delete current record");
  EXPECT_EQ(buttonTip(bar_.window(), 32793), L"Find a record with given content");
  for (const int dropDown : {40024, 40027, 40030}) EXPECT_EQ(buttonTip(bar_.window(), dropDown), L"");
}

TEST_F(MenuBarTest, AClickOnAButtonGivesItsCommand) {
  create(records(kForm, 7));
  for (const int command : {32787, 40001, 32793}) {
    clickButton(bar_.window(), command);
    EXPECT_THAT(host_.takeCommands(), ElementsAre(command));
  }
}

TEST_F(MenuBarTest, TheCommandOfAButtonMayRebuildTheBar) {
  create(records(kForm, 0));
  host_.onCommand([this](int) { create(records(kForm, 1)); });
  clickButton(bar_.window(), 32787);
  EXPECT_THAT(host_.takeCommands(), ElementsAre(32787));
  EXPECT_THAT(addedCommands(), ElementsAre(32787, 40001, 32793));
}

TEST_F(MenuBarTest, ANewBarTakesThePlaceOfTheFormer) {
  create({});
  const int before = windowCount();
  const HWND former = bar_.window();
  create({});
  EXPECT_FALSE(IsWindow(former) && former != bar_.window());
  EXPECT_EQ(windowCount(), before);
  bar_.destroy();
  EXPECT_EQ(bar_.window(), nullptr);
  EXPECT_THAT(popups(), IsEmpty());
  EXPECT_LT(windowCount(), before);
}

TEST_F(MenuBarTest, WithoutResourcesThereIsNoBar) {
  create({});
  EXPECT_FALSE(bar_.create(GetModuleHandleW(L"aygshell.dll"), host_.main(), {kTables, true, false, 0}));
  EXPECT_EQ(bar_.window(), nullptr);
  EXPECT_THAT(popups(), IsEmpty());
}
