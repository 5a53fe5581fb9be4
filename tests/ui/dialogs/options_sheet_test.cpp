#include <windows.h>

#include <algorithm>
#include <array>
#include <string>
#include <uxtheme.h>
#include <vector>

#include "gmock/gmock.h"
#include "tests/shell/drawn_picture.h"
#include "tests/support/system_colors.h"
#include "tests/ui/dialogs/options_fixture.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class OptionsSheetTest : public OptionsDialogTest {
 protected:
  static bool isChecked(HWND page, int id) { return IsDlgButtonChecked(page, id) == BST_CHECKED; }
  static std::vector<int> checkedOf(HWND page, std::initializer_list<int> ids) {
    std::vector<int> checked;
    std::ranges::copy_if(ids, std::back_inserter(checked), [&](int id) { return isChecked(page, id); });
    return checked;
  }
  static std::vector<int> checkedRights(HWND page) { return checkedOf(page, {1012, 1013, 1014}); }
  static std::vector<int> checkedLabels(HWND page) { return checkedOf(page, {1059, 1060, 1061}); }

  static void closeByOk(HWND sheet) { DialogScript::close(sheet, IDOK); }

  Value stored(const wchar_t* name) { return raw(L"Options", name); }
};

/// In each of the ways in which a user can.
class ClosingTest : public OptionsSheetTest, public testing::WithParamInterface<void (*)(HWND)> {};

INSTANTIATE_TEST_SUITE_P(
    Ways, ClosingTest,
    testing::Values(
        +[](HWND sheet) { DialogScript::close(sheet, IDOK); },
        +[](HWND sheet) { DialogScript::close(sheet, IDCANCEL); },
        +[](HWND sheet) { PostMessageW(sheet, WM_SYSCOMMAND, SC_CLOSE, 0); },
        +[](HWND sheet) { PostMessageW(GetDlgItem(sheet, IDOK), WM_KEYDOWN, VK_RETURN, 1); },
        +[](HWND sheet) { PostMessageW(GetDlgItem(sheet, IDOK), WM_KEYDOWN, VK_ESCAPE, 1); }));

TEST_P(ClosingTest, ClosingTheSheetByAnyMeansKeepsTheChangesOfAllPagesAndWritesThem) {
  show([&](HWND sheet) {
    const HWND general = pageOf(sheet, kGeneralPage);
    click(general, 1014);
    click(general, 1046);
    const HWND security = pageOf(sheet, kSecurityPage);
    click(security, 1013);
    click(security, 1011);
    const HWND view = pageOf(sheet, kViewPage);
    click(view, 1060);
    click(view, 1047);
    pageOf(sheet, kColorPage);
    appColors[14] = RGB(1, 2, 3);
    GetParam()(sheet);
  });
  ASSERT_EQ(sheetCount(), 1);
  EXPECT_EQ(options().genUpdateRights(), 2u);
  EXPECT_EQ(stored(L"GenUpdateRights"), dwordValue(2));
  EXPECT_EQ(stored(L"OpenLastTableOnStartup"), dwordValue(1));
  EXPECT_EQ(stored(L"UsePassword"), dwordValue(1));
  EXPECT_EQ(stored(L"WarningOnDeletion"), dwordValue(1));
  EXPECT_EQ(stored(L"TabLabelStyle"), dwordValue(1));
  EXPECT_EQ(stored(L"RebarsAtTop"), dwordValue(1));
  EXPECT_EQ(stored(L"GeneralAppColors").bytes.at(56), 1);
  EXPECT_EQ(appliedCount(), 1);
}

