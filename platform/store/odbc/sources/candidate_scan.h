#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/store/odbc/driver/odbc_connection.h"
#include "platform/store/rows/backend.h"
#include "platform/store/rows/row_scan.h"

namespace store {

/// Lets the server look for the rows that may be wanted, once, and tests these alone.
class CandidateScan : public RowScan {
 public:
  /// `sql` selects the keys of the candidates: whole numbers, or texts for tuples. All but it outlives the
  /// scan.
  CandidateScan(OdbcConnection& connection, RowSource& rows, RowTest& test, std::string sql,
                bool isTupleKeyed)
      : connection_(connection),
        test_(makeFetchingScan(rows, test)),
        sql_(std::move(sql)),
        isTupleKeyed_(isTupleKeyed) {}

  Status passOver(const KeySet& keys, std::size_t first, std::size_t last, Clock::time_point until,
                  std::size_t* next) override;

 private:
  Status readCandidates();
  Status readFew(bool* isWhole);
  Status readMany();
  void add(const KeySet& block);
  KeySet::Kind kind() const { return isTupleKeyed_ ? KeySet::Kind::tuple : KeySet::Kind::rowId; }
  bool isCandidate(const KeySet& keys, std::size_t index) const;

  OdbcConnection& connection_;
  std::unique_ptr<RowScan> test_;
  std::string sql_;
  bool isTupleKeyed_;
  bool isRead_ = false;
  // Of the candidates' keys, in growing order: what else has the hash of one is tested in vain.
  std::vector<std::uint64_t> hashes_;
};

}  // namespace store
