#include "platform/store/rows/utf.h"

#include <cstdint>
#include <cstring>

namespace store {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool isHighSurrogate(char16_t unit) {
  return (unit & 0xFC00) == 0xD800;
}
bool isLowSurrogate(char16_t unit) {
  return (unit & 0xFC00) == 0xDC00;
}

template <typename Word>
Word load(const void* bytes) {
  Word word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

bool startsWithPair(const char16_t* units, const char16_t* end) {
  return end - units >= 2 && isHighSurrogate(units[0]) && isLowSurrogate(units[1]);
}

std::size_t lengthAsUtf8(std::u16string_view text) {
  // A surrogate counts 3 as the unpaired ones take; each pair takes two less than that.
  std::size_t length = text.size();
  for (const char16_t unit : text)
    length += static_cast<std::size_t>(unit >= 0x80) + static_cast<std::size_t>(unit >= 0x800);
  for (std::size_t i = 1; i < text.size(); ++i)
    length -= 2 * static_cast<std::size_t>(isHighSurrogate(text[i - 1]) && isLowSurrogate(text[i]));
  return length;
}

char continuation(std::uint32_t bits) {
  return static_cast<char>(0x80 | (bits & 0x3F));
}

/// Turns 8 bytes that are all ASCII into as many units; false when they are not.
bool widenAscii(const char* bytes, char16_t* units) {
  if ((load<std::uint64_t>(bytes) & 0x8080808080808080u) != 0) return false;
  for (std::size_t half = 0; half < 8; half += 4) {
    // Moves the four bytes apart; their order in memory comes out right on every byte order.
    std::uint64_t word = load<std::uint32_t>(bytes + half);
    word = (word | word << 16) & 0x0000FFFF0000FFFFu;
    word = (word | word << 8) & 0x00FF00FF00FF00FFu;
    std::memcpy(units + half, &word, sizeof word);
  }
  return true;
}

/// Turns 4 units that are all ASCII into as many bytes; false when they are not.
bool narrowAscii(const char16_t* units, char* bytes) {
  auto word = load<std::uint64_t>(units);
  if ((word & 0xFF80FF80FF80FF80u) != 0) return false;
  word = (word | word >> 8) & 0x0000FFFF0000FFFFu;
  word |= word >> 16;
  const auto narrow = static_cast<std::uint32_t>(word);
  std::memcpy(bytes, &narrow, sizeof narrow);
  return true;
}

/// What a lead byte announces: how many bytes follow, and the range of the first of them, which
/// excludes overlong forms and what lies beyond U+10FFFF. ED takes its whole range: the forms of
/// surrogates are let in.
struct Lead {
  unsigned followerCount;
  unsigned char firstLow;
  unsigned char firstHigh;
};

Lead leadOf(unsigned char byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF};
  if (byte == 0xE0) return {2, 0xA0, 0xBF};
  if (byte >= 0xE1 && byte <= 0xEF) return {2, 0x80, 0xBF};
  if (byte == 0xF0) return {3, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {3, 0x80, 0xBF};
  if (byte == 0xF4) return {3, 0x80, 0x8F};
  return {0, 0, 0};
}

/// Decodes the sequence at `bytes`, which begins with a byte from 80 on, or its maximal ill-formed part.
/// Moves both pointers behind what was read and written.
void decodeSequence(const char** bytes, const char* end, char16_t** units) {
  const auto byteAt = [](const char* at) { return static_cast<unsigned char>(*at); };
  const unsigned char first = byteAt((*bytes)++);
  const Lead lead = leadOf(first);
  std::uint32_t codePoint = first & (0x3Fu >> lead.followerCount);
  for (unsigned i = 0; i < lead.followerCount; ++i) {
    const unsigned low = i == 0 ? lead.firstLow : 0x80;
    const unsigned high = i == 0 ? lead.firstHigh : 0xBF;
    if (*bytes == end || byteAt(*bytes) < low || byteAt(*bytes) > high) {
      *(*units)++ = kReplacement;
      return;
    }
    codePoint = codePoint << 6 | (byteAt((*bytes)++) & 0x3Fu);
  }
  if (lead.followerCount == 0) {
    *(*units)++ = kReplacement;
  } else if (codePoint < 0x10000) {
    *(*units)++ = static_cast<char16_t>(codePoint);
  } else {
    *(*units)++ = static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
    *(*units)++ = static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF));
  }
}

}  // namespace

std::string toUtf8(std::u16string_view text) {
  std::string result(lengthAsUtf8(text), '\0');
  char* out = result.data();
  const char16_t* units = text.data();
  const char16_t* const end = units + text.size();
  while (units != end) {
    const std::uint32_t unit = *units;
    if (unit < 0x80 && end - units >= 4 && narrowAscii(units, out)) {
      out += 4;
      units += 4;
    } else if (unit < 0x80) {
      *out++ = static_cast<char>(unit);
      ++units;
    } else if (unit < 0x800) {
      *out++ = static_cast<char>(0xC0 | unit >> 6);
      *out++ = continuation(unit);
      ++units;
    } else if (startsWithPair(units, end)) {
      const std::uint32_t codePoint = 0x10000 + ((unit & 0x3FF) << 10) + (units[1] & 0x3FFu);
      *out++ = static_cast<char>(0xF0 | codePoint >> 18);
      *out++ = continuation(codePoint >> 12);
      *out++ = continuation(codePoint >> 6);
      *out++ = continuation(codePoint);
      units += 2;
    } else {
      *out++ = static_cast<char>(0xE0 | unit >> 12);
      *out++ = continuation(unit >> 6);
      *out++ = continuation(unit);
      ++units;
    }
  }
  return result;
}

std::size_t decodeUtf8(std::string_view text, char16_t* units) {
  const char16_t* const begin = units;
  const char* bytes = text.data();
  const char* const end = bytes + text.size();
  while (bytes != end) {
    if (static_cast<unsigned char>(*bytes) >= 0x80) {
      decodeSequence(&bytes, end, &units);
    } else if (end - bytes >= 8 && widenAscii(bytes, units)) {
      bytes += 8;
      units += 8;
    } else {
      *units++ = static_cast<char16_t>(*bytes++);
    }
  }
  return static_cast<std::size_t>(units - begin);
}

std::string_view beginningOf(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  constexpr std::size_t kMostContinuations = 3;
  const auto continues = [&text](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
  };
  std::size_t length = most;
  while (length > 0 && most - length < kMostContinuations && continues(length)) --length;
  return text.substr(0, continues(length) ? most : length);
}

}  // namespace store
