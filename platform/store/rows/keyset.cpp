#include "platform/store/rows/keyset.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <functional>
#include <limits>
#include <type_traits>
#include <utility>

namespace store {
namespace {

constexpr char kRowIdBookmark = 1;
constexpr char kTupleBookmark = 2;

enum class Tag : std::uint8_t { null, integer8, integer16, integer32, integer64, real, text, blob };

std::size_t lengthOfInteger(Tag tag) {
  return std::size_t{1} << (static_cast<unsigned>(tag) - static_cast<unsigned>(Tag::integer8));
}

template <typename Narrow>
bool holds(std::int64_t value) {
  return value >= std::numeric_limits<Narrow>::min() && value <= std::numeric_limits<Narrow>::max();
}

Tag tagOfInteger(std::int64_t value) {
  if (holds<std::int8_t>(value)) return Tag::integer8;
  if (holds<std::int16_t>(value)) return Tag::integer16;
  if (holds<std::int32_t>(value)) return Tag::integer32;
  return Tag::integer64;
}

void appendWord(std::string* bytes, std::uint64_t word, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) bytes->push_back(static_cast<char>(word >> (8 * i) & 0xFF));
}

void appendLength(std::string* bytes, std::size_t length) {
  std::uint64_t rest = length;
  for (; rest >= 0x80; rest >>= 7) bytes->push_back(static_cast<char>((rest & 0x7F) | 0x80));
  bytes->push_back(static_cast<char>(rest));
}

void appendInteger(std::string* bytes, std::int64_t value) {
  const Tag tag = tagOfInteger(value);
  bytes->push_back(static_cast<char>(tag));
  appendWord(bytes, static_cast<std::uint64_t>(value), lengthOfInteger(tag));
}

void appendReal(std::string* bytes, double value) {
  const double unsignedZero = value == 0 ? 0.0 : value;
  bytes->push_back(static_cast<char>(Tag::real));
  appendWord(bytes, std::bit_cast<std::uint64_t>(unsignedZero), sizeof(std::uint64_t));
}

void appendString(std::string* bytes, Tag tag, std::string_view content) {
  bytes->push_back(static_cast<char>(tag));
  appendLength(bytes, content.size());
  bytes->append(content);
}

void appendValue(std::string* bytes, const Value& value) {
  std::visit(
      [bytes](const auto& content) {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, std::int64_t>) {
          appendInteger(bytes, content);
        } else if constexpr (std::is_same_v<Content, double>) {
          appendReal(bytes, content);
        } else if constexpr (std::is_same_v<Content, std::string>) {
          appendString(bytes, Tag::text, content);
        } else if constexpr (std::is_same_v<Content, Blob>) {
          appendString(bytes, Tag::blob, content.bytes);
        } else {
          bytes->push_back(static_cast<char>(Tag::null));
        }
      },
      value);
}

void appendValues(std::string* bytes, const std::vector<Value>& values) {
  for (const Value& value : values) appendValue(bytes, value);
}

/// Takes values from the front of bytes that may be anything. A failing function may have taken a part.
class KeyReader {
 public:
  explicit KeyReader(std::string_view bytes) : bytes_(bytes) {}

  bool atEnd() const { return bytes_.empty(); }
  std::string_view rest() const { return bytes_; }

  bool readByte(std::uint8_t* byte) {
    if (bytes_.empty()) return false;
    *byte = static_cast<std::uint8_t>(bytes_.front());
    bytes_.remove_prefix(1);
    return true;
  }

  bool readLength(std::uint64_t* length) {
    std::uint64_t result = 0;
    for (unsigned shift = 0; shift < 63; shift += 7) {
      std::uint8_t byte = 0;
      if (!readByte(&byte)) return false;
      result |= std::uint64_t{byte & 0x7Fu} << shift;
      if ((byte & 0x80) != 0) continue;
      if (byte == 0 && shift != 0) return false;  // a superfluous byte
      *length = result;
      return true;
    }
    return false;
  }

  bool readValue(Value* value) {
    std::uint8_t tag = 0;
    if (!readByte(&tag)) return false;
    switch (static_cast<Tag>(tag)) {
      case Tag::null:
        *value = std::monostate();
        return true;
      case Tag::integer8:
      case Tag::integer16:
      case Tag::integer32:
      case Tag::integer64:
        return readInteger(static_cast<Tag>(tag), value);
      case Tag::real:
        return readReal(value);
      case Tag::text: {
        std::string_view content;
        if (!readString(&content)) return false;
        value->emplace<std::string>(content);
        return true;
      }
      case Tag::blob: {
        std::string_view content;
        if (!readString(&content)) return false;
        *value = Blob{std::string(content)};
        return true;
      }
    }
    return false;
  }

