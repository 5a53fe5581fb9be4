// The bytes are a file of JSON.
#include <memory>
#include <vector>

#include "platform/store/exchange/formats/json_reader.h"
#include "platform/store/exchange/formats/json_text.h"
#include "platform/store/exchange/formats/value_reading.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

namespace exchange = store::exchange;

/// Every text that came out of JSON goes in again.
void requireComesBack(const std::string& text) {
  std::string json;
  if (!exchange::appendJsonText(text, &json)) return;
  const std::string file = "{\"a\":" + json + "}";
  exchange::MemorySource source(file);
  std::unique_ptr<exchange::JsonReader> reader;
  bool hasRecord = false;
  fuzz::require(exchange::JsonReader::open(source, exchange::Encoding::utf8, &reader) &&
                    reader->next(&hasRecord) && hasRecord && reader->record().problem.empty(),
                "what was written can be read");
  fuzz::require(reader->record().fields.at(0).text == text, "a text is read again");
}

}  // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t length) {
  exchange::MemorySource source(fuzz::textOf(data, length));
  std::unique_ptr<exchange::JsonReader> reader;
  if (!exchange::JsonReader::open(source, exchange::Encoding::utf8, &reader)) return 0;
  std::size_t count = 0;
  for (bool hasRecord = true;;) {
    fuzz::require(static_cast<bool>(reader->next(&hasRecord)), "what can be read is read to its end");
    if (!hasRecord) return 0;
    fuzz::require(++count <= length + 1, "no record is made of nothing");
    if (!reader->record().problem.empty()) continue;
    fuzz::require(reader->record().fields.size() == reader->names().size(), "each name has a field");
    for (const exchange::Field& field : reader->record().fields) {
      if (field.form == exchange::FieldForm::string) requireComesBack(std::string(field.text));
      for (const auto kind : {exchange::ValueKind::any, exchange::ValueKind::real, exchange::ValueKind::date,
                              exchange::ValueKind::bytes, exchange::ValueKind::numericText}) {
        std::string scratch;
        store::Cell cell;
        exchange::readValue(field, kind, &scratch, &cell);
      }
    }
  }
}
