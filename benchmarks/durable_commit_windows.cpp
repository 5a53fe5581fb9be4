#include "benchmarks/durable_commit.h"

namespace bench {

const char* durableJournalMode() {
  // There is no syncing a folder: a deleted journal may come back and undo the commit. A truncated one is
  // flushed.
  return "PRAGMA journal_mode=TRUNCATE";
}

}  // namespace bench
