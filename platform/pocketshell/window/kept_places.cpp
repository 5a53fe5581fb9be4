#include "platform/pocketshell/window/kept_places.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "platform/pocketshell/shell_settings.h"

namespace pocketshell {

namespace {

/// The latest is the first.
constexpr std::size_t kKeptCount = 4;

struct Kept {
  DWORD arrangement = 0;  // 0 for none
  PackedPlace place;

  bool operator==(const Kept& other) const {
    return arrangement == other.arrangement && place.corner == other.place.corner &&
           place.inside == other.place.inside;
  }
};

std::wstring valueName(std::size_t index, const wchar_t* what) {
  return L"Place" + std::to_wstring(index + 1) + what;
}

DWORD readArrangement(std::size_t index) {
  return readShellNumber(valueName(index, L"Monitors").c_str());
}

Kept readKept(std::size_t index) {
  return {readArrangement(index),
          {readShellNumber(valueName(index, L"Corner").c_str()),
           readShellNumber(valueName(index, L"Size").c_str())}};
}

/// What is torn in the middle is a place all the same, and is brought onto a monitor like any other.
void writeKept(std::size_t index, const Kept& kept) {
  writeShellNumber(valueName(index, L"Monitors").c_str(), kept.arrangement);
  writeShellNumber(valueName(index, L"Corner").c_str(), kept.place.corner);
  writeShellNumber(valueName(index, L"Size").c_str(), kept.place.inside);
}

BOOL CALLBACK addMonitor(HMONITOR, HDC, LPRECT place, LPARAM list) {
  reinterpret_cast<std::vector<RECT>*>(list)->push_back(*place);
  return TRUE;
}

void mix(DWORD& number, LONG figure) {
  constexpr DWORD kPrime = 16777619;
  for (int shift = 0; shift < 32; shift += 8) {
    number ^= (static_cast<DWORD>(figure) >> shift) & 0xFF;
    number *= kPrime;
  }
}

}  // namespace

DWORD presentArrangement() {
  std::vector<RECT> monitors;
  EnumDisplayMonitors(nullptr, nullptr, addMonitor, reinterpret_cast<LPARAM>(&monitors));
  std::sort(monitors.begin(), monitors.end(), [](const RECT& one, const RECT& other) {
    return one.left != other.left ? one.left < other.left : one.top < other.top;
  });
  DWORD number = 2166136261;
  for (const RECT& monitor : monitors) {
    for (const LONG figure : {monitor.left, monitor.top, monitor.right, monitor.bottom}) mix(number, figure);
  }
  return number != 0 ? number : 1;
}

std::optional<FramePlace> readKeptPlace(DWORD arrangement) {
  for (std::size_t index = 0; index < kKeptCount; ++index) {
    if (readArrangement(index) == arrangement) return unpackFramePlace(readKept(index).place);
  }
  return std::nullopt;
}

void writeKeptPlace(DWORD arrangement, const FramePlace& place) {
  Kept moved = {arrangement, packFramePlace(place)};
  for (std::size_t index = 0; index < kKeptCount; ++index) {
    const Kept former = readKept(index);
    if (!(former == moved)) writeKept(index, moved);
    // Those behind the place where it was stay where they are.
    if (former.arrangement == arrangement || former.arrangement == 0) return;
    moved = former;
  }
}

}  // namespace pocketshell
