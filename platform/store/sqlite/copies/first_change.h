#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "platform/store/rows/former_states.h"
#include "platform/store/sqlite/connection/change_listener.h"
#include "platform/store/sqlite/connection/sqlite_connection.h"
#include "platform/store/sqlite/copies/copy_folder.h"
#include "platform/store/sqlite/copies/state_copy.h"

namespace store {

/// Keeps the state that a database has before the first change of a session, and nothing while nothing is
/// changed. The copy is made inside the first write transaction, before it changes anything, and has its name
/// before the change is durable: whoever ends this program then, both are whole. To bring it to the disk, to
/// count its records and to throw away older copies is left to a thread.
///
/// A state that can't be kept is no reason to refuse a change; it is said once.
class FirstChange : public FormerStates, private WriteListener {
 public:
  /// Both outlive it.
  FirstChange(SqliteConnection& connection, std::shared_ptr<CopyFolder> folder);
  ~FirstChange() override;
  FirstChange(const FirstChange&) = delete;
  FirstChange& operator=(const FirstChange&) = delete;

  Status keepBeforeDeletion() override;
  Status takeFailure() override;

 private:
  Status writingBegins() override;
  void writingIsComplete(bool hasChanged) override;
  void writingIsOver(bool isDurable) noexcept override;

  Status make();
  Status keepNow();
  Status readVersion(std::int64_t* version);
  void give(Status failure);
  void giveUp(Status failure) noexcept;
  void startUpkeep();
  void keepUp() noexcept;
  void dropUnused() noexcept;

  SqliteConnection& connection_;
  std::shared_ptr<CopyFolder> folder_;
  CopyInMaking copy_;
  SqliteStatement versionStatement_;
  std::int64_t version_ = 0;  // of what others changed, when the copy was made
  std::string kept_;          // the copy, once it has its name
  bool isOver_ = false;       // there was a change, or nothing can be kept

  std::mutex failureMutex_;
  Status failure_;
  std::atomic<bool> isClosing_{false};
  std::thread upkeep_;
};

}  // namespace store
