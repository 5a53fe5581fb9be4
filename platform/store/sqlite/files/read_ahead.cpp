#include "platform/store/sqlite/files/read_ahead.h"

#include <cstring>
#include <new>

namespace store {

namespace {

// SQLite reads the head of the file in smaller pieces.
constexpr int kSmallestPage = 512;

}  // namespace

int ReadAhead::read(sqlite3_file* file, void* data, int length, sqlite3_int64 offset) noexcept {
  const bool isNext = length >= kSmallestPage && offset >= lastEnd_ &&
                      offset - lastEnd_ <= sqlite3_int64{kMostPassedOver} * length;
  inRow_ = isNext ? inRow_ + 1 : 0;
  lastEnd_ = offset + length;
  const bool isHeld = holds(length, offset) || (inRow_ >= kFewestInRow && fill(file, length, offset));
  if (!isHeld) return file->pMethods->xRead(file, data, length, offset);
  std::memcpy(data, room_.get() + (offset - start_), static_cast<std::size_t>(length));
  return SQLITE_OK;
}

void ReadAhead::forget() noexcept {
  count_ = 0;
  inRow_ = 0;
  shortFrom_ = kNowhere;
}

bool ReadAhead::holds(int length, sqlite3_int64 offset) const noexcept {
  return offset >= start_ && offset + length <= start_ + count_;
}

bool ReadAhead::fill(sqlite3_file* file, int length, sqlite3_int64 offset) noexcept {
  if (offset >= shortFrom_ || length > kRoom) return false;
  if (room_ == nullptr) room_.reset(new (std::nothrow) char[kRoom]);
  if (room_ == nullptr) return false;
  count_ = 0;
  // A reading that fails is left to SQLite, page by page: it knows what to make of each.
  if (file->pMethods->xRead(file, room_.get(), kRoom, offset) != SQLITE_OK) {
    shortFrom_ = offset;
    return false;
  }
  start_ = offset;
  count_ = kRoom;
  return true;
}

}  // namespace store
