#include "platform/pocketshell/menu/menu_bar_resource.h"

#include <cstring>

namespace pocketshell {

namespace {

constexpr std::size_t kHeadCount = 2;
constexpr std::size_t kButtonCount = 7;

WORD numberAt(std::span<const std::byte> bytes, std::size_t index) {
  WORD number = 0;
  std::memcpy(&number, bytes.data() + index * sizeof(number), sizeof(number));
  return number;
}

}  // namespace

std::optional<MenuBarResource> readMenuBarResource(std::span<const std::byte> bytes) {
  const std::size_t available = bytes.size() / sizeof(WORD);
  if (available < kHeadCount) return std::nullopt;
  MenuBarResource resource;
  resource.menu = numberAt(bytes, 0);
  const std::size_t count = numberAt(bytes, 1);
  if ((available - kHeadCount) / kButtonCount < count) return std::nullopt;
  resource.buttons.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t first = kHeadCount + i * kButtonCount;
    if (numberAt(bytes, first + 5) != 0) return std::nullopt;
    resource.buttons.push_back({static_cast<SHORT>(numberAt(bytes, first)), numberAt(bytes, first + 1),
                                static_cast<BYTE>(numberAt(bytes, first + 2)),
                                static_cast<BYTE>(numberAt(bytes, first + 3)), numberAt(bytes, first + 4),
                                numberAt(bytes, first + 6)});
  }
  return resource;
}

}  // namespace pocketshell
