#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/case_folding.h"

namespace store {

/// A text that is looked for in the texts of values.
///
/// What occurs in what is decided on UTF-16 units: those of the value (decodeUtf8), a zero among them
/// replaced by U+2400, folded unit by unit as the needle is. The functions here answer exactly that, mostly
/// without decoding anything.
class TextNeedle {
 public:
  /// Without a `folding`, which outlives the needle, every unit stands for itself. A zero in `text` counts as
  /// U+2400, too. May throw std::bad_alloc.
  TextNeedle(std::u16string_view text, const CaseFolding* folding);

  /// The empty text occurs in every text.
  bool isEmpty() const { return units_.empty(); }
  /// The units that are compared: those of the text, folded.
  std::u16string_view units() const { return units_; }
  bool ignoresCase() const { return folding_ != nullptr; }
  char16_t folded(char16_t unit) const { return folding_ == nullptr ? unit : folding_->of(unit); }

  /// `utf8` may be ill-formed.
  bool occursIn(std::string_view utf8) const noexcept;
  bool occursInUnits(std::u16string_view text) const noexcept;

 private:
  class Matcher;

  void makePattern();
  bool patternOccursIn(std::string_view text) const noexcept;
  bool restMatches(const unsigned char* text) const noexcept;
  bool occursDecoded(std::string_view utf8) const noexcept;

  const CaseFolding* folding_;
  std::u16string units_;
  std::vector<std::size_t> fallbacks_;  // for each length of a partial match, the next shorter one to try

  // Bytes that say the same as the units: a byte of a text matches when it is equal to `pattern_` after the
  // bits of `ignored_` were set in it. Empty when there are no such bytes.
  std::string pattern_;
  std::string ignored_;
  // Other units than those that the pattern covers stand for one of the units, too.
  bool hasOtherSources_ = false;
  // There is a unit for which no ASCII stands, so that a text of ASCII alone can't match.
  bool needsOtherThanAscii_ = false;
};

}  // namespace store
