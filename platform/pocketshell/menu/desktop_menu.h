#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

#include "owners/handles.h"
#include "platform/pocketshell/desktop_entries.h"

namespace pocketshell {

/// The desktop menu of one window: its entries, the popup that the button opens, and the same entries in the
/// window's system menu.
class DesktopMenu {
 public:
  /// With the shell's own entries alone. `window` outlives it.
  explicit DesktopMenu(HWND window);

  /// As HandheldSetDesktopMenu.
  bool setEntries(std::span<const HandheldMenuEntry> entries);

  /// Null when it could not be made. Valid until the entries are set anew.
  HMENU popup() const { return popup_.get(); }

  /// Greys, marks and names the items of a popup that is about to open, as far as they are entries.
  void refresh(HMENU popup) const;

  /// Whether a command is that of an entry, and whether it can be given now.
  bool has(UINT command) const { return find(command) != nullptr; }
  bool isAvailable(UINT command) const;

 private:
  struct Entry {
    UINT command = 0;
    std::wstring group;
    std::wstring text;  // empty for a separator
    HandheldEntryState (*state)(UINT command) = nullptr;
    const wchar_t* (*presentText)(UINT command) = nullptr;
  };
  using Entries = std::vector<Entry>;

  static bool append(HMENU menu, const Entries& entries);
  static bool appendGroup(HMENU menu, const Entries& entries, const std::wstring& group);
  const Entry* find(UINT command) const;
  HandheldEntryState stateOf(const Entry& entry) const;
  bool replaceSystemPart(const Entries& entries);

  HWND window_;
  Entries entries_;
  UniqueMenu popup_;
  int systemItemCount_;  // what the system menu had before
};

}  // namespace pocketshell
