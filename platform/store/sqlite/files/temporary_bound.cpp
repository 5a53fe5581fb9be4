#include "platform/store/sqlite/files/temporary_bound.h"

#include <string>

namespace store {

namespace {

constexpr std::int64_t kMebibyte = 1 << 20;

thread_local TemporaryBound* t_bound = nullptr;

}  // namespace

TemporaryBound::TemporaryBound(std::int64_t mostBytes) : mostBytes_(mostBytes) {
  t_bound = this;
}

TemporaryBound::~TemporaryBound() {
  t_bound = nullptr;
}

Status TemporaryBound::explain(Status status) const {
  if (status || !isReached_) return status;
  return {ErrorCode::tooLarge, "The statement was stopped: its result takes more than " +
                                   std::to_string(mostBytes_ / kMebibyte) + " MB of temporary files."};
}

bool TemporaryBound::allowsGrowth(std::int64_t bytes) {
  if (t_bound == nullptr) return true;
  t_bound->grown_ += bytes;
  if (t_bound->grown_ > t_bound->mostBytes_) t_bound->isReached_ = true;
  return !t_bound->isReached_;
}

}  // namespace store
