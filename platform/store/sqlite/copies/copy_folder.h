#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/store/rows/status.h"
#include "platform/store/sqlite/copies/copy_name.h"
#include "platform/store/sqlite/copies/retention.h"

namespace store {

/// Where copies are kept, and what the system tells of it.
struct CopySettings {
  std::string folder;  ///< UTF-8; made when the first copy is
  /// Milliseconds since 1970.
  std::function<std::int64_t()> now = nullptr;
  LocalDay dayOf = systemLocalDay;
  /// How many bytes are free where the folder is; empty when the system does not tell.
  std::function<std::optional<std::int64_t>()> freeBytes = nullptr;
  /// No change waits longer for the copy of what was before it.
  std::chrono::milliseconds mostWait{5000};
};

/// A copy as its folder shows it.
struct KeptCopy {
  std::string path;
  CopyName name;
  std::int64_t bytes = 0;
};

/// The folder of the copies of all databases: for each path a folder of its own, which says in a file what
/// the path is, and in it the copies, which say in their names what they are. Nothing else tells what there
/// is, so nothing can be wrong: what somebody takes out or puts in has gone or is there. A database is known
/// by its path alone: the copies of one that was moved stand under its former path. One that lies beside the
/// folder of the copies, or below there, is known by the way from there, so that all can move together, as
/// with a program on a stick.
///
/// Other programs use the same folder at the same time. All paths are UTF-8. std::bad_alloc passes through.
class CopyFolder {
 public:
  /// What is left out of the settings is the system's.
  explicit CopyFolder(CopySettings settings);

  /// All copies together take at most a tenth of what would be free without them, and never more than this.
  static constexpr std::int64_t kMostBytes = std::int64_t{2} << 30;

  const std::string& path() const { return settings_.folder; }
  std::chrono::milliseconds mostWait() const { return settings_.mostWait; }

  /// The paths of the databases that have copies, the one with the newest copy first.
  std::vector<std::string> databases() const;
  /// The copies of one database, newest first; the paths of those that are there.
  std::vector<KeptCopy> copiesOf(const std::string& database) const;
  /// Whether the file is one of the copies.
  bool isCopy(const std::string& path) const;

  /// Makes an empty file, and the folder for it, that is to become a copy of `bytes` bytes. Fails with
  /// tooLarge when that is more than all copies may take, and with cannotOpen when none can be made.
  Status begin(const std::string& database, std::int64_t bytes, std::string* unfinished, std::int64_t* time);
  /// Gives the whole copy its name, which becomes `*kept`. It may not be on the disk yet.
  Status finish(const std::string& unfinished, const CopyName& name, std::string* kept);

  /// Whether it is news that the database is too large: true once, until a copy of it was kept.
  bool isFirstTooLarge(const std::string& database);

  /// Throws away what is kept no longer (retention.h), and of the rest what takes more room than there is:
  /// the oldest first, the last one of a database only when no other has two. `spared` stay in any case. Also
  /// what was left unfinished more than an hour ago.
  void prune(const std::string& database, const std::vector<std::string>& spared);

 private:
  struct History;

  std::string keyOf(const std::string& database) const;
  std::string pathOfKey(const std::string& key) const;
  std::string folderOf(const std::string& database) const;
  std::vector<History> histories() const;
  static std::int64_t bytesOf(const std::vector<History>& histories);
  std::int64_t allowedBytes(std::int64_t taken) const;
  void removeUnfinished(const std::string& folder) const;

  CopySettings settings_;
  std::string home_;  // the folder in which that of the copies is
};

}  // namespace store