TEST_F(OptionsSheetTest, ThePagesShowWhatTheRecordHolds) {
  options().setGenUpdateRights(1);
  options().setWarningOnDeletion(1);
  options().setRebarsAtTop(1);
  options().setTabLabelStyle(2);
  show([&](HWND sheet) {
    EXPECT_THAT(checkedRights(pageOf(sheet, kGeneralPage)), ElementsAre(1013));
    EXPECT_FALSE(isChecked(pageOf(sheet, kGeneralPage), 1046));
    EXPECT_FALSE(isChecked(pageOf(sheet, kSecurityPage), 1013));
    EXPECT_TRUE(isChecked(pageOf(sheet, kSecurityPage), 1011));
    EXPECT_TRUE(isChecked(pageOf(sheet, kViewPage), 1047));
    EXPECT_THAT(checkedLabels(pageOf(sheet, kViewPage)), ElementsAre(1061));
    closeByOk(sheet);
  });
  EXPECT_EQ(sheetCount(), 1);
  EXPECT_EQ(options().genUpdateRights(), 1u);
  EXPECT_EQ(options().tabLabelStyle(), 2u);
}

TEST_F(OptionsSheetTest, TheRecordStaysAsItWasWhileTheSheetIsOpen) {
  show([&](HWND sheet) {
    click(pageOf(sheet, kGeneralPage), 1013);
    EXPECT_EQ(options().genUpdateRights(), 0u);
    EXPECT_EQ(options().generalPage().updateRights, 1u);
    EXPECT_FALSE(keyExists(L"Options"));
    EXPECT_EQ(appliedCount(), 0);
    closeByOk(sheet);
  });
  EXPECT_EQ(options().genUpdateRights(), 1u);
}

TEST_F(OptionsSheetTest, TheSheetEditsTheRecordThatItWasGivenWhateverOthersThereAre) {
  Options other;
  show([&](HWND sheet) {
    click(pageOf(sheet, kGeneralPage), 1014);
    click(pageOf(sheet, kSecurityPage), 1011);
    click(pageOf(sheet, kViewPage), 1060);
    select(pageOf(sheet, kColorPage), 3);
    EXPECT_EQ(options().colorPage().selectedIndex, 3);
    closeByOk(sheet);
  });
  EXPECT_EQ(options().genUpdateRights(), 2u);
  EXPECT_EQ(options().warningOnDeletion(), 1u);
  EXPECT_EQ(options().tabLabelStyle(), 1u);
  EXPECT_EQ(other.generalPage().updateRights, 0u);
  EXPECT_EQ(other.colorPage().selectedIndex, -1);
}

TEST_F(OptionsSheetTest, UpdateRightsOf3ShowNoButtonCheckedAndStay3WhenNothingIsTouched) {
  options().setGenUpdateRights(3);
  show([&](HWND sheet) {
    EXPECT_THAT(checkedRights(pageOf(sheet, kGeneralPage)), IsEmpty());
    closeByOk(sheet);
  });
  EXPECT_EQ(options().genUpdateRights(), 3u);
  EXPECT_EQ(stored(L"GenUpdateRights"), dwordValue(3));
}

