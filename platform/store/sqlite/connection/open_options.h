#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/store/rows/backend.h"
#include "platform/store/rows/case_folding.h"
#include "platform/store/sql/local_date.h"

namespace store {

class CopyFolder;

/// How a database is opened.
struct OpenOptions {
  /// How long to wait, in milliseconds, for a lock that another program holds.
  int lockWait = 5000;
  DateOrder dateOrder = DateOrder::monthDayYear;
  /// How much of the file is kept in memory at most.
  int pageCacheKibibytes = 65536;
  /// What one SELECT may put into temporary files. More is refused with tooLarge.
  std::int64_t mostTemporaryBytes = std::int64_t{1} << 30;
  /// Whom to ask from the opening on, as Backend::askWhileBusy() does.
  BusyQuestion question = nullptr;
  /// Which letters count as one in quivane_fold and quivane_contains (text_functions.h). Asked when a
  /// statement first uses one of them; what it gives outlives the database.
  const CaseFolding& (*folding)() = asciiCapitals;
  /// Never written to, whatever the system would let do.
  bool isReadOnly = false;
  /// Of the user of a server, for a link that has none; a file has no password.
  std::optional<std::string> password = std::nullopt;
  /// Where the state before the first change is kept; null keeps none.
  std::shared_ptr<CopyFolder> copies = nullptr;
};

}  // namespace store
