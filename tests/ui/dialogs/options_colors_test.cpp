#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "tests/ui/dialogs/options_fixture.h"

namespace {

constexpr int kList = 1062;
constexpr int kPick = 1063;
constexpr int kReset = 1064;
constexpr UINT kRedrawSwatch = WM_USER + 207;
constexpr COLORREF kPicked = RGB(10, 20, 30);

class OptionsColorsTest : public OptionsDialogTest {
 protected:
  void showColors(const std::function<void(HWND page)>& onPage, const Step& onOther = nullptr) {
    show(
        [&](HWND sheet) {
          onPage(pageOf(sheet, kColorPage));
          DialogScript::close(sheet, IDOK);
        },
        onOther);
    EXPECT_EQ(sheetCount(), 1);
  }

  /// Enters a colour into the system's colour dialog and confirms it.
  static void pick(HWND dialog) {
    SetDlgItemInt(dialog, 706, GetRValue(kPicked), FALSE);
    SetDlgItemInt(dialog, 707, GetGValue(kPicked), FALSE);
    SetDlgItemInt(dialog, 708, GetBValue(kPicked), FALSE);
    DialogScript::close(dialog, IDOK);
  }
  static COLORREF colorIn(HWND dialog) {
    return RGB(GetDlgItemInt(dialog, 706, nullptr, FALSE), GetDlgItemInt(dialog, 707, nullptr, FALSE),
               GetDlgItemInt(dialog, 708, nullptr, FALSE));
  }
};

TEST_F(OptionsColorsTest, TheListHasTheColoursInTheOrderOfTheTableAndTheFirstIsSelected) {
  showColors([&](HWND page) {
    std::vector<std::wstring> names;
    for (int i = 0; i < static_cast<int>(SendDlgItemMessageW(page, kList, LB_GETCOUNT, 0, 0)); ++i) {
      wchar_t name[64] = L"";
      SendDlgItemMessageW(page, kList, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(name));
      names.emplace_back(name);
    }
    EXPECT_THAT(names,
                testing::ElementsAre(L"Tables View Background", L"Tables View Text", L"Form View Background",
                                     L"Form View Label Background", L"Form View Label Foreground",
                                     L"Form View Check Box Background", L"Form View Check Box Foreground",
                                     L"Form View Date Text Background", L"Form View Date Text Foreground",
                                     L"Form View Edit Box Background", L"Form View Edit Box Foreground",
                                     L"List View Background", L"List View Text", L"Query View Background",
                                     L"Query View Text"));
    EXPECT_EQ(SendDlgItemMessageW(page, kList, LB_GETCURSEL, 0, 0), 0);
    EXPECT_EQ(options().colorPage().selectedIndex, 0);
  });
}

TEST_F(OptionsColorsTest, TheMessageAndASelectionTakeTheListsSelection) {
  showColors([&](HWND page) {
    select(page, 12);
    EXPECT_EQ(options().colorPage().selectedIndex, 12);
    SendDlgItemMessageW(page, kList, LB_SETCURSEL, 4, 0);
    EXPECT_EQ(options().colorPage().selectedIndex, 12);
    SendMessageW(page, kRedrawSwatch, 0, 0);
    EXPECT_EQ(options().colorPage().selectedIndex, 4);
    SendDlgItemMessageW(page, kList, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    SendMessageW(page, kRedrawSwatch, 0, 0);
    EXPECT_EQ(options().colorPage().selectedIndex, -1);
  });
}

TEST_F(OptionsColorsTest, APickedColourIsInTheLiveTableAtOnceAndInTheRegistryAfterwards) {
  int pickers = 0;
  showColors(
      [&](HWND page) {
        select(page, 11);
        click(page, kPick);
        EXPECT_EQ(appColors[11], kPicked);
        EXPECT_FALSE(keyExists(L"Options"));
      },
      [&](HWND dialog) {
        ++pickers;
        EXPECT_EQ(colorIn(dialog), RGB(0, 255, 255)) << "it begins with the entry's colour";
        EXPECT_EQ(GetWindow(dialog, GW_OWNER), currentDialog);
        pick(dialog);
      });
  EXPECT_EQ(pickers, 1);
  const Bytes stored = raw(L"Options", L"GeneralAppColors").bytes;
  ASSERT_EQ(stored.size(), 60u);
  EXPECT_EQ(Bytes(stored.begin() + 44, stored.begin() + 48), (Bytes{10, 20, 30, 0}));
}

TEST_F(OptionsColorsTest, APickerThatIsCancelledChangesNothing) {
  int pickers = 0;
  const AppColorTable before = appColors;
  showColors([&](HWND page) { click(page, kPick); },
             [&](HWND dialog) {
               ++pickers;
               SetDlgItemInt(dialog, 706, 1, FALSE);
               DialogScript::close(dialog, IDCANCEL);
             });
  EXPECT_EQ(pickers, 1);
  EXPECT_EQ(appColors, before);
}

TEST_F(OptionsColorsTest, WithoutASelectionThereIsNothingToPick) {
  int pickers = 0;
  showColors(
      [&](HWND page) {
        select(page, -1);
        click(page, kPick);
      },
      [&](HWND dialog) {
        ++pickers;
        DialogScript::close(dialog, IDCANCEL);
      });
  EXPECT_EQ(pickers, 0);
}

/// The question before a reset, answered.
class ResetTest : public OptionsColorsTest {
 protected:
  void resetAnswering(int answer) {
    appColors[0] = kPicked;
    appColors[14] = kPicked;
    answerNextBox(answer);
    HWND sheet = nullptr;
    showColors([&](HWND page) {
      sheet = GetParent(page);
      click(page, kReset);
    });
    EXPECT_THAT(takeBoxes(), testing::ElementsAre(Box{.caption = L"Quivane",
                                                      .text = L"Reset all colors to their defaults?",
                                                      .buttons = {IDYES, IDNO},
                                                      .owner = sheet,
                                                      .comesToFront = true}));
  }
};

TEST_F(ResetTest, ResetAnsweredWithNoChangesNothing) {
  resetAnswering(IDNO);
  EXPECT_EQ(appColors[0], kPicked);
  EXPECT_EQ(appColors[14], kPicked);
}

TEST_F(ResetTest, ResetAnsweredWithYesRestoresAllDefaults) {
  resetAnswering(IDYES);
  for (std::size_t i = 0; i < kAppColorCount; ++i) EXPECT_EQ(appColors[i], kAppColorDefaults[i].color) << i;
}

}  // namespace
