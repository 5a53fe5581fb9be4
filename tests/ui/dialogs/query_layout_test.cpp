// How the dialog of a query lies on the screen, with the input panel and at another zoom.
#include <array>

#include "tests/ui/dialogs/query_fixture.h"

using testing::ElementsAre;

namespace querytest {
namespace {

TEST_F(QueryDialogTest, ItsControlsAreThoseOfTheHandheld) {
  show([&](HWND window) {
    EXPECT_THAT(
        controls(window),
        ElementsAre(ControlFacts{-1, L"Static", L"Query &Name:"}, ControlFacts{kName, L"Edit", L""},
                    ControlFacts{-1, L"Static", L"&Tables:"}, ControlFacts{kTables, L"ComboBox", L""},
                    ControlFacts{kInsertTable, L"Button", L"+"}, ControlFacts{-1, L"Static", L"&Fields:"},
                    ControlFacts{kFields, L"ComboBox", L""}, ControlFacts{kInsertField, L"Button", L"+"},
                    ControlFacts{kFilter, L"Button", L"Filter"}, ControlFacts{kHelp, L"Button", L"&Help"},
                    ControlFacts{kCheck, L"Button", L"&Check"}, ControlFacts{IDCANCEL, L"Button", L"Cancel"},
                    ControlFacts{kSql, L"Edit", L"SELECT * FROM"}, ControlFacts{IDOK, L"Button", L"OK"}));
    EXPECT_THAT(tabOrder(window, kName), ElementsAre(kName, kTables, kInsertTable, kFields, kInsertField,
                                                     kHelp, kCheck, IDCANCEL, kSql, IDOK));
    constexpr DWORD kList = CBS_DROPDOWNLIST | CBS_SORT;
    EXPECT_EQ(styleOf(GetDlgItem(window, kTables)) & kList, kList);
    EXPECT_EQ(styleOf(GetDlgItem(window, kFields)) & kList, kList);
    EXPECT_NE(styleOf(GetDlgItem(window, kSql)) & ES_MULTILINE, 0u);
    EXPECT_FALSE(isShown(GetDlgItem(window, kFilter)));
    EXPECT_EQ(LOWORD(SendMessageW(window, DM_GETDEFID, 0, 0)), IDOK);
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kName));
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, ItCoversTheWindowBelowAndItsControlsStandApart) {
  show([&](HWND window) {
    EXPECT_EQ(clientSize(window).cx, 240);
    EXPECT_EQ(clientSize(window).cy, 294);
    expectFullScreen(window);
    expectControlsApart(window);
    expectColors(window);
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, ThePanelShrinksTheSqlTo60AndGivesItBack140) {
  show([&](HWND window) {
    EXPECT_EQ(sqlPlace(window), (ControlPlace{2, 120, 234, 140}));
    SHSipPreference(window, SIP_UP);
    EXPECT_EQ(sqlPlace(window), (ControlPlace{2, 120, 234, 60}));
    expectControlsApart(window);
    SHSipPreference(window, SIP_DOWN);
    EXPECT_EQ(sqlPlace(window), (ControlPlace{2, 120, 234, 140}));
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, AtZoom200EveryLengthIsTwiceAsLong) {
  HandheldSetZoom(200);
  show([&](HWND window) {
    EXPECT_EQ(clientSize(window).cx, 480);
    EXPECT_EQ(clientSize(window).cy, 588);
    EXPECT_EQ(sqlPlace(window), (ControlPlace{4, 240, 468, 280}));
    SHSipPreference(window, SIP_UP);
    EXPECT_EQ(sqlPlace(window), (ControlPlace{4, 240, 468, 120}));
    for (const int id : {kTables, kFields}) {
      EXPECT_GT(placeOf(GetDlgItem(window, id)).height, 2 * kNormalComboHeight * 4 / 5) << id;
    }
    expectControlsApart(window);
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, ItsListsDropAsFarAfterAChangeOfTheZoom) {
  const auto droppedHeight = [](HWND combo) {
    RECT dropped{};
    SendMessageW(combo, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&dropped));
    return static_cast<int>(dropped.bottom - dropped.top);
  };
  constexpr int kLine = 13;
  show([&](HWND window) {
    const HWND combo = GetDlgItem(window, kTables);
    const int height = droppedHeight(combo);
    ASSERT_GT(height, 9 * kLine);
    for (const int zoom : {200, 150, 100}) {
      HandheldSetZoom(zoom);
      EXPECT_NEAR(droppedHeight(combo), HandheldToMonitor(height), HandheldToMonitor(kLine)) << zoom;
    }
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, ThePanelThatWasUpIsPutDownAndComesBack) {
  for (const int command : {IDOK, IDCANCEL}) {
    SHSipPreference(frame(), SIP_UP);
    ASSERT_TRUE(isPanelUp());
    dialog.name = L"q";
    EXPECT_EQ(show([&](HWND window) {
                EXPECT_FALSE(isPanelUp());
                press(window, command);
              }),
              command);
    EXPECT_TRUE(isPanelUp());
  }
}

TEST_F(QueryDialogTest, ThePanelThatWasDownStaysDown) {
  show([&](HWND window) { press(window, IDCANCEL); });
  EXPECT_FALSE(isPanelUp());
}

}  // namespace
}  // namespace querytest
