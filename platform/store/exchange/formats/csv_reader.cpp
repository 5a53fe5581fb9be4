#include "platform/store/exchange/formats/csv_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace store::exchange {

namespace {

constexpr std::size_t kBlock = 1 << 18;
constexpr char kQuote = '"';

bool isAsciiOnly(const char* first, const char* end) {
  unsigned char all = 0;
  for (; first < end; ++first) all |= static_cast<unsigned char>(*first);
  return all < 0x80;
}

constexpr std::string_view kSeparatorLine = "sep=";
// With the separator and the end of the line.
constexpr std::size_t kSeparatorLineLength = kSeparatorLine.size() + 2;

bool isLineEnd(char character) {
  return character == '\r' || character == '\n';
}

}  // namespace

std::optional<char> separatorLine(std::string_view start) {
  if (start.size() < kSeparatorLineLength || !start.starts_with(kSeparatorLine)) return std::nullopt;
  const char separator = start[kSeparatorLine.size()];
  const bool isOne =
      separator != kQuote && !isLineEnd(separator) && static_cast<unsigned char>(separator) < 0x80;
  if (!isOne || !isLineEnd(start[kSeparatorLineLength - 1])) return std::nullopt;
  return separator;
}

CsvReader::CsvReader(ByteSource& source, Encoding encoding, const CsvFormat& format,
                     std::size_t mostRecordBytes)
    : source_(source, encoding),
      format_(format),
      mostRecordBytes_(mostRecordBytes),
      buffer_(std::make_unique_for_overwrite<char[]>(kBlock + 1)),
      capacity_(kBlock + 1) {
  for (const char character : {format.separator, '\r', '\n'})
    endsField_[static_cast<unsigned char>(character)] = true;
  start_ = place_ = end_ = buffer_.get();
  *end_ = '\n';
}

Status CsvReader::open(ByteSource& source, Encoding encoding, const CsvFormat& format,
                       std::unique_ptr<CsvReader>* reader, std::size_t mostRecordBytes) {
  if (Status status = source.rewind(); !status) return status;
  std::unique_ptr<CsvReader> made(new CsvReader(source, encoding, format, mostRecordBytes));
  made->skipSeparatorLine();
  if (Status status = made->readFirst(); !status) return status;
  *reader = std::move(made);
  return {};
}

void CsvReader::skipSeparatorLine() {
  while (static_cast<std::size_t>(end_ - start_) < kSeparatorLineLength && refill()) {
  }
  place_ = start_;
  if (!separatorLine({start_, static_cast<std::size_t>(end_ - start_)})) return;
  place_ += kSeparatorLineLength;
  endedWithReturn_ = place_[-1] == '\r';
  ++line_;
}

Status CsvReader::readFirst() {
  bool hasRecord = false;
  if (Status status = next(&hasRecord); !status || !hasRecord) return status;
  for (std::size_t index = 0; index < record_.fields.size(); ++index) {
    names_.push_back(format_.hasHeader ? std::string(record_.fields[index].text)
                                       : "Field" + std::to_string(index + 1));
  }
  if (format_.hasHeader && !record_.problem.empty()) {
    return {ErrorCode::conversion,
            "The line with the names of the columns can't be read: " + record_.problem};
  }
  if (format_.hasHeader) return {};
  hasPending_ = true;
  pending_ = std::move(record_);
  // How many columns there are shows only now: of a single one each line is a record.
  if (names_.size() != 1) blankLines_ = 0;
  return {};
}

Status CsvReader::next(bool* hasRecord) {
  if (hasPending_) {
    if (blankLines_ > 0) {
      record_ = {};
      record_.line = pending_.line - blankLines_--;
      addField(nullptr, nullptr, FieldForm::bare);
    } else {
      hasPending_ = false;
      record_ = std::move(pending_);
    }
    *hasRecord = true;
    return {};
  }
  *hasRecord = false;
  for (;;) {
    start_ = place_;
    record_.fields.clear();
    record_.problem.clear();
    record_.line = line_;
    if (place_ == end_ && !refill()) return status_;
    if (endedWithReturn_ && *place_ == '\n') {
      start_ = ++place_;
      endedWithReturn_ = false;
      continue;
    }
    endedWithReturn_ = false;
    const bool isBlank = *place_ == '\n' || *place_ == '\r';
    readRecord();
    if (!status_) return status_;
    if (isBlank && names_.size() != 1) {
      ++blankLines_;
      continue;
    }
    break;
  }
  checkCharacters();
  *hasRecord = true;
  return {};
}

void CsvReader::readRecord() {
  while (readField()) {
  }
}

/// Whether another field follows in the record.
bool CsvReader::readField() {
  if (place_ == end_ && !refill()) {
    addField(place_, place_, FieldForm::bare);
    return false;
  }
  if (*place_ == kQuote) return readQuoted();
  const std::size_t first = static_cast<std::size_t>(place_ - start_);
  for (;;) {
    char* place = place_;
    while (!endsField_[static_cast<unsigned char>(*place)]) ++place;
    place_ = place;
    if (place_ < end_ || !refill()) break;
  }
  addField(start_ + first, place_, FieldForm::bare);
  return endField();
}

