#include "platform/store/sql/moments.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "platform/store/rows/iso_date.h"

namespace store {
namespace {

int signOf(int number) {
  return number < 0 ? -1 : number > 0 ? 1 : 0;
}

TEST(MomentsTest, EveryIsoFormOfAMomentIsOneText) {
  for (const char* text :
       {"2001-03-09", "2001-03-09 00:00", "2001-03-09 00:00:00", "2001-03-09T00:00:00.000Z",
        "2001-03-09 00:00:00.0004", "2001-03-08 23:59:59.9995", "2001-03-08T23:59:59.9999Z"}) {
    EXPECT_EQ(momentText(text), "2001-03-09 00:00:00") << text;
  }
  EXPECT_EQ(momentText("2001-03-09T14:05:07.25"), "2001-03-09 14:05:07.250");
  EXPECT_EQ(momentText("9999-12-31 23:59:59.9999"), "9999-12-31 23:59:59.999");
}

TEST(MomentsTest, OtherTextsStay) {
  for (const char* text :
       {"", "x", "2001-02-30", "2001-03", "2001-03-09 ", "14:05:07", "0099-01-01", "2001-03-09 24:00"}) {
    EXPECT_EQ(momentText(text), text);
  }
}

TEST(MomentsTest, ItOrdersAllTextsAndItsBoundsHoldThem) {
  const std::vector<std::string> days = {"0100-01-01", "1899-12-29", "1999-12-31",
                                         "2000-01-01", "2000-02-30", "9999-12-31"};
  const std::vector<std::string> times = {"",
                                          " 00:00",
                                          "T00:00Z",
                                          " 00:00:00",
                                          " 00:00:00.000",
                                          " 00:00:00.001",
                                          " 23:59:59.9994",
                                          "T23:59:59.9996",
                                          " 24:00:00",
                                          "T12:00",
                                          " 12:00:00.5",
                                          " ",
                                          "T",
                                          "x"};
  std::vector<std::string> texts = {"", "12:00", "23:59:59.9999", "2000", "2000-01", "unknown", "\xD0\x96"};
  for (const std::string& day : days) {
    for (const std::string& time : times) texts.push_back(day + time);
  }
  for (const std::string& left : texts) {
    EXPECT_EQ(compareMoments(left, left), 0);
    const std::string moment = momentText(left);
    const bool isMoment = left.size() >= 10 && parseIsoDate(left).has_value();
    for (const std::string& right : texts) {
      const int order = signOf(compareMoments(left, right));
      EXPECT_EQ(order, -signOf(compareMoments(right, left)));
      for (const std::string& third : texts) {
        if (order <= 0 && compareMoments(right, third) <= 0) {
          ASSERT_LE(compareMoments(left, third), 0) << left << ", " << right << ", " << third;
        }
      }
      if (!isMoment) continue;
      if (order <= 0) {
        EXPECT_GE(right, lowestText(moment)) << left << " <= " << right;
      }
      if (order >= 0) {
        EXPECT_LT(right, endText(moment)) << left << " >= " << right;
      }
    }
  }
}

}  // namespace
}  // namespace store
