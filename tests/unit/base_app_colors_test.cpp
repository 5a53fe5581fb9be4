#include <string>
#include <utility>

#include "base/app_colors.h"
#include "gtest/gtest.h"

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

}  // namespace
