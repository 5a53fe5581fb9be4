#pragma once

#include <string>
#include <string_view>

#include "platform/store/sqlite/database_file.h"

namespace automation {

/// Where a database is, and how this system lets it be used.

/// The full path of `path`, taken from the process's current folder; with the prefix that lets the
/// system pass its old limit of 260 characters where that is needed. `path` itself when the system
/// can't tell or `path` holds a zero character, and so is no file's. Throws std::bad_alloc.
std::wstring fullPathOf(const std::wstring& path);

/// The engine's options: dates in the order of the user's locale.
store::OpenOptions userOptions();

}  // namespace automation
