#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/store/exchange/bytes/encoding.h"
#include "platform/store/exchange/formats/record_reader.h"

namespace store::exchange {

/// Reads an array of objects, or objects one after the other (one a line as a rule): each is a record, its
/// members are the fields. A member that is an object or an array is a text, its JSON, but for three that say
/// what JSON has no way to say: {"hex": "..."} is bytes, {"texthex": "..."} the bytes of a text, {"real":
/// "inf"} and {"real": "-inf"} are infinity. Keeps one record and a block of the file in memory.
class JsonReader : public RecordReader {
 public:
  /// Begins at the first byte of `source`, which outlives the reader. Reading a longer record than
  /// `mostRecordBytes` fails.
  static Status open(ByteSource& source, Encoding encoding, std::unique_ptr<JsonReader>* reader,
                     std::size_t mostRecordBytes = kMostRecordBytes);

  Status next(bool* hasRecord) override;
  const Record& record() const override { return record_; }
  /// Those that have occurred so far, in the order of their first occurrence.
  const std::vector<std::string>& names() const override { return names_; }
  bool hasFixedFields() const override { return false; }
  std::int64_t bytesRead() const override { return source_.bytesRead(); }

 private:
  class Handler;
  struct Value {
    std::string text;
    FieldForm form = FieldForm::missing;
  };
  enum class State { start, inArray, inLines, end };

  JsonReader(ByteSource& source, Encoding encoding, std::size_t mostRecordBytes)
      : source_(source, encoding), mostRecordBytes_(mostRecordBytes), buffer_(1 << 16) {}

  bool peek(char* character);
  void skipBlanks();
  bool findObject(std::string* problem);
  bool takeObject();
  void parseObject();
  std::size_t indexOf(const std::string& name);

  TextSource source_;
  std::size_t mostRecordBytes_;
  Status status_;
  std::vector<char> buffer_;
  std::size_t place_ = 0;
  std::size_t end_ = 0;
  bool isAtEnd_ = false;
  State state_ = State::start;
  bool isFirst_ = true;

  std::int64_t line_ = 1;
  std::string object_;  // the text of the present one
  Record record_;
  std::vector<Value> values_;
  std::vector<std::string> names_;
  std::unordered_map<std::string, std::size_t> indexes_;
};

}  // namespace store::exchange
