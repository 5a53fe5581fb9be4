#pragma once

#include "base/string.h"

/// The path that the command line names: the text as it is, without a double quote at its beginning
/// and without one at its end.
String normalisedPath(const String& commandLine);

/// The path from the root on: the current folder, from which a shorter one starts, is another one for each
/// copy of the program and for the next start, which restores the session. The path itself when the system
/// can't tell.
String fullPath(const String& path);

/// Keeps the path that the command line names until start-up is over.
void keepCommandLinePath(const String& path);
/// Start-up is over: has the database of the command line opened as openDatabaseLater does.
void openKeptDatabaseLater();

/// Has the database opened when the message that is being answered has been, in place of one that waits
/// already. An empty path is none.
void openDatabaseLater(const String& path);

/// Opens the database that waits, if one does, in place of the one that is open, and shows its tables.
/// When that fails the user is told, and no database is open; the page stays then. A file of records is
/// offered for import into the one that is open.
void openWaitingDatabase();
