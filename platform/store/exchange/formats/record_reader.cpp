#include "platform/store/exchange/formats/record_reader.h"

namespace store::exchange {

Status tooLongRecord(std::int64_t line, std::size_t mostBytes) {
  return {ErrorCode::conversion, "Line " + std::to_string(line) + ": the record is longer than " +
                                     std::to_string(mostBytes) +
                                     " bytes. Is a quote or a bracket not closed?"};
}

}  // namespace store::exchange
