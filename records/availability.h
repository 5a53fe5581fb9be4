#pragma once

#include <array>
#include <cstdint>

#include "records/command_bar.h"
#include "records/view_mode.h"

/// When a command is available: one pure function for each rule, from the facts to the states of the
/// commands that the rule governs.

struct NavigationFacts {
  bool unlocked = false;  ///< the start-up password was given, or none is asked for
  bool databaseOpen = false;
  std::uint32_t currentRecord = 0;
  std::uint32_t recordCount = 0;
  bool newRecordPending = false;
};
/// Next, Previous, First, Last and Number.
std::array<CommandState, 5> navigationStates(const NavigationFacts& facts);

struct FormPageFacts {
  bool unlocked = false;
  bool databaseOpen = false;
  bool recordsetOpen = false;
  ViewMode viewMode = ViewMode::none;
  std::uint32_t pageIndex = 0;
  std::uint32_t pageCount = 0;
};
/// The next and the previous page of the form.
std::array<CommandState, 2> formPageStates(const FormPageFacts& facts);

struct DatabaseFacts {
  bool open = false;
  ViewMode viewMode = ViewMode::none;
  std::uint32_t tableCount = 0;
  std::uint32_t queryCount = 0;
  std::uint32_t fieldCount = 0;
};
/// The menu items that depend on the database and the page.
std::array<CommandState, 24> databaseStates(const DatabaseFacts& facts);

struct RecordFacts {
  bool recordsetOpen = false;
  std::uint32_t recordCount = 0;
};
/// The menu items for a new record, deleting one, and finding text.
std::array<CommandState, 3> recordStates(const RecordFacts& facts);

struct GridFacts {
  std::uint32_t position = 0;
  std::uint32_t recordCount = 0;
};
/// The grid's buttons for the next and the previous record.
std::array<CommandState, 2> gridRecordStates(const GridFacts& facts);

struct ColumnFacts {
  int fieldCount = 0;
  int firstSlidingColumn = 1;
};
/// The grid's buttons for the next and the previous column.
std::array<CommandState, 2> columnStates(const ColumnFacts& facts);

struct NamesFacts {
  int selectedIndex = -1;
  int itemCount = 0;
};
/// The button that deletes a table.
std::array<CommandState, 1> tableStates(const NamesFacts& facts);
/// The buttons for a new query, editing one and deleting one.
std::array<CommandState, 3> queryStates(const NamesFacts& facts, bool databaseOpen);
