#include "platform/pocketshell/menu/desktop_menu.h"

#include <array>
#include <map>
#include <string>
#include <vector>

#include "owners/live_resources.h"
#include "platform/pocketshell/desktop_entries.h"
#include "platform/pocketshell/menu/menu_button.h"
#include "platform/pocketshell/menu/menu_walk.h"
#include "tests/shell/shell_fixture.h"
#include "tests/shell/shell_resources.h"
#include "tests/shell/shell_settings.h"

namespace {

constexpr UINT kPlain = HANDHELD_FIRST_ENTRY;
constexpr UINT kGrouped = HANDHELD_FIRST_ENTRY + HANDHELD_ENTRY_STEP;
constexpr UINT kOther = HANDHELD_FIRST_ENTRY + 2 * HANDHELD_ENTRY_STEP;
constexpr UINT kLast = HANDHELD_LAST_ENTRY;

std::map<UINT, HandheldEntryState> states;
int timesAsked = 0;

HandheldEntryState stateOf(UINT command) {
  ++timesAsked;
  return states.contains(command) ? states[command] : HANDHELD_ENTRY_AVAILABLE;
}

/// A window with a menu bar and entries of its own. Each popup that opens gets the next keys.
class DesktopMenuTest : public ShellTest {
 protected:
  DesktopMenuTest() {
    states.clear();
    timesAsked = 0;
    bar_ = makeBar();
    edit_ = HandheldCreateWindow(0, WC_EDITW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20, top(), nullptr,
                                 nullptr, nullptr);
    SetFocus(edit_);
    EXPECT_TRUE(HandheldSetDesktopMenu(top(), kEntries.data(), static_cast<UINT>(kEntries.size())));
    pump();
    forget();
    onMessage([this](const Got& got) {
      if (got.message != WM_INITMENUPOPUP) return;
      opened_.push_back(reinterpret_cast<HMENU>(got.wParam));
      if (opened_.size() > keys_.size()) {
        PostMessageW(top(), WM_CANCELMODE, 0, 0);
        return;
      }
      for (const WPARAM key : keys_[opened_.size() - 1]) PostMessageW(top(), WM_KEYDOWN, key, 0);
    });
  }

  static constexpr std::array kEntries = {
      HandheldMenuEntry{kPlain, nullptr, L"&Plain", stateOf},
      HandheldMenuEntry{0, nullptr, nullptr, nullptr},
      HandheldMenuEntry{kGrouped, L"&Group", L"&In it", stateOf},
      HandheldMenuEntry{kLast, nullptr, L"&Last", nullptr},
      HandheldMenuEntry{kOther, L"&Group", L"&Also in it", stateOf},
  };

  static std::wstring textAt(HMENU menu, int place) {
    std::array<wchar_t, 64> text{};
    GetMenuStringW(menu, static_cast<UINT>(place), text.data(), static_cast<int>(text.size()), MF_BYPOSITION);
    return text.data();
  }
  /// The texts of a menu from an item on, those of a submenu in brackets behind its own.
  static std::wstring textsOf(HMENU menu, int first = 0) {
    std::wstring texts;
    for (int i = first; i < GetMenuItemCount(menu); ++i) {
      if (!texts.empty()) texts += L", ";
      const std::wstring text = textAt(menu, i);
      texts += text.empty() ? L"-" : text;
      if (const HMENU below = GetSubMenu(menu, i)) texts += L" (" + textsOf(below) + L")";
    }
    return texts;
  }
  HMENU systemMenu() const { return GetSystemMenu(top(), FALSE); }
  HWND button() const { return pocketshell::MenuButton::of(bar_); }
  void tapButton() const { PostMessageW(button(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3)); }
  int commandCount(UINT command) const { return countOf(WM_COMMAND, command); }

