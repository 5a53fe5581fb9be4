#include <string>
#include <vector>

#include "base/settings/app_colors.h"
#include "gmock/gmock.h"
#include "owners/handles.h"
#include "tests/ui/support/host_window.h"
#include "views/form/form_wrapper.h"

namespace {

using testing::ElementsAre;

std::vector<UINT> forwarded;

LRESULT CALLBACK recordingProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  forwarded.push_back(message);
  return message == WM_APP ? 4711 : DefWindowProcW(window, message, wParam, lParam);
}

COLORREF colorOf(LRESULT brush) {
  LOGBRUSH description{};
  GetObjectW(reinterpret_cast<HBRUSH>(brush), sizeof(description), &description);
  return description.lbColor;
}

class FormColorsTest : public testing::Test {
 protected:
  void SetUp() override {
    for (std::size_t i = 0; i < kAppColorCount; ++i) appColors[i] = RGB(i + 1, 2 * i, 3 * i);
    FormWrapper::registerClass(GetModuleHandleW(nullptr));
    ASSERT_NE(wrapper_.create(GetModuleHandleW(nullptr), host_.get(), {240, 220}, recordingProcedure),
              nullptr);
    forwarded.clear();
  }
  void TearDown() override { resetAppColors(); }

  /// The colour numbers that the form sets for text and background of a control, and the colour of its
  /// brush.
  void expectColors(UINT message, int identifier, AppColor background, AppColor text, COLORREF brush) {
    const UniqueWindow control(CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 9, 9, wrapper_.window(),
                                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(identifier)),
                                               nullptr, nullptr));
    const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
    const LRESULT result = SendMessageW(wrapper_.window(), message, reinterpret_cast<WPARAM>(dc.get()),
                                        reinterpret_cast<LPARAM>(control.get()));
    EXPECT_EQ(GetBkColor(dc.get()), appColors[background]) << identifier;
    EXPECT_EQ(GetTextColor(dc.get()), appColors[text]) << identifier;
    EXPECT_EQ(colorOf(result), brush) << identifier;
  }

  HWND form() const { return wrapper_.window(); }

 private:
  HostWindow host_;
  FormWrapper wrapper_;
};

constexpr COLORREF kWhite = RGB(255, 255, 255);

TEST_F(FormColorsTest, EachKindOfControlHasItsColours) {
  expectColors(WM_CTLCOLOREDIT, 1200, kFormViewEditBoxBackground, kFormViewEditBoxForeground,
               appColors[kFormViewEditBoxBackground]);
  expectColors(WM_CTLCOLORBTN, 1400, kFormViewCheckBoxBackground, kFormViewCheckBoxForeground, kWhite);
  for (const int label : {0, 10, 1200, 1399}) {
    expectColors(WM_CTLCOLORSTATIC, label, kFormViewLabelBackground, kFormViewLabelForeground,
                 appColors[kFormViewBackground]);
  }
  for (const int checkBox : {1400, 1599}) {
    expectColors(WM_CTLCOLORSTATIC, checkBox, kFormViewCheckBoxBackground, kFormViewCheckBoxForeground,
                 appColors[kFormViewCheckBoxBackground]);
  }
  for (const int date : {1600, 2000}) {
    expectColors(WM_CTLCOLORSTATIC, date, kFormViewDateTextBackground, kFormViewDateTextForeground,
                 appColors[kFormViewDateTextBackground]);
  }
  EXPECT_THAT(forwarded, testing::Each(testing::AnyOf(WM_PARENTNOTIFY, WM_NCPAINT, WM_ERASEBKGND)));
}

TEST_F(FormColorsTest, ColoursThatTheUserChangesHoldFromThenOn) {
  expectColors(WM_CTLCOLOREDIT, 1200, kFormViewEditBoxBackground, kFormViewEditBoxForeground,
               appColors[kFormViewEditBoxBackground]);
  appColors[kFormViewEditBoxBackground] = RGB(9, 99, 199);
  expectColors(WM_CTLCOLOREDIT, 1200, kFormViewEditBoxBackground, kFormViewEditBoxForeground,
               RGB(9, 99, 199));
}

TEST_F(FormColorsTest, WhatTheFormDoesNotAnswerGoesToTheTabControlsProcedure) {
  EXPECT_EQ(SendMessageW(form(), WM_APP, 0, 0), 4711);
  EXPECT_THAT(forwarded, ElementsAre(WM_APP));
}

}  // namespace
