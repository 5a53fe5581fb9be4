#include "app/bars/command_bar.h"

#include <array>

#include "base/settings/app_settings.h"
#include "gmock/gmock.h"
#include "owners/handles.h"
#include "owners/live_resources.h"
#include "platform/pocketshell/handheld_windows.h"
#include "tests/ui/bars/bar_host.h"
#include "views/shared/page_area.h"

using testing::ElementsAre;

namespace {

constexpr int kTables = 0;
constexpr int kForm = 1;
constexpr int kList = 2;
constexpr int kQueries = 3;
constexpr int kNext = 32781;
constexpr int kClose = 32773;
constexpr int kPageNext = 32790;

class CommandBarTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(HandheldSetZoom(100));
    theAppSettings = std::make_unique<AppSettings>();
    bar_.setPageWindows(host_.tab(), host_.form());
    ASSERT_TRUE(bar_.create(host_.main()));
  }
  void TearDown() override {
    bar_.destroy();
    theAppSettings.reset();
  }

  /// As the window switches to a page: its bands, then its menu bar.
  void show(int page, std::uint32_t recordCount = 5) {
    facts_ = {page, page >= 0 && page < 4, true, recordCount};
    bar_.showPageBars(page);
    bar_.refreshMenuBar();
  }
  /// At the first or the last of five records, on whatever page.
  static CommandFacts recordFacts(bool hasNext) {
    return {.unlocked = true,
            .databaseOpen = true,
            .countsAsOpen = true,
            .recordsetOpen = true,
            .viewMode = ViewMode::form,
            .tableCount = 1,
            .currentRecord = hasNext ? 1u : 5u,
            .recordCount = 5};
  }
  void showNext(bool isAvailable) { bar_.showCommands(recordFacts(isAvailable)); }
  bool isGrey(PopupMenu menu, int command) const {
    const UINT state = GetMenuState(bar_.menuBar().popup(menu), static_cast<UINT>(command), MF_BYCOMMAND);
    EXPECT_NE(state, ~0u) << command;
    return (state & MF_GRAYED) != 0;
  }
  int toolbarState(int command) const { return buttonState(bar_.pageBars().secondBand(), command); }
  std::wstring positionText() const {
    wchar_t text[100] = L"";
    GetDlgItemTextW(bar_.pageBars().rebar(), 1012, text, ARRAYSIZE(text));
    return text;
  }

  BarHost host_;
  BarFacts facts_;
  MainCommandBar bar_{ownInstance(), [this] { return facts_; }};
};

/// Answers the next message box and keeps its texts.
class BoxAnswer {
 public:
  BoxAnswer() { hook_ = SetWindowsHookExW(WH_CBT, onEvent, nullptr, GetCurrentThreadId()); }
  ~BoxAnswer() { UnhookWindowsHookEx(hook_); }
  BoxAnswer(const BoxAnswer&) = delete;
  BoxAnswer& operator=(const BoxAnswer&) = delete;

  static std::wstring caption, text;
  static HWND owner;

 private:
  static LRESULT CALLBACK onEvent(int code, WPARAM wParam, LPARAM lParam) {
    auto* const box = reinterpret_cast<HWND>(wParam);
    constexpr int kTextId = 0xFFFF;
    if (code == HCBT_ACTIVATE && GetDlgItem(box, kTextId)) {
      wchar_t buffer[100] = L"";
      GetWindowTextW(box, buffer, ARRAYSIZE(buffer));
      caption = buffer;
      GetDlgItemTextW(box, kTextId, buffer, ARRAYSIZE(buffer));
      text = buffer;
      owner = GetWindow(box, GW_OWNER);
      PostMessageW(box, WM_COMMAND, IDOK, 0);
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
  }

  HHOOK hook_;
};

std::wstring BoxAnswer::caption;
std::wstring BoxAnswer::text;
HWND BoxAnswer::owner;

}  // namespace

// ---- What is available

TEST_F(CommandBarTest, ACommandIsGreyInItsMenuAndIndeterminateOnTheToolbar) {
  show(kForm);
  showNext(false);
  EXPECT_TRUE(isGrey(PopupMenu::record, kNext));
  EXPECT_EQ(toolbarState(kNext), TBSTATE_INDETERMINATE);
  showNext(true);
  EXPECT_FALSE(isGrey(PopupMenu::record, kNext));
  EXPECT_EQ(toolbarState(kNext), TBSTATE_ENABLED);
}