bool CsvReader::readQuoted() {
  ++place_;
  isBehindReturn_ = false;
  const std::size_t first = static_cast<std::size_t>(place_ - start_);
  std::size_t used = first;  // where the next part of the text goes, relative to start_
  for (;;) {
    auto* quote = static_cast<char*>(std::memchr(place_, kQuote, static_cast<std::size_t>(end_ - place_)));
    char* partEnd = quote != nullptr ? quote : end_;
    countLines(place_, partEnd);
    if (start_ + used != place_)
      std::memmove(start_ + used, place_, static_cast<std::size_t>(partEnd - place_));
    used += static_cast<std::size_t>(partEnd - place_);
    place_ = partEnd;
    if (quote == nullptr) {
      if (refill()) continue;
      addField(start_ + first, start_ + used, FieldForm::quoted);
      reject("a quote is not closed; all up to the end of the file is taken for its text");
      return false;
    }
    ++place_;
    if ((place_ < end_ || refill()) && *place_ == kQuote) {
      start_[used++] = kQuote;
      ++place_;
      isBehindReturn_ = false;
      continue;
    }
    break;
  }
  addField(start_ + first, start_ + used, FieldForm::quoted);
  if (place_ < end_ && !endsField_[static_cast<unsigned char>(*place_)]) {
    reject("there is text behind a closing quote");
    skipToEndOfLine();
    return false;
  }
  return endField();
}

/// Passes over the separator or the end of the line; whether it was a separator.
bool CsvReader::endField() {
  if (place_ == end_) return false;
  const char character = *place_++;
  if (character == format_.separator) return true;
  ++line_;
  endedWithReturn_ = character == '\r';
  return false;
}

void CsvReader::skipToEndOfLine() {
  for (;;) {
    while (place_ < end_ && *place_ != '\n' && *place_ != '\r') ++place_;
    if (place_ < end_ || !refill()) break;
  }
  if (place_ == end_) return;
  endedWithReturn_ = *place_++ == '\r';
  ++line_;
}

void CsvReader::addField(const char* first, const char* end, FieldForm form) {
  const std::string_view text(first, static_cast<std::size_t>(end - first));
  const bool isNull = form == FieldForm::bare && text == format_.nullText;
  record_.fields.push_back({text, isNull ? FieldForm::missing : form});
}

/// Counts the ends of lines in a part of a quoted text, of which the part before may have had one half.
void CsvReader::countLines(const char* first, const char* end) {
  if (first == end) return;
  line_ += std::count(first, end, '\n');
  if (isBehindReturn_ && *first == '\n') --line_;
  for (const char* at = first; at < end; ++at) {
    at = static_cast<const char*>(std::memchr(at, '\r', static_cast<std::size_t>(end - at)));
    if (at == nullptr) break;
    ++line_;
    if (at + 1 < end && at[1] == '\n') --line_;
  }
  isBehindReturn_ = end[-1] == '\r';
}

void CsvReader::checkCharacters() {
  if (isAscii_) return;
  for (const Field& field : record_.fields) {
    if (isWellFormed(field.text)) continue;
    reject("there is a byte that stands for no character");
    return;
  }
}

void CsvReader::reject(std::string problem) {
  if (record_.problem.empty()) record_.problem = std::move(problem);
}

/// Reads on behind end_, where place_ goes, keeping what belongs to the record. False at the end of the file.
bool CsvReader::refill() {
  if (isAtEnd_) return false;
  const std::size_t kept = static_cast<std::size_t>(end_ - start_);
  const char* oldStart = start_;
  char* newStart = buffer_.get();
  if (kept > mostRecordBytes_) {
    status_ = tooLongRecord(record_.line, mostRecordBytes_);
    isAtEnd_ = true;
    return false;
  }
  if (kept > capacity_ / 2) {
    // What is not used of it yet takes no memory, where the system gives that only when it is written to.
    auto larger = std::make_unique_for_overwrite<char[]>(capacity_ * 2);
    capacity_ *= 2;
    std::memcpy(larger.get(), start_, kept);
    newStart = larger.get();
    // The fields' texts still point into the old one, which must live until they are moved along.
    buffer_.swap(larger);
    for (Field& field : record_.fields)
      field.text = {newStart + (field.text.data() - oldStart), field.text.size()};
  } else {
    std::memmove(newStart, start_, kept);
    for (Field& field : record_.fields)
      field.text = {newStart + (field.text.data() - oldStart), field.text.size()};
  }
  start_ = newStart;
  place_ = end_ = start_ + kept;
  std::size_t count = 0;
  status_ = source_.read(end_, std::min(capacity_ - 1 - kept, kBlock), &count);
  if (!status_ || count == 0) {
    isAtEnd_ = true;
    *end_ = '\n';
    return false;
  }
  isAscii_ = isAsciiOnly(end_, end_ + count) && (kept == 0 || isAscii_);
  end_ += count;
  *end_ = '\n';
  return true;
}

}  // namespace store::exchange
