#include "app/bars/page_bars.h"

#include <commctrl.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/settings/app_settings.h"
#include "gmock/gmock.h"
#include "platform/pocketshell/handheld_windows.h"
#include "tests/shell/drawn_picture.h"
#include "tests/ui/bars/bar_host.h"
#include "views/shared/page_area.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int kTables = 0;
constexpr int kForm = 1;
constexpr int kList = 2;
constexpr int kQueries = 3;

struct Tip {
  int command;
  std::wstring text;
  bool operator==(const Tip&) const = default;
};

std::vector<Tip> tips(const BandLayout& band) {
  std::vector<Tip> found;
  for (const BarButton& button : band.buttons) found.push_back({button.command, button.tip});
  return found;
}

/// Of a band that is there.
REBARBANDINFOW bandInfo(HWND rebar, int index) {
  REBARBANDINFOW info{};
  info.cbSize = REBARBANDINFOW_V6_SIZE;
  info.fMask = RBBIM_STYLE | RBBIM_CHILD | RBBIM_CHILDSIZE | RBBIM_SIZE | RBBIM_ID;
  SendMessageW(rebar, RB_GETBANDINFOW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&info));
  return info;
}

/// In the client area of the parent.
RECT placeOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

/// From the first row with anything dark to the row behind the last.
struct InkRows {
  int first = 0;
  int end = 0;
};

InkRows inkRows(const std::vector<std::uint32_t>& pixels, LONG width) {
  InkRows rows;
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    constexpr std::uint32_t kHalfGreen = 0x8000;
    if ((pixels[i] & 0xFF00) >= kHalfGreen) continue;
    const int row = static_cast<int>(i / static_cast<std::size_t>(width));
    if (rows.end == 0) rows.first = row;
    rows.end = row + 1;
  }
  return rows;
}

class PageBarsTest : public testing::Test {
 protected:
  void SetUp() override {
    theAppSettings = std::make_unique<AppSettings>();
    ASSERT_TRUE(HandheldSetZoom(100));
  }
  void TearDown() override { theAppSettings.reset(); }

  HWND parentOf(int page) const { return page == kForm ? host_.form() : host_.tab(); }
  void create(int page) {
    bars_.create(ownInstance(), page, parentOf(page), host_.main());
    bars_.place(parentOf(page), page != kForm, false);
  }

  BarHost host_;
  PageBars bars_;
};

}  // namespace

// ---- The tables

TEST(PageBandTablesTest, TheFormHasThePositionAndSixButtons) {
  const auto bands = pageBands(kForm);
  ASSERT_EQ(bands.size(), 2u);
  EXPECT_EQ(bands[0].id, 2002u);
  EXPECT_EQ(bands[0].controlId, 1012);
  EXPECT_THAT(bands[0].buttons, IsEmpty());
  EXPECT_EQ(bands[1].id, 2003u);
  EXPECT_EQ(bands[1].controlId, 2000);
  EXPECT_EQ(bands[1].bitmap, 226);
  EXPECT_THAT(tips(bands[1]), ElementsAre(Tip{32782, L"Information"}, Tip{40015, L"Goto record"},
                                          Tip{32780, L"Previous record"}, Tip{32781, L"Next record"},
                                          Tip{32791, L"Previous page"}, Tip{32790, L"Next page"}));
}

TEST(PageBandTablesTest, TheListHasThePositionAndFiveButtons) {
  const auto bands = pageBands(kList);
  ASSERT_EQ(bands.size(), 2u);
  EXPECT_EQ(bands[0].id, 2002u);
  EXPECT_EQ(bands[0].controlId, 1012);
  EXPECT_THAT(bands[0].buttons, IsEmpty());
  EXPECT_EQ(bands[1].id, 2003u);
  EXPECT_EQ(bands[1].controlId, 2000);
  EXPECT_EQ(bands[1].bitmap, 230);
  EXPECT_THAT(tips(bands[1]), ElementsAre(Tip{32782, L"Information"}, Tip{32780, L"Select Previous record"},
                                          Tip{32781, L"Select Next record"}, Tip{40070, L"Previous column"},
                                          Tip{40071, L"Next column"}));
}