  HWND bar_ = nullptr;
  HWND edit_ = nullptr;
  std::vector<std::vector<WPARAM>> keys_;  ///< for each popup in turn
  std::vector<HMENU> opened_;
};

constexpr wchar_t kAll[] =
    L"&Plain, -, &Group (&In it, &Also in it), &Last, &Zoom (\u00D7&1, \u00D71.&5, \u00D7&2, \u00D7&3, "
    L"\u00D7&4, By the &monitor)";

TEST_F(DesktopMenuTest, TheButtonStandsAtTheRightEndOfTheBar) {
  for (const int zoom : {100, 150, 200, 100}) {
    HandheldSetZoom(zoom);
    const RECT bar = clientRect(bar_);
    const RECT place = placeInParent(button());
    EXPECT_EQ(place, (RECT{bar.right - HandheldToMonitor(24), 0, bar.right, bar.bottom})) << zoom;
  }
}

TEST_F(DesktopMenuTest, BesideThePanelsButtonItIsLeftOfThatAndCoversNone) {
  setPanelPolicy(kPanelAlways);
  DestroyWindow(bar_);
  bar_ = makeBar();
  std::array<TBBUTTON, 3> added{};
  for (int i = 0; i < 3; ++i) {
    TBBUTTON& each = added[static_cast<std::size_t>(i)];
    each.iBitmap = i;
    each.idCommand = ID_IMAGE_NEW + i;
    each.fsState = TBSTATE_ENABLED;
  }
  SendMessageW(bar_, TB_ADDBUTTONSW, added.size(), reinterpret_cast<LPARAM>(added.data()));
  RECT last{};
  SendMessageW(bar_, TB_GETITEMRECT, 5, reinterpret_cast<LPARAM>(&last));
  const HWND panel = FindWindowExW(bar_, nullptr, L"Pocket Shell Panel Button", nullptr);
  ASSERT_NE(panel, nullptr);
  EXPECT_EQ(placeInParent(panel).right, 240);
  EXPECT_EQ(placeInParent(button()).right, placeInParent(panel).left);
  EXPECT_LE(last.right, placeInParent(button()).left);
}

TEST_F(DesktopMenuTest, ATapOpensItAndTheChosenEntryIsGiven) {
  keys_ = {{VK_DOWN, VK_RETURN}};
  tapButton();
  pump();
  ASSERT_EQ(opened_.size(), 1U);
  EXPECT_EQ(textsOf(opened_[0]), kAll);
  EXPECT_EQ(commandCount(kPlain), 1);
  EXPECT_FALSE(pocketshell::isWalkingMenus());
}

TEST_F(DesktopMenuTest, AnEntryMaySayMoreEachTimeThatItIsShown) {
  static std::wstring present;
  const std::array entries = {
      HandheldMenuEntry{kPlain, nullptr, L"&Plain", stateOf},
      HandheldMenuEntry{kOther, nullptr, L"&Undo", stateOf, [](UINT) { return present.c_str(); }}};
  ASSERT_TRUE(HandheldSetDesktopMenu(top(), entries.data(), static_cast<UINT>(entries.size())));
  for (const wchar_t* text : {L"&Undo deletion of 'A && B'\tCtrl+Z", L"&Undo"}) {
    present = text;
    opened_.clear();
    tapButton();
    pump();
    ASSERT_EQ(opened_.size(), 1U);
    EXPECT_EQ(textAt(opened_[0], 0), L"&Plain");
    EXPECT_EQ(textAt(opened_[0], 1), text);
  }
  states[kOther] = HANDHELD_ENTRY_GREY;
  opened_.clear();
  tapButton();
  pump();
  ASSERT_EQ(opened_.size(), 1U);
  EXPECT_NE(GetMenuState(opened_[0], kOther, MF_BYCOMMAND) & MF_GRAYED, 0U);
}

TEST_F(DesktopMenuTest, AltMOpensItThroughAControl) {
  keys_ = {{'L'}};
  PostMessageW(edit_, WM_SYSCHAR, L'm', LPARAM{1} << 29);
  pump();
  ASSERT_EQ(opened_.size(), 1U);
  EXPECT_EQ(commandCount(kLast), 1);
  EXPECT_EQ(GetFocus(), edit_);
}

TEST_F(DesktopMenuTest, TheArrowsOfTheBarReachIt) {
  keys_ = {{VK_ESCAPE}};
  SendMessageW(top(), WM_SYSCOMMAND, SC_KEYMENU, 0);
  PostMessageW(edit_, WM_KEYDOWN, VK_LEFT, 1);
  pump();
  EXPECT_EQ(SendMessageW(bar_, TB_GETHOTITEM, 0, 0), -1) << "none of the others is marked";
  PostMessageW(edit_, WM_KEYDOWN, VK_DOWN, 1);
  pump();
  ASSERT_EQ(opened_.size(), 1U);
  EXPECT_EQ(textsOf(opened_[0]), kAll);
}

TEST_F(DesktopMenuTest, ARightClickOnTheBarOpensIt) {
  keys_ = {{'G'}, {'A'}};
  SendMessageW(bar_, WM_RBUTTONUP, 0, MAKELPARAM(200, 5));
  pump();
  ASSERT_EQ(opened_.size(), 2U);
  EXPECT_EQ(commandCount(kOther), 1);
}

TEST_F(DesktopMenuTest, TheSystemMenuEndsWithIt) {
  const HMENU system = systemMenu();
  const std::wstring texts = textsOf(system);
  ASSERT_GE(texts.size(), std::wstring(kAll).size());
  EXPECT_EQ(texts.substr(texts.size() - std::wstring(kAll).size()), kAll);
  SendMessageW(top(), WM_SYSCOMMAND, kPlain, 0);
  EXPECT_EQ(commandCount(kPlain), 1);
  // The system has a use of its own for the lowest bits.
  SendMessageW(top(), WM_SYSCOMMAND, kLast + 2, 0);
  EXPECT_EQ(commandCount(kLast), 1);
}

TEST_F(DesktopMenuTest, EntriesAreGreyedAndMarkedWhenTheirMenuOpens) {
  for (const HMENU menu : {systemMenu(), GetSubMenu(systemMenu(), GetMenuItemCount(systemMenu()) - 3)}) {
    for (const auto& [state, expected] :
         std::map<HandheldEntryState, UINT>{{HANDHELD_ENTRY_GREY, MF_GRAYED},
                                            {HANDHELD_ENTRY_AVAILABLE, MF_ENABLED},
                                            {HANDHELD_ENTRY_CHOSEN, MF_CHECKED}}) {
      states[kPlain] = state;
      states[kGrouped] = state;
      SendMessageW(top(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), 0);
      const UINT command = menu == systemMenu() ? kPlain : kGrouped;
      EXPECT_EQ(GetMenuState(menu, command, MF_BYCOMMAND) & (MF_GRAYED | MF_CHECKED), expected);
    }
  }
}

TEST_F(DesktopMenuTest, AGreyEntryIsNotGiven) {
  states[kPlain] = HANDHELD_ENTRY_GREY;
  keys_ = {{VK_DOWN, VK_RETURN, VK_ESCAPE}};
  tapButton();
  pump();
  SendMessageW(top(), WM_SYSCOMMAND, kPlain, 0);
  SendMessageW(top(), WM_COMMAND, kPlain, 0);
  EXPECT_EQ(opened_.size(), 1U);
  EXPECT_EQ(commandCount(kPlain), 0);
  EXPECT_GT(timesAsked, 0);
}

TEST_F(DesktopMenuTest, UnderADialogNothingIsGiven) {
  EnableWindow(top(), FALSE);
  SendMessageW(top(), WM_SYSCOMMAND, kPlain, 0);
  SendMessageW(top(), WM_COMMAND, kPlain, 0);
  PostMessageW(edit_, WM_SYSCHAR, L'm', LPARAM{1} << 29);
  pump();
  EXPECT_EQ(commandCount(kPlain), 0);
  EXPECT_TRUE(opened_.empty());
  EnableWindow(top(), TRUE);
  SendMessageW(top(), WM_COMMAND, kPlain, 0);
  EXPECT_EQ(commandCount(kPlain), 1);
}

TEST_F(DesktopMenuTest, OtherEntriesTakeTheirPlace) {
  const int before = GetMenuItemCount(systemMenu());
  constexpr HandheldMenuEntry kOne = {kOther, nullptr, L"&Alone", nullptr};
  EXPECT_TRUE(HandheldSetDesktopMenu(top(), &kOne, 1));
  EXPECT_EQ(GetMenuItemCount(systemMenu()), before - 3);
  SendMessageW(top(), WM_SYSCOMMAND, kPlain, 0);
  EXPECT_EQ(commandCount(kPlain), 0);
  SendMessageW(top(), WM_SYSCOMMAND, kOther, 0);
  EXPECT_EQ(commandCount(kOther), 1);
  EXPECT_TRUE(HandheldSetDesktopMenu(top(), nullptr, 0));
  EXPECT_EQ(GetMenuItemCount(systemMenu()), before - 4);
}

TEST_F(DesktopMenuTest, WhatCannotBeAnEntryLeavesTheOthers) {
  const std::wstring before = textsOf(systemMenu());
  for (const UINT command : {UINT{HANDHELD_FIRST_ENTRY} - HANDHELD_ENTRY_STEP, kPlain + 1,
                             UINT{HANDHELD_LAST_ENTRY} + HANDHELD_ENTRY_STEP}) {
    const HandheldMenuEntry bad = {command, nullptr, L"Bad", nullptr};
    EXPECT_FALSE(HandheldSetDesktopMenu(top(), &bad, 1)) << command;
  }
  EXPECT_FALSE(HandheldSetDesktopMenu(top(), nullptr, 1));
  EXPECT_FALSE(HandheldSetDesktopMenu(edit_, kEntries.data(), 1));
  EXPECT_FALSE(HandheldSetDesktopMenu(nullptr, kEntries.data(), 1));
  EXPECT_EQ(textsOf(systemMenu()), before);
}

TEST_F(DesktopMenuTest, AWindowWithoutAFrameHasNone) {
  const HWND plain =
      CreateWindowExW(0, WC_STATICW, L"", WS_POPUP, 0, 0, 240, 294, nullptr, nullptr, nullptr, nullptr);
  SHMENUBARINFO info = barInfo(IDR_BAR);
  info.hwndParent = plain;
  ASSERT_TRUE(SHCreateMenuBar(&info));
  EXPECT_EQ(pocketshell::MenuButton::of(info.hwndMB), nullptr);
  EXPECT_FALSE(HandheldSetDesktopMenu(plain, kEntries.data(), 1));
  DestroyWindow(plain);
}

TEST_F(DesktopMenuTest, TheCommandMayReplaceTheBar) {
  keys_ = {{VK_DOWN, VK_RETURN}};
  onMessage([this](const Got& got) {
    if (got.message == WM_INITMENUPOPUP) {
      DestroyWindow(bar_);
      bar_ = makeBar();
      PostMessageW(top(), WM_CANCELMODE, 0, 0);
    }
  });
  tapButton();
  pump();
  EXPECT_NE(button(), nullptr);
  EXPECT_FALSE(pocketshell::isWalkingMenus());
}

TEST_F(DesktopMenuTest, LeavesNothingBehindAfterManyRounds) {
  const auto round = [this] {
    DestroyWindow(bar_);
    bar_ = makeBar();
    HandheldSetDesktopMenu(top(), kEntries.data(), static_cast<UINT>(kEntries.size()));
  };
  round();
  const long handles = LiveResources::countOfAll();
  for (int i = 0; i < 100; ++i) round();
  EXPECT_EQ(LiveResources::countOfAll(), handles);
}

}  // namespace
