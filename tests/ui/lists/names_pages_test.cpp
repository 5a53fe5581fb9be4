// The lists of tables and queries, as real windows in this process.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "base/settings/app_colors.h"
#include "gtest/gtest.h"
#include "owners/live_resources.h"
#include "tests/ui/support/host_window.h"
#include "views/names/queries_list_view.h"
#include "views/names/tables_list_view.h"
#include "views/shared/list_view.h"

namespace {

constexpr int kControlId = 61206;

NameList names(std::initializer_list<const wchar_t*> texts) {
  NameList list;
  for (const wchar_t* text : texts) list.append(text);
  return list;
}

int selected(HWND list) {
  return listview::nextItem(list, -1, LVNI_SELECTED);
}

class TablesListViewTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(list(), nullptr); }
  HWND list() { return GetDlgItem(host_.get(), kControlId); }

  /// The item that a fill selects after the item `remembered` was chosen.
  int selectedAfter(Positioning positioning, int remembered, const wchar_t* name = L"") {
    view_.fill(three_, Positioning::first, L"");
    view_.itemText(remembered);
    view_.fill(three_, positioning, name);
    return selected(list());
  }

  TablesListView& view() { return view_; }
  const NameList& three() const { return three_; }

 private:
  HostWindow host_;
  TablesListView view_{host_.get()};
  const NameList three_ = names({L"a", L"b", L"c"});
};

TEST_F(TablesListViewTest, IsMadeHiddenWithLargeIcons) {
  const auto style = static_cast<DWORD>(GetWindowLongW(list(), GWL_STYLE));
  EXPECT_EQ(style & WS_VISIBLE, 0u);
  EXPECT_EQ(style & (LVS_TYPEMASK | LVS_SINGLESEL | LVS_SHOWSELALWAYS),
            DWORD{LVS_SINGLESEL | LVS_SHOWSELALWAYS});
}

TEST_F(TablesListViewTest, AFirstFillSelectsTheFirstWhateverThePositioning) {
  view().fill(three(), Positioning::last, L"");
  EXPECT_EQ(listview::itemCount(list()), 3);
  EXPECT_EQ(selected(list()), 0);
}

TEST_F(TablesListViewTest, AnEmptyListSelectsNothing) {
  view().fill(three(), Positioning::first, L"");
  view().fill(NameList(), Positioning::first, L"");
  EXPECT_EQ(listview::itemCount(list()), 0);
  EXPECT_EQ(selected(list()), -1);
}

TEST_F(TablesListViewTest, ANameInItsOwnSpellingComesBeforeOneInAnother) {
  const NameList both = names({L"Orders", L"orders", L"Other"});
  const auto selectedBy = [&](const wchar_t* name) {
    view().fill(both, Positioning::first, L"");
    view().itemText(2);
    view().fill(both, Positioning::byName, name);
    return selected(list());
  };
  EXPECT_EQ(selectedBy(L"orders"), 1);
  EXPECT_EQ(selectedBy(L"Orders"), 0);
  EXPECT_EQ(selectedBy(L"OTHER"), 2);
}

TEST_F(TablesListViewTest, EachPositioningChoosesItsItem) {
  EXPECT_EQ(selectedAfter(Positioning::first, 2), 0);
  EXPECT_EQ(selectedAfter(Positioning::last, 0), 2);
  EXPECT_EQ(selectedAfter(Positioning::previous, 2), 1);
  EXPECT_EQ(selectedAfter(Positioning::previous, 0), 0);
  EXPECT_EQ(selectedAfter(Positioning::next, 0), 1);
  EXPECT_EQ(selectedAfter(Positioning::byName, 0, L"c"), 2);
  EXPECT_EQ(selectedAfter(static_cast<Positioning>(0), 1), 1);
}

TEST_F(TablesListViewTest, NextBehindTheLastItemSelectsNone) {
  EXPECT_EQ(selectedAfter(Positioning::next, 2), -1);
}

TEST_F(TablesListViewTest, ANameThatIsNotThereKeepsTheIndex) {
  EXPECT_EQ(selectedAfter(Positioning::byName, 1, L"z"), 1);
  EXPECT_EQ(selectedAfter(Positioning::byName, 1, L""), 1);
}

