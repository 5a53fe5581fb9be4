#pragma once

#include <span>

/// A popup menu of the menu bar. Which of them there are depends on the page.
enum class PopupMenu { none, file, edit, record, tables, queries };

/// Whether a command is available, and where that shows: in the menu item of `menu` (none for no item)
/// and, with `onToolbar`, in the toolbar button of the same number.
struct CommandState {
  int command;
  PopupMenu menu;
  bool onToolbar;
  bool enabled;
  bool operator==(const CommandState&) const = default;
};

/// What the records and the pages ask of the window's menus and toolbars. A menu, item or button that
/// the present page does not have is passed over.
class CommandBar {
 public:
  virtual ~CommandBar() = default;

  /// Enables or greys. A button that is not available is shown indeterminate, not hidden.
  virtual void apply(std::span<const CommandState> states) = 0;
  /// Makes the menu bar again: its buttons follow the page, the recordset and the number of records.
  virtual void rebuildMenuBar() = 0;
  /// The text of the position box, if the page has one.
  virtual void setPositionText(const wchar_t* text) = 0;
};
