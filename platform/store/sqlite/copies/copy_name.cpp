#include "platform/store/sqlite/copies/copy_name.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>

namespace store {

namespace {

constexpr std::array<std::string_view, 4> kReasons = {"change", "back", "table", "database"};
constexpr std::string_view kEnding = ".cdb";
constexpr std::string_view kUnfinishedEnding = ".unfinished";
constexpr std::size_t kStampLength = 24;

std::string stampOf(std::int64_t time) {
  using namespace std::chrono;
  const sys_time<milliseconds> moment{milliseconds(time)};
  const auto day = floor<days>(moment);
  const year_month_day date(day);
  const hh_mm_ss clock(moment - day);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d-%02d-%02d-%03dZ",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()),
                static_cast<int>(clock.subseconds().count()));
  return text.data();
}

template <typename Number>
bool takeNumber(std::string_view& text, std::size_t length, Number* number) {
  if (text.size() < length) return false;
  const auto [end, error] = std::from_chars(text.data(), text.data() + length, *number);
  if (error != std::errc() || end != text.data() + length || text.front() == '-') return false;
  text.remove_prefix(length);
  return true;
}

bool takeSign(std::string_view& text, char sign) {
  if (text.empty() || text.front() != sign) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<std::int64_t> timeOf(std::string_view stamp) {
  using namespace std::chrono;
  int year = 0;
  unsigned month = 0;
  unsigned day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int part = 0;
  const bool isWhole = takeNumber(stamp, 4, &year) && takeSign(stamp, '-') && takeNumber(stamp, 2, &month) &&
                       takeSign(stamp, '-') && takeNumber(stamp, 2, &day) && takeSign(stamp, ' ') &&
                       takeNumber(stamp, 2, &hour) && takeSign(stamp, '-') && takeNumber(stamp, 2, &minute) &&
                       takeSign(stamp, '-') && takeNumber(stamp, 2, &second) && takeSign(stamp, '-') &&
                       takeNumber(stamp, 3, &part) && stamp == "Z";
  const year_month_day date{std::chrono::year(year), std::chrono::month(month), std::chrono::day(day)};
  if (!isWhole || !date.ok() || hour > 23 || minute > 59 || second > 59) return {};
  const auto moment = sys_days(date) + hours(hour) + minutes(minute) + seconds(second) + milliseconds(part);
  return duration_cast<milliseconds>(moment.time_since_epoch()).count();
}

}  // namespace

std::string textOf(const CopyName& name) {
  std::string text = stampOf(name.time) + " ";
  text += kReasons.at(static_cast<std::size_t>(name.reason) - 1);
  if (name.records) text += " " + std::to_string(*name.records);
  return text.append(kEnding);
}

std::optional<CopyName> copyNameOf(std::string_view text) {
  if (text.size() <= kStampLength + kEnding.size() || !text.ends_with(kEnding)) return {};
  const std::optional<std::int64_t> time = timeOf(text.substr(0, kStampLength));
  if (!time) return {};
  std::string_view rest = text.substr(kStampLength, text.size() - kStampLength - kEnding.size());
  if (!takeSign(rest, ' ')) return {};
  CopyName name{.time = *time};
  const std::string_view reason = rest.substr(0, rest.find(' '));
  std::size_t index = 0;
  while (index < kReasons.size() && kReasons[index] != reason) ++index;
  if (index == kReasons.size()) return {};
  name.reason = static_cast<CopyReason>(index + 1);
  rest.remove_prefix(reason.size());
  if (rest.empty()) return name;
  std::int64_t records = 0;
  if (!takeSign(rest, ' ') || rest.empty() || !takeNumber(rest, rest.size(), &records)) return {};
  name.records = records;
  return name;
}

std::string unfinishedNameOf(std::int64_t time) {
  return stampOf(time).append(kUnfinishedEnding);
}

bool isUnfinishedName(std::string_view text) {
  return text.size() == kStampLength + kUnfinishedEnding.size() && text.ends_with(kUnfinishedEnding) &&
         timeOf(text.substr(0, kStampLength)).has_value();
}

}  // namespace store