  /// All values up to the end.
  bool readValues(std::vector<Value>* values) {
    while (!atEnd()) {
      Value value;
      if (values->size() == kMaxKeyValueCount || !readValue(&value)) return false;
      values->push_back(std::move(value));
    }
    return true;
  }

 private:
  bool readWord(std::size_t length, std::uint64_t* word) {
    if (bytes_.size() < length) return false;
    std::uint64_t result = 0;
    for (std::size_t i = 0; i < length; ++i)
      result |= std::uint64_t{static_cast<std::uint8_t>(bytes_[i])} << (8 * i);
    bytes_.remove_prefix(length);
    *word = result;
    return true;
  }

  bool readInteger(Tag tag, Value* value) {
    const std::size_t length = lengthOfInteger(tag);
    std::uint64_t word = 0;
    if (!readWord(length, &word)) return false;
    const std::size_t unusedBits = 64 - 8 * length;
    const std::int64_t result = static_cast<std::int64_t>(word << unusedBits) >> unusedBits;
    if (tagOfInteger(result) != tag) return false;
    *value = result;
    return true;
  }

  bool readReal(Value* value) {
    std::uint64_t word = 0;
    if (!readWord(sizeof word, &word)) return false;
    if (word == std::bit_cast<std::uint64_t>(-0.0)) return false;
    *value = std::bit_cast<double>(word);
    return true;
  }

  bool readString(std::string_view* content) {
    std::uint64_t length = 0;
    if (!readLength(&length) || length > bytes_.size()) return false;
    *content = bytes_.substr(0, static_cast<std::size_t>(length));
    bytes_.remove_prefix(static_cast<std::size_t>(length));
    return true;
  }

  std::string_view bytes_;
};

/// A tuple as a KeySet keeps it.
std::string packedTuple(const std::vector<Value>& tuple) {
  std::string values;
  appendValues(&values, tuple);
  std::string packed;
  appendLength(&packed, values.size());
  packed += values;
  return packed;
}

/// Spreads neighbouring row ids over all 64 bits (the last steps of splitmix64).
std::uint64_t mixed(std::int64_t rowId) {
  auto word = static_cast<std::uint64_t>(rowId);
  word = (word ^ word >> 30) * 0xBF58476D1CE4E5B9u;
  word = (word ^ word >> 27) * 0x94D049BB133111EBu;
  return word ^ word >> 31;
}

template <typename Matches>
std::size_t findOutwards(std::size_t count, std::size_t hint, const Matches& matches) {
  if (count == 0) return KeySet::npos;
  const std::size_t start = std::min(hint, count - 1);
  for (std::size_t distance = 0; distance < count; ++distance) {
    if (distance < count - start && matches(start + distance)) return start + distance;
    if (distance <= start && matches(start - distance)) return start - distance;
  }
  return KeySet::npos;
}

}  // namespace

std::string bookmarkOf(const Key& key) {
  std::string bytes;
  if (const auto* rowId = std::get_if<std::int64_t>(&key)) {
    bytes.push_back(kRowIdBookmark);
    appendInteger(&bytes, *rowId);
  } else {
    bytes.push_back(kTupleBookmark);
    appendValues(&bytes, std::get<std::vector<Value>>(key));
  }
  return bytes;
}

std::optional<Key> keyOfBookmark(std::string_view bytes) {
  KeyReader reader(bytes);
  std::uint8_t kind = 0;
  std::vector<Value> values;
  if (!reader.readByte(&kind) || !reader.readValues(&values) || values.empty()) return std::nullopt;
  if (kind == kTupleBookmark) return values;
  const auto* rowId = std::get_if<std::int64_t>(&values.front());
  if (kind != kRowIdBookmark || values.size() != 1 || rowId == nullptr) return std::nullopt;
  return *rowId;
}

KeySet::KeySet(KeySet&& other) noexcept
    : kind_(other.kind_),
      words_(std::move(other.words_)),
      tupleBytes_(std::exchange(other.tupleBytes_, {})) {}