TEST(PageBandTablesTest, TablesAndQueriesBeginWithTheirOwnButtons) {
  const BandLayout& tables = pageBands(kTables)[0];
  EXPECT_EQ(tables.id, 2002u);
  EXPECT_EQ(tables.controlId, 2001);
  EXPECT_EQ(tables.bitmap, 228);
  EXPECT_THAT(tips(tables), ElementsAre(Tip{40065, L"New Table"}, Tip{40074, L"Delete Selected Table"}));
  const BandLayout& queries = pageBands(kQueries)[0];
  EXPECT_EQ(queries.id, 2002u);
  EXPECT_EQ(queries.controlId, 2001);
  EXPECT_EQ(queries.bitmap, 231);
  EXPECT_THAT(tips(queries), ElementsAre(Tip{40078, L"New Query"}, Tip{40083, L"Edit Query"},
                                         Tip{40079, L"Delete Selected Query"}));
}

TEST(PageBandTablesTest, TablesAndQueriesShareTheSecondBand) {
  for (const int page : {kTables, kQueries}) {
    const BandLayout& names = pageBands(page)[1];
    EXPECT_EQ(names.id, 2003u);
    EXPECT_EQ(names.controlId, 2000);
    EXPECT_EQ(names.bitmap, 227);
    EXPECT_THAT(tips(names),
                ElementsAre(Tip{32782, L"DB Information"}, Tip{40061, L"Show in large icons style"},
                            Tip{40062, L"Show in small icons style"}, Tip{40063, L"Show in list style"}));
  }
}

TEST(PageBandTablesTest, NoPageHasNoBands) {
  for (const int page : {-1, 4, 5}) EXPECT_THAT(pageBands(page), IsEmpty());
}

TEST(RebarPlaceTest, BelowThePageItIs24High) {
  constexpr SIZE kClient = {240, 269};
  EXPECT_EQ(rebarPlace(kClient, false, true, false), (RebarPlace{219, 240, 24}));
  EXPECT_EQ(rebarPlace(kClient, false, false, false), (RebarPlace{243, 240, 24}));
  EXPECT_EQ(rebarPlace(kClient, false, true, true), (RebarPlace{217, 240, 24}));
  EXPECT_EQ(rebarPlace(kClient, false, false, true), (RebarPlace{241, 240, 24}));
}

TEST(RebarPlaceTest, AtTheTopItBeginsWithThePage) {
  constexpr SIZE kClient = {240, 269};
  EXPECT_EQ(rebarPlace(kClient, true, true, false), (RebarPlace{0, 240, 243}));
  EXPECT_EQ(rebarPlace(kClient, true, false, false), (RebarPlace{0, 240, 243}));
}

// ---- The windows

TEST_F(PageBarsTest, TheRebarIsAChildOfThePage) {
  for (const int page : {kTables, kForm, kList, kQueries}) {
    create(page);
    wchar_t className[40] = L"";
    GetClassNameW(bars_.rebar(), className, ARRAYSIZE(className));
    EXPECT_STREQ(className, L"ReBarWindow32");
    EXPECT_EQ(GetDlgCtrlID(bars_.rebar()), 1000);
    EXPECT_EQ(GetParent(bars_.rebar()), parentOf(page));
    const auto style = static_cast<DWORD>(GetWindowLongW(bars_.rebar(), GWL_STYLE));
    constexpr DWORD kAsked = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | WS_BORDER |
                             RBS_VARHEIGHT | RBS_BANDBORDERS | CCS_NODIVIDER | CCS_NOPARENTALIGN;
    EXPECT_EQ(style & kAsked, kAsked);
  }
}

TEST_F(PageBarsTest, EachPageHasTwoBandsThatAreShown) {
  for (const int page : {kTables, kForm, kList, kQueries}) {
    create(page);
    ASSERT_EQ(SendMessageW(bars_.rebar(), RB_GETBANDCOUNT, 0, 0), 2) << page;
    const REBARBANDINFOW first = bandInfo(bars_.rebar(), 0);
    const REBARBANDINFOW second = bandInfo(bars_.rebar(), 1);
    EXPECT_EQ(first.wID, 2002u);
    EXPECT_EQ(second.wID, 2003u);
    EXPECT_EQ(first.hwndChild, bars_.firstBand());
    EXPECT_EQ(second.hwndChild, bars_.secondBand());
    for (const REBARBANDINFOW& band : {first, second}) {
      EXPECT_EQ(band.fStyle & ~UINT{RBBS_BREAK}, UINT{RBBS_FIXEDSIZE | RBBS_CHILDEDGE}) << page;
      EXPECT_EQ(band.cyMinChild, 24u);
    }
    const bool hasPosition = page == kForm || page == kList;
    EXPECT_EQ(first.cxMinChild, hasPosition ? 82u : 100u);
    EXPECT_EQ(second.cxMinChild, 100u);
  }
}

