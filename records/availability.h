#pragma once

#include <cstdint>

#include "records/command_bar.h"
#include "records/view_mode.h"

/// When a command is available: one row and one pure rule for each, over one set of facts.

/// What the rules go by.
struct CommandFacts {
  bool unlocked = false;      ///< the start-up password was given, or none is asked for
  bool databaseOpen = false;  ///< a file is open
  bool countsAsOpen = false;  ///< and shows as such in the menus, which it need not at the start
  bool recordsetOpen = false;
  ViewMode viewMode = ViewMode::none;
  std::uint32_t tableCount = 0;
  std::uint32_t queryCount = 0;
  std::uint32_t fieldCount = 0;  ///< of the open recordset
  std::uint32_t currentRecord = 0;
  std::uint32_t recordCount = 0;  ///< of the open recordset
  bool newRecordPending = false;
  std::uint32_t formPage = 0;
  std::uint32_t formPageCount = 0;
  std::uint32_t firstSlidingColumn = 1;  ///< the field in the grid's second column
  std::uint32_t columnRoom = 3;          ///< how many columns the grid has room for
  bool recordsChosen = false;            ///< a table or query is in use
  bool tableChosen = false;              ///< in the list of tables
  bool queryChosen = false;
  bool refersElsewhere = false;    ///< the field of the form that has the keyboard refers to other records
  bool cameFromElsewhere = false;  ///< to the record that is shown
  bool hasUndo = false;            ///< there is a change to be taken back
  bool hasRedo = false;            ///< and one to be done again
  bool isArranged = false;         ///< the records have an order or filter of the user's
  bool operator==(const CommandFacts&) const = default;
};

/// Whether a command is available in `menu`, or on a toolbar for PopupMenu::none. One without a rule for that
/// place always is.
bool isAvailable(int command, PopupMenu menu, const CommandFacts& facts);
