#include <windows.h>

#include <commctrl.h>

#include <span>

#include "app/bars/page_bars.h"
#include "gmock/gmock.h"
#include "owners/handles.h"
#include "tests/ui/bars/bar_host.h"
#include "tests/ui/remote/menu_texts.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Lines = std::vector<std::string>;

constexpr int kMenuBars[] = {216, 217, 218, 221, 222};

UniqueMenu load(int resource) {
  return UniqueMenu(LoadMenuW(ownInstance(), MAKEINTRESOURCEW(resource)));
}

/// The lines of one popup of a menu bar.
Lines popupLines(int resource, int popup) {
  const UniqueMenu menu = load(resource);
  return menuLines(GetSubMenu(menu.get(), popup));
}

const Lines kFile = {"New DB... 40072", "Open DB... 32772", "Delete DB... 40073", "Close DB 32773", "-",
                     "Exit 40022"};
const Lines kClipboard = {"Undo 40056", "-", "Cut 40055", "Copy 40054", "Paste 40053", "-"};
const Lines kFind = {"Find 32793", "-"};
const Lines kProgram = {"Password >", "  Change... 32774", "Options... 32775", "DB Info... 32782",
                        "-",          "About... 40023"};
const Lines kGoto = {"Goto >",       "  First 32778", "  Last 32779",  "  Previous 32780",
                     "  Next 32781", "  -",           "  Number 40015"};
const Lines kView = {"-", "View >", "  Large Icons 40061", "  Small Icons 40062", "  List 40063"};

Lines operator+(Lines first, const Lines& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

std::vector<int> description(int resource) {
  const HRSRC place = FindResourceW(ownInstance(), MAKEINTRESOURCEW(resource), MAKEINTRESOURCEW(10));
  if (!place) return {};
  const auto* const numbers = static_cast<const WORD*>(LockResource(LoadResource(ownInstance(), place)));
  const std::size_t count = SizeofResource(ownInstance(), place) / sizeof(WORD);
  return {numbers, numbers + count};
}

std::wstring labelText(UINT id) {
  wchar_t text[40] = L"";
  LoadStringW(ownInstance(), id, text, ARRAYSIZE(text));
  return text;
}

}  // namespace

TEST(MenuResourcesTest, EveryBarBeginsWithTheSameFileMenu) {
  for (const int bar : kMenuBars) EXPECT_EQ(popupLines(bar, 0), kFile) << bar;
}

TEST(MenuResourcesTest, TheBarsHaveTheMenusOfTheirPages) {
  const auto titles = [](int resource) {
    const UniqueMenu menu = load(resource);
    Lines found;
    for (const std::string& line : menuLines(menu.get())) {
      if (line.front() != ' ') found.push_back(line);
    }
    return found;
  };
  EXPECT_THAT(titles(217), ElementsAre("File >"));
  EXPECT_THAT(titles(218), ElementsAre("File >", "Edit >", "Tables >"));
  EXPECT_THAT(titles(216), ElementsAre("File >", "Edit >", "Record >"));
  EXPECT_THAT(titles(221), ElementsAre("File >", "Edit >", "Record >"));
  EXPECT_THAT(titles(222), ElementsAre("File >", "Edit >", "Queries >"));
}

TEST(MenuResourcesTest, EditHasTheClipboardWhereThereAreEditors) {
  EXPECT_EQ(popupLines(216, 1), kClipboard + kFind + kProgram);
  EXPECT_EQ(popupLines(222, 1), kClipboard + kProgram);
  EXPECT_EQ(popupLines(218, 1), kProgram);
  EXPECT_EQ(popupLines(221, 1), kProgram);
}

TEST(MenuResourcesTest, RecordOfTheFormBeginsWithItsPagesGrey) {
  const Lines items = {"New 32787", "Delete 40001", "-"};
  const Lines pages = {"Page >", "  Next 32790 grey", "  Previous 32791 grey"};
  EXPECT_EQ(popupLines(216, 2), items + kGoto + pages);
}

TEST(MenuResourcesTest, RecordOfTheListHasItsColumns) {
  const Lines items = {"Edit 40085", "New 32787", "Delete 40001", "-"};
  const Lines columns = {"List >", "  Previous Column 40070", "  Next Column 40071"};
  EXPECT_EQ(popupLines(221, 2), items + kGoto + columns);
}

TEST(MenuResourcesTest, TablesAndQueriesHaveTheStylesOfTheirLists) {
  EXPECT_EQ(popupLines(218, 2), (Lines{"New... 40065", "Delete 40074"} + kView));
  EXPECT_EQ(popupLines(222, 2), (Lines{"New... 40078", "Edit... 40083", "Delete 40079"} + kView));
}

