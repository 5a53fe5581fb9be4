#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/exchange/bytes/encoding.h"
#include "platform/store/exchange/formats/csv_format.h"
#include "platform/store/exchange/formats/record_reader.h"

namespace store::exchange {

/// The separator that a file names in a first line like "sep=;", as spreadsheets write it; empty when
/// `start`, the file's beginning without a byte-order mark, has no such line.
std::optional<char> separatorLine(std::string_view start);

/// Reads separated values: records end with a line, fields at the separator; between quotes both are text,
/// and a doubled quote is one. A quote inside a field that did not begin with one is text as well. A line
/// without a character is no record, unless there is only one column, and neither is a first one that names a
/// separator. Keeps one record and a block of the
/// file in memory.
class CsvReader : public RecordReader {
 public:
  /// Begins at the first byte of `source`, which outlives the reader. Reading a longer record than
  /// `mostRecordBytes` fails.
  static Status open(ByteSource& source, Encoding encoding, const CsvFormat& format,
                     std::unique_ptr<CsvReader>* reader, std::size_t mostRecordBytes = kMostRecordBytes);

  Status next(bool* hasRecord) override;
  const Record& record() const override { return record_; }
  /// Those of the header, else "Field1", "Field2" and so on.
  const std::vector<std::string>& names() const override { return names_; }
  bool hasFixedFields() const override { return true; }
  std::int64_t bytesRead() const override { return source_.bytesRead(); }

 private:
  CsvReader(ByteSource& source, Encoding encoding, const CsvFormat& format, std::size_t mostRecordBytes);

  void skipSeparatorLine();
  Status readFirst();
  void readRecord();
  bool readField();
  bool readQuoted();
  bool endField();
  void skipToEndOfLine();
  void checkCharacters();
  void addField(const char* first, const char* end, FieldForm form);
  void countLines(const char* first, const char* end);
  bool refill();
  void reject(std::string problem);

  TextSource source_;
  CsvFormat format_;
  std::size_t mostRecordBytes_;
  std::array<bool, 256> endsField_{};
  Status status_;

  // The bytes [place_, end_) of the buffer are to be read yet; one more behind them ends every search. What
  // belongs to the present record begins at start_.
  std::unique_ptr<char[]> buffer_;
  std::size_t capacity_;
  char* start_;
  char* place_;
  char* end_;
  bool isAtEnd_ = false;
  bool isAscii_ = true;  // what is in the buffer

  std::int64_t line_ = 1;
  bool endedWithReturn_ = false;  // the last line, so that a line feed behind it belongs to it
  bool isBehindReturn_ = false;   // in a quoted text, so that a line feed ends no other line
  Record record_;
  std::vector<std::string> names_;
  bool hasPending_ = false;  // the first record was read ahead and comes next
  Record pending_;
  std::int64_t blankLines_ = 0;  // in front of it, which are records as well when they turn out to be
};

}  // namespace store::exchange
