// Which copies stay.
#include "platform/store/sqlite/copies/retention.h"

#include <algorithm>
#include <ctime>
#include <gtest/gtest.h>

namespace store {
namespace {

constexpr std::int64_t kHour = 60 * 60 * 1000;
constexpr std::int64_t kDay = 24 * kHour;
constexpr std::int64_t kThursday = 19'999;

std::int64_t plainDay(std::int64_t time) {
  return time / kDay;
}

/// Copies of these moments, newest first; the numbers of those that stay.
std::vector<std::size_t> stay(const std::vector<std::int64_t>& times, std::int64_t now,
                              CopyReason reason = CopyReason::change) {
  std::vector<CopyName> copies;
  for (const std::int64_t time : times) copies.push_back({.time = time, .reason = reason});
  const std::vector<bool> kept = keptOf(copies, now, plainDay);
  std::vector<std::size_t> numbers;
  for (std::size_t i = 0; i < kept.size(); ++i) {
    if (kept[i]) numbers.push_back(i);
  }
  return numbers;
}

using Numbers = std::vector<std::size_t>;

TEST(Retention, NothingStaysOfNothing) {
  EXPECT_EQ(Numbers{}, stay({}, kThursday * kDay));
}

TEST(Retention, TheLastFiveOfADayStay) {
  std::vector<std::int64_t> times;
  for (int number = 0; number < 8; ++number) times.push_back(kThursday * kDay + (20 - number) * kHour);
  EXPECT_EQ((Numbers{0, 1, 2, 3, 4}), stay(times, kThursday * kDay + 21 * kHour));
}

TEST(Retention, TheNewestOfEachOfTheLastSevenDaysStays) {
  // Three a day for ten days, up to a Sunday.
  const std::int64_t today = kThursday + 3;
  std::vector<std::int64_t> times;
  for (int day = 0; day < 10; ++day) {
    for (const int hour : {20, 14, 8}) times.push_back((today - day) * kDay + hour * kHour);
  }
  // 0 to 4 are the last five; then the newest of each day down to Monday, the sixth day before; 21 is the
  // Sunday before, the newest of its week.
  EXPECT_EQ((Numbers{0, 1, 2, 3, 4, 6, 9, 12, 15, 18, 21}), stay(times, today * kDay + 21 * kHour));
}

TEST(Retention, ADayEndsAtMidnight) {
  const std::int64_t now = (kThursday + 6) * kDay + kDay - 1;
  std::vector<std::int64_t> times(5, now);
  times.push_back(kThursday * kDay);  // the first millisecond of the seventh day
  times.push_back(kThursday * kDay -
                  1);  // the last one before it: in the same week, of which it is not the newest
  EXPECT_EQ((Numbers{0, 1, 2, 3, 4, 5}), stay(times, now));
  EXPECT_EQ((Numbers{0, 1, 2, 3, 4, 5}), stay({now, now, now, now, now, times[5], times[5] - kHour}, now));
}

TEST(Retention, TheNewestOfEachOfTheLastFourWeeksStays) {
  const std::int64_t monday = kThursday + 4;
  const std::int64_t now = monday * kDay + 9 * kHour;
  std::vector<std::int64_t> times(5, now);
  for (int week = 1; week <= 5; ++week) {
    times.push_back((monday - 7 * (week - 1)) * kDay - 1);     // Sunday's last millisecond
    times.push_back((monday - 7 * week) * kDay + 12 * kHour);  // and its Monday
  }
  // Their Sundays; last week's Monday is the seventh day before today.
  EXPECT_EQ((Numbers{0, 1, 2, 3, 4, 5, 7, 9, 11}), stay(times, now));
  // A week later the oldest week has gone.
  EXPECT_EQ((Numbers{0, 1, 2, 3, 4, 5, 7, 9}), stay(times, now + 7 * kDay));
}

TEST(Retention, SessionsOfEveryDayThinOutWithoutGaps) {
  // A year of three sessions a day, each followed by the throwing away, as it is in life.
  std::vector<std::int64_t> kept;
  for (std::int64_t day = kThursday; day < kThursday + 365; ++day) {
    for (const int hour : {8, 14, 20}) {
      const std::int64_t now = day * kDay + hour * kHour;
      kept.insert(kept.begin(), now);
      std::vector<std::int64_t> left;
      for (const std::size_t number : stay(kept, now)) left.push_back(kept[number]);
      kept = left;
    }
    if (day < kThursday + 40) continue;
    ASSERT_LE(kept.size(), 5u + 7u + 4u);
    for (std::int64_t back = 0; back < 7; ++back) {
      EXPECT_EQ(1, std::count_if(kept.begin(), kept.end(),
                                 [&](std::int64_t time) { return time == (day - back) * kDay + 20 * kHour; }))
          << day << " " << back;
    }
    const std::int64_t oldest = kept.back() / kDay;
    EXPECT_GE(day - oldest, 22) << "the Sunday four weeks back";
    EXPECT_LE(day - oldest, 28);
  }
}

TEST(Retention, DeletionsDoNotPushTheStatesOfSessionsOut) {
  std::vector<CopyName> copies;
  const std::int64_t now = kThursday * kDay + 12 * kHour;
  for (int number = 0; number < 7; ++number)
    copies.push_back({.time = now - number, .reason = CopyReason::tableDeletion});
  for (int number = 0; number < 7; ++number)
    copies.push_back(
        {.time = now - 100 - number, .reason = number == 6 ? CopyReason::goingBack : CopyReason::change});
  const std::vector<bool> kept = keptOf(copies, now, plainDay);
  EXPECT_EQ((std::vector<bool>{true, true, true, true, true, false, false, true, true, true, true, true,
                               false, false}),
            kept);
}

TEST(Retention, ACopyFromTheFutureIsOneOfTheLastFiveAndNothingMore) {
  const std::int64_t now = kThursday * kDay;
  EXPECT_EQ((Numbers{0, 1, 2, 3, 4}), stay({now + 70 * kDay, now + 60 * kDay, now + 50 * kDay,
                                            now + 40 * kDay, now + 30 * kDay, now + 20 * kDay},
                                           now));
}

TEST(Retention, AClockBefore1970HasWeeksToo) {
  // A computer whose battery is empty begins anew, and days may have negative numbers. Day -3 was a Monday.
  const auto days = [](std::int64_t time) { return time; };
  std::vector<CopyName> copies(5, CopyName{.time = -3 + 14});
  for (const std::int64_t day : {-3, -4, -10, -11}) copies.push_back({.time = day});
  EXPECT_EQ((std::vector<bool>{true, true, true, true, true, true, true, false, true}),
            keptOf(copies, -3 + 14, days));
}

TEST(Retention, TheSystemsDaysFollowOneAnotherAtTheUsersMidnight) {
  const std::time_t now = std::time(nullptr);
  std::tm local = *std::localtime(&now);
  local.tm_hour = local.tm_min = local.tm_sec = 0;
  local.tm_isdst = -1;
  const std::int64_t midnight = std::int64_t{std::mktime(&local)} * 1000;
  const std::int64_t today = systemLocalDay(midnight);
  EXPECT_EQ(today - 1, systemLocalDay(midnight - 1));
  EXPECT_EQ(today, systemLocalDay(midnight + 12 * kHour));
  EXPECT_NEAR(static_cast<double>(today), static_cast<double>(midnight) / kDay, 1.0);
}

}  // namespace
}  // namespace store
