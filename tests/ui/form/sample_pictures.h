#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "data/values/bytes.h"

/// Small pictures of each format, as pairs of digits. But for the JPEG they are three points wide and two
/// high: red, green and blue above black, white and red. Of the PNG the blue one lets everything through and
/// the second red one half.
namespace samples {

inline constexpr std::string_view kPng =
    "89504e470d0a1a0a0000000d49484452000000030000000208060000009d74661a000000174944415478da63f8cfc0f0"
    "1f0c410808fe8301034303008b0f0b766cb91c080000000049454e44ae426082";

inline constexpr std::string_view kBmp =
    "424d4e000000000000003600000028000000030000000200000001001800000000001800000000000000000000000000"
    "000000000000000000ffffff0000ff0000000000ff00ff00ff0000000000";

inline constexpr std::string_view kGif =
    "47494638396103000200f20400000000ff000000ff000000ffffffff00000000000000000021f90400000000002c0000"
    "00000300020000030418324091003b";

/// Eight by eight points of #C04020.
inline constexpr std::string_view kJpeg =
    "ffd8ffe000104a46494600010100000100010000ffdb004300100b0c0e0c0a100e0d0e1211101318281a181616183123"
    "251d283a333d3c3933383740485c4e404457453738506d51575f626768673e4d71797064785c656763ffdb0043011112"
    "121815182f1a1a2f63423842636363636363636363636363636363636363636363636363636363636363636363636363"
    "6363636363636363636363636363ffc00011080008000803012200021101031101ffc400150001010000000000000000"
    "0000000000000004ffc40014100100000000000000000000000000000000ffc400150101010000000000000000000000"
    "0000000506ffc40014110100000000000000000000000000000000ffda000c03010002110311003f008001aa07ffd9";

inline Bytes bytesOf(std::string_view digits) {
  const auto valueOf = [](char digit) { return digit <= '9' ? digit - '0' : digit - 'a' + 10; };
  Bytes bytes;
  for (std::size_t place = 0; place + 1 < digits.size(); place += 2) {
    bytes.push_back(static_cast<std::uint8_t>(valueOf(digits[place]) * 16 + valueOf(digits[place + 1])));
  }
  return bytes;
}

}  // namespace samples