KeySet& KeySet::operator=(KeySet&& other) noexcept {
  KeySet taken(std::move(other));
  std::swap(kind_, taken.kind_);
  std::swap(words_, taken.words_);
  std::swap(tupleBytes_, taken.tupleBytes_);
  return *this;
}

KeySet KeySet::clone() const {
  KeySet copy(kind_);
  copy.tupleBytes_ = tupleBytes_;
  for (std::size_t index = 0; index < count(); ++index) copy.words_.append(words_.at(index));
  return copy;
}

void KeySet::clear() noexcept {
  const KeySet dropped(std::move(*this));
}

void KeySet::append(const std::vector<Value>& tuple) {
  const std::string packed = packedTuple(tuple);
  const std::size_t offset = tupleBytes_.size();
  tupleBytes_ += packed;
  try {
    words_.append(static_cast<std::int64_t>(offset));
  } catch (...) {
    tupleBytes_.resize(offset);
    throw;
  }
}

void KeySet::append(const Key& key) {
  if (kind_ == Kind::rowId) {
    append(std::get<std::int64_t>(key));
  } else {
    append(std::get<std::vector<Value>>(key));
  }
}

std::string_view KeySet::tupleBytesAt(std::size_t index) const {
  KeyReader reader(std::string_view(tupleBytes_).substr(static_cast<std::size_t>(words_.at(index))));
  std::uint64_t length = 0;
  reader.readLength(&length);
  return reader.rest().substr(0, static_cast<std::size_t>(length));
}

Key KeySet::keyAt(std::size_t index) const {
  if (kind_ == Kind::rowId) return rowIdAt(index);
  std::vector<Value> tuple;
  KeyReader(tupleBytesAt(index)).readValues(&tuple);
  return tuple;
}

std::size_t KeySet::growingEnd(std::size_t first, std::size_t last) const {
  std::size_t end = first + 1;
  for (std::int64_t before = rowIdAt(first); end < last; ++end) {
    const std::int64_t rowId = rowIdAt(end);
    if (rowId <= before) break;
    before = rowId;
  }
  return end;
}

std::size_t KeySet::firstNotBelow(std::size_t first, std::size_t last, std::int64_t rowId) const {
  while (first < last) {
    const std::size_t middle = first + (last - first) / 2;
    if (rowIdAt(middle) < rowId) {
      first = middle + 1;
    } else {
      last = middle;
    }
  }
  return first;
}

std::uint64_t KeySet::hashAt(std::size_t index) const {
  return kind_ == Kind::rowId ? mixed(rowIdAt(index)) : std::hash<std::string_view>()(tupleBytesAt(index));
}

std::uint64_t KeySet::hashOf(const Key& key) {
  if (const auto* rowId = std::get_if<std::int64_t>(&key)) return mixed(*rowId);
  std::string values;
  appendValues(&values, std::get<std::vector<Value>>(key));
  return std::hash<std::string_view>()(values);
}

void KeySet::eraseAt(std::size_t index) noexcept {
  words_.eraseAt(index);
  if (words_.count() == 0) clear();
}

void KeySet::replaceAt(std::size_t index, const Key& key) {
  if (kind_ == Kind::rowId) {
    words_.replaceAt(index, std::get<std::int64_t>(key));
    return;
  }
  const std::string packed = packedTuple(std::get<std::vector<Value>>(key));
  const std::size_t offset = tupleBytes_.size();
  tupleBytes_ += packed;
  try {
    words_.replaceAt(index, static_cast<std::int64_t>(offset));
  } catch (...) {
    tupleBytes_.resize(offset);
    throw;
  }
}

std::size_t KeySet::find(const Key& key, std::size_t hint) const {
  if (kind_ == Kind::rowId) {
    const auto* rowId = std::get_if<std::int64_t>(&key);
    if (rowId == nullptr) return npos;
    return findOutwards(count(), hint, [&](std::size_t index) { return words_.at(index) == *rowId; });
  }
  const auto* tuple = std::get_if<std::vector<Value>>(&key);
  if (tuple == nullptr) return npos;
  const std::string packed = packedTuple(*tuple);
  return findOutwards(count(), hint, [&](std::size_t index) {
    const auto offset = static_cast<std::size_t>(words_.at(index));
    return std::string_view(tupleBytes_).substr(offset, packed.size()) == packed;
  });
}

}  // namespace store
