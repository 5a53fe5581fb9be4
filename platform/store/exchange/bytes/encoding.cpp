#include "platform/store/exchange/bytes/encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/rows/utf.h"
#include "platform/store/sql/sql_tokens.h"

namespace store::exchange {

namespace {

struct NamedEncoding {
  std::string_view name;
  Encoding encoding;
};

// The first name of each is the one that is told.
constexpr NamedEncoding kNames[] = {
    {"utf-8", Encoding::utf8},
    {"utf8", Encoding::utf8},
    {"windows-1252", Encoding::windows1252},
    {"cp1252", Encoding::windows1252},
    {"latin1", Encoding::windows1252},
    {"iso-8859-1", Encoding::windows1252},
    {"utf-16le", Encoding::utf16LittleEndian},
    {"utf-16be", Encoding::utf16BigEndian},
};

constexpr std::string_view kMark8 = "\xEF\xBB\xBF";
constexpr std::string_view kMark16Little = "\xFF\xFE";
constexpr std::string_view kMark16Big = "\xFE\xFF";
constexpr char kNoCharacter = '\xFF';

// 80 to 9F in Windows-1252; 0 where there is no character.
constexpr std::array<char16_t, 32> kHighControls{
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

constexpr std::size_t kBlock = 1 << 16;

std::size_t putUtf8(char* bytes, std::uint32_t code) {
  const auto continuation = [](std::uint32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
  if (code < 0x80) {
    bytes[0] = static_cast<char>(code);
    return 1;
  }
  if (code < 0x800) {
    bytes[0] = static_cast<char>(0xC0 | code >> 6);
    bytes[1] = continuation(code);
    return 2;
  }
  if (code < 0x10000) {
    bytes[0] = static_cast<char>(0xE0 | code >> 12);
    bytes[1] = continuation(code >> 6);
    bytes[2] = continuation(code);
    return 3;
  }
  bytes[0] = static_cast<char>(0xF0 | code >> 18);
  bytes[1] = continuation(code >> 12);
  bytes[2] = continuation(code >> 6);
  bytes[3] = continuation(code);
  return 4;
}

unsigned char byteAt(std::string_view text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

bool isContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

/// The length of the character of two bytes or more at `at`; 0 when it is ill-formed.
std::size_t lengthOfCharacter(std::string_view text, std::size_t at) {
  const unsigned char first = byteAt(text, at);
  const unsigned char second = byteAt(text, at + 1);
  if (!isContinuation(second)) return 0;
  if (first >= 0xC2 && first <= 0xDF) return 2;
  if (!isContinuation(byteAt(text, at + 2))) return 0;
  if (first >= 0xE0 && first <= 0xEF) return first == 0xE0 && second < 0xA0 ? 0 : 3;
  if (first < 0xF0 || first > 0xF4 || !isContinuation(byteAt(text, at + 3))) return 0;
  if (first == 0xF0 && second < 0x90) return 0;
  return first == 0xF4 && second > 0x8F ? 0 : 4;
}

/// How many bytes at the end of `text` may be the beginning of a character that goes on behind it.
std::size_t openEndOf(std::string_view text) {
  for (std::size_t back = 1; back <= std::min<std::size_t>(3, text.size()); ++back) {
    const unsigned char byte = byteAt(text, text.size() - back);
    if (isContinuation(byte)) continue;
    const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
    return length > back ? back : 0;
  }
  return 0;
}

Status readBlock(ByteSource& source, std::vector<char>* block, std::size_t kept, std::size_t* count) {
  *count = 0;
  return source.read(block->data() + kept, block->size() - kept, count);
}

/// How many bytes of the front of `text` are whole characters of UTF-8.
std::size_t wellFormedLength(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    std::uint64_t word = 0;
    if (text.size() - at >= sizeof word) {
      std::memcpy(&word, text.data() + at, sizeof word);
      if ((word & 0x8080808080808080u) == 0) {
        at += sizeof word;
        continue;
      }
    }
    if (byteAt(text, at) < 0x80) {
      ++at;
      continue;
    }
    const std::size_t length = lengthOfCharacter(text, at);
    if (length == 0) break;
    at += length;
  }
  return at;
}

/// Finds the first byte that is no UTF-8; its line is 0 when there is none.
Status findNotUtf8(ByteSource& source, BytePlace* place) {
  std::vector<char> block(kBlock);
  std::size_t kept = 0;
  BytePlace at{.line = 1};
  for (;;) {
    std::size_t count = 0;
    if (Status status = readBlock(source, &block, kept, &count); !status) return status;
    const std::string_view text(block.data(), kept + count);
    const std::size_t open = count == 0 ? 0 : openEndOf(text);
    const std::string_view closed = text.substr(0, text.size() - open);
    const std::size_t good = wellFormedLength(closed);
    at.line += std::count(closed.begin(), closed.begin() + static_cast<std::ptrdiff_t>(good), '\n');
    at.offset += static_cast<std::int64_t>(good);
    if (good < closed.size()) {
      *place = at;
      return {};
    }
    if (count == 0) break;
    std::memmove(block.data(), block.data() + closed.size(), open);
    kept = open;
  }
  *place = {};
  return {};
}

}  // namespace

std::string_view nameOf(Encoding encoding) {
  return std::find_if(std::begin(kNames), std::end(kNames),
                      [encoding](const NamedEncoding& row) { return row.encoding == encoding; })
      ->name;
}

std::optional<Encoding> encodingOf(std::string_view name) {
  for (const NamedEncoding& row : kNames) {
    if (equalsIgnoringCase(row.name, name)) return row.encoding;
  }
  return std::nullopt;
}

bool isWellFormed(std::string_view text) {
  return wellFormedLength(text) == text.size();
}

std::string mended(std::string_view text) {
  std::vector<char16_t> units(text.size());
  const std::size_t count = decodeUtf8(text, units.data());
  return toUtf8({units.data(), count});
}

Status detectEncoding(ByteSource& source, Encoding* encoding, BytePlace* notUtf8) {
  if (Status status = source.rewind(); !status) return status;
  std::vector<char> head(kMark8.size());
  std::size_t length = 0;
  for (std::size_t count = 1; count > 0 && length < head.size(); length += count) {
    if (Status status = readBlock(source, &head, length, &count); !status) return status;
  }
  if (Status status = source.rewind(); !status) return status;
  const std::string_view start(head.data(), length);
  Encoding found = Encoding::utf8;
  if (start.starts_with(kMark16Little)) {
    found = Encoding::utf16LittleEndian;
  } else if (start.starts_with(kMark16Big)) {
    found = Encoding::utf16BigEndian;
  } else if (!start.starts_with(kMark8)) {
    BytePlace place;
    if (Status status = findNotUtf8(source, &place); !status) return status;
    if (Status status = source.rewind(); !status) return status;
    if (place.line > 0) found = Encoding::windows1252;
    if (notUtf8 != nullptr) *notUtf8 = place;
  }
  *encoding = found;
  return {};
}

TextSource::TextSource(ByteSource& source, Encoding encoding)
    : source_(source), encoding_(encoding), block_(kBlock) {}

Status TextSource::read(char* bytes, std::size_t room, std::size_t* count) {
  if (encoding_ == Encoding::utf8 && !isAtStart_ && first_ == last_) return readPlain(bytes, room, count);
  *count = 0;
  while (*count == 0) {
    const std::size_t unread = last_ - first_;
    const bool needsMore = unread < 4 && !isAtEnd_;
    if (needsMore) {
      if (Status status = fill(); !status) return status;
      continue;
    }
    if (isAtStart_) {
      isAtStart_ = false;
      const std::string_view start(block_.data() + first_, last_ - first_);
      const std::string_view mark = encoding_ == Encoding::utf8                ? kMark8
                                    : encoding_ == Encoding::utf16LittleEndian ? kMark16Little
                                    : encoding_ == Encoding::utf16BigEndian    ? kMark16Big
                                                                               : std::string_view("\0", 0);
      if (start.starts_with(mark)) first_ += mark.size();
      continue;
    }
    if (first_ == last_) return {};
    switch (encoding_) {
      case Encoding::utf8:
        *count = std::min(room, last_ - first_);
        std::memcpy(bytes, block_.data() + first_, *count);
        first_ += *count;
        break;
      case Encoding::windows1252:
        *count = convertSingleBytes(bytes, room);
        break;
      default:
        *count = convertUnits(bytes, room);
    }
  }
  return {};
}

Status TextSource::readPlain(char* bytes, std::size_t room, std::size_t* count) {
  Status status = source_.read(bytes, room, count);
  if (status) bytesRead_ += static_cast<std::int64_t>(*count);
  return status;
}

Status TextSource::fill() {
  const std::size_t kept = last_ - first_;
  std::memmove(block_.data(), block_.data() + first_, kept);
  first_ = 0;
  last_ = kept;
  std::size_t count = 0;
  if (Status status = readBlock(source_, &block_, kept, &count); !status) return status;
  last_ += count;
  bytesRead_ += static_cast<std::int64_t>(count);
  isAtEnd_ = count == 0;
  return {};
}

std::size_t TextSource::convertSingleBytes(char* bytes, std::size_t room) {
  std::size_t used = 0;
  for (; first_ < last_ && used + 3 <= room; ++first_) {
    const auto byte = static_cast<unsigned char>(block_[first_]);
    if (byte < 0x80) {
      bytes[used++] = static_cast<char>(byte);
      continue;
    }
    const char16_t code = byte < 0xA0 ? kHighControls[byte - 0x80u] : byte;
    if (code == 0) {
      bytes[used++] = kNoCharacter;
    } else {
      used += putUtf8(bytes + used, code);
    }
  }
  return used;
}

std::size_t TextSource::convertUnits(char* bytes, std::size_t room) {
  const bool isBig = encoding_ == Encoding::utf16BigEndian;
  const auto unitAt = [&](std::size_t at) {
    const auto low = static_cast<unsigned char>(block_[at + (isBig ? 1 : 0)]);
    const auto high = static_cast<unsigned char>(block_[at + (isBig ? 0 : 1)]);
    return static_cast<std::uint32_t>(high << 8 | low);
  };
  std::size_t used = 0;
  while (last_ - first_ >= 2 && used + 4 <= room) {
    const std::uint32_t unit = unitAt(first_);
    const bool isHigh = (unit & 0xFC00) == 0xD800;
    if (isHigh && last_ - first_ < 4 && !isAtEnd_) break;
    std::uint32_t code = unit;
    std::size_t length = 2;
    if (isHigh && last_ - first_ >= 4 && (unitAt(first_ + 2) & 0xFC00) == 0xDC00) {
      code = 0x10000 + ((unit & 0x3FF) << 10) + (unitAt(first_ + 2) & 0x3FF);
      length = 4;
    }
    used += putUtf8(bytes + used, code);
    first_ += length;
  }
  if (used == 0 && last_ - first_ == 1 && isAtEnd_) {
    bytes[used++] = kNoCharacter;
    ++first_;
  }
  return used;
}

}  // namespace store::exchange
