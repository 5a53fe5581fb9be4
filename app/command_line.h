#pragma once

#include "base/string.h"

/// The path that the command line names: the text as it is, without a double quote at its beginning
/// and without one at its end.
String normalisedPath(const String& commandLine);

/// Opens the database of the command line in place of the one that is open, and shows its tables. When
/// that fails the user is told, and no database is open.
void openCommandLineDatabase(const String& path);
