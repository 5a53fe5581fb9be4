#pragma once

#include "base/string.h"

/// Records between the open database and other files, as the user starts it. What he has typed on the form is
/// stored first. Everything is told.

/// The records in use go into a file that the user chooses.
void exportToChosenFile();
/// A file that the user chooses goes into a table.
void importChosenFile();
/// The same with this file. Without an open database the user is told to open one.
void importFile(const String& path);

/// The row that is chosen in the grid goes to the clipboard.
void copyChosenRow();
/// The text of the clipboard goes into a table, as a file would.
void importPastedText();

/// Whether a file is one to be imported, by the ending of its name.
bool isImportable(const String& path);
