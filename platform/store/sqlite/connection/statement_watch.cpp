#include "platform/store/sqlite/connection/statement_watch.h"

namespace store {

namespace {

// Often enough that nobody waits for the answer, and seldom enough to cost nothing.
constexpr int kStepsBetween = 1000;

}  // namespace

StatementWatch::StatementWatch(sqlite3* connection) : connection_(connection) {
  sqlite3_progress_handler(connection_, kStepsBetween, &StatementWatch::onProgress, this);
}

StatementWatch::~StatementWatch() {
  sqlite3_progress_handler(connection_, 0, nullptr, nullptr);
}

int StatementWatch::onProgress(void* self) {
  const auto* watch = static_cast<StatementWatch*>(self);
  if (watch->work_) watch->work_();
  if (watch->end_ != std::chrono::steady_clock::time_point::max() &&
      std::chrono::steady_clock::now() >= watch->end_) {
    return 1;
  }
  return watch->asked_ > 0 && watch->question_ && watch->question_(Busy::working) ? 1 : 0;
}

}  // namespace store
