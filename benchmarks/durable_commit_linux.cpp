#include "benchmarks/durable_commit.h"

namespace bench {

const char* durableJournalMode() {
  // EXTRA also syncs the folder from which the journal is deleted.
  return "PRAGMA journal_mode=DELETE";
}

}  // namespace bench