TEST_F(PageBarsTest, ThePositionBoxIsAReadOnlyEdit) {
  for (const int page : {kForm, kList}) {
    create(page);
    const HWND box = bars_.positionBox();
    ASSERT_EQ(box, bars_.firstBand());
    EXPECT_EQ(GetDlgCtrlID(box), 1012);
    EXPECT_EQ(GetWindowTextLengthW(box), 0);
    const auto style = static_cast<DWORD>(GetWindowLongW(box, GWL_STYLE));
    constexpr DWORD kAsked = WS_CHILD | WS_VISIBLE | ES_READONLY;  // the edit draws its border itself
    EXPECT_EQ(style & kAsked, kAsked);
    const RECT place = placeOf(box);
    EXPECT_EQ(place.right - place.left, 82);
    EXPECT_EQ(place.bottom - place.top, 24);
  }
  create(kTables);
  EXPECT_EQ(bars_.positionBox(), nullptr);
}

TEST_F(PageBarsTest, ThePositionStandsInTheMiddleOfItsBoxAtAnyZoom) {
  for (const int zoom : {100, 125, 150, 175, 200, 225, 250, 275, 300}) {
    SCOPED_TRACE(std::to_string(zoom) + " per cent");
    ASSERT_TRUE(HandheldSetZoom(zoom));
    create(kForm);
    const HWND box = bars_.positionBox();
    RECT place{};
    GetWindowRect(box, &place);
    MapWindowPoints(nullptr, box, reinterpret_cast<POINT*>(&place), 2);
    RECT client{};
    GetClientRect(box, &client);
    SetWindowTextW(box, L"12 / 345");
    const DrawnPicture picture(client.right, client.bottom);
    SendMessageW(box, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.dc()), PRF_CLIENT);
    const InkRows ink = inkRows(picture.pixels(), client.right);
    ASSERT_LT(ink.first, ink.end) << "no text is drawn";
    EXPECT_GE(ink.end - ink.first, HandheldToMonitor(7)) << "the text is cut off";
    const double middle = (ink.first + ink.end) / 2.0;
    EXPECT_NEAR(middle, (place.top + place.bottom) / 2.0, zoom / 100.0);
  }
  ASSERT_TRUE(HandheldSetZoom(100));
}

TEST_F(PageBarsTest, TheToolbarsHaveTheirButtons) {
  create(kTables);
  EXPECT_THAT(toolbarCommands(bars_.firstBand()), ElementsAre(40065, 40074));
  EXPECT_THAT(toolbarCommands(bars_.secondBand()), ElementsAre(32782, 40061, 40062, 40063));
  create(kForm);
  EXPECT_THAT(toolbarCommands(bars_.secondBand()), ElementsAre(32782, 40015, 32780, 32781, 32791, 32790));
  create(kList);
  EXPECT_THAT(toolbarCommands(bars_.secondBand()), ElementsAre(32782, 32780, 32781, 40070, 40071));
  create(kQueries);
  EXPECT_THAT(toolbarCommands(bars_.firstBand()), ElementsAre(40078, 40083, 40079));
  EXPECT_THAT(toolbarCommands(bars_.secondBand()), ElementsAre(32782, 40061, 40062, 40063));
}

TEST_F(PageBarsTest, EveryButtonIsEnabledPlainAndHasAnImage) {
  for (const int page : {kTables, kForm, kList, kQueries}) {
    create(page);
    for (const HWND bar : {bars_.firstBand(), bars_.secondBand()}) {
      if (bar == bars_.positionBox()) continue;
      auto* const images = reinterpret_cast<HIMAGELIST>(SendMessageW(bar, TB_GETIMAGELIST, 0, 0));
      const std::vector<TBBUTTON> buttons = toolbarButtons(bar);
      EXPECT_EQ(ImageList_GetImageCount(images), static_cast<int>(buttons.size()));
      for (std::size_t i = 0; i < buttons.size(); ++i) {
        EXPECT_EQ(buttons[i].iBitmap, static_cast<int>(i));
        EXPECT_EQ(buttons[i].fsState & ~TBSTATE_WRAP, TBSTATE_ENABLED);
        EXPECT_EQ(buttons[i].fsStyle, TBSTYLE_BUTTON);
      }
      constexpr DWORD kAsked = WS_CHILD | WS_VISIBLE | CCS_NORESIZE | CCS_NODIVIDER | TBSTYLE_TOOLTIPS;
      EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(bar, GWL_STYLE)) & kAsked, kAsked);
    }
  }
}

