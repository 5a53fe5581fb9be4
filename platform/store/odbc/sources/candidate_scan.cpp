#include "platform/store/odbc/sources/candidate_scan.h"

#include <algorithm>

#include "platform/store/odbc/sources/key_blocks.h"

namespace store {

namespace {

// Each look at the clock takes as long as the looks at many keys.
constexpr std::size_t kKeysBetweenLooks = 4096;

}  // namespace

Status CandidateScan::readCandidates() {
  bool isWhole = false;
  if (Status status = readFew(&isWhole); !status) return status;
  if (!isWhole) {
    if (Status status = readMany(); !status) return status;
  }
  std::sort(hashes_.begin(), hashes_.end());
  isRead_ = true;
  return {};
}

/// Reads them when they are few. The limit stands outside, where it is no reason for the server to look for
/// the first of them instead of for all of them with all of its processors.
Status CandidateScan::readFew(bool* isWhole) {
  OdbcStatement statement(connection_);
  KeySet block(kind());
  Status status =
      statement.run("WITH quivane_candidates AS MATERIALIZED (" + sql_ +
                    ") SELECT * FROM quivane_candidates LIMIT " + std::to_string(kKeysAtOnce + 1));
  if (status) status = takeKeys(statement, &block);
  if (!status) return status;
  *isWhole = block.count() <= kKeysAtOnce;
  if (*isWhole) add(block);
  return {};
}

/// Reads them block after block. Whoever waits for them is asked between.
Status CandidateScan::readMany() {
  hashes_.clear();
  ReadTransaction transaction(connection_);
  if (Status status = transaction.begin(); !status) return status;
  if (Status status = declareKeys(connection_, sql_); !status) return status;
  Status status;
  const auto isOver = [&](std::chrono::milliseconds /*time*/) {
    KeySet block(kind());
    status = fetchKeys(connection_, kKeysAtOnce, &block);
    add(block);
    return !status || block.count() == 0;
  };
  Status waited = connection_.wait(isOver);
  return waited ? status : waited;
}

void CandidateScan::add(const KeySet& block) {
  for (std::size_t index = 0; index < block.count(); ++index) hashes_.push_back(block.hashAt(index));
}

bool CandidateScan::isCandidate(const KeySet& keys, std::size_t index) const {
  return std::binary_search(hashes_.begin(), hashes_.end(), keys.hashAt(index));
}

Status CandidateScan::passOver(const KeySet& keys, std::size_t first, std::size_t last,
                               Clock::time_point until, std::size_t* next) {
  *next = first;
  if (!isRead_) {
    if (Status status = readCandidates(); !status) return status;
  }
  for (std::size_t count = 1; *next < last; ++*next, ++count) {
    if (isCandidate(keys, *next)) {
      const std::size_t place = *next;
      if (Status status = test_->passOver(keys, place, place + 1, until, next); !status) return status;
      if (*next == place) return {};
      // It is behind the candidate already.
      --*next;
      if (Clock::now() >= until) {
        ++*next;
        return {};
      }
    } else if (count % kKeysBetweenLooks == 0 && Clock::now() >= until) {
      ++*next;
      return {};
    }
  }
  return {};
}

}  // namespace store
