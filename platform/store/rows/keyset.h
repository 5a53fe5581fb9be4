#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/store/rows/packed_integers.h"
#include "platform/store/rows/value.h"

namespace store {

/// What tells one record of a table from all others: its 64-bit row id, or the values of its key
/// columns (1 to kMaxKeyValueCount of them) where the table has no row ids.
///
/// It copies itself in two steps: what this standard library does in one frees memory twice when there is
/// none left for the copy.
class Key : public std::variant<std::int64_t, std::vector<Value>> {
  using Either = std::variant<std::int64_t, std::vector<Value>>;

 public:
  using Either::Either;
  Key() = default;
  Key(const Key& other) : Either(copyOf(other)) {}
  Key(Key&&) = default;
  Key& operator=(const Key& other) {
    if (this != &other) *this = Key(other);
    return *this;
  }
  Key& operator=(Key&&) = default;
  ~Key() = default;

 private:
  static Either copyOf(const Key& other) {
    if (const auto* rowId = std::get_if<std::int64_t>(&other)) return *rowId;
    std::vector<Value> values = std::get<std::vector<Value>>(other);
    return values;
  }
};

/// More columns than any database gives to one table.
inline constexpr std::size_t kMaxKeyValueCount = 32767;

/// The key as bytes that may leave the program. Equal keys have equal bytes and different keys
/// different ones; a negative zero counts as zero. Throws std::bad_alloc and nothing else.
///
/// The format is this engine's own: one byte for the kind of key (1 a row id, 2 a tuple), then the row
/// id or the values of the tuple one after the other. A value is one byte for its kind and its content:
/// 0 null; 1, 2, 3, 4 an integer in 1, 2, 4 or 8 bytes, the least that hold it; 5 a double in 8 bytes; 6
/// a text and 7 a blob, the length in bytes (7 bits in each byte, the lowest first, the top bit set in all
/// but the last, no superfluous byte) followed by the bytes. All numbers have their lowest byte first.
std::string bookmarkOf(const Key& key);

/// The key that bookmarkOf() made these bytes of. Empty for bytes that bookmarkOf() never makes: they
/// come from clients and may be anything. Each length is checked against the bytes that are there before
/// memory is reserved for it. Throws std::bad_alloc and nothing else.
std::optional<Key> keyOfBookmark(std::string_view bytes);

/// The keys of a recordset in its order. All keys of a set are of one kind, which every function that
/// takes a key relies on unless it says otherwise; so do the functions that take an index on
/// index < count().
///
/// An empty set holds no memory. Row ids take 8 bytes each, but hardly anything where they follow one
/// another (PackedIntegers); growing never holds more than 512 KiB besides the keys. Tuples take 8 bytes
/// each and their bytes in one common buffer; what an erased or replaced tuple occupied there comes back
/// with clear().
///
/// Where a function says that it may throw std::bad_alloc, the set is then as it was.
class KeySet {
 public:
  enum class Kind : std::uint8_t { rowId, tuple };

  static constexpr std::size_t npos = static_cast<std::size_t>(-1);

  explicit KeySet(Kind kind = Kind::rowId) noexcept : kind_(kind) {}
  ~KeySet() = default;

  /// Moving leaves the other set empty, of the same kind. Copying is spelled out as clone().
  KeySet(KeySet&& other) noexcept;
  KeySet& operator=(KeySet&& other) noexcept;
  KeySet(const KeySet&) = delete;
  KeySet& operator=(const KeySet&) = delete;

  /// A set of its own with the same keys. May throw std::bad_alloc.
  KeySet clone() const;

  Kind kind() const { return kind_; }
  std::size_t count() const { return words_.count(); }

  /// Removes all keys and gives their memory back.
  void clear() noexcept;

  /// Adds a key at the end. May throw std::bad_alloc.
  void append(std::int64_t rowId) { words_.append(rowId); }
  void append(const std::vector<Value>& tuple);
  void append(const Key& key);

  /// The row id at `index`; for sets of row ids only.
  std::int64_t rowIdAt(std::size_t index) const { return words_.at(index); }

  /// The key at `index`, of either kind. May throw std::bad_alloc.
  Key keyAt(std::size_t index) const;

  /// For sets of row ids only: the end of the row ids from `first` on, at least one and at most up to `last`,
  /// that grow from each to the next.
  std::size_t growingEnd(std::size_t first, std::size_t last) const;

  /// For row ids [first, last) that grow: the index of the first that is not below `rowId`, or `last`.
  std::size_t firstNotBelow(std::size_t first, std::size_t last, std::int64_t rowId) const;

  /// A number that is the same for equal keys and mostly another one for different keys: of the key at
  /// `index`, and of any key. The second may throw std::bad_alloc.
  std::uint64_t hashAt(std::size_t index) const;
  static std::uint64_t hashOf(const Key& key);

  /// Sees to it that eraseAt() with this index needs no memory, as long as nothing else is changed first.
  /// May throw std::bad_alloc.
  void prepareErase(std::size_t index) { words_.prepareErase(index); }

  /// Removes the key at `index`; those behind it move up by one. It is the last one, or prepareErase() was
  /// called for it.
  void eraseAt(std::size_t index) noexcept;

  /// Puts `key` in the place of the one at `index`. May throw std::bad_alloc.
  void replaceAt(std::size_t index, const Key& key);

  /// The index of `key`, looked for at `hint` first and then further and further away on both sides; npos
  /// when it is not there or is of the other kind. Any hint is allowed. May throw std::bad_alloc.
  std::size_t find(const Key& key, std::size_t hint) const;

 private:
  std::string_view tupleBytesAt(std::size_t index) const;

  Kind kind_;
  PackedIntegers words_;    // row ids, or the offsets of tuples in tupleBytes_
  std::string tupleBytes_;  // each tuple: length of its values in bytes, its values
};

}  // namespace store
