#include "platform/store/exchange/kept_records.h"

#include <string_view>

namespace store::exchange {

void KeptRecords::keep(const Record& record, const std::string& problem) {
  records_.push_back({record.line, fields_.size(), record.fields.size(), bytes_.size(), problem});
  for (const Field& field : record.fields) {
    fields_.push_back({field.text.size(), field.form});
    bytes_ += field.text;
  }
}

Record KeptRecords::recordAt(std::size_t index) const {
  const KeptRecord& kept = records_[index];
  Record record;
  record.line = kept.line;
  record.problem = kept.problem;
  std::string_view bytes = std::string_view(bytes_).substr(kept.firstByte);
  for (std::size_t number = 0; number < kept.fieldCount; ++number) {
    const KeptField& field = fields_[kept.firstField + number];
    record.fields.push_back({bytes.substr(0, field.length), field.form});
    bytes.remove_prefix(field.length);
  }
  return record;
}

void KeptRecords::clear() {
  records_.clear();
  fields_.clear();
  bytes_.clear();
}

}  // namespace store::exchange
