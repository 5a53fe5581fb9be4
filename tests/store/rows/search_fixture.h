#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/store/rows/case_folding.h"
#include "platform/store/rows/text_test.h"
#include "platform/store/rows/utf.h"

namespace store {

/// A folding with the peculiarities that a system's may have: a letter outside of ASCII that becomes one of
/// ASCII, two that become one, one that becomes a third.
inline char16_t oddlyFolded(char16_t unit) {
  if (unit >= u'a' && unit <= u'z') return static_cast<char16_t>(unit - 0x20);
  if (unit >= 0xE0 && unit <= 0xFE && unit != 0xF7) return static_cast<char16_t>(unit - 0x20);
  if (unit >= 0x3B1 && unit <= 0x3C9) return static_cast<char16_t>(unit == 0x3C2 ? 0x3A3 : unit - 0x20);
  if (unit >= 0x430 && unit <= 0x44F) return static_cast<char16_t>(unit - 0x20);
  switch (unit) {
    case 0x131:
      return u'I';
    case 0x17F:
      return u'S';
    case 0x212A:
      return u'K';
    case 0xFF:
      return 0x178;
    default:
      return unit;
  }
}

inline const CaseFolding& oddFolding() {
  static const CaseFolding folding(oddlyFolded);
  return folding;
}

/// Texts that can't be taken for any others: numbers in a notation of their own.
class OddTexts : public ValueTexts {
 public:
  bool writesPlainIntegers() const override { return true; }
  std::u16string_view numberSigns() const override { return u"+-,E"; }
  bool textOf(const Cell& cell, const FieldType&, std::u16string* text) override {
    if (cell.kind != CellKind::real) return false;
    std::string number = std::to_string(cell.real);
    for (char& sign : number) sign = sign == '.' ? ',' : sign;
    number += "E+1";
    text->assign(number.begin(), number.end());
    return true;
  }
};

inline std::u16string decoded(std::string_view utf8) {
  std::u16string units(utf8.size(), u'\0');
  units.resize(decodeUtf8(utf8, units.data()));
  return units;
}

/// The plain way: all units of both, a zero shown as U+2400, folded, and then compared.
inline std::u16string shown(std::u16string units, const CaseFolding* folding) {
  for (char16_t& unit : units) {
    if (unit == 0) unit = 0x2400;
    if (folding != nullptr) unit = folding->of(unit);
  }
  return units;
}
inline bool occursPlainly(std::u16string_view needle, std::u16string_view text, const CaseFolding* folding) {
  return shown(std::u16string(text), folding).find(shown(std::u16string(needle), folding)) !=
         std::u16string::npos;
}

}  // namespace store