TEST_F(CommandBarTest, AnItemAndAButtonOfOneCommandMayHaveRulesOfTheirOwn) {
  constexpr int kNextColumn = 40071;
  show(kList);
  CommandFacts facts = recordFacts(true);
  facts.viewMode = ViewMode::list;
  facts.fieldCount = 2;
  bar_.showCommands(facts);
  EXPECT_FALSE(isGrey(PopupMenu::record, kNextColumn));
  EXPECT_EQ(toolbarState(kNextColumn), TBSTATE_INDETERMINATE);
  facts.fieldCount = 5;
  bar_.showCommands(facts);
  EXPECT_EQ(toolbarState(kNextColumn), TBSTATE_ENABLED);
}

TEST_F(CommandBarTest, WhatThePageDoesNotHaveIsPassedOver) {
  showNext(false);
  show(kTables);
  showNext(false);
  EXPECT_FALSE(isGrey(PopupMenu::file, kClose));
  EXPECT_EQ(toolbarState(32782), TBSTATE_ENABLED);
}

TEST_F(CommandBarTest, TheSameNumberInAnotherMenuHasItsOwnRule) {
  constexpr int kLargeIcons = 40061;
  CommandFacts facts = recordFacts(true);
  facts.viewMode = ViewMode::tables;
  facts.queryCount = 0;
  bar_.showCommands(facts);
  show(kTables);
  EXPECT_FALSE(isGrey(PopupMenu::tables, kLargeIcons));
  facts.viewMode = ViewMode::queries;
  bar_.showCommands(facts);
  show(kQueries);
  EXPECT_TRUE(isGrey(PopupMenu::queries, kLargeIcons));
}

TEST_F(CommandBarTest, ItemsOfSubmenusAreShownToo) {
  show(kForm);
  showNext(true);
  EXPECT_TRUE(isGrey(PopupMenu::record, kPageNext));
  CommandFacts facts = recordFacts(true);
  facts.formPageCount = 2;
  bar_.showCommands(facts);
  EXPECT_FALSE(isGrey(PopupMenu::record, kPageNext));
}

TEST_F(CommandBarTest, BarsThatAreMadeAgainShowTheLastFacts) {
  show(kForm);
  showNext(true);
  showNext(false);
  bar_.refreshMenuBar();
  EXPECT_TRUE(isGrey(PopupMenu::record, kNext));
  bar_.showPageBars(kForm);
  EXPECT_EQ(toolbarState(kNext), TBSTATE_INDETERMINATE);
}

// ---- The menu bar

TEST_F(CommandBarTest, TheMenuBarFollowsTheFacts) {
  EXPECT_THAT(toolbarCommands(bar_.menuBar().window()), ElementsAre(40024));
  show(kForm, 0);
  EXPECT_THAT(toolbarCommands(bar_.menuBar().window()), ElementsAre(40024, 40027, 40030, 32787));
  facts_.recordCount = 1;
  bar_.refreshMenuBar();
  EXPECT_THAT(toolbarCommands(bar_.menuBar().window()),
              ElementsAre(40024, 40027, 40030, 32787, 40001, 32793));
}

TEST_F(CommandBarTest, AMenuBarOfTheSameButtonsStaysUntilAllIsMadeAnew) {
  show(kForm);
  showNext(true);
  const HWND shown = bar_.menuBar().window();
  facts_.recordCount = 6;
  bar_.refreshMenuBar();
  EXPECT_EQ(bar_.menuBar().window(), shown);
  EXPECT_FALSE(isGrey(PopupMenu::record, kNext));
  showNext(false);
  EXPECT_TRUE(isGrey(PopupMenu::record, kNext));
  bar_.rebuildAll();
  EXPECT_FALSE(IsWindow(shown));
  EXPECT_TRUE(IsWindow(bar_.menuBar().window()));
  EXPECT_TRUE(isGrey(PopupMenu::record, kNext));
}