TEST_F(PageBarsTest, EveryButtonHasItsTip) {
  for (const int page : {kTables, kForm, kList, kQueries}) {
    create(page);
    for (const BandLayout& band : pageBands(page)) {
      const HWND bar = GetDlgItem(bars_.rebar(), band.controlId);
      for (const BarButton& button : band.buttons) EXPECT_EQ(buttonTip(bar, button.command), button.tip);
    }
  }
}

TEST_F(PageBarsTest, NoButtonIsCutOffAtAnyZoom) {
  for (const int zoom : {100, 125, 150, 200, 300, 400}) {
    ASSERT_TRUE(HandheldSetZoom(zoom));
    for (const int page : {kTables, kForm, kList, kQueries}) {
      SCOPED_TRACE(std::to_string(zoom) + " per cent, page " + std::to_string(page));
      create(page);
      RECT rebar{};
      GetClientRect(bars_.rebar(), &rebar);
      EXPECT_EQ(rebar.bottom, HandheldToMonitor(28));
      EXPECT_EQ(SendMessageW(bars_.rebar(), RB_GETROWCOUNT, 0, 0), 1);
      EXPECT_LE(placeOf(bars_.firstBand()).right, placeOf(bars_.secondBand()).left);
      EXPECT_LE(placeOf(bars_.secondBand()).right, rebar.right);
      for (const HWND bar : {bars_.firstBand(), bars_.secondBand()}) {
        EXPECT_GE(placeOf(bar).top, 0);
        EXPECT_LE(placeOf(bar).bottom, rebar.bottom);
        if (bar == bars_.positionBox()) continue;
        RECT client{};
        GetClientRect(bar, &client);
        for (const int command : toolbarCommands(bar)) {
          const RECT button = buttonPlace(bar, command);
          EXPECT_GE(button.right - button.left, HandheldToMonitor(16)) << command;
          EXPECT_LE(button.right, client.right) << command;
          EXPECT_LE(button.bottom, client.bottom) << command;
        }
      }
    }
  }
  ASSERT_TRUE(HandheldSetZoom(100));
}

TEST_F(PageBarsTest, TheButtonsStandInTheMiddleOfTheBandsAtAnyZoom) {
  for (const int zoom : {100, 125, 150, 175, 200, 225, 250, 275, 300, 400}) {
    ASSERT_TRUE(HandheldSetZoom(zoom));
    for (const int page : {kTables, kForm, kList, kQueries}) {
      SCOPED_TRACE(std::to_string(zoom) + " per cent, page " + std::to_string(page));
      create(page);
      RECT rebar{};
      GetClientRect(bars_.rebar(), &rebar);
      const HWND bar = bars_.secondBand();
      for (const int command : toolbarCommands(bar)) {
        RECT button = buttonPlace(bar, command);
        MapWindowPoints(bar, bars_.rebar(), reinterpret_cast<POINT*>(&button), 2);
        EXPECT_NEAR((button.top + button.bottom) / 2.0, rebar.bottom / 2.0, zoom / 100.0) << command;
        EXPECT_NEAR(button.right - button.left, HandheldToMonitor(23), 1) << command;
      }
    }
  }
  ASSERT_TRUE(HandheldSetZoom(100));
}

TEST_F(PageBarsTest, TheImagesOfTheButtonsDoSoToo) {
  for (const int zoom : {100, 125, 150, 175, 200, 225, 250, 275, 300, 400}) {
    SCOPED_TRACE(std::to_string(zoom) + " per cent");
    ASSERT_TRUE(HandheldSetZoom(zoom));
    create(kForm);
    const HWND bar = bars_.secondBand();
    RECT client{};
    GetClientRect(bar, &client);
    RECT rebar{};
    GetClientRect(bars_.rebar(), &rebar);
    MapWindowPoints(bars_.rebar(), bar, reinterpret_cast<POINT*>(&rebar), 2);
    const DrawnPicture picture(client.right, client.bottom);
    SendMessageW(bar, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.dc()), PRF_CLIENT);
    const InkRows ink = inkRows(picture.pixels(), client.right);
    ASSERT_LT(ink.first, ink.end) << "no image is drawn";
    EXPECT_NEAR((ink.first + ink.end) / 2.0, (rebar.top + rebar.bottom) / 2.0, zoom / 100.0);
  }
  ASSERT_TRUE(HandheldSetZoom(100));
}

TEST_F(PageBarsTest, BelowThePageTheRebarEndsAboveTheTabs) {
  RECT client{};
  GetClientRect(host_.tab(), &client);
  RECT item{};
  SendMessageW(host_.tab(), TCM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&item));
  ASSERT_GT(item.bottom, item.top);
  for (const int page : {kTables, kList, kQueries}) {
    create(page);
    const RECT place = placeOf(bars_.rebar());
    EXPECT_EQ(place.left, 0) << page;
    EXPECT_EQ(place.top, client.bottom - 50) << page;
    EXPECT_EQ(place.right, client.right) << page;
    EXPECT_EQ(place.bottom - place.top, 28) << page;
    EXPECT_LE(place.bottom, item.top) << page;
  }
}

