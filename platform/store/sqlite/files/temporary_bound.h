#pragma once

#include <cstdint>

#include "platform/store/rows/status.h"

namespace store {

/// Bounds, for a scope, by how much the statements of this thread let their temporary files grow: a question
/// that somebody did not think out would otherwise fill the disk. Scopes don't nest.
class TemporaryBound {
 public:
  explicit TemporaryBound(std::int64_t mostBytes);
  ~TemporaryBound();
  TemporaryBound(const TemporaryBound&) = delete;
  TemporaryBound& operator=(const TemporaryBound&) = delete;

  /// What a statement in this scope came to, with the reason in the user's words where it is this bound.
  Status explain(Status status) const;

  /// Asked by the file system before a temporary file grows. Without a scope everything is allowed.
  static bool allowsGrowth(std::int64_t bytes);

 private:
  std::int64_t mostBytes_;
  std::int64_t grown_ = 0;
  bool isReached_ = false;
};

}  // namespace store
