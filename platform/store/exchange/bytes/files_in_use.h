#pragma once

#include <string>
#include <vector>

#include "platform/store/rows/status.h"

namespace store::exchange {

/// Fails with fileExists when `path` names one of the files in use, by whatever name, or one of those that
/// SQLite keeps beside a database of such a name (its journal, its write-ahead log), also when there is none
/// at the moment: what stood there would be taken for a part of the database. With cannotOpen when the system
/// doesn't tell whether it does. All paths are UTF-8.
Status checkNotInUse(const std::string& path, const std::vector<std::string>& inUse);

}  // namespace store::exchange
