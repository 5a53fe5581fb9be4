#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// Values as a search meets them, as literals of SQL: of every kind, with signs whose letter cases are
/// special, embedded zeros, bytes that are no text and numbers at the ends. Few different ones, so that much
/// of what is looked for is found and more is nearly found. The same ones for the same seed.
class RandomValues {
 public:
  explicit RandomValues(std::uint64_t seed) : random_(seed) {}

  /// From 0 to `most`.
  std::size_t number(std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random_);
  }

  /// UTF-8, but for what it holds of halves of pairs and of stray bytes.
  std::string text(std::size_t mostPieces) {
    std::string text;
    for (std::size_t count = number(mostPieces); count > 0; --count) text += piece();
    return text;
  }

  std::string literal() {
    switch (number(9)) {
      case 0:
        return "NULL";
      case 1:
        return std::to_string(static_cast<std::int64_t>(number(2000)) - 1000);
      case 2:
        return std::to_string(static_cast<std::int64_t>(random_()));
      case 3:
        return std::to_string(static_cast<double>(number(100000)) / 128 - 300);
      case 4:
        return number(3) == 0 ? "-9e999" : "1.5e300";
      case 5:
        return "x'" + hexOf(text(4)) + "'";
      case 6:
        return asText(text(2) + std::string(1, '\0') + text(2));
      default:
        return asText(text(6));
    }
  }

  /// Whatever the bytes are.
  static std::string asText(const std::string& bytes) { return "CAST(x'" + hexOf(bytes) + "' AS TEXT)"; }

 private:
  std::string piece() {
    static const std::vector<std::string> pieces{"a",
                                                 "A",
                                                 "b",
                                                 "ß",
                                                 "İ",
                                                 "ı",
                                                 "ς",
                                                 "Σ",
                                                 "σ",
                                                 "e\xCC\x81",
                                                 "é",
                                                 "É",
                                                 "K",
                                                 "\u212A",
                                                 "0",
                                                 "1",
                                                 "9",
                                                 ".",
                                                 "-",
                                                 "\xF0\x9F\x98\x80",
                                                 "\xED\xA0\xBD",
                                                 "\xFF",
                                                 "\xE4\xB8",
                                                 "中",
                                                 "x y"};
    return pieces[number(pieces.size() - 1)];
  }

  static std::string hexOf(const std::string& bytes) {
    std::string hex;
    for (const char byte : bytes) {
      constexpr std::string_view kDigits = "0123456789abcdef";
      hex += kDigits[static_cast<unsigned char>(byte) >> 4];
      hex += kDigits[static_cast<unsigned char>(byte) & 15];
    }
    return hex;
  }

  std::mt19937_64 random_;
};
