#include "platform/store/rows/text_needle.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "platform/store/rows/utf.h"

namespace store {
namespace {

constexpr char16_t kSymbolForNull = 0x2400;
constexpr char16_t kReplacement = 0xFFFD;
constexpr unsigned char kCaseBit = 0x20;

// Sixteen bytes at once, where the processor has them; compilers make plain steps of it elsewhere.
using Bytes = unsigned char __attribute__((vector_size(16)));
constexpr std::size_t kStep = sizeof(Bytes);

Bytes load(const unsigned char* bytes) {
  Bytes loaded;
  std::memcpy(&loaded, bytes, kStep);
  return loaded;
}

template <typename Vector>
bool isAny(Vector bytes) {
  const auto words = std::bit_cast<std::array<std::uint64_t, 2>>(bytes);
  return (words[0] | words[1]) != 0;
}

bool isAscii(std::string_view text) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  std::size_t at = 0;
  Bytes all{};
  for (; at + kStep <= text.size(); at += kStep) all |= load(bytes + at);
  unsigned char rest = 0;
  for (; at < text.size(); ++at) rest |= bytes[at];
  return !isAny(all & 0x80) && (rest & 0x80) == 0;
}

bool isAsciiLetter(char16_t unit) {
  return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

bool isSurrogate(char16_t unit) {
  return (unit & 0xF800) == 0xD800;
}

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Where `utf8` can be cut at or a little before `place`, so that both parts decode as the whole does.
std::size_t cutBefore(std::string_view utf8, std::size_t place) {
  if (place >= utf8.size()) return utf8.size();
  // A sequence has at most three continuations: a fourth one belongs to none, and may begin a part.
  for (std::size_t back = 0; back < 4; ++back) {
    if (!isContinuation(utf8[place - back])) return place - back;
  }
  return place;
}

}  // namespace

/// Goes through the units of a text one by one, each of which it sees once.
class TextNeedle::Matcher {
 public:
  explicit Matcher(const TextNeedle& needle) : needle_(needle), units_(needle.units_) {}

  /// Whether the needle ends with this unit of the text.
  bool take(char16_t unit) {
    const char16_t shown = needle_.folded(unit == 0 ? kSymbolForNull : unit);
    while (matched_ > 0 && units_[matched_] != shown) matched_ = needle_.fallbacks_[matched_];
    if (units_[matched_] == shown) ++matched_;
    return matched_ == units_.size();
  }

