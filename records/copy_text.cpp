#include "records/copy_text.h"

#include <windows.h>

#include <oleauto.h>

#include <array>

#include "owners/ole_functions.h"

namespace {

constexpr std::size_t kLongest = 80;

}  // namespace

std::wstring copyTimeText(double time) {
  SYSTEMTIME universal{};
  SYSTEMTIME local{};
  if (!ole::variantTimeToSystemTime(time, &universal) ||
      !SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local)) {
    return {};
  }
  std::array<wchar_t, kLongest> date{};
  std::array<wchar_t, kLongest> clock{};
  GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, date.data(),
                 static_cast<int>(date.size()));
  GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &local, nullptr, clock.data(), static_cast<int>(clock.size()));
  return std::wstring(date.data()) + L" " + clock.data();
}

std::wstring copySizeText(std::int64_t bytes) {
  constexpr std::int64_t kKilobyte = 1024;
  constexpr std::int64_t kMegabyte = kKilobyte * kKilobyte;
  if (bytes < kMegabyte) return std::to_wstring((bytes + kKilobyte - 1) / kKilobyte) + L" KB";
  const std::int64_t tenths = (bytes * 10 + kMegabyte / 2) / kMegabyte;
  return std::to_wstring(tenths / 10) + L"." + std::to_wstring(tenths % 10) + L" MB";
}

std::wstring copyRecordsText(std::int64_t records) {
  return records == DatabaseCopy::kNotCounted ? std::wstring() : std::to_wstring(records);
}

const wchar_t* copyReasonText(DatabaseCopy::Reason reason) {
  switch (reason) {
    case DatabaseCopy::Reason::change:
      return L"a change";
    case DatabaseCopy::Reason::goingBack:
      return L"going back";
    case DatabaseCopy::Reason::tableDeletion:
      return L"deleting a table";
    case DatabaseCopy::Reason::databaseDeletion:
      return L"deleting the database";
  }
  return L"";
}
