#include "views/bytes/picture_head.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace {

using Bytes = std::span<const std::uint8_t>;

bool beginsWith(Bytes bytes, std::string_view start) {
  return bytes.size() >= start.size() &&
         std::equal(start.begin(), start.end(), bytes.begin(),
                    [](char wanted, std::uint8_t byte) { return static_cast<std::uint8_t>(wanted) == byte; });
}

/// 0 behind the end.
std::uint32_t byteAt(Bytes bytes, std::size_t place) {
  return place < bytes.size() ? bytes[place] : 0;
}

std::uint32_t bigEndian16(Bytes bytes, std::size_t place) {
  return byteAt(bytes, place) << 8 | byteAt(bytes, place + 1);
}

std::uint32_t bigEndian32(Bytes bytes, std::size_t place) {
  return bigEndian16(bytes, place) << 16 | bigEndian16(bytes, place + 2);
}

std::uint32_t littleEndian16(Bytes bytes, std::size_t place) {
  return byteAt(bytes, place) | byteAt(bytes, place + 1) << 8;
}

std::uint32_t littleEndian32(Bytes bytes, std::size_t place) {
  return littleEndian16(bytes, place) | littleEndian16(bytes, place + 2) << 16;
}

std::uint64_t pointsOf(std::uint64_t width, std::uint64_t height) {
  return width * height;
}

// Source: "Portable Network Graphics Specification", chapter 11.2.
PictureHead pngHead(Bytes bytes) {
  constexpr std::size_t kTypeOffset = 12;
  constexpr std::size_t kWidthOffset = 16;
  if (bytes.size() < kTypeOffset || !beginsWith(bytes.subspan(kTypeOffset), "IHDR"))
    return {PictureFormat::png};
  const std::uint32_t width = bigEndian32(bytes, kWidthOffset);
  const std::uint32_t height = bigEndian32(bytes, kWidthOffset + 4);
  return {PictureFormat::png, width, height, pointsOf(width, height)};
}

// Source: "Bitmap Storage", in the documentation of Windows. Before Windows 3.0 the numbers had 16 bits.
PictureHead bmpHead(Bytes bytes) {
  constexpr std::size_t kInfoOffset = 14;
  constexpr std::uint32_t kOldInfoLength = 12;
  const bool isOld = littleEndian32(bytes, kInfoOffset) == kOldInfoLength;
  const std::size_t place = kInfoOffset + 4;
  std::uint32_t width = isOld ? littleEndian16(bytes, place) : littleEndian32(bytes, place);
  std::uint32_t height = isOld ? littleEndian16(bytes, place + 2) : littleEndian32(bytes, place + 4);
  // A negative one says that the uppermost line comes first.
  if (!isOld && height > 0x80000000u) height = ~height + 1;
  return {PictureFormat::bmp, width, height, pointsOf(width, height)};
}

// Source: ITU-T recommendation T.81, annex B.

bool isFrameMarker(std::uint32_t marker) {
  constexpr std::uint32_t kTables[] = {0xC4, 0xC8, 0xCC};
  return marker >= 0xC0 && marker <= 0xCF &&
         std::find(std::begin(kTables), std::end(kTables), marker) == std::end(kTables);
}

PictureHead jpegHead(Bytes bytes) {
  constexpr std::uint32_t kScan = 0xDA;
  constexpr std::uint32_t kEnd = 0xD9;
  PictureHead head{PictureFormat::jpeg};
  std::uint64_t scans = 0;
  for (std::size_t place = 2; place + 3 < bytes.size();) {
    // Between markers there are the points of a scan, in which FF stands in front of 0 or of a mark to begin
    // anew, and what fills up.
    const std::uint32_t marker = byteAt(bytes, place + 1);
    const bool isMarker =
        bytes[place] == 0xFF && marker >= 0xC0 && marker < 0xFF && (marker < 0xD0 || marker > 0xD8);
    if (!isMarker) {
      ++place;
      continue;
    }
    if (marker == kEnd) break;
    if (isFrameMarker(marker) && head.width == 0) {
      head.height = bigEndian16(bytes, place + 5);
      head.width = bigEndian16(bytes, place + 7);
    }
    if (marker == kScan) ++scans;
    place += 2 + bigEndian16(bytes, place + 2);
  }
  head.work = pointsOf(head.width, head.height) * std::max<std::uint64_t>(scans, 1);
  return head;
}

