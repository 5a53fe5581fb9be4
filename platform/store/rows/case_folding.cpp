#include "platform/store/rows/case_folding.h"

#include <cstddef>

namespace store {

CaseFolding::CaseFolding(const std::function<char16_t(char16_t)>& folded) {
  constexpr std::size_t kUnitCount = 0x10000;
  units_.reserve(kUnitCount);
  for (std::size_t number = 0; number < kUnitCount; ++number) {
    const auto unit = static_cast<char16_t>(number);
    units_.push_back(folded(unit));
    if (units_.back() != unit) changes_.push_back({unit, units_.back()});
  }
}

const CaseFolding& asciiCapitals() {
  static const CaseFolding folding([](char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
  });
  return folding;
}

}  // namespace store
