#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/store/odbc/driver/odbc_connection.h"
#include "platform/store/rows/status.h"

namespace store {

/// Whether other programs have changed a server's database, by what the server counts of its tables: no row
/// is read. It counts a second or so after a change, and nothing where it is told not to (track_counts).
class ChangeLook {
 public:
  static constexpr std::chrono::milliseconds kBetweenLooks{2000};

  /// `connection` outlives it.
  explicit ChangeLook(OdbcConnection& connection, std::chrono::milliseconds betweenLooks = kBetweenLooks)
      : connection_(connection), betweenLooks_(betweenLooks) {}

  /// As Backend::countOthersChanges(). What the server counts of this connection's own changes may lag behind
  /// them and make no difference; what a trigger changes along with them does. Asks the server at most each
  /// some seconds, and only if there is a conversation; one that turns out to be lost is told of by what
  /// needs it next.
  Status count(std::int64_t* count);

 private:
  using Clock = std::chrono::steady_clock;

  struct Seen {
    std::string tables;  // which there are
    std::int64_t changes = 0;
  };

  Status look(Seen* seen);

  OdbcConnection& connection_;
  std::chrono::milliseconds betweenLooks_;
  std::optional<Clock::time_point> lookedAt_;
  std::optional<Seen> seen_;
  std::int64_t ownRows_ = 0;    // as the connection counted them at the last look
  std::int64_t uncounted_ = 0;  // of them, those that the server may not have counted yet
  std::uint64_t definitions_ = 0;
  Clock::time_point changedAt_;
  std::int64_t count_ = 0;
};

}  // namespace store
