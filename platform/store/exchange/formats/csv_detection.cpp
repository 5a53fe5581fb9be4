#include "platform/store/exchange/formats/csv_detection.h"

#include <array>
#include <string>

#include "platform/store/exchange/formats/csv_reader.h"

namespace store::exchange {

namespace {

constexpr std::array<char, 4> kSeparators{',', ';', '\t', '|'};
constexpr std::size_t kSampleBytes = 1 << 18;
constexpr int kSampleRecords = 100;

Status readHead(ByteSource& source, Encoding encoding, std::string* head, bool* isWhole) {
  if (Status status = source.rewind(); !status) return status;
  TextSource text(source, encoding);
  std::string read(kSampleBytes, '\0');
  std::size_t length = 0;
  std::size_t count = 1;
  while (count > 0 && read.size() - length >= 8) {
    if (Status status = text.read(read.data() + length, read.size() - length, &count); !status) return status;
    length += count;
  }
  read.resize(length);
  *isWhole = count == 0;
  *head = std::move(read);
  return {};
}

/// How many of the first records have as many fields as the first one; 0 when that is one field.
Status countAlike(const std::string& head, bool isWhole, char separator, int* alike, std::size_t* fields) {
  MemorySource source(head);
  CsvFormat format;
  format.separator = separator;
  format.hasHeader = false;
  std::unique_ptr<CsvReader> reader;
  if (Status status = CsvReader::open(source, Encoding::utf8, format, &reader); !status) return status;
  *alike = 0;
  *fields = reader->names().size();
  if (*fields < 2) return {};
  int pending = 0;  // the last record of a part of a file may be cut off
  for (int count = 0; count < kSampleRecords; ++count) {
    bool hasRecord = false;
    if (Status status = reader->next(&hasRecord); !status) return status;
    if (!hasRecord) {
      if (isWhole) *alike += pending;
      return {};
    }
    *alike += pending;
    const bool isAlike = reader->record().fields.size() == *fields && reader->record().problem.empty();
    pending = isAlike ? 1 : 0;
  }
  *alike += pending;
  return {};
}

}  // namespace

Status detectSeparator(ByteSource& source, Encoding encoding, char* separator) {
  std::string head;
  bool isWhole = false;
  if (Status status = readHead(source, encoding, &head, &isWhole); !status) return status;
  if (const std::optional<char> named = separatorLine(head)) {
    *separator = *named;
    return {};
  }
  char best = kSeparators.front();
  int bestAlike = 0;
  std::size_t bestFields = 0;
  for (const char candidate : kSeparators) {
    int alike = 0;
    std::size_t fields = 0;
    if (Status status = countAlike(head, isWhole, candidate, &alike, &fields); !status) return status;
    if (alike < bestAlike || (alike == bestAlike && fields <= bestFields) || alike == 0) continue;
    best = candidate;
    bestAlike = alike;
    bestFields = fields;
  }
  *separator = best;
  return {};
}

Status detectJson(ByteSource& source, Encoding encoding, bool* isJson) {
  std::string head;
  bool isWhole = false;
  if (Status status = readHead(source, encoding, &head, &isWhole); !status) return status;
  constexpr const char* kBlanks = " \t\r\n";
  std::size_t at = head.find_first_not_of(kBlanks);
  const bool isArray = at != std::string::npos && head[at] == '[';
  if (isArray) at = head.find_first_not_of(kBlanks, at + 1);
  if (at == std::string::npos) {
    *isJson = isArray;
    return {};
  }
  if (head[at] == '{') {
    at = head.find_first_not_of(kBlanks, at + 1);
    *isJson = at == std::string::npos || head[at] == '"' || head[at] == '}';
    return {};
  }
  *isJson = isArray && head[at] == ']';
  return {};
}

}  // namespace store::exchange
