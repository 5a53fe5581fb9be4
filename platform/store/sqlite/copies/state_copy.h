#pragma once

#include <functional>
#include <sqlite3.h>
#include <string>

#include "platform/store/rows/status.h"
#include "platform/store/sqlite/copies/copy_folder.h"

namespace store {

/// Whether to stop what takes its time.
using IsStopped = std::function<bool()>;

/// How many bytes the copy of what `connection` has open takes, its write-ahead log included.
std::int64_t bytesOfState(sqlite3* connection);

/// Copies what `connection` has open into `target`, an empty file that was made for it: byte by byte from the
/// connection's own file, which is ten times as quick as page by page. The caller sees to it that nothing
/// changes meanwhile, by a write transaction that has changed nothing yet. The copy is whole, has no
/// write-ahead log, and may not be on the disk yet. A database that is damaged is copied as it is.
///
/// Fails with stopped, inputOutput (the disk is full), cannotOpen, outOfMemory; what then stands in `target`
/// is worth nothing.
Status copyState(sqlite3* connection, const std::string& target, const IsStopped& isStopped);

/// A copy while it is made: its file goes with it unless it is finished.
class CopyInMaking {
 public:
  CopyInMaking(CopyFolder& folder, std::string database) : folder_(folder), database_(std::move(database)) {}
  ~CopyInMaking() { discard(); }
  CopyInMaking(const CopyInMaking&) = delete;
  CopyInMaking& operator=(const CopyInMaking&) = delete;

  /// Copies what `connection` has open, in place of what was copied before. As copyState, and as
  /// CopyFolder::begin.
  Status make(sqlite3* connection, const IsStopped& isStopped);
  bool isMade() const { return isMade_; }
  /// Gives it its name, by which it is one of the copies from then on. On failure it is as before.
  Status finish(CopyReason reason, std::string* kept);
  /// As if there had been none.
  void discard() noexcept;

 private:
  CopyFolder& folder_;
  std::string database_;
  std::string unfinished_;
  std::int64_t time_ = 0;
  bool isMade_ = false;
};

}  // namespace store
