#pragma once

#include <string>
#include <vector>

namespace store {

/// What this program has sent to its files, in that order, as long as it lives: one at a time. "write",
/// "cut", "flush" and "remove", a blank and the full path; a folder that was flushed ends in "/". Writes to a
/// file in succession count once.
class DiskLog {
 public:
  DiskLog();
  ~DiskLog();
  DiskLog(const DiskLog&) = delete;
  DiskLog& operator=(const DiskLog&) = delete;

  std::vector<std::string> entries() const;
};

}  // namespace store
