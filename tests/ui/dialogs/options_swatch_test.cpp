#include <functional>

#include "gtest/gtest.h"
#include "tests/ui/dialogs/options_fixture.h"

namespace {

constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kFirst = RGB(255, 255, 128);
constexpr COLORREF kGridBackground = RGB(0, 255, 255);

/// The pixels of the Color page, on a display.
class SwatchTest : public OptionsDialogTest, public testing::WithParamInterface<int> {
 protected:
  /// Runs the sheet on its Color page until the step has been called for the painted page.
  void showPainted(const std::function<void(HWND sheet, HWND page)>& step, const Step& onOther = nullptr) {
    HandheldSetZoom(GetParam());
    show(
        [&](HWND sheet) {
          const WhenIdle shown([this, sheet, &step] {
            const HWND page = pageOf(sheet, kColorPage);
            const WhenIdle painted([sheet, page, &step] {
              step(sheet, page);
              DialogScript::close(sheet, IDOK);
            });
          });
        },
        onOther);
    EXPECT_EQ(sheetCount(), 1);
  }

  /// In handheld pixels; of the pixels that such a one is made of, the upper left one.
  static COLORREF pixel(HWND page, int x, int y) {
    const HDC dc = GetDC(page);
    const COLORREF color = GetPixel(dc, HandheldToMonitor(x), HandheldToMonitor(y));
    ReleaseDC(page, dc);
    return color;
  }

  static void expectSwatch(HWND page, COLORREF color) {
    EXPECT_EQ(pixel(page, 130, 208), kBlack);
    EXPECT_EQ(pixel(page, 191, 229), kBlack);
    EXPECT_EQ(pixel(page, 130, 229), kBlack);
    EXPECT_EQ(pixel(page, 191, 208), kBlack);
    EXPECT_EQ(pixel(page, 131, 209), color);
    EXPECT_EQ(pixel(page, 190, 228), color);
    EXPECT_EQ(pixel(page, 129, 208), kWhite);
    EXPECT_EQ(pixel(page, 192, 220), kWhite);
    EXPECT_EQ(pixel(page, 160, 207), kWhite);
    EXPECT_EQ(pixel(page, 160, 230), kWhite);
  }
};

INSTANTIATE_TEST_SUITE_P(Zooms, SwatchTest, testing::Values(100, 200));

TEST_P(SwatchTest, ItHasABlackFrameAndTheColourOfTheFirstEntry) {
  showPainted([](HWND, HWND page) { expectSwatch(page, kFirst); });
}

TEST_P(SwatchTest, ItFollowsTheSelection) {
  showPainted([](HWND, HWND page) {
    select(page, 11);
    expectSwatch(page, kGridBackground);
  });
}

TEST_P(SwatchTest, SwitchingAwayAndBackRedrawsItForTheStillSelectedEntry) {
  showPainted([](HWND sheet, HWND page) {
    select(page, 11);
    pageOf(sheet, kGeneralPage);
    ASSERT_EQ(pageOf(sheet, kColorPage), page);
    UpdateWindow(page);
    expectSwatch(page, kGridBackground);
  });
}

TEST_P(SwatchTest, ItIsThereAgainAfterAWindowCoveredIt) {
  showPainted([](HWND, HWND page) {
    InvalidateRect(page, nullptr, TRUE);
    UpdateWindow(page);
    expectSwatch(page, kFirst);
  });
}

TEST_P(SwatchTest, ItShowsAPickedColour) {
  showPainted(
      [](HWND, HWND page) {
        click(page, 1063);
        expectSwatch(page, RGB(10, 20, 30));
      },
      [](HWND dialog) {
        SetDlgItemInt(dialog, 706, 10, FALSE);
        SetDlgItemInt(dialog, 707, 20, FALSE);
        SetDlgItemInt(dialog, 708, 30, FALSE);
        DialogScript::close(dialog, IDOK);
      });
}

TEST_P(SwatchTest, ItShowsTheDefaultAfterAReset) {
  answerNextBox(IDYES);
  showPainted([](HWND, HWND page) {
    appColors[0] = RGB(1, 2, 3);
    SendMessageW(page, WM_USER + 207, 0, 0);
    expectSwatch(page, RGB(1, 2, 3));
    click(page, 1064);
    expectSwatch(page, kFirst);
  });
}

}  // namespace
