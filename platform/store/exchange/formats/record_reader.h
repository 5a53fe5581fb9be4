#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/status.h"

namespace store::exchange {

/// How a value stands in a file.
enum class FieldForm : std::uint8_t {
  missing,    ///< there is none: null
  bare,       ///< as it is written
  quoted,     ///< between quotes, which say that it is a text
  string,     ///< of a format in which every text, a date too, stands between quotes
  number,     ///< of a format that has numbers
  word,       ///< of a format that has truth values: "true" or "false"
  bytes,      ///< pairs of hexadecimal digits
  textBytes,  ///< pairs of hexadecimal digits: the bytes of a text that are no characters
};

struct Field {
  std::string_view text;
  FieldForm form = FieldForm::missing;
};

struct Record {
  std::vector<Field> fields;  ///< in the order of the reader's names
  std::int64_t line = 0;      ///< 1-based, where the record begins
  std::string problem;        ///< why it can't be taken; empty when it can
};

/// A longer record is refused. One takes up to three times as much memory while it is read, everything else
/// in a file next to nothing.
inline constexpr std::size_t kMostRecordBytes = 500'000'000;

/// That a record is longer than that.
Status tooLongRecord(std::int64_t line, std::size_t mostBytes);

/// The records of a file, one after the other.
class RecordReader {
 public:
  virtual ~RecordReader() = default;

  /// Goes to the next record; `*hasRecord` is false behind the last. A record with a problem is a record:
  /// reading goes on behind it, where that is possible. Fails only when the file can't be read.
  virtual Status next(bool* hasRecord) = 0;

  /// The present record; its texts hold until the next call of next().
  virtual const Record& record() const = 0;

  /// The names that the file gives to the fields; in some formats they become more while it is read.
  virtual const std::vector<std::string>& names() const = 0;

  /// Whether every record must have as many fields as there are names.
  virtual bool hasFixedFields() const = 0;

  virtual std::int64_t bytesRead() const = 0;
};

}  // namespace store::exchange
