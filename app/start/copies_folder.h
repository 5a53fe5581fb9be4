#pragma once

#include "base/string.h"

/// Where former states of databases are kept: among the user's own data, or beside a program that leaves
/// nothing elsewhere. Empty where the system has no place for the user's data.
String copiesFolder(bool besideProgram);
