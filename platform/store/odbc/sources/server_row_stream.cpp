#include "platform/store/odbc/sources/server_row_stream.h"

#include "platform/store/odbc/sources/server_result_rows.h"

namespace store {

namespace {

constexpr std::size_t kRowsAtOnce = 500;

}  // namespace

Status ServerRowStream::next(bool* hasRow) {
  if (place_ == block_.size() && !isAtEnd_) {
    Answer block;
    if (Status status = cursor_.readOn(kRowsAtOnce, &block); !status) return status;
    isAtEnd_ = block.empty();
    block_ = std::move(block);
    place_ = 0;
  }
  *hasRow = place_ < block_.size();
  if (*hasRow) setRow(forms_, block_[place_++], &row_);
  return {};
}

}  // namespace store
