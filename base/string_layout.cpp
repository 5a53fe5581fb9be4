#include "base/string_layout.h"

#include <algorithm>

namespace stringlayout {

std::u16string read(const Reader& reader) {
  std::uint32_t byteCount = 0;
  if (reader(&byteCount, sizeof byteCount) != sizeof byteCount || byteCount > kMaxByteCount) return {};
  constexpr std::size_t kUnitLength = sizeof(char16_t);
  constexpr std::size_t kChunkUnits = 16 * 1024;
  std::u16string units;
  std::size_t unitsLeft = byteCount / kUnitLength;
  while (unitsLeft > 0) {
    const std::size_t asked = std::min(unitsLeft, kChunkUnits);
    const std::size_t start = units.size();
    units.resize(start + asked);
    const std::size_t arrived = reader(units.data() + start, asked * kUnitLength) / kUnitLength;
    units.resize(start + arrived);
    if (arrived < asked) return units;
    unitsLeft -= asked;
  }
  char terminator = 0;
  if (byteCount % kUnitLength != 0) reader(&terminator, sizeof terminator);
  return units;
}

}  // namespace stringlayout
