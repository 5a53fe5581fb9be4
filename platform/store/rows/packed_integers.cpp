#include "platform/store/rows/packed_integers.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace store {

PackedIntegers::PackedIntegers(PackedIntegers&& other) noexcept
    : count_(std::exchange(other.count_, 0)), blocks_(std::exchange(other.blocks_, {})) {
  findTail();
  other.findTail();
}

PackedIntegers& PackedIntegers::operator=(PackedIntegers&& other) noexcept {
  PackedIntegers taken(std::move(other));
  std::swap(count_, taken.count_);
  std::swap(blocks_, taken.blocks_);
  findTail();
  return *this;
}

void PackedIntegers::clear() noexcept {
  const PackedIntegers dropped(std::move(*this));
}

std::size_t PackedIntegers::countIn(std::size_t blockIndex) const {
  const bool isLast = blockIndex + 1 == blocks_.size();
  return isLast ? count_ - blockIndex * kBlockCount : kBlockCount;
}

// Sets what append() looks at by the last block.
void PackedIntegers::findTail() {
  runLeft_ = 0;
  tail_ = tailEnd_ = nullptr;
  if (blocks_.empty()) return;
  const Block& last = blocks_.back();
  const std::size_t count = countIn(blocks_.size() - 1);
  if (last.integers) {
    tail_ = last.integers.get() + count;
    tailEnd_ = last.integers.get() + last.capacity;
  } else {
    runNext_ = later(last.first, count);
    runLeft_ = kBlockCount - count;
  }
}

// Gives the block room for integers of any kind, and for more of them unless it is full.
void PackedIntegers::unpack(std::size_t blockIndex) {
  Block& block = blocks_[blockIndex];
  const std::size_t count = countIn(blockIndex);
  const bool isSmall = blocks_.size() == 1 && count < kFirstBlockCount;
  const std::size_t capacity = isSmall ? kFirstBlockCount : kBlockCount;
  auto integers = std::make_unique_for_overwrite<std::int64_t[]>(capacity);
  if (block.integers) {
    std::copy_n(block.integers.get(), count, integers.get());
  } else {
    for (std::size_t place = 0; place < count; ++place) integers[place] = later(block.first, place);
  }
  block.integers = std::move(integers);
  block.capacity = capacity;
  if (blockIndex + 1 == blocks_.size()) findTail();
}

void PackedIntegers::appendElsewhere(std::int64_t integer) {
  if (count_ == blocks_.size() * kBlockCount) {
    blocks_.push_back({.integers = nullptr, .capacity = 0, .first = integer});
    tail_ = tailEnd_ = nullptr;
    runNext_ = later(integer, 1);
    runLeft_ = kBlockCount - 1;
    return;
  }
  unpack(blocks_.size() - 1);
  *tail_++ = integer;
}

void PackedIntegers::replaceAt(std::size_t index, std::int64_t integer) {
  if (at(index) == integer) return;
  const std::size_t blockIndex = index >> kBlockShift;
  if (!blocks_[blockIndex].integers) unpack(blockIndex);
  blocks_[blockIndex].integers[index & (kBlockCount - 1)] = integer;
}

// Whether the block, a run, is still one when the integer at `place` goes and that behind it comes in.
bool PackedIntegers::staysRun(std::size_t blockIndex, std::size_t place) const {
  const bool isLast = blockIndex + 1 == blocks_.size();
  if (isLast) return place == 0 || place + 1 == countIn(blockIndex);
  return place == 0 && at((blockIndex + 1) * kBlockCount) == later(blocks_[blockIndex].first, kBlockCount);
}

void PackedIntegers::prepareErase(std::size_t index) {
  std::size_t place = index & (kBlockCount - 1);
  for (std::size_t i = index >> kBlockShift; i < blocks_.size(); ++i, place = 0) {
    if (!blocks_[i].integers && !staysRun(i, place)) unpack(i);
  }
}

void PackedIntegers::eraseAt(std::size_t index) noexcept {
  std::size_t place = index & (kBlockCount - 1);
  for (std::size_t i = index >> kBlockShift; i < blocks_.size(); ++i, place = 0) {
    Block& block = blocks_[i];
    const bool isLast = i + 1 == blocks_.size();
    if (!block.integers) {
      // Of a run goes the first, or the last one of all.
      if (place == 0) block.first = later(block.first, 1);
      continue;
    }
    std::int64_t* integers = block.integers.get();
    std::memmove(integers + place, integers + place + 1, (countIn(i) - place - 1) * sizeof(std::int64_t));
    if (!isLast) integers[kBlockCount - 1] = at((i + 1) * kBlockCount);
  }
  --count_;
  if (count_ == 0) {
    clear();
    return;
  }
  if (count_ == (blocks_.size() - 1) * kBlockCount) blocks_.pop_back();
  findTail();
}

}  // namespace store
