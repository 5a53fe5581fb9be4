#include <string>

#include "gtest/gtest.h"
#include "records/position_text.h"

namespace {

std::wstring text(std::uint32_t position, std::uint32_t count) {
  return positionText(position, count).text();
}

TEST(PositionText, SaysWhenThereAreNoRecords) {
  EXPECT_EQ(text(0, 0), L"No Records");
  EXPECT_EQ(text(7, 0), L"No Records");
}

TEST(PositionText, IsPaddedByHalfTheMissingDigits) {
  EXPECT_EQ(text(1, 5), L"    1 / 5");
  EXPECT_EQ(text(3, 17), L"    3 / 17");
  EXPECT_EQ(text(12, 17), L"   12 / 17");
  EXPECT_EQ(text(1, 100), L"   1 / 100");
  EXPECT_EQ(text(1, 1000), L"   1 / 1000");
}

TEST(PositionText, Of9999RecordsIsPaddedAndOf10000Plain) {
  EXPECT_EQ(text(9999, 9999), L" 9999 / 9999");
  EXPECT_EQ(text(1, 9999), L"   1 / 9999");
  EXPECT_EQ(text(1, 10000), L"1 / 10000");
  EXPECT_EQ(text(4294967295u, 4294967295u), L"4294967295 / 4294967295");
}

TEST(PositionText, KeepsOneBlankWhenTheDigitsAreTooMany) {
  EXPECT_EQ(text(123456, 9999), L" 123456 / 9999");
}

}  // namespace
