#include "platform/store/exchange/reject_list.h"

#include <array>
#include <cerrno>
#include <cstring>

namespace store::exchange {

namespace {

void appendField(std::string_view text, std::string* line) {
  *line += ",\"";
  for (const char character : text) {
    *line += character;
    if (character == '"') *line += character;
  }
  *line += '"';
}

Status notGathered() {
  return {ErrorCode::inputOutput,
          "The list of what was left out can't be gathered: " + std::string(std::strerror(errno)) + "."};
}

}  // namespace

std::string rejectLine(const Record& record, const std::string& reason) {
  std::string line = std::to_string(record.line);
  appendField(reason, &line);
  for (const Field& field : record.fields) appendField(field.text, &line);
  return line + "\r\n";
}

void RejectList::add(const Record& record, const std::string& reason) {
  if (!status_) return;
  errno = 0;
  if (file_ == nullptr) file_ = openTemporary();
  const std::string line = rejectLine(record, reason);
  const bool isWritten =
      file_ != nullptr && std::fwrite(line.data(), 1, line.size(), file_.get()) == line.size();
  if (!isWritten) status_ = notGathered();
}

Status RejectList::copyTo(ByteSink& sink) {
  if (!status_) return status_;
  if (Status status = sink.write(kRejectTitles); !status || file_ == nullptr) return status;
  errno = 0;
  if (std::fflush(file_.get()) != 0) return notGathered();
  std::rewind(file_.get());
  std::array<char, 1 << 16> block{};
  std::size_t count = 0;
  while ((count = std::fread(block.data(), 1, block.size(), file_.get())) > 0) {
    if (Status status = sink.write({block.data(), count}); !status) return status;
  }
  return std::ferror(file_.get()) == 0 ? Status() : notGathered();
}

}  // namespace store::exchange
