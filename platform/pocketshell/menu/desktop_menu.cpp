#include "platform/pocketshell/menu/desktop_menu.h"

#include <algorithm>
#include <utility>

#include "platform/pocketshell/shell_settings.h"
#include "platform/pocketshell/window/shell_window.h"
#include "platform/pocketshell/zoom/zoom_menu.h"

namespace pocketshell {

namespace {

bool isEntryNumber(UINT command) {
  return command >= HANDHELD_FIRST_ENTRY && command <= HANDHELD_LAST_ENTRY &&
         (command - HANDHELD_FIRST_ENTRY) % HANDHELD_ENTRY_STEP == 0;
}

bool appendSeparator(HMENU menu) {
  return AppendMenuW(menu, MF_SEPARATOR, 0, nullptr) != FALSE;
}

void mark(HMENU menu, int place, HandheldEntryState state) {
  const auto item = static_cast<UINT>(place);
  EnableMenuItem(menu, item,
                 MF_BYPOSITION | static_cast<UINT>(state == HANDHELD_ENTRY_GREY ? MF_GRAYED : MF_ENABLED));
  CheckMenuItem(
      menu, item,
      MF_BYPOSITION | static_cast<UINT>(state == HANDHELD_ENTRY_CHOSEN ? MF_CHECKED : MF_UNCHECKED));
}

void name(HMENU menu, int place, UINT command, const wchar_t* text) {
  ModifyMenuW(menu, static_cast<UINT>(place), MF_BYPOSITION | MF_STRING, command, text);
}

void removeFrom(HMENU menu, int first) {
  while (GetMenuItemCount(menu) > first) DeleteMenu(menu, static_cast<UINT>(first), MF_BYPOSITION);
}

}  // namespace

DesktopMenu::DesktopMenu(HWND window)
    : window_(window), systemItemCount_(GetMenuItemCount(GetSystemMenu(window, FALSE))) {
  setEntries({});
}

bool DesktopMenu::setEntries(std::span<const HandheldMenuEntry> entries) {
  Entries wanted;
  for (const HandheldMenuEntry& entry : entries) {
    if (entry.text && !isEntryNumber(entry.command)) return false;
    wanted.push_back({entry.text ? entry.command : 0, entry.group ? entry.group : L"",
                      entry.text ? entry.text : L"", entry.state, entry.presentText});
  }
  UniqueMenu popup(CreatePopupMenu());
  if (!popup || !append(popup.get(), wanted)) return false;
  if (!replaceSystemPart(wanted)) {
    replaceSystemPart(entries_);
    return false;
  }
  popup_ = std::move(popup);
  entries_ = std::move(wanted);
  return true;
}

bool DesktopMenu::append(HMENU menu, const Entries& entries) {
  std::vector<std::wstring> groups;
  for (const Entry& entry : entries) {
    if (!entry.group.empty()) {
      if (std::find(groups.begin(), groups.end(), entry.group) != groups.end()) continue;
      groups.push_back(entry.group);
      if (!appendGroup(menu, entries, entry.group)) return false;
    } else if (entry.text.empty()) {
      if (!appendSeparator(menu)) return false;
    } else if (!AppendMenuW(menu, MF_STRING, entry.command, entry.text.c_str())) {
      return false;
    }
  }
  return appendZoomMenu(menu);
}

bool DesktopMenu::appendGroup(HMENU menu, const Entries& entries, const std::wstring& group) {
  UniqueMenu submenu(CreatePopupMenu());
  if (!submenu) return false;
  for (const Entry& entry : entries) {
    if (entry.group != group) continue;
    const bool appended = entry.text.empty()
                              ? appendSeparator(submenu.get())
                              : AppendMenuW(submenu.get(), MF_STRING, entry.command, entry.text.c_str());
    if (!appended) return false;
  }
  if (!AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(submenu.get()), group.c_str())) return false;
  // The menu owns it from here on.
  static_cast<void>(submenu.release());
  return true;
}

bool DesktopMenu::replaceSystemPart(const Entries& entries) {
  const HMENU system = GetSystemMenu(window_, FALSE);
  if (!system) return false;
  removeFrom(system, systemItemCount_);
  return appendSeparator(system) && append(system, entries);
}

void DesktopMenu::refresh(HMENU popup) const {
  const int count = GetMenuItemCount(popup);
  for (int place = 0; place < count; ++place) {
    const UINT command = GetMenuItemID(popup, place);
    if (const auto zoom = zoomOfCommand(command)) {
      mark(popup, place, *zoom == readZoomSetting() ? HANDHELD_ENTRY_CHOSEN : HANDHELD_ENTRY_AVAILABLE);
    } else if (const Entry* const entry = find(command)) {
      if (entry->presentText) name(popup, place, command, entry->presentText(command));
      mark(popup, place, stateOf(*entry));
    }
  }
}

bool DesktopMenu::isAvailable(UINT command) const {
  const Entry* const entry = find(command);
  return entry && IsWindowEnabled(window_) && stateOf(*entry) != HANDHELD_ENTRY_GREY;
}

const DesktopMenu::Entry* DesktopMenu::find(UINT command) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [command](const Entry& entry) {
    return !entry.text.empty() && entry.command == command;
  });
  return found != entries_.end() ? &*found : nullptr;
}

HandheldEntryState DesktopMenu::stateOf(const Entry& entry) const {
  return entry.state ? entry.state(entry.command) : HANDHELD_ENTRY_AVAILABLE;
}

}  // namespace pocketshell

using namespace pocketshell;

BOOL HandheldSetDesktopMenu(HWND window, const HandheldMenuEntry* entries, UINT count) {
  const ShellWindow* const shell = ShellWindow::of(window);
  DesktopMenu* const menu = shell ? shell->desktopMenu() : nullptr;
  if (!menu || (count > 0 && !entries)) return FALSE;
  return menu->setEntries({entries, count}) ? TRUE : FALSE;
}