// Source: "Graphics Interchange Format", version 89a.

std::size_t colorTableLength(std::uint32_t flags) {
  return (flags & 0x80) != 0 ? std::size_t{3} << ((flags & 7) + 1) : 0;
}

/// Behind the pieces that begin there.
std::size_t behindPieces(Bytes bytes, std::size_t place) {
  while (byteAt(bytes, place) != 0) place += byteAt(bytes, place) + 1;
  return place + 1;
}

PictureHead gifHead(Bytes bytes) {
  constexpr std::size_t kScreenOffset = 6;
  constexpr std::size_t kFirstBlock = 13;
  constexpr std::uint8_t kExtension = 0x21;
  constexpr std::uint8_t kFrame = 0x2C;
  constexpr std::size_t kFrameLength = 10;
  PictureHead head{PictureFormat::gif, littleEndian16(bytes, kScreenOffset),
                   littleEndian16(bytes, kScreenOffset + 2)};
  head.work = pointsOf(head.width, head.height);
  std::size_t place = kFirstBlock + colorTableLength(byteAt(bytes, kScreenOffset + 4));
  while (place < bytes.size()) {
    if (bytes[place] == kExtension) {
      place = behindPieces(bytes, place + 2);
    } else if (bytes[place] == kFrame) {
      head.work += pointsOf(littleEndian16(bytes, place + 5), littleEndian16(bytes, place + 7));
      place += kFrameLength + colorTableLength(byteAt(bytes, place + 9));
      place = behindPieces(bytes, place + 1);
    } else {
      break;
    }
  }
  return head;
}

struct FormatRow {
  PictureFormat format;
  const wchar_t* name;
  const wchar_t* ending;
};

constexpr std::array kFormats = {
    FormatRow{PictureFormat::png, L"PNG", L".png"},
    FormatRow{PictureFormat::jpeg, L"JPEG", L".jpg"},
    FormatRow{PictureFormat::gif, L"GIF", L".gif"},
    FormatRow{PictureFormat::bmp, L"BMP", L".bmp"},
};

const FormatRow& rowOf(PictureFormat format) {
  return *std::find_if(kFormats.begin(), kFormats.end(),
                       [format](const FormatRow& row) { return row.format == format; });
}

}  // namespace

std::optional<PictureHead> readPictureHead(std::span<const std::uint8_t> bytes) {
  using namespace std::string_view_literals;
  if (beginsWith(bytes, "\x89PNG\r\n\x1A\n"sv)) return pngHead(bytes);
  if (beginsWith(bytes, "\xFF\xD8\xFF"sv)) return jpegHead(bytes);
  if (beginsWith(bytes, "GIF87a"sv) || beginsWith(bytes, "GIF89a"sv)) return gifHead(bytes);
  // So may a text begin.
  constexpr std::size_t kShortestBmp = 26;
  constexpr std::size_t kReserved = 6;
  const bool isBmp =
      beginsWith(bytes, "BM"sv) && bytes.size() >= kShortestBmp && littleEndian32(bytes, kReserved) == 0;
  return isBmp ? std::optional(bmpHead(bytes)) : std::nullopt;
}

bool mayBeDecoded(const PictureHead& head) {
  // Of one that is too large the product could be too large, too.
  const std::uint64_t points = pointsOf(head.width, head.height);
  return points > 0 && head.width <= kMostPicturePoints && head.height <= kMostPicturePoints &&
         points <= kMostPicturePoints && head.work <= kMostPictureWork;
}

const wchar_t* nameOf(PictureFormat format) {
  return rowOf(format).name;
}

const wchar_t* endingOf(PictureFormat format) {
  return rowOf(format).ending;
}