TEST_F(CommandBarTest, AMenuBarThatCannotBeMadeIsReported) {
  const BoxAnswer answer;
  MainCommandBar broken(GetModuleHandleW(L"aygshell.dll"), [] { return BarFacts{}; });
  EXPECT_FALSE(broken.create(host_.main()));
  EXPECT_EQ(BoxAnswer::caption, L"Error");
  EXPECT_EQ(BoxAnswer::text, L"SHCreateMenuBar Failed");
  EXPECT_EQ(BoxAnswer::owner, host_.main());
}

TEST_F(CommandBarTest, AfterTheWindowsEndNoMenuBarIsMadeAndNothingSaid) {
  const BoxAnswer answer;
  BoxAnswer::caption.clear();
  bar_.destroy();
  bar_.refreshMenuBar();
  EXPECT_EQ(bar_.menuBar().window(), nullptr);
  EXPECT_EQ(BoxAnswer::caption, L"");
}

// ---- The bands

TEST_F(CommandBarTest, TheBandsLieInTheFormsWindowOnTheFormPageOnly) {
  for (const int page : {kTables, kList, kQueries}) {
    show(page);
    EXPECT_EQ(GetParent(bar_.pageBars().rebar()), host_.tab()) << page;
  }
  show(kForm);
  EXPECT_EQ(GetParent(bar_.pageBars().rebar()), host_.form());
  show(4);
  EXPECT_EQ(bar_.pageBars().rebar(), nullptr);
}

TEST_F(CommandBarTest, ThePositionBoxShowsTheText) {
  bar_.setPositionText(L"lost");
  show(kTables);
  bar_.setPositionText(L"lost");
  show(kList);
  EXPECT_EQ(positionText(), L"");
  bar_.setPositionText(L"    1 / 5");
  EXPECT_EQ(positionText(), L"    1 / 5");
}

/// The tip of the position box that is there; none when there is no tip.
std::wstring tipOf(HWND box) {
  std::wstring found;
  for (HWND tip = FindWindowExW(nullptr, nullptr, TOOLTIPS_CLASSW, nullptr); tip;
       tip = FindWindowExW(nullptr, tip, TOOLTIPS_CLASSW, nullptr)) {
    std::array<wchar_t, 200> text{};
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND;
    tool.hwnd = GetParent(box);
    tool.uId = reinterpret_cast<UINT_PTR>(box);
    tool.lpszText = text.data();
    SendMessageW(tip, TTM_GETTEXTW, text.size(), reinterpret_cast<LPARAM>(&tool));
    if (text[0] != L'\0') found = text.data();
  }
  return found;
}

TEST_F(CommandBarTest, ThePositionBoxHasATipOnEachPageThatHasTheBox) {
  show(kList);
  EXPECT_EQ(tipOf(bar_.pageBars().positionBox()), L"");
  bar_.setPositionTip(L"Ordered by Title\nOnly where a is empty");
  EXPECT_EQ(tipOf(bar_.pageBars().positionBox()), L"Ordered by Title\nOnly where a is empty");
  show(kForm);
  EXPECT_EQ(tipOf(bar_.pageBars().positionBox()), L"Ordered by Title\nOnly where a is empty");
  show(kTables);
  bar_.setPositionTip(L"another");
  show(kList);
  EXPECT_EQ(tipOf(bar_.pageBars().positionBox()), L"another");
  bar_.setPositionTip(L"");
  EXPECT_EQ(tipOf(bar_.pageBars().positionBox()), L"");
}

TEST_F(CommandBarTest, ThePositionBoxIsWhite) {
  std::vector<HWND> asked;
  host_.onColor([&](HWND control) {
    asked.push_back(control);
    return bar_.backgroundOf(nullptr, control);
  });
  show(kForm);
  const HWND box = bar_.pageBars().positionBox();
  const LRESULT brush = SendMessageW(GetParent(box), WM_CTLCOLORSTATIC, 0, reinterpret_cast<LPARAM>(box));
  EXPECT_EQ(brush, reinterpret_cast<LRESULT>(GetStockObject(WHITE_BRUSH)));
  EXPECT_THAT(asked, ElementsAre(box));
  EXPECT_EQ(bar_.backgroundOf(nullptr, host_.form()), nullptr);
  EXPECT_EQ(bar_.backgroundOf(nullptr, nullptr), nullptr);
  show(kTables);
  EXPECT_EQ(bar_.backgroundOf(nullptr, nullptr), nullptr);
}

