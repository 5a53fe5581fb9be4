#include "base/app_colors.h"

namespace {

constexpr AppColorTable defaultColors() {
  AppColorTable table{};
  for (std::size_t i = 0; i < kAppColorCount; ++i) table[i] = kAppColorDefaults[i].color;
  return table;
}

constexpr std::array<COLORREF, kCustomColorCount> whiteCustomColors() {
  std::array<COLORREF, kCustomColorCount> colors{};
  for (COLORREF& color : colors) color = RGB(255, 255, 255);
  return colors;
}

}  // namespace

constinit AppColorTable appColors = defaultColors();

constinit std::array<COLORREF, kCustomColorCount> customColors = whiteCustomColors();

void resetAppColors() noexcept {
  appColors = defaultColors();
}
