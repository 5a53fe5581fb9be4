#include "platform/store/exchange/formats/json_text.h"

#include "platform/store/exchange/bytes/encoding.h"

namespace store::exchange {

namespace {

constexpr std::string_view kHex = "0123456789abcdef";

void appendEscape(unsigned unit, std::string* json) {
  *json += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) *json += kHex[unit >> shift & 15];
}

void appendAscii(char character, std::string* json) {
  switch (character) {
    case '"':
      *json += "\\\"";
      break;
    case '\\':
      *json += "\\\\";
      break;
    case '\b':
      *json += "\\b";
      break;
    case '\f':
      *json += "\\f";
      break;
    case '\n':
      *json += "\\n";
      break;
    case '\r':
      *json += "\\r";
      break;
    case '\t':
      *json += "\\t";
      break;
    default:
      if (static_cast<unsigned char>(character) < 0x20) {
        appendEscape(static_cast<unsigned char>(character), json);
      } else {
        *json += character;
      }
  }
}

}  // namespace

bool appendJsonText(std::string_view text, std::string* json) {
  bool isWhole = isWellFormed(text);
  const std::string mendedText = isWhole ? std::string() : mended(text);
  if (!isWhole) text = mendedText;
  std::size_t behindHigh = std::string_view::npos;  // where the first half of a pair ended last
  *json += '"';
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto first = static_cast<unsigned char>(text[at]);
    // ED A0 80 to ED BF BF are the halves of pairs.
    const bool isSurrogate = first == 0xED && static_cast<unsigned char>(text[at + 1]) >= 0xA0;
    if (isSurrogate) {
      const unsigned second = static_cast<unsigned char>(text[at + 1]) & 0x3Fu;
      const unsigned third = static_cast<unsigned char>(text[at + 2]) & 0x3Fu;
      const unsigned unit = 0xD000u | second << 6 | third;
      const bool isHigh = unit < 0xDC00;
      if (!isHigh && behindHigh == at) isWhole = false;
      appendEscape(unit, json);
      at += 2;
      if (isHigh) behindHigh = at + 1;
    } else {
      appendAscii(text[at], json);
    }
  }
  *json += '"';
  return isWhole;
}

}  // namespace store::exchange