/// With the system's colours of high contrast the system's own text is white.
TEST_F(CommandBarTest, ThePositionIsBlackOnItsWhite) {
  show(kForm);
  const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
  SetTextColor(dc.get(), RGB(255, 255, 255));
  SetBkColor(dc.get(), RGB(0, 0, 0));
  ASSERT_NE(bar_.backgroundOf(dc.get(), bar_.pageBars().positionBox()), nullptr);
  EXPECT_EQ(GetTextColor(dc.get()), RGB(0, 0, 0));
  EXPECT_EQ(GetBkColor(dc.get()), RGB(255, 255, 255));
}

TEST_F(CommandBarTest, TheOptionMovesTheBands) {
  const auto top = [this] {
    RECT place{};
    GetWindowRect(bar_.pageBars().rebar(), &place);
    MapWindowPoints(nullptr, host_.tab(), reinterpret_cast<POINT*>(&place), 2);
    return place.top;
  };
  RECT client{};
  GetClientRect(host_.tab(), &client);
  const LONG below = client.bottom - 50;
  show(kList);
  EXPECT_EQ(top(), below);
  EXPECT_EQ(pageOffset(), 0);
  EXPECT_EQ(formTopMargin(), 2);
  theAppSettings->options().setRebarsAtTop(1);
  bar_.placePageBars();
  EXPECT_EQ(top(), 0);
  EXPECT_EQ(pageOffset(), 28);
  EXPECT_EQ(formTopMargin(), 30);
  theAppSettings->options().setRebarsAtTop(0);
  bar_.placePageBars();
  EXPECT_EQ(top(), below);
  show(kForm);
  EXPECT_EQ(top(), 220 - 28);
  theAppSettings->options().setRebarsAtTop(1);
  bar_.placePageBars();
  EXPECT_EQ(top(), 0);
  theAppSettings.reset();
  EXPECT_EQ(formTopMargin(), 30);
}

TEST_F(CommandBarTest, AtAnotherZoomAllIsMadeAgainInProportion) {
  show(kForm);
  ASSERT_TRUE(HandheldSetZoom(200));
  bar_.rebuildAll();
  RECT bands{};
  GetClientRect(bar_.pageBars().rebar(), &bands);
  EXPECT_EQ(bands.right, 480);
  EXPECT_EQ(bands.bottom, 56);
  RECT box{};
  GetWindowRect(bar_.pageBars().positionBox(), &box);
  EXPECT_EQ(box.right - box.left, 164);
  ASSERT_TRUE(HandheldSetZoom(100));
  bar_.rebuildAll();
  GetClientRect(bar_.pageBars().rebar(), &bands);
  EXPECT_EQ(bands.right, 240);
  EXPECT_EQ(bands.bottom, 28);
}

TEST_F(CommandBarTest, MakingAllAgainKeepsTextAndStates) {
  show(kForm);
  bar_.setPositionText(L"    3 / 5");
  showNext(false);
  bar_.rebuildAll();
  EXPECT_EQ(positionText(), L"    3 / 5");
  EXPECT_EQ(toolbarState(kNext), TBSTATE_INDETERMINATE);
  EXPECT_TRUE(isGrey(PopupMenu::record, kNext));
}

TEST_F(CommandBarTest, RebuildingLeavesNothingBehind) {
  show(kForm);
  const long resources = LiveResources::countOfAll();
  const int windows = windowCount();
  for (int i = 0; i < 200; ++i) show(i % 4, static_cast<std::uint32_t>(i % 3));
  for (int i = 0; i < 200; ++i) bar_.rebuildAll();
  show(kForm);
  EXPECT_EQ(LiveResources::countOfAll(), resources);
  EXPECT_EQ(windowCount(), windows);
  bar_.destroy();
  EXPECT_EQ(LiveResources::count(ResourceKind::window), 0);
  EXPECT_EQ(LiveResources::count(ResourceKind::imageList), 0);
  EXPECT_EQ(GetWindow(host_.form(), GW_CHILD), nullptr);
}
