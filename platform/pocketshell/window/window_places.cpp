#include "platform/pocketshell/window/window_places.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>

#include "platform/pocketshell/zoom/present_zoom.h"

namespace pocketshell {

namespace {

/// Not in a property of each window, for which Wine asks its server each time.
std::unordered_map<HWND, Place>& places() {
  static std::unordered_map<HWND, Place> all;
  return all;
}

/// The number of a window that is gone comes again only after 65,535 others in its place.
void forgetThoseGone() {
  constexpr std::size_t kLeastCount = 256;
  static std::size_t count = kLeastCount;
  if (places().size() < count) return;
  std::erase_if(places(), [](const auto& each) { return !IsWindow(each.first); });
  count = std::max(kLeastCount, 2 * places().size());
}

}  // namespace

bool isChild(HWND window) {
  return (GetWindowLongPtrW(window, GWL_STYLE) & WS_CHILD) != 0;
}

void rememberPlace(HWND child, const Place& place) {
  forgetThoseGone();
  places()[child] = place;
}

std::optional<Place> placeOf(HWND child) {
  const auto found = places().find(child);
  return found == places().end() ? std::nullopt : std::optional(found->second);
}

Place presentPlace(HWND child) {
  if (const auto told = placeOf(child)) return *told;
  RECT monitor{};
  GetWindowRect(child, &monitor);
  MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&monitor), 2);
  const RECT edges = fromMonitor(monitor, presentZoom());
  return {static_cast<int>(edges.left), static_cast<int>(edges.top),
          static_cast<int>(edges.right - edges.left), static_cast<int>(edges.bottom - edges.top)};
}

bool applyPlace(HWND child, HWND after, const Place& place, UINT flags) {
  const RECT edges = toMonitor(place.rectangle(), presentZoom());
  return SetWindowPos(child, after, static_cast<int>(edges.left), static_cast<int>(edges.top),
                      static_cast<int>(edges.right - edges.left), static_cast<int>(edges.bottom - edges.top),
                      flags) != FALSE;
}

}  // namespace pocketshell
