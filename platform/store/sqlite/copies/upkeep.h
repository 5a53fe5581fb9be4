#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/store/rows/status.h"
#include "platform/store/sqlite/copies/copy_folder.h"

namespace store {

/// What is done with a copy once it has its name: it is brought to the disk, so that it survives the loss of
/// power; its records are counted, unless that `isStopped`, and the name says how many; it is marked as not
/// to be written; and copies that are kept no longer go, but never one of `spared`. One that can't be brought
/// to the disk is removed, and no other one either: inputOutput.
Status bringIn(CopyFolder& folder, const std::string& database, const std::string& copy,
               const std::vector<std::string>& spared, const std::function<bool()>& isStopped);

}  // namespace store