TEST_F(PageBarsTest, BelowTheFormTheRebarEndsWithItsWindow) {
  create(kForm);
  bars_.place(host_.form(), false, true);
  const RECT place = placeOf(bars_.rebar());
  EXPECT_EQ(place.top, 220 - 28);
  EXPECT_EQ(place.bottom, 220);
  EXPECT_EQ(place.right, 240);
}

TEST_F(PageBarsTest, AtTheTopTheRebarIsAsHighAsThePagesLeaveFree) {
  theAppSettings->options().setRebarsAtTop(1);
  for (const int page : {kTables, kForm, kList, kQueries}) {
    create(page);
    const RECT place = placeOf(bars_.rebar());
    EXPECT_EQ(place.left, 0);
    EXPECT_EQ(place.top, 0);
    EXPECT_EQ(place.bottom, pageOffset()) << page;
  }
}

TEST_F(PageBarsTest, TheBandsFillTheRow) {
  create(kForm);
  EXPECT_EQ(placeOf(bars_.firstBand()).right - placeOf(bars_.firstBand()).left, 82);
  RECT last{};
  SendMessageW(bars_.rebar(), RB_GETRECT, 1, reinterpret_cast<LPARAM>(&last));
  EXPECT_EQ(last.right, 240);
  EXPECT_EQ(SendMessageW(bars_.rebar(), RB_GETROWCOUNT, 0, 0), 1);
}

TEST_F(PageBarsTest, AClickOnAButtonGivesTheMainWindowItsCommand) {
  for (const int page : {kTables, kForm, kList, kQueries}) {
    create(page);
    for (const BandLayout& band : pageBands(page)) {
      const HWND bar = GetDlgItem(bars_.rebar(), band.controlId);
      for (const BarButton& button : band.buttons) {
        clickButton(bar, button.command);
        EXPECT_THAT(host_.takeCommands(), ElementsAre(button.command)) << page;
      }
    }
  }
}

TEST_F(PageBarsTest, AButtonThatIsNotAvailableIsIndeterminate) {
  CommandFacts facts{.unlocked = true, .databaseOpen = true, .currentRecord = 3, .recordCount = 3};
  create(kForm);
  bars_.showCommands(facts);
  EXPECT_EQ(buttonState(bars_.secondBand(), 32781), TBSTATE_INDETERMINATE);
  EXPECT_EQ(buttonState(bars_.secondBand(), 32780), TBSTATE_ENABLED);
  facts.currentRecord = 1;
  bars_.showCommands(facts);
  EXPECT_EQ(buttonState(bars_.secondBand(), 32781), TBSTATE_ENABLED);
  EXPECT_EQ(buttonState(bars_.secondBand(), 32780), TBSTATE_INDETERMINATE);
  create(kTables);
  bars_.showCommands(facts);
  EXPECT_EQ(buttonState(bars_.firstBand(), 40074), TBSTATE_INDETERMINATE);
  EXPECT_EQ(buttonState(bars_.firstBand(), 40065), TBSTATE_ENABLED);
  facts.tableChosen = true;
  bars_.showCommands(facts);
  EXPECT_EQ(buttonState(bars_.firstBand(), 40074), TBSTATE_ENABLED);
  bars_.destroy();
  bars_.showCommands(facts);
}

TEST_F(PageBarsTest, WithoutAPageOrAParentNothingIsMade) {
  const int before = windowCount();
  for (const int page : {-1, 4}) {
    create(page);
    EXPECT_EQ(bars_.rebar(), nullptr);
  }
  bars_.create(ownInstance(), kForm, nullptr, host_.main());
  EXPECT_EQ(bars_.rebar(), nullptr);
  EXPECT_EQ(bars_.firstBand(), nullptr);
  EXPECT_EQ(windowCount(), before);
}

TEST_F(PageBarsTest, DestroyingLeavesNoWindow) {
  const int before = windowCount();
  create(kQueries);
  EXPECT_GT(windowCount(), before);
  bars_.destroy();
  EXPECT_EQ(windowCount(), before);
  EXPECT_EQ(bars_.rebar(), nullptr);
  EXPECT_EQ(bars_.firstBand(), nullptr);
  EXPECT_EQ(bars_.secondBand(), nullptr);
}