TEST_F(OptionsSheetTest, UpdateRightsOf3StayWhenTheKeyboardPassesThroughThePageOrTheOtherBoxIsClicked) {
  options().setGenUpdateRights(3);
  show([&](HWND sheet) {
    const WhenIdle later([this, sheet] {
      const HWND page = pageOf(sheet, kGeneralPage);
      EXPECT_EQ(GetFocus(), GetDlgItem(page, 1046)) << "a radio button with the focus is checked";
      std::vector<HWND> reached;
      for (HWND next = GetNextDlgTabItem(sheet, nullptr, FALSE); !std::ranges::count(reached, next);
           next = GetNextDlgTabItem(sheet, next, FALSE)) {
        reached.push_back(next);
        SendMessageW(sheet, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
      }
      EXPECT_THAT(reached, testing::UnorderedElementsAre(GetDlgItem(page, 1046), tabsOf(sheet),
                                                         GetDlgItem(sheet, IDOK)));
      click(page, 1046);
      EXPECT_THAT(checkedRights(page), IsEmpty());
      closeByOk(sheet);
    });
  });
  EXPECT_EQ(options().genUpdateRights(), 3u);
  EXPECT_EQ(options().openLastTableOnStartup(), 1u);
}

TEST_F(OptionsSheetTest, ValuesThatNoControlShowsStayUntilTheyAreChanged) {
  options().setTabLabelStyle(7);
  options().setRebarsAtTop(5);
  options().setUsePassword(9);
  show([&](HWND sheet) {
    EXPECT_THAT(checkedLabels(pageOf(sheet, kViewPage)), IsEmpty());
    EXPECT_TRUE(isChecked(pageOf(sheet, kViewPage), 1047));
    click(pageOf(sheet, kSecurityPage), 1013);
    closeByOk(sheet);
  });
  EXPECT_EQ(options().tabLabelStyle(), 7u);
  EXPECT_EQ(options().rebarsAtTop(), 5u);
  EXPECT_EQ(options().usePassword(), 0u);
}

TEST_F(OptionsSheetTest, ItsTextsAndIdentifiers) {
  show([&](HWND sheet) {
    EXPECT_EQ(textOf(sheet), L"Options");
    EXPECT_EQ(GetWindow(sheet, GW_OWNER), frame());
    EXPECT_EQ(currentDialog, sheet);
    EXPECT_EQ(SendMessageW(tabsOf(sheet), TCM_GETCURSEL, 0, 0), 0) << "it begins with General";
    const HWND general = pageOf(sheet, kGeneralPage);
    EXPECT_THAT(visibleTexts(general),
                ElementsAre(L"General record update rights:", L"No new records or deletions", L"New records",
                            L"New records and deletions", L"Auto open last table on startup"));
    EXPECT_EQ(visibleText(GetDlgItem(general, 1012)), L"No new records or deletions");
    EXPECT_EQ(visibleText(GetDlgItem(general, 1013)), L"New records");
    EXPECT_EQ(visibleText(GetDlgItem(general, 1014)), L"New records and deletions");
    EXPECT_EQ(visibleText(GetDlgItem(general, 1046)), L"Auto open last table on startup");
    const HWND security = pageOf(sheet, kSecurityPage);
    EXPECT_EQ(visibleText(GetDlgItem(security, 1013)), L"Prompt for Password on startup");
    EXPECT_EQ(visibleText(GetDlgItem(security, 1011)), L"Warning on record deletion");
    const HWND view = pageOf(sheet, kViewPage);
    EXPECT_THAT(visibleTexts(view), ElementsAre(L"Show rebars at top", L"Tab Label Style:", L"Text only",
                                                L"Icon only", L"Text and Icon"));
    EXPECT_EQ(visibleText(GetDlgItem(view, 1047)), L"Show rebars at top");
    EXPECT_EQ(visibleText(GetDlgItem(view, 1059)), L"Text only");
    EXPECT_EQ(visibleText(GetDlgItem(view, 1060)), L"Icon only");
    EXPECT_EQ(visibleText(GetDlgItem(view, 1061)), L"Text and Icon");
    const HWND color = pageOf(sheet, kColorPage);
    EXPECT_THAT(visibleTexts(color), ElementsAre(L"Colors:", L"", L"Color ...", L"Reset", L"Current Color:"));
    EXPECT_EQ(visibleText(GetDlgItem(color, 1063)), L"Color ...");
    EXPECT_EQ(visibleText(GetDlgItem(color, 1064)), L"Reset");
    closeByOk(sheet);
  });
  EXPECT_EQ(sheetCount(), 1);
}

TEST_F(OptionsSheetTest, TheTabsAreTitledAsThePages) {
  show([&](HWND sheet) {
    std::vector<std::wstring> titles;
    for (int i = 0; i < static_cast<int>(SendMessageW(tabsOf(sheet), TCM_GETITEMCOUNT, 0, 0)); ++i) {
      wchar_t title[20] = L"";
      TCITEMW item{};
      item.mask = TCIF_TEXT;
      item.pszText = title;
      item.cchTextMax = ARRAYSIZE(title);
      SendMessageW(tabsOf(sheet), TCM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
      titles.emplace_back(title);
    }
    EXPECT_THAT(titles, ElementsAre(L"General", L"Security", L"View", L"Color"));
    closeByOk(sheet);
  });
  EXPECT_EQ(sheetCount(), 1);
}

TEST_F(OptionsSheetTest, NoAccessKeyIsThereTwiceAndEveryButtonHasOne) {
  show([&](HWND sheet) {
    EXPECT_THAT(accessKeys(pageOf(sheet, kGeneralPage)), ElementsAre(L'A', L'D', L'N', L'R'));
    EXPECT_THAT(accessKeys(pageOf(sheet, kSecurityPage)), ElementsAre(L'P', L'W'));
    EXPECT_THAT(accessKeys(pageOf(sheet, kViewPage)), ElementsAre(L'A', L'I', L'S', L'T'));
    EXPECT_THAT(accessKeys(pageOf(sheet, kColorPage)), ElementsAre(L'C', L'L', L'R'));
    closeByOk(sheet);
  });
  EXPECT_EQ(sheetCount(), 1);
}

TEST_F(OptionsSheetTest, TheTextsAreBlueOnWhite) {
  show([&](HWND sheet) {
    const HWND page = pageOf(sheet, kGeneralPage);
    expectColors(page);
    closeByOk(sheet);
  });
  EXPECT_EQ(sheetCount(), 1);
}

/// At a zoom in per cent.
class OptionsLayoutTest : public OptionsSheetTest, public testing::WithParamInterface<int> {
 protected:
  static ControlPlace scaled(ControlPlace place) {
    const int zoom = GetParam();
    return {place.x * zoom / 100, place.y * zoom / 100, place.width * zoom / 100, place.height * zoom / 100};
  }

  static void expectLayout(HWND sheet) {
    EXPECT_EQ(clientSize(sheet).cx, scaled({.width = 240}).width);
    EXPECT_EQ(clientSize(sheet).cy, scaled({.height = 294}).height);
    EXPECT_EQ(placeOf(GetDlgItem(sheet, IDOK)), scaled({187, 271, 50, 20}));
    EXPECT_TRUE(isShown(GetDlgItem(sheet, IDOK)));
    EXPECT_FALSE(isShown(GetDlgItem(sheet, IDCANCEL)));
    EXPECT_THAT(controlsOutside(sheet), IsEmpty());
    EXPECT_EQ(styleOf(tabsOf(sheet)) & (TCS_BOTTOM | TCS_MULTILINE), static_cast<DWORD>(TCS_BOTTOM));
    RECT lastTab{};
    SendMessageW(tabsOf(sheet), TCM_GETITEMRECT, kColorPage, reinterpret_cast<LPARAM>(&lastTab));
    EXPECT_LE(lastTab.right, clientSize(tabsOf(sheet)).cx);
    EXPECT_GE(lastTab.right - lastTab.left, scaled({.width = 54}).width);
    for (int i = 0; i <= kColorPage; ++i) expectPage(sheet, i);
  }

 private:
  static void expectPage(HWND sheet, int index) {
    const HWND page = pageOf(sheet, index);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(placeOf(page), scaled({0, 0, 240, 246})) << index;
    EXPECT_THAT(controlsOutside(page), IsEmpty()) << index;
    expectTextsFit(page);
  }
};

INSTANTIATE_TEST_SUITE_P(Zooms, OptionsLayoutTest, testing::Values(100, 200));

TEST_P(OptionsLayoutTest, ItFillsTheScreenWithTabsAtTheBottomAndAnOkBelow) {
  HandheldSetZoom(GetParam());
  show([&](HWND sheet) {
    expectLayout(sheet);
    closeByOk(sheet);
  });
  EXPECT_EQ(sheetCount(), 1);
}

TEST_P(OptionsLayoutTest, TheListOfColoursShowsWholeLines) {
  HandheldSetZoom(GetParam());
  show([&](HWND sheet) {
    const HWND list = GetDlgItem(pageOf(sheet, kColorPage), 1062);
    const auto lineHeight = static_cast<LONG>(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
    EXPECT_EQ(clientSize(list).cy % lineHeight, 0);
    EXPECT_GE(clientSize(list).cy / lineHeight, 12);
    closeByOk(sheet);
  });
  EXPECT_EQ(sheetCount(), 1);
}

TEST_P(OptionsLayoutTest, ItFollowsAChangeOfTheZoom) {
  HandheldSetZoom(150);
  show([&](HWND sheet) {
    for (int i = kColorPage; i >= 0; --i) pageOf(sheet, i);
    HandheldSetZoom(GetParam());
    expectLayout(sheet);
    closeByOk(sheet);
  });
  EXPECT_EQ(sheetCount(), 1);
}

TEST_P(OptionsLayoutTest, ItsTabsAreAsWideAfterAChangeOfTheZoomAsIfItHadBeenOpenedThen) {
  const auto tabs = [&](HWND sheet) {
    std::vector<LONG> edges;
    for (WPARAM i = 0; i <= kColorPage; ++i) {
      RECT tab{};
      SendMessageW(tabsOf(sheet), TCM_GETITEMRECT, i, reinterpret_cast<LPARAM>(&tab));
      edges.insert(edges.end(), {tab.left, tab.right});
    }
    return edges;
  };
  std::vector<LONG> expected;
  HandheldSetZoom(GetParam());
  show([&](HWND sheet) {
    expected = tabs(sheet);
    closeByOk(sheet);
  });
  for (const int before : {100, 200, 300}) {
    HandheldSetZoom(before);
    show([&](HWND sheet) {
      HandheldSetZoom(GetParam());
      EXPECT_EQ(tabs(sheet), expected) << "before at " << before;
      closeByOk(sheet);
    });
  }
}

TEST_F(OptionsSheetTest, TheInputPanelIsDownWhileTheSheetIsOpenAndUpAgainAfterwards) {
  SHSipPreference(frame(), SIP_UP);
  ASSERT_TRUE(isPanelUp());
  show([&](HWND sheet) {
    EXPECT_FALSE(isPanelUp());
    closeByOk(sheet);
  });
  EXPECT_TRUE(isPanelUp());
}

TEST_F(OptionsSheetTest, AnInputPanelThatWasDownStaysDown) {
  show([&](HWND sheet) { closeByOk(sheet); });
  EXPECT_EQ(sheetCount(), 1);
  EXPECT_FALSE(isPanelUp());
}

TEST_F(OptionsSheetTest, ThePageObjectsKnowTheirWindowsOnlyWhileTheseExist) {
  show([&](HWND sheet) {
    EXPECT_EQ(options().generalPage().window, pageOf(sheet, kGeneralPage));
    EXPECT_EQ(options().colorPage().window, nullptr) << "a page is made when it is first shown";
    EXPECT_EQ(pageOf(sheet, kColorPage), options().colorPage().window);
    closeByOk(sheet);
  });
  EXPECT_EQ(options().generalPage().window, nullptr);
  EXPECT_EQ(options().colorPage().window, nullptr);
}

TEST_F(OptionsSheetTest, OneHundredOpeningsLeaveNothingBehind) {
  leavesNothingBehind([&] {
    show([&](HWND sheet) {
      pageOf(sheet, kColorPage);
      closeByOk(sheet);
    });
  });
  EXPECT_EQ(sheetCount(), 101);
  EXPECT_EQ(appliedCount(), 101);
}

TEST_F(OptionsSheetTest, WithLightTextsOnDarkPagesAndTabsHaveTheSystemsColors) {
  const SystemColors colors(RGB(255, 255, 1), RGB(1, 0, 0));
  show([&](HWND sheet) {
    const DrawnPicture picture(4, 4);
    SendMessageW(pageOf(sheet, kGeneralPage), WM_ERASEBKGND, reinterpret_cast<WPARAM>(picture.dc()), 0);
    EXPECT_THAT(picture.pixels(), Each(0x010000u));
    EXPECT_FALSE(GetWindowTheme(tabsOf(sheet)));
    closeByOk(sheet);
  });
  EXPECT_EQ(sheetCount(), 1);
}

}  // namespace
