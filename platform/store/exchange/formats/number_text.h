#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace store::exchange {

/// The one text that each number is written as, and the test whether a text is such a one: then it comes out
/// as it went in.

/// Digits, "-" before a negative one: what writes a number as this text again. Empty for all else ("007",
/// "+3", "-0", more than 64 bits).
std::optional<std::int64_t> readPlainInteger(std::string_view text);

/// The shortest decimal that is read as the same double again, with an exponent only below 0.00001 and from
/// 10000000000000000 on; infinity is 9e999. There is no point in a whole number.
class RealText {
 public:
  explicit RealText(double value);
  operator std::string_view() const { return {text_.data(), length_}; }

 private:
  std::array<char, 40> text_;
  std::size_t length_;
};

/// The double of a text that RealText would write for it; empty for all else ("1e5", "1.50", "inf", "-0").
std::optional<double> readPlainReal(std::string_view text);

/// What a person may write for a whole number: a sign, zeros in front. Empty when it has other signs or more
/// than 64 bits.
std::optional<std::int64_t> readInteger(std::string_view text);

/// What a person may write for a number: sign, digits, point, exponent, and the texts of infinity. Empty for
/// all else, for a whole number that a double can't hold exactly, and for one of more than 17 digits that the
/// double doesn't have.
std::optional<double> readReal(std::string_view text);

/// Whether `real` is `text`, a decimal number, to the last of its digits, however both are written.
bool isSameDecimal(std::string_view text, double real);

/// Whether SQLite may take `text` for a number where a column prefers numbers.
bool looksNumeric(std::string_view text);

}  // namespace store::exchange
