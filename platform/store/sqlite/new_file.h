#pragma once

#include <string>

#include "platform/store/rows/status.h"

namespace store {

/// Makes an empty file at `path` (UTF-8), so that it is certain who made it: cannotOpen when it is no file's
/// name or none can be made there, fileExists when anything stands there already, or when another program
/// makes something there at the same moment.
Status createNewFile(const std::string& path);

}  // namespace store
