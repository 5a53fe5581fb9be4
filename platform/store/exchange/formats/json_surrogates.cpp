#include "platform/store/exchange/formats/json_surrogates.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace store::exchange {

namespace {

// Behind the mark stand the four digits of the half; the mark itself is hidden as the mark and "ffff".
constexpr std::string_view kMark = "\xF4\x8F\xBF\xBF";
constexpr std::string_view kMarkEscape = "\\udbff\\udfff";
constexpr std::size_t kDigits = 4;
constexpr std::size_t kEscapeLength = 6;

bool isHexDigit(char character) {
  return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
         (character >= 'A' && character <= 'F');
}

/// The unit of the escape at `at`; -1 when there is none.
int unitOfEscape(std::string_view json, std::size_t at) {
  if (json.size() < at + kEscapeLength || json[at] != '\\' || json[at + 1] != 'u') return -1;
  for (std::size_t digit = 0; digit < kDigits; ++digit) {
    if (!isHexDigit(json[at + 2 + digit])) return -1;
  }
  return static_cast<int>(std::strtol(std::string(json.substr(at + 2, kDigits)).c_str(), nullptr, 16));
}

bool isHigh(int unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLow(int unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

std::string digitsOf(int unit) {
  constexpr std::string_view kHex = "0123456789abcdef";
  std::string digits;
  for (int shift = 12; shift >= 0; shift -= 4) digits += kHex[static_cast<std::size_t>(unit >> shift & 15)];
  return digits;
}

/// The unit of the three-byte form at `at`; -1 when there is none.
int unitOfBytes(std::string_view text, std::size_t at) {
  if (text.size() < at + 3 || static_cast<unsigned char>(text[at]) != 0xED) return -1;
  const auto second = static_cast<unsigned char>(text[at + 1]);
  const auto third = static_cast<unsigned char>(text[at + 2]);
  if (second < 0xA0 || second > 0xBF || (third & 0xC0) != 0x80) return -1;
  return 0xD000 | (second & 0x3F) << 6 | (third & 0x3F);
}

}  // namespace

void hideSurrogates(std::string* json) {
  const bool mayHold = json->find("\\ud") != std::string::npos || json->find("\\uD") != std::string::npos ||
                       json->find('\xED') != std::string::npos || json->find(kMark) != std::string::npos;
  if (!mayHold) return;
  std::string hidden;
  const std::string_view text = *json;
  for (std::size_t at = 0; at < text.size();) {
    if (text.compare(at, kMark.size(), kMark) == 0) {
      hidden.append(kMark).append("ffff");
      at += kMark.size();
    } else if (const int bytes = unitOfBytes(text, at); bytes >= 0) {
      hidden.append(kMark).append(digitsOf(bytes));
      at += 3;
    } else if (text[at] == '\\') {
      const int unit = unitOfEscape(text, at);
      const int next = isHigh(unit) ? unitOfEscape(text, at + kEscapeLength) : -1;
      if (isHigh(unit) && isLow(next)) {
        hidden.append(text.substr(at, 2 * kEscapeLength));
        if (unit == 0xDBFF && next == 0xDFFF) hidden.append("ffff");
        at += 2 * kEscapeLength;
      } else if (isHigh(unit) || isLow(unit)) {
        hidden.append(kMarkEscape).append(digitsOf(unit));
        at += kEscapeLength;
      } else {
        hidden.append(text.substr(at, 2));
        at += 2;
      }
    } else {
      hidden += text[at++];
    }
  }
  *json = std::move(hidden);
}

void showSurrogates(std::string* text) {
  std::size_t at = text->find(kMark);
  if (at == std::string::npos) return;
  std::string shown = text->substr(0, at);
  while (at < text->size()) {
    if (text->compare(at, kMark.size(), kMark) != 0) {
      shown += (*text)[at++];
      continue;
    }
    const std::string digits = text->substr(at + kMark.size(), kDigits);
    const long unit = std::strtol(digits.c_str(), nullptr, 16);
    if (unit == 0xFFFF) {
      shown.append(kMark);
    } else {
      shown += '\xED';
      shown += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
      shown += static_cast<char>(0x80 | (unit & 0x3F));
    }
    at += kMark.size() + kDigits;
  }
  *text = std::move(shown);
}

}  // namespace store::exchange
