#include "platform/store/rows/row_scan.h"

#include "platform/store/rows/backend.h"

namespace store {
namespace {

class FetchingScan : public RowScan {
 public:
  FetchingScan(RowSource& rows, RowTest& test) : rows_(rows), test_(test) {}

  Status passOver(const KeySet& keys, std::size_t first, std::size_t last, Clock::time_point until,
                  std::size_t* next) override {
    for (*next = first; *next < last; ++*next) {
      Status status = rows_.fetch(keys, *next, &row_);
      const bool isGone = status.code() == ErrorCode::noCurrentRecord;
      if (!status && !isGone) return status;
      if (!isGone && isWanted()) return {};
      if (Clock::now() >= until) {
        ++*next;
        return {};
      }
    }
    return {};
  }

 private:
  bool isWanted() {
    const std::vector<std::size_t>& columns = test_.columns();
    for (std::size_t number = 0; number < columns.size(); ++number) {
      if (test_.isWanted(number, row_.at(columns[number]))) return true;
    }
    return false;
  }

  RowSource& rows_;
  RowTest& test_;
  Row row_;
};

}  // namespace

std::unique_ptr<RowScan> makeFetchingScan(RowSource& rows, RowTest& test) {
  return std::make_unique<FetchingScan>(rows, test);
}

}  // namespace store