TEST_F(TablesListViewTest, AForgottenSelectionStartsAtTheFirst) {
  view().fill(three(), Positioning::first, L"");
  view().itemText(2);
  view().clearRememberedSelection();
  view().fill(three(), Positioning::last, L"");
  EXPECT_EQ(selected(list()), 0);
}

TEST_F(TablesListViewTest, NamesComeBackInFullWhateverTheControlShowsOfThem) {
  const std::wstring longName(150, L'n');
  // A mark that stands on no letter.
  constexpr wchar_t kUnshowable[] = L"\x05B0 table";
  view().fill(names({longName.c_str(), kUnshowable, L"short"}), Positioning::first, L"");
  wchar_t shown[20] = L"";
  listview::itemText(list(), 1, shown, ARRAYSIZE(shown));
  ASSERT_STREQ(shown, L"\xFFFD table");
  EXPECT_EQ(view().itemText(0).text(), longName);
  EXPECT_STREQ(view().itemText(1).text(), kUnshowable);
  EXPECT_STREQ(view().itemText(2).text(), L"short");
  EXPECT_STREQ(view().itemText(3).text(), L"");
  EXPECT_STREQ(view().itemText(-1).text(), L"");
}

TEST_F(TablesListViewTest, AnItemIsFoundByItsNameAndNotByWhatIsShown) {
  const NameList alike = names({L"\xFFFD", L"\x05B0", L"Third"});
  view().fill(alike, Positioning::first, L"");
  view().itemText(0);
  view().fill(alike, Positioning::byName, L"\x05B0");
  EXPECT_EQ(selected(list()), 1);
  view().fill(alike, Positioning::byName, L"THIRD");
  EXPECT_EQ(selected(list()), 2);
}

TEST_F(TablesListViewTest, NamesFollowTheItemsThatComeAndGo) {
  view().fill(three(), Positioning::first, L"");
  view().deleteItem(1);
  view().addItem(0, L"first");
  view().deleteItem(7);
  EXPECT_STREQ(view().itemText(0).text(), L"first");
  EXPECT_STREQ(view().itemText(1).text(), L"a");
  EXPECT_STREQ(view().itemText(2).text(), L"c");
  EXPECT_STREQ(view().itemText(3).text(), L"");
  view().deleteAllItems();
  EXPECT_STREQ(view().itemText(0).text(), L"");
}

TEST_F(TablesListViewTest, FiveThousandNamesStandInRowsAndNoneOnAnother) {
  NameList many;
  for (int number = 0; number < 5000; ++number) many.append(std::to_wstring(number).c_str());
  view().show();
  view().fill(many, Positioning::first, L"");
  EXPECT_EQ(listview::itemCount(list()), 5000);
  EXPECT_NE(GetWindowLongW(list(), GWL_STYLE) & WS_VISIBLE, 0);
  std::vector<POINT> places(5000);
  for (int item = 0; item < 5000; ++item) {
    SendMessageW(list(), LVM_GETITEMPOSITION, static_cast<WPARAM>(item),
                 reinterpret_cast<LPARAM>(&places[static_cast<std::size_t>(item)]));
  }
  // In rows of as many as have room, none on another.
  const auto inRow = static_cast<std::size_t>(std::count_if(
      places.begin(), places.end(), [&](const POINT& place) { return place.y == places[0].y; }));
  ASSERT_GT(inRow, 1u);
  const LONG step = places[inRow].y - places[0].y;
  EXPECT_GT(step, 0);
  for (std::size_t item = 0; item < places.size(); ++item) {
    ASSERT_EQ(places[item].x, places[item % inRow].x) << item;
    ASSERT_EQ(places[item].y, places[0].y + step * static_cast<LONG>(item / inRow)) << item;
  }
}

