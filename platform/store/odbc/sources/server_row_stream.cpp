#include "platform/store/odbc/sources/server_row_stream.h"

#include <optional>
#include <utility>

#include "platform/store/odbc/driver/odbc_statement.h"

namespace store {

ServerRowStream::~ServerRowStream() {
  if (reading_ == nullptr) return;
  Spare released = reading_->release();
  if (spare_ == nullptr) spare_ = std::move(released);
}

/// What is told of a failure of the other conversation.
Status ServerRowStream::outcomeOf(const Status& failure) {
  if (failure.code() == ErrorCode::passwordWanted) {
    return {ErrorCode::cannotOpen, "The server does not take the password any more: " + failure.message()};
  }
  if (failure.code() == ErrorCode::inputOutput && connection_.session() != nullptr) {
    // Mostly this one is lost as well, which is not to be told a second time.
    OdbcStatement statement(connection_);
    static_cast<void>(statement.run("SELECT 1"));
  }
  return failure;
}

Status ServerRowStream::readOn() {
  if (reading_ == nullptr) {
    Spare other = spare_ != nullptr ? std::move(spare_) : connection_.another();
    reading_ = std::make_unique<RowReading>(std::move(other), select_, columns_.size());
  }
  Status taken;
  const Status waited = connection_.wait([&](std::chrono::milliseconds time) {
    bool hasCome = false;
    taken = reading_->take(time, &texts_, &hasCome);
    return hasCome;
  });
  if (!waited) return waited;
  if (!taken) return outcomeOf(taken);
  reader_.begin(texts_);
  isAtEnd_ = texts_.empty();
  return {};
}

Status ServerRowStream::setRow() {
  row_.clear();
  bool isRead = reader_.enterRow();
  for (std::size_t index = 0; isRead && index < forms_.size(); ++index) {
    std::optional<std::string_view> value;
    isRead = reader_.takeValue(&value);
    if (isRead) addServerValue(forms_[index], value, &row_);
  }
  if (isRead && reader_.leaveRow()) return {};
  return {ErrorCode::inputOutput, "The server's answer can't be read."};
}

Status ServerRowStream::next(bool* hasRow) {
  if (failure_ && reader_.isAtEnd() && !isAtEnd_) failure_ = readOn();
  if (failure_ && !isAtEnd_) failure_ = setRow();
  if (!failure_) return failure_;
  *hasRow = !isAtEnd_;
  return {};
}

}  // namespace store
