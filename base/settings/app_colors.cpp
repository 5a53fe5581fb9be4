#include "base/settings/app_colors.h"

namespace {

constexpr AppColorTable defaultColors() {
  AppColorTable table{};
  for (std::size_t i = 0; i < kAppColorCount; ++i) table[i] = kAppColorDefaults[i].color;
  return table;
}

/// Texts on grounds: what can be typed into and what is read in a list on `field`, all else on `form`.
AppColorTable plainColors(COLORREF form, COLORREF formText, COLORREF field, COLORREF fieldText) {
  AppColorTable table{};
  table[kTablesViewBackground] = table[kQueryViewBackground] = table[kListViewBackground] = field;
  table[kTablesViewText] = table[kQueryViewText] = table[kListViewText] = fieldText;
  table[kFormViewBackground] = table[kFormViewLabelBackground] = table[kFormViewCheckBoxBackground] = form;
  table[kFormViewLabelForeground] = table[kFormViewCheckBoxForeground] = formText;
  table[kFormViewDateTextBackground] = table[kFormViewEditBoxBackground] = field;
  table[kFormViewDateTextForeground] = table[kFormViewEditBoxForeground] = fieldText;
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

AppColorTable colorsOfSet(ColorSet set) noexcept {
  switch (set) {
    case ColorSet::system:
      return plainColors(GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_BTNTEXT), GetSysColor(COLOR_WINDOW),
                         GetSysColor(COLOR_WINDOWTEXT));
    case ColorSet::dark:
      return plainColors(RGB(32, 32, 32), RGB(224, 224, 224), RGB(48, 48, 48), RGB(240, 240, 240));
    case ColorSet::own:
      break;
  }
  return defaultColors();
}

void resetAppColors() noexcept {
  appColors = defaultColors();
}
