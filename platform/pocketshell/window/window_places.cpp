#include "platform/pocketshell/window/window_places.h"

#include "platform/pocketshell/zoom/present_zoom.h"

namespace pocketshell {

namespace {

constexpr wchar_t kProperty[] = L"Pocket Shell Place";

}  // namespace

bool isChild(HWND window) {
  return (GetWindowLongPtrW(window, GWL_STYLE) & WS_CHILD) != 0;
}

void rememberPlace(HWND child, const Place& place) {
  SetPropW(child, kProperty, reinterpret_cast<HANDLE>(packPlace(place)));
}

std::optional<Place> placeOf(HWND child) {
  return unpackPlace(reinterpret_cast<std::uint64_t>(GetPropW(child, kProperty)));
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
