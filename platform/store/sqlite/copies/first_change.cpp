#include "platform/store/sqlite/copies/first_change.h"

#include <chrono>
#include <new>
#include <utility>

#include "platform/store/sqlite/copies/record_count.h"
#include "platform/store/sqlite/copies/upkeep.h"
#include "platform/store/sqlite/files/durable_file.h"

namespace store {

FirstChange::FirstChange(SqliteConnection& connection, std::shared_ptr<CopyFolder> folder)
    : connection_(connection), folder_(std::move(folder)), copy_(*folder_, connection.path()) {
  connection_.setWriteListener(this);
}

FirstChange::~FirstChange() {
  connection_.setWriteListener(nullptr);
  isClosing_ = true;
  if (upkeep_.joinable()) upkeep_.join();
  if (!isOver_) dropUnused();
}

/// A copy that no change has followed.
void FirstChange::dropUnused() noexcept {
  copy_.discard();
  if (!kept_.empty()) removeFile(kept_);
  kept_.clear();
}

Status FirstChange::writingBegins() {
  if (isOver_) return {};
  Status status;
  try {
    status = make();
  } catch (const std::bad_alloc&) {
    status = {ErrorCode::outOfMemory, "Out of memory."};
  }
  if (status || status.code() == ErrorCode::stopped) return status;
  giveUp(std::move(status));
  return {};
}

/// A copy that an earlier transaction was made for, which was undone, still is what it is to be unless
/// another program has written since.
Status FirstChange::make() {
  std::int64_t version = 0;
  if (Status status = readVersion(&version); !status) return status;
  if ((copy_.isMade() || !kept_.empty()) && version == version_) return {};
  dropUnused();
  const auto end = std::chrono::steady_clock::now() + folder_->mostWait();
  bool isLate = false;
  Status status = copy_.make(connection_.handle(), [&] {
    isLate = std::chrono::steady_clock::now() >= end;
    return isLate || connection_.watch().isToStop();
  });
  if (isLate) return {ErrorCode::inputOutput, "It takes longer than five seconds."};
  if (status) version_ = version;
  return status;
}

Status FirstChange::readVersion(std::int64_t* version) {
  int result = prepareKept(connection_.handle(), versionStatement_, "PRAGMA data_version");
  if (result != SQLITE_OK) return statusOf(connection_.handle(), result);
  const StatementRun run(versionStatement_.get());
  result = sqlite3_step(versionStatement_.get());
  if (result != SQLITE_ROW) return statusOf(connection_.handle(), result);
  *version = sqlite3_column_int64(versionStatement_.get(), 0);
  return {};
}

void FirstChange::writingIsComplete(bool hasChanged) {
  if (isOver_ || !hasChanged || !copy_.isMade()) return;
  Status status;
  try {
    status = copy_.finish(CopyReason::change, &kept_);
  } catch (const std::bad_alloc&) {
    status = {ErrorCode::outOfMemory, "Out of memory."};
  }
  if (!status) giveUp(std::move(status));
}

void FirstChange::writingIsOver(bool isDurable) noexcept {
  if (isOver_ || !isDurable || kept_.empty()) return;
  isOver_ = true;
  startUpkeep();
}

void FirstChange::startUpkeep() {
  try {
    upkeep_ = std::thread([this] { keepUp(); });
  } catch (...) {
    // Without a thread the copy reaches the disk as every file does, and older ones go another time.
  }
}

/// On a thread of its own.
void FirstChange::keepUp() noexcept {
  try {
    Status status = bringIn(*folder_, connection_.path(), kept_, {}, [this] { return isClosing_.load(); });
    if (!status) give(std::move(status));
  } catch (...) {
    give({ErrorCode::outOfMemory, "Out of memory."});
  }
}

void FirstChange::giveUp(Status failure) noexcept {
  isOver_ = true;
  dropUnused();
  try {
    const bool isTold =
        failure.code() == ErrorCode::tooLarge && !folder_->isFirstTooLarge(connection_.path());
    if (!isTold) give(std::move(failure));
  } catch (...) {
    give({ErrorCode::outOfMemory, "Out of memory."});
  }
}

void FirstChange::give(Status failure) {
  const std::lock_guard<std::mutex> lock(failureMutex_);
  failure_ = std::move(failure);
}

Status FirstChange::takeFailure() {
  const std::lock_guard<std::mutex> lock(failureMutex_);
  return std::exchange(failure_, Status());
}

Status FirstChange::keepBeforeDeletion() {
  const ConnectionGuard::Use use(connection_.guard());
  // A deletion that is the first change needs no second copy.
  const bool wasOver = std::exchange(isOver_, true);
  Status status;
  try {
    status = keepNow();
  } catch (const std::bad_alloc&) {
    status = {ErrorCode::outOfMemory, "Out of memory."};
  }
  if (status && !wasOver) dropUnused();
  if (!status) isOver_ = wasOver;
  return status;
}

Status FirstChange::keepNow() {
  std::string kept;
  {
    SqliteConnection::WriteTransaction transaction(connection_);
    if (Status status = transaction.begin(); !status) return status;
    CopyInMaking copy(*folder_, connection_.path());
    Status status = copy.make(connection_.handle(), [this] { return connection_.watch().isToStop(); });
    if (status) status = copy.finish(CopyReason::tableDeletion, &kept);
    if (!status) return status;
  }
  return bringIn(*folder_, connection_.path(), kept, {}, untilTimeIsUp());
}

}  // namespace store
