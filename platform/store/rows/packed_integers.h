#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace store {

/// A list of 64-bit integers, made for the row ids of large tables: where they follow one another, which is
/// the rule, they take next to no memory, and growing never holds more than a block besides the integers.
///
/// The integers are kept in blocks of 65,536. A block in which each is one more than that before it is a
/// run, of which only the first is kept (sums wrap round at 64 bits); in any other they take 8 bytes each.
/// An empty list holds no memory. Functions that take an index rely on index < count().
///
/// Where a function says that it may throw std::bad_alloc, the list is then as it was.
class PackedIntegers {
 public:
  PackedIntegers() = default;
  ~PackedIntegers() = default;
  /// Moving leaves the other list empty.
  PackedIntegers(PackedIntegers&& other) noexcept;
  PackedIntegers& operator=(PackedIntegers&& other) noexcept;
  PackedIntegers(const PackedIntegers&) = delete;
  PackedIntegers& operator=(const PackedIntegers&) = delete;

  std::size_t count() const { return count_; }

  std::int64_t at(std::size_t index) const {
    const Block& block = blocks_[index >> kBlockShift];
    const std::size_t place = index & (kBlockCount - 1);
    return block.integers ? block.integers[place] : later(block.first, place);
  }

  /// Adds an integer at the end. May throw std::bad_alloc.
  void append(std::int64_t integer) {
    if (runLeft_ != 0 && integer == runNext_) {
      runNext_ = later(runNext_, 1);
      --runLeft_;
    } else if (tail_ != tailEnd_) {
      *tail_++ = integer;
    } else {
      appendElsewhere(integer);
    }
    ++count_;
  }

  /// Puts `integer` in the place of the one at `index`. May throw std::bad_alloc.
  void replaceAt(std::size_t index, std::int64_t integer);

  /// Sees to it that eraseAt() with this index needs no memory, as long as nothing else is changed first.
  /// May throw std::bad_alloc.
  void prepareErase(std::size_t index);

  /// Removes the integer at `index`; those behind it move up by one. It is the last one, or prepareErase()
  /// was called for it.
  void eraseAt(std::size_t index) noexcept;

  /// Removes all integers and gives their memory back.
  void clear() noexcept;

 private:
  static constexpr std::size_t kBlockShift = 16;
  static constexpr std::size_t kBlockCount = std::size_t{1} << kBlockShift;
  // Most lists are small: the first block begins with room for this many and is exchanged once.
  static constexpr std::size_t kFirstBlockCount = 1024;

  struct Block {
    std::unique_ptr<std::int64_t[]> integers;  // null for a run
    std::size_t capacity = 0;                  // of `integers`
    std::int64_t first = 0;                    // of a run
  };

  static std::int64_t later(std::int64_t first, std::size_t steps) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(first) + steps);
  }
  std::size_t countIn(std::size_t blockIndex) const;
  bool staysRun(std::size_t blockIndex, std::size_t place) const;
  void unpack(std::size_t blockIndex);
  void appendElsewhere(std::int64_t integer);
  void findTail();

  std::size_t count_ = 0;
  std::vector<Block> blocks_;
  // Where the next integer goes: either a run goes on,
  std::int64_t runNext_ = 0;  // with this one
  std::size_t runLeft_ = 0;   // as long as the block has room for so many
  // or there is room in a block of integers.
  std::int64_t* tail_ = nullptr;
  std::int64_t* tailEnd_ = nullptr;
};

}  // namespace store
