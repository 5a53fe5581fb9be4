// How the dialog of a query lies on the screen, with the input panel and at another zoom.
#include <array>

#include "tests/ui/dialogs/query_fixture.h"

using testing::ElementsAre;

namespace querytest {
namespace {

/// Of a drop-down list at zoom 100.
constexpr int kNormalComboHeight = 21;

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
    cancel(window);
  });
}

TEST_F(QueryDialogTest, ItCoversTheWindowBelowAndItsControlsStandApart) {
  show([&](HWND window) {
    EXPECT_EQ(clientRect(window), (RECT{0, 0, 240, 294}));
    POINT inside{};
    POINT below{};
    ClientToScreen(window, &inside);
    ClientToScreen(top(), &below);
    EXPECT_EQ(inside.x, below.x);
    EXPECT_EQ(inside.y, below.y);
    expectControlsApart(window);
    expectColors(window, kLabel, kSql);
    cancel(window);
  });
}

TEST_F(QueryDialogTest, ThePanelShrinksTheSqlTo60AndGivesItBack140) {
  setPanelPolicy(kPanelAlways);
  show([&](HWND window) {
    EXPECT_EQ(sqlPlace(window), (RECT{2, 120, 236, 260}));
    SHSipPreference(window, SIP_UP);
    EXPECT_EQ(sqlPlace(window), (RECT{2, 120, 236, 180}));
    expectControlsApart(window);
    SHSipPreference(window, SIP_DOWN);
    EXPECT_EQ(sqlPlace(window), (RECT{2, 120, 236, 260}));
    cancel(window);
  });
}

TEST_F(QueryDialogTest, AtZoom200EveryLengthIsTwiceAsLong) {
  setPanelPolicy(kPanelAlways);
  HandheldSetZoom(200);
  show([&](HWND window) {
    EXPECT_EQ(clientRect(window), (RECT{0, 0, 480, 588}));
    EXPECT_EQ(sqlPlace(window), (RECT{4, 240, 472, 520}));
    SHSipPreference(window, SIP_UP);
    EXPECT_EQ(sqlPlace(window), (RECT{4, 240, 472, 360}));
    for (const int id : {kTables, kFields}) {
      const RECT place = placeInParent(GetDlgItem(window, id));
      EXPECT_GT(place.bottom - place.top, 2 * kNormalComboHeight * 4 / 5) << id;
    }
    expectControlsApart(window);
    cancel(window);
  });
}

TEST_F(QueryDialogTest, ThePanelThatWasUpIsPutDownAndComesBack) {
  setPanelPolicy(kPanelAlways);
  for (const int command : {IDOK, IDCANCEL}) {
    SHSipPreference(top(), SIP_UP);
    ASSERT_TRUE(isPanelUp());
    dialog.name = L"q";
    EXPECT_EQ(show([&](HWND window) {
                EXPECT_FALSE(isPanelUp());
                SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
              }),
              command);
    EXPECT_TRUE(isPanelUp());
  }
}

TEST_F(QueryDialogTest, ThePanelThatWasDownStaysDown) {
  setPanelPolicy(kPanelAlways);
  show([&](HWND window) { cancel(window); });
  EXPECT_FALSE(isPanelUp());
}

}  // namespace
}  // namespace querytest