TEST_F(TablesListViewTest, WhatIsChosenAmongManyIsInViewHoweverOftenTheListIsFilled) {
  NameList many;
  for (int number = 0; number < 40; ++number) many.append(std::to_wstring(number).c_str());
  ShowWindow(GetAncestor(list(), GA_ROOT), SW_SHOWNA);
  view().show();
  view().fill(many, Positioning::first, L"");
  view().itemText(0);
  RECT inside{};
  GetClientRect(list(), &inside);
  for (const wchar_t* name : {L"39", L"20", L"39"}) {
    view().fill(many, Positioning::byName, name);
    const int chosen = selected(list());
    EXPECT_EQ(view().itemText(chosen).text(), std::wstring(name));
    RECT place{LVIR_ICON, 0, 0, 0};
    ASSERT_NE(
        SendMessageW(list(), LVM_GETITEMRECT, static_cast<WPARAM>(chosen), reinterpret_cast<LPARAM>(&place)),
        0);
    EXPECT_GE(place.top, 0) << testing::PrintToString(name);
    EXPECT_LE(place.bottom, inside.bottom) << testing::PrintToString(name);
  }
}

TEST_F(TablesListViewTest, AHiddenListStaysHiddenWhenItIsFilled) {
  view().hide();
  {
    const listview::RedrawingOff off(list());
    view().addItem(0, L"one");
  }
  EXPECT_EQ(GetWindowLongW(list(), GWL_STYLE) & WS_VISIBLE, 0);
}

TEST_F(TablesListViewTest, ShowingAppliesTheColours) {
  appColors[kTablesViewBackground] = 0x00112233;
  appColors[kTablesViewText] = 0x00445566;
  view().show();
  EXPECT_EQ(SendMessageW(list(), LVM_GETBKCOLOR, 0, 0), 0x112233);
  EXPECT_EQ(SendMessageW(list(), LVM_GETTEXTBKCOLOR, 0, 0), 0x112233);
  EXPECT_EQ(SendMessageW(list(), LVM_GETTEXTCOLOR, 0, 0), 0x445566);
  resetAppColors();
}

TEST_F(TablesListViewTest, FillingAgainAndAgainKeepsNothing) {
  view().fill(three(), Positioning::first, L"");
  const long before = LiveResources::countOfAll();
  for (int i = 0; i < 50; ++i) view().fill(three(), Positioning::first, L"");
  EXPECT_EQ(LiveResources::countOfAll(), before);
}

TEST(QueriesListViewTest, AFillSelectsTheStoredIndexWhichStartsAtTheFirst) {
  HostWindow host;
  QueriesListView view(host.get());
  const HWND list = GetDlgItem(host.get(), kControlId);
  ASSERT_NE(list, nullptr);
  view.fill(names({L"a", L"b"}));
  EXPECT_EQ(selected(list), 0);
  view.setSelectedIndex(1);
  view.fill(names({L"a", L"b"}));
  EXPECT_EQ(selected(list), 1);
  view.fill(names({L"a"}));
  EXPECT_EQ(selected(list), -1);
}

TEST(QueriesListViewTest, AnotherItemIsChosenAndNone) {
  HostWindow host;
  QueriesListView view(host.get());
  const HWND list = GetDlgItem(host.get(), kControlId);
  view.fill(names({L"a", L"b"}));
  view.select(1);
  EXPECT_EQ(selected(list), 1);
  EXPECT_EQ(view.selectedIndex(), 1);
  view.select(-1);
  EXPECT_EQ(selected(list), -1);
  EXPECT_FALSE(view.hasChoice());
}

TEST(QueriesListViewTest, TheColoursAreItsOwn) {
  HostWindow host;
  QueriesListView view(host.get());
  view.show();
  EXPECT_EQ(SendMessageW(GetDlgItem(host.get(), kControlId), LVM_GETBKCOLOR, 0, 0), RGB(255, 128, 0));
}

TEST(NameListViewTest, ThePageEndsWithItsWindowOrBeforeIt) {
  auto host = std::make_unique<HostWindow>();
  {
    const TablesListView view(host->get());
    EXPECT_NE(GetDlgItem(host->get(), kControlId), nullptr);
  }
  EXPECT_EQ(GetDlgItem(host->get(), kControlId), nullptr);
  const auto survivor = std::make_unique<TablesListView>(host->get());
  host.reset();
  EXPECT_STREQ(survivor->itemText(0).text(), L"");
}

}  // namespace
