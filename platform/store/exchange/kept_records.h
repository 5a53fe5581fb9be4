#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/store/exchange/formats/record_reader.h"

namespace store::exchange {

/// Records of a file that are past, with all that can be told of them.
class KeptRecords {
 public:
  /// `problem` takes the place of the record's own.
  void keep(const Record& record, const std::string& problem);

  std::size_t count() const { return records_.size(); }
  /// The length of all their fields.
  std::size_t byteCount() const { return bytes_.size(); }
  /// Why it can't be taken; empty when it can.
  std::string& problem(std::size_t index) { return records_[index].problem; }
  /// Its fields are valid until anything else is kept.
  Record recordAt(std::size_t index) const;

  void clear();

 private:
  struct KeptField {
    std::size_t length;
    FieldForm form;
  };
  struct KeptRecord {
    std::int64_t line;
    std::size_t firstField;
    std::size_t fieldCount;
    std::size_t firstByte;
    std::string problem;
  };
  std::vector<KeptRecord> records_;
  std::vector<KeptField> fields_;  // of all records
  std::string bytes_;              // of all fields
};

}  // namespace store::exchange
