#pragma once

#include <memory>
#include <string>

#include "platform/store/rows/backend.h"
#include "platform/store/sqlite/connection/open_options.h"

namespace store {

/// Opens what `path` (UTF-8) names: the database in a file (openDatabase), or, where the file is a file DSN,
/// the server's database that it links to (openServerDatabase). Such a link is only read. passwordWanted when
/// the server wants a password that neither the link nor `options` have, or does not take theirs.
Status openPath(const std::string& path, const OpenOptions& options, std::unique_ptr<Backend>* backend);

}  // namespace store
