#include "platform/store/odbc/sources/candidate_scan.h"

#include "platform/store/odbc/driver/answer.h"

namespace store {

namespace {

// Each look at the clock takes as long as the looks at many keys.
constexpr std::size_t kKeysBetweenLooks = 4096;

}  // namespace

Status CandidateScan::readCandidates() {
  OdbcStatement statement(connection_);
  if (Status status = statement.run(sql_); !status) return status;
  if (isTupleKeyed_) {
    Answer answer;
    if (Status status = takeRows(statement, &answer); !status) return status;
    for (const AnswerRow& row : answer) {
      std::vector<Value> values;
      for (const std::optional<std::string>& text : row) values.emplace_back(text.value_or(""));
      tuples_.insert(bookmarkOf(values));
    }
  } else {
    std::vector<std::int64_t> numbers;
    if (Status status = statement.readIntegers(&numbers); !status) return status;
    numbers_.insert(numbers.begin(), numbers.end());
  }
  isRead_ = true;
  return {};
}

bool CandidateScan::isCandidate(const KeySet& keys, std::size_t index) const {
  return isTupleKeyed_ ? tuples_.contains(bookmarkOf(keys.keyAt(index)))
                       : numbers_.contains(keys.rowIdAt(index));
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
