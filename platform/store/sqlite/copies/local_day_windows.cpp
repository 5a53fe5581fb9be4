#include <windows.h>

#include "platform/store/sqlite/copies/retention.h"

namespace store {

std::int64_t systemLocalDay(std::int64_t time) {
  constexpr std::int64_t kTicksPerMillisecond = 10'000;
  constexpr std::int64_t kTicksPerDay = std::int64_t{24} * 60 * 60 * 1000 * kTicksPerMillisecond;
  constexpr std::int64_t kDaysBefore1970 = 134'774;  // from 1601 on
  const std::int64_t ticks = time * kTicksPerMillisecond + kDaysBefore1970 * kTicksPerDay;
  const FILETIME file{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  SYSTEMTIME universal{};
  SYSTEMTIME local{};
  FILETIME localFile{};
  if (!FileTimeToSystemTime(&file, &universal) ||
      !SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local) ||
      !SystemTimeToFileTime(&local, &localFile)) {
    return ticks / kTicksPerDay - kDaysBefore1970;
  }
  const std::int64_t localTicks = std::int64_t{localFile.dwHighDateTime} << 32 | localFile.dwLowDateTime;
  return localTicks / kTicksPerDay - kDaysBefore1970;
}

}  // namespace store