 private:
  const TextNeedle& needle_;
  std::u16string_view units_;
  std::size_t matched_ = 0;  // so many units of the needle were the last ones of the text
};

TextNeedle::TextNeedle(std::u16string_view text, const CaseFolding* folding)
    : folding_(folding), units_(text) {
  for (char16_t& unit : units_) unit = folded(unit == 0 ? kSymbolForNull : unit);
  if (units_.empty()) return;
  fallbacks_.assign(units_.size(), 0);
  for (std::size_t length = 1, shorter = 0; length + 1 < units_.size(); ++length) {
    while (shorter > 0 && units_[shorter] != units_[length]) shorter = fallbacks_[shorter];
    if (units_[shorter] == units_[length]) ++shorter;
    fallbacks_[length + 1] = shorter;
  }
  makePattern();
}

// A byte sequence says the same as the units if each unit stands for itself alone, or for an ASCII letter in
// both cases: bytes of ASCII are units of their own in ill-formed texts, too, and a lead byte always begins a
// sequence, so that a well-formed one is found exactly where its unit is. Not so for surrogates (two forms in
// UTF-8), U+FFFD (every ill-formed sequence) and U+2400 (a zero).
void TextNeedle::makePattern() {
  bool hasPattern = true;
  for (const char16_t unit : units_) {
    bool fromAscii = unit < 0x80 && folded(unit) == unit;
    bool fromLower = false;
    bool fromOthers = unit >= 0x80 && folded(unit) == unit;
    bool isPlain = folded(unit) == unit;
    if (folding_ != nullptr) {
      for (const CaseFolding::Change& change : folding_->changes()) {
        if (change.to != unit) continue;
        const bool isOtherCase = isAsciiLetter(unit) && isAsciiLetter(change.from) &&
                                 (change.from | kCaseBit) == (unit | kCaseBit);
        if (isOtherCase) {
          fromLower = true;
        } else if (change.from < 0x80) {
          isPlain = false;
        } else {
          hasOtherSources_ = true;
          fromOthers = true;
        }
        fromAscii |= change.from < 0x80;
      }
    }
    if (unit == kSymbolForNull) fromAscii = true;  // a zero is shown as that
    if (!fromAscii && fromOthers) needsOtherThanAscii_ = true;
    if (!isPlain || isSurrogate(unit) || unit == kReplacement || unit == kSymbolForNull) hasPattern = false;
    const std::string bytes = toUtf8({&unit, 1});
    pattern_ += fromLower ? std::string(1, static_cast<char>(bytes[0] | kCaseBit)) : bytes;
    ignored_ += fromLower ? std::string(1, static_cast<char>(kCaseBit)) : std::string(bytes.size(), '\0');
  }
  if (hasPattern) return;
  pattern_.clear();
  ignored_.clear();
}

bool TextNeedle::occursIn(std::string_view utf8) const noexcept {
  if (units_.empty()) return true;
  if (!pattern_.empty()) {
    if (patternOccursIn(utf8)) return true;
    if (!hasOtherSources_) return false;
    // What else stands for one of the units is not ASCII.
    return !isAscii(utf8) && occursDecoded(utf8);
  }
  if (needsOtherThanAscii_ && isAscii(utf8)) return false;
  return occursDecoded(utf8);
}

bool TextNeedle::restMatches(const unsigned char* text) const noexcept {
  for (std::size_t index = 1; index + 1 < pattern_.size(); ++index) {
    if ((text[index] | static_cast<unsigned char>(ignored_[index])) !=
        static_cast<unsigned char>(pattern_[index])) {
      return false;
    }
  }
  return true;
}

// Looks for the first and the last byte at their distance, and only then at what lies between them.
bool TextNeedle::patternOccursIn(std::string_view text) const noexcept {
  const std::size_t length = pattern_.size();
  if (text.size() < length) return false;
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  const std::size_t toLast = length - 1;
  const auto first = static_cast<unsigned char>(pattern_[0]);
  const auto last = static_cast<unsigned char>(pattern_[toLast]);
  const auto firstIgnored = static_cast<unsigned char>(ignored_[0]);
  const auto lastIgnored = static_cast<unsigned char>(ignored_[toLast]);
  const auto matchesAt = [&](std::size_t at) {
    return (bytes[at] | firstIgnored) == first && (bytes[at + toLast] | lastIgnored) == last &&
           restMatches(bytes + at);
  };
  const std::size_t placeCount = text.size() - toLast;
  if (placeCount < kStep) {
    for (std::size_t at = 0; at < placeCount; ++at) {
      if (matchesAt(at)) return true;
    }
    return false;
  }
  for (std::size_t at = 0; at < placeCount; at += kStep) {
    // The last step looks at some places again.
    const std::size_t start = std::min(at, placeCount - kStep);
    const auto hits = ((load(bytes + start) | firstIgnored) == first) &
                      ((load(bytes + start + toLast) | lastIgnored) == last);
    if (!isAny(hits)) continue;
    for (std::size_t lane = 0; lane < kStep; ++lane) {
      if (hits[lane] != 0 && restMatches(bytes + start + lane)) return true;
    }
  }
  return false;
}

bool TextNeedle::occursDecoded(std::string_view utf8) const noexcept {
  constexpr std::size_t kPart = 1024;
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): as much as is decoded is read
  std::array<char16_t, kPart> units;
  Matcher matcher(*this);
  for (std::size_t at = 0; at < utf8.size();) {
    const std::size_t end = cutBefore(utf8, at + kPart);
    const std::size_t count = decodeUtf8(utf8.substr(at, end - at), units.data());
    for (std::size_t index = 0; index < count; ++index) {
      if (matcher.take(units[index])) return true;
    }
    at = end;
  }
  return false;
}

bool TextNeedle::occursInUnits(std::u16string_view text) const noexcept {
  if (units_.empty()) return true;
  Matcher matcher(*this);
  return std::any_of(text.begin(), text.end(), [&](char16_t unit) { return matcher.take(unit); });
}

}  // namespace store
