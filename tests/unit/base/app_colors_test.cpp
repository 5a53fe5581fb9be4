#include "base/settings/app_colors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "gtest/gtest.h"
#include "tests/support/system_colors.h"

namespace {

TEST(AppColorsTest, TheDefaultsAreTheBuiltInTable) {
  const std::pair<std::wstring, std::uint32_t> expected[] = {
      {L"Tables View Background", 0x0080FFFF},
      {L"Tables View Text", 0x00FF0000},
      {L"Form View Background", 0x0000FFFF},
      {L"Form View Label Background", 0x0000FFFF},
      {L"Form View Label Foreground", 0x00FF0000},
      {L"Form View Check Box Background", 0x0000FFFF},
      {L"Form View Check Box Foreground", 0x00000000},
      {L"Form View Date Text Background", 0x00FFFFFF},
      {L"Form View Date Text Foreground", 0x000080FF},
      {L"Form View Edit Box Background", 0x00FFFF00},
      {L"Form View Edit Box Foreground", 0x00000000},
      {L"List View Background", 0x00FFFF00},
      {L"List View Text", 0x00000000},
      {L"Query View Background", 0x000080FF},
      {L"Query View Text", 0x00000000},
  };
  ASSERT_EQ(kAppColorCount, std::size(expected));
  for (std::size_t i = 0; i < kAppColorCount; ++i) {
    EXPECT_EQ(kAppColorDefaults[i].name, expected[i].first);
    EXPECT_EQ(kAppColorDefaults[i].color, expected[i].second) << i;
  }
}

TEST(AppColorsTest, TheNamesOfTheIndexesMatchTheTable) {
  EXPECT_EQ(kTablesViewBackground, 0u);
  EXPECT_EQ(kFormViewDateTextForeground, 8u);
  EXPECT_EQ(kListViewBackground, 11u);
  EXPECT_EQ(kQueryViewText, 14u);
}

TEST(AppColorsTest, ResettingRestoresTheDefaults) {
  appColors.fill(0x00123456);
  resetAppColors();
  for (std::size_t i = 0; i < kAppColorCount; ++i) EXPECT_EQ(appColors[i], kAppColorDefaults[i].color) << i;
}

TEST(AppColorsTest, TheCustomColorsBeginWhite) {
  ASSERT_EQ(customColors.size(), 16u);
  for (const COLORREF color : customColors) EXPECT_EQ(color, RGB(255, 255, 255));
}

/// How well a text is read on a ground, from 1 to 21. Source: Web Content Accessibility Guidelines 2.1.
double contrastOf(COLORREF text, COLORREF ground) {
  const auto light = [](COLORREF color) {
    const auto part = [](BYTE value) {
      const double share = value / 255.0;
      return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(GetRValue(color)) + 0.7152 * part(GetGValue(color)) +
           0.0722 * part(GetBValue(color));
  };
  const double first = light(text) + 0.05;
  const double second = light(ground) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

struct Pair {
  AppColor ground;
  AppColor text;
};
constexpr Pair kPairs[] = {{kTablesViewBackground, kTablesViewText},
                           {kFormViewBackground, kFormViewLabelForeground},
                           {kFormViewLabelBackground, kFormViewLabelForeground},
                           {kFormViewCheckBoxBackground, kFormViewCheckBoxForeground},
                           {kFormViewDateTextBackground, kFormViewDateTextForeground},
                           {kFormViewEditBoxBackground, kFormViewEditBoxForeground},
                           {kListViewBackground, kListViewText},
                           {kQueryViewBackground, kQueryViewText}};

TEST(ColorSetTest, TheFirstAreTheDefaults) {
  const AppColorTable table = colorsOfSet(ColorSet::own);
  for (std::size_t i = 0; i < kAppColorCount; ++i) EXPECT_EQ(table[i], kAppColorDefaults[i].color) << i;
}

TEST(ColorSetTest, EveryTextOfTheDarkOnesIsReadable) {
  const AppColorTable table = colorsOfSet(ColorSet::dark);
  for (const Pair& pair : kPairs) {
    EXPECT_GE(contrastOf(table[pair.text], table[pair.ground]), 7.0) << pair.ground;
    EXPECT_LT(GetGValue(table[pair.ground]), 64) << pair.ground;
  }
}

TEST(ColorSetTest, TheSystemsAreThoseOfAllPrograms) {
  // As with high contrast: all of them others than usual.
  const SystemColors colors({{COLOR_BTNFACE, RGB(0, 0, 1)},
                             {COLOR_BTNTEXT, RGB(255, 255, 1)},
                             {COLOR_WINDOW, RGB(0, 0, 2)},
                             {COLOR_WINDOWTEXT, RGB(255, 255, 2)}});
  const AppColorTable table = colorsOfSet(ColorSet::system);
  for (const Pair& pair : kPairs) {
    const bool isForm = table[pair.ground] == RGB(0, 0, 1);
    EXPECT_EQ(table[pair.ground], isForm ? RGB(0, 0, 1) : RGB(0, 0, 2)) << pair.ground;
    EXPECT_EQ(table[pair.text], isForm ? RGB(255, 255, 1) : RGB(255, 255, 2)) << pair.text;
  }
  EXPECT_EQ(table[kFormViewBackground], RGB(0, 0, 1));
  EXPECT_EQ(table[kListViewBackground], RGB(0, 0, 2));
}

}  // namespace
