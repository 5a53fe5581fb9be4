#pragma once

namespace bench {

/// The journal mode in which a commit of SQLite at synchronous=EXTRA survives a loss of power on this
/// system, as the engine promises of every change.
const char* durableJournalMode();

}  // namespace bench
