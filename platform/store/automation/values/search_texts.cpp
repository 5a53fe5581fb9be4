#include "platform/store/automation/values/search_texts.h"

#include <windows.h>

#include <array>
#include <clocale>
#include <cwchar>
#include <string>
#include <string_view>

#include "platform/store/automation/values/text.h"
#include "platform/store/automation/values/variant_values.h"

namespace automation {

namespace {

class SystemTexts : public store::ValueTexts {
 public:
  /// Asks how the user writes numbers, which may have changed since the last search.
  void refresh() {
    // Of finite numbers, the only ones whose text is asked for here: the digits, an exponent's sign and
    // letter, and what the user's locale puts among them.
    signs_ = u"+-.,Ee";
    for (const LCTYPE sign : {LOCALE_SDECIMAL, LOCALE_STHOUSAND, LOCALE_SPOSITIVESIGN})
      signs_ += signOf(sign);
    const std::u16string minus = signOf(LOCALE_SNEGATIVESIGN);
    signs_ += minus;
    hasPlainMinus_ = minus == u"-";
  }

  bool writesPlainIntegers() const override { return hasPlainMinus_; }
  std::u16string_view numberSigns() const override { return signs_; }

  bool textOf(const store::Cell& cell, const store::FieldType& type, std::u16string* text) override {
    const OwnedVariant value = shownValue(cell, type);
    OwnedVariant converted;
    if (!converted.convert(*value, VT_BSTR)) return false;
    const std::wstring_view units = viewOf(V_BSTR(converted.get()));
    text->assign(units.begin(), units.end());
    return true;
  }

 private:
  static std::u16string signOf(LCTYPE sign) {
    std::array<wchar_t, 16> units{};
    const int count = GetLocaleInfoW(LOCALE_USER_DEFAULT, sign, units.data(), static_cast<int>(units.size()));
    return {units.begin(), units.begin() + (count > 0 ? count - 1 : 0)};
  }

  std::u16string signs_;
  bool hasPlainMinus_ = false;
};

}  // namespace

const store::CaseFolding& upperCase() {
  static const store::CaseFolding folding([](char16_t unit) {
    // The desktop's library folds nothing but A to Z in its own locale.
    static const _locale_t locale = _create_locale(LC_CTYPE, "English_United States.1252");
    std::array<wchar_t, 2> text{static_cast<wchar_t>(unit), L'\0'};
    _wcsupr_l(text.data(), locale);
    return static_cast<char16_t>(text[0]);
  });
  return folding;
}

store::ValueTexts& systemTexts() {
  static SystemTexts texts;
  texts.refresh();
  return texts;
}

}  // namespace automation
