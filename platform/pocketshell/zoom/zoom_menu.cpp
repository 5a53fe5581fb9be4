#include "platform/pocketshell/zoom/zoom_menu.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "owners/handles.h"

namespace pocketshell {

namespace {

struct Entry {
  UINT command;
  int setting;
  const wchar_t* text;
};

// System commands of programs lie below 0xF000 and leave the four low bits to the system.
constexpr std::array kEntries = {
    Entry{0xE010, 100, L"\u00D7&1"}, Entry{0xE020, 150, L"\u00D71.&5"}, Entry{0xE030, 200, L"\u00D7&2"},
    Entry{0xE040, 300, L"\u00D7&3"}, Entry{0xE050, 400, L"\u00D7&4"},   Entry{0xE060, 0, L"By the &monitor"},
};
constexpr UINT kCommandMask = 0xFFF0;

}  // namespace

bool appendZoomMenu(HMENU menu) {
  UniqueMenu zooms(CreatePopupMenu());
  if (!zooms) return false;
  for (const Entry& entry : kEntries) {
    if (!AppendMenuW(zooms.get(), MF_STRING, entry.command, entry.text)) return false;
  }
  if (!AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(zooms.get()), L"&Zoom")) return false;
  // The menu owns it from here on.
  static_cast<void>(zooms.release());
  return true;
}

std::optional<int> zoomOfCommand(UINT command) {
  for (const Entry& entry : kEntries) {
    if (entry.command == (command & kCommandMask)) return entry.setting;
  }
  return std::nullopt;
}

std::optional<UINT> zoomCommandOfKey(WPARAM key, int zoom) {
  // From the smallest to the largest; the monitor's own is the last entry.
  const Entry* const first = kEntries.begin();
  const Entry* const automatic = std::prev(kEntries.end());
  switch (key) {
    case VK_ADD:
    case VK_OEM_PLUS: {
      const Entry* const next =
          std::find_if(first, automatic, [=](const Entry& each) { return each.setting > zoom; });
      return next == automatic ? std::nullopt : std::optional(next->command);
    }
    case VK_SUBTRACT:
    case VK_OEM_MINUS: {
      const Entry* const present =
          std::find_if(first, automatic, [=](const Entry& each) { return each.setting >= zoom; });
      return present == first ? std::nullopt : std::optional(std::prev(present)->command);
    }
    case '0':
    case VK_NUMPAD0:
      return automatic->command;
    default:
      return std::nullopt;
  }
}

}  // namespace pocketshell
