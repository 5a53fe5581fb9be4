#include "platform/pocketshell/zoom_menu.h"

#include <array>

#include "platform/pocketshell/owners.h"

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

HMENU addZoomMenu(HWND window) {
  const HMENU system = GetSystemMenu(window, FALSE);
  OwnedMenu menu(CreatePopupMenu());
  if (!system || !menu) return nullptr;
  for (const Entry& entry : kEntries) {
    if (!AppendMenuW(menu.get(), MF_STRING, entry.command, entry.text)) return nullptr;
  }
  if (!AppendMenuW(system, MF_SEPARATOR, 0, nullptr) ||
      !AppendMenuW(system, MF_POPUP, reinterpret_cast<UINT_PTR>(menu.get()), L"&Zoom")) {
    return nullptr;
  }
  return menu.release();
}

void markZoom(HMENU menu, int setting) {
  for (const Entry& entry : kEntries) {
    CheckMenuItem(menu, entry.command, entry.setting == setting ? MF_CHECKED : MF_UNCHECKED);
  }
}

std::optional<int> zoomOfCommand(UINT command) {
  for (const Entry& entry : kEntries) {
    if (entry.command == (command & kCommandMask)) return entry.setting;
  }
  return std::nullopt;
}

}  // namespace pocketshell
