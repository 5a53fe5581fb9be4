#include <ctime>

#include "platform/store/sqlite/copies/retention.h"

namespace store {

std::int64_t systemLocalDay(std::int64_t time) {
  constexpr std::int64_t kDay = 24 * 60 * 60;
  const std::time_t seconds = time / 1000;
  std::tm local{};
  if (localtime_r(&seconds, &local) == nullptr) return seconds / kDay;
  return (seconds + local.tm_gmtoff) / kDay;
}

}  // namespace store
