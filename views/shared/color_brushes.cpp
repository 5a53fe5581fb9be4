#include "views/shared/color_brushes.h"

#include <array>

#include "owners/handles.h"

HBRUSH appColorBrush(AppColor color) {
  struct Entry {
    COLORREF color = 0;
    UniqueBrush brush;
  };
  static std::array<Entry, kAppColorCount> entries;
  Entry& entry = entries[color];
  if (!entry.brush || entry.color != appColors[color]) {
    entry.color = appColors[color];
    entry.brush.reset(CreateSolidBrush(entry.color));
  }
  return entry.brush.get();
}
