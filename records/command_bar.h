#pragma once

struct CommandFacts;

/// A popup menu of the menu bar, of which there are those that the page has, or the desktop menu.
enum class PopupMenu { none, file, edit, record, tables, queries, desktop };

/// What the Document asks of the window's menus and toolbars.
class CommandBar {
 public:
  virtual ~CommandBar() = default;

  /// Enables or greys every item and button by its rule (availability.h), now and in bars that are made
  /// later. A button that is not available is shown indeterminate, not hidden.
  virtual void showCommands(const CommandFacts& facts) = 0;
  /// Lets the menu bar's buttons follow the page, the recordset and the number of records. The items of a bar
  /// that is made for that are to be enabled or greyed again.
  virtual void refreshMenuBar() = 0;
  /// The text of the position box, if the page has one.
  virtual void setPositionText(const wchar_t* text) = 0;
  /// What is shown when the mouse rests on the position box, in lines; nothing with the empty text.
  virtual void setPositionTip(const wchar_t* text) = 0;
};