TEST(MenuResourcesTest, HeldTapsHaveMenus) {
  EXPECT_THAT(popupLines(241, 0), ElementsAre("Delete Table 40074"));
  EXPECT_THAT(popupLines(242, 0), ElementsAre("Delete Query 40079", "-", "Edit Query 40083"));
  EXPECT_THAT(popupLines(243, 0), ElementsAre("Edit Record 40085"));
  EXPECT_THAT(popupLines(244, 0), ElementsAre("Edit Record 40085", "-", "Delete Record 40001"));
}

TEST(MenuResourcesTest, EveryItemHasAnAccessKeyOfItsOwn) {
  for (const int resource : {216, 217, 218, 221, 222, 241, 242, 243, 244}) {
    const UniqueMenu menu = load(resource);
    ASSERT_GT(GetMenuItemCount(menu.get()), 0) << resource;
    for (int i = 0; i < GetMenuItemCount(menu.get()); ++i)
      EXPECT_THAT(accessKeyFaults(GetSubMenu(menu.get(), i)), IsEmpty()) << resource;
  }
}

/// So that nothing takes a mouse.
TEST(MenuResourcesTest, WhatAButtonDoesIsInAMenuOfItsPage) {
  struct Row {
    int page;
    int menuBar;
    std::vector<int> recordButtons;
  };
  const Row pages[] = {{0, 218, {}}, {1, 216, {32787, 40001, 32793}}, {2, 221, {32787, 40001}}, {3, 222, {}}};
  for (const Row& row : pages) {
    std::vector<int> commands = row.recordButtons;
    for (const BandLayout& band : pageBands(row.page)) {
      for (const BarButton& button : band.buttons) commands.push_back(button.command);
    }
    EXPECT_GE(commands.size(), 6u) << row.menuBar;
    const UniqueMenu menu = load(row.menuBar);
    for (const int command : commands) {
      EXPECT_NE(GetMenuState(menu.get(), static_cast<UINT>(command), MF_BYCOMMAND), 0xFFFFFFFFu)
          << command << " of page " << row.page;
    }
  }
}

TEST(MenuResourcesTest, TheDescriptionsNameMenuAndButtons) {
  constexpr int kNoImage = 0xFFFE;
  constexpr int kState = TBSTATE_ENABLED;
  constexpr int kStyle = TBSTYLE_DROPDOWN | TBSTYLE_AUTOSIZE;
  const auto expected = [&](int resource, const std::vector<std::pair<int, int>>& buttons) {
    std::vector<int> numbers = {resource, static_cast<int>(buttons.size())};
    int popup = 0;
    for (const auto& [command, label] : buttons) {
      for (const int number : {kNoImage, command, kState, kStyle, label, 0, popup}) numbers.push_back(number);
      ++popup;
    }
    return numbers;
  };
  const std::pair file{40024, 40026};
  const std::pair edit{40027, 40029};
  const std::pair record{40030, 40032};
  EXPECT_EQ(description(217), expected(217, {file}));
  EXPECT_EQ(description(218), expected(218, {file, edit, {40057, 40059}}));
  EXPECT_EQ(description(216), expected(216, {file, edit, record}));
  EXPECT_EQ(description(221), expected(221, {file, edit, record}));
  EXPECT_EQ(description(222), expected(222, {file, edit, {40080, 40081}}));
}

TEST(MenuResourcesTest, TheButtonsHaveLabels) {
  EXPECT_EQ(labelText(40026), L"File");
  EXPECT_EQ(labelText(40029), L"Edit");
  EXPECT_EQ(labelText(40032), L"Record");
  EXPECT_EQ(labelText(40059), L"Tables");
  EXPECT_EQ(labelText(40081), L"Queries");
}

TEST(MenuResourcesTest, EveryStripIsThereInFourSizes) {
  const std::pair<int, int> strips[] = {{217, 3}, {226, 6}, {227, 4}, {228, 2}, {229, 4},
                                        {230, 5}, {231, 3}, {232, 1}, {233, 2}};
  for (const auto& [id, images] : strips) {
    for (const int times : {1, 2, 3, 4}) {
      const int resource = times == 1 ? id : id + 1000 * times;
      const UniqueBitmap bitmap(static_cast<HBITMAP>(
          LoadImageW(ownInstance(), MAKEINTRESOURCEW(resource), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
      BITMAP size{};
      ASSERT_NE(GetObjectW(bitmap.get(), sizeof(size), &size), 0) << resource;
      EXPECT_EQ(size.bmWidth, 16 * times * images) << resource;
      EXPECT_EQ(size.bmHeight, 16 * times) << resource;
    }
  }
}
