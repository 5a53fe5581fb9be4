#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// What a menu shows, a line for each item: text and command, "grey" behind those that are; "-" for a
/// separator; "Text >" for a submenu, whose lines follow, indented. Access keys are left out.
std::vector<std::string> menuLines(HMENU menu);

/// The access keys that occur twice in one popup, or that an item lacks, as lines for people.
std::vector<std::string> accessKeyFaults(HMENU popup);
