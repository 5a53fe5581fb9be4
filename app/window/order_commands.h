#pragma once

#include <windows.h>

#include <cstdint>

/// The order of the records and which of them are shown, as the user chooses them on the List page.

/// The menu of a column of the grid, at a place of the screen.
void showColumnMenu(std::uint32_t field, POINT where);

/// First asks for which column.
void chooseColumnMenu();
/// Asks for a text that any column may contain.
void filterAllColumns();
/// All records in the order of the file, or of the query.
void clearArrangement();
/// Keeps the statement that has the records so as a query, which the user may change and names.
void keepArrangementAsQuery();
