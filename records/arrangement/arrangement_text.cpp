// An arrangement as a text to be kept.
//
// A version, then one part for each order and each condition, with "/" between them. A part is a letter for
// what it is, one for the letters, and its texts, each behind a ":". What is no plain character in a text,
// and what has a meaning here, is "\" and four hexadecimal digits.
#include <array>
#include <cwchar>
#include <utility>

#include "records/arrangement/arrangement.h"

namespace {

constexpr std::wstring_view kVersion = L"1";
constexpr std::wstring_view kSpecial = L"\\/:|";
constexpr wchar_t kIgnoreCase = L'i';
constexpr wchar_t kAsTheyAre = L'a';

std::wstring escaped(std::wstring_view text) {
  std::wstring all;
  for (const wchar_t unit : text) {
    const bool isSurrogate = unit >= 0xD800 && unit <= 0xDFFF;
    if (unit >= L' ' && !isSurrogate && kSpecial.find(unit) == kSpecial.npos) {
      all += unit;
      continue;
    }
    std::array<wchar_t, 8> code{};
    std::swprintf(code.data(), code.size(), L"\\%04X", static_cast<unsigned>(unit));
    all += code.data();
  }
  return all;
}

std::optional<std::wstring> unescaped(std::wstring_view text) {
  std::wstring all;
  for (std::size_t place = 0; place < text.size(); ++place) {
    if (text[place] != L'\\') {
      all += text[place];
      continue;
    }
    const std::wstring digits(text.substr(place + 1, 4));
    if (digits.size() != 4 || digits.find_first_not_of(L"0123456789ABCDEF") != digits.npos)
      return std::nullopt;
    all += static_cast<wchar_t>(std::wcstoul(digits.c_str(), nullptr, 16));
    place += 4;
  }
  return all;
}

std::vector<std::wstring_view> parted(std::wstring_view text, wchar_t sign) {
  std::vector<std::wstring_view> parts;
  for (std::size_t first = 0;;) {
    const std::size_t end = text.find(sign, first);
    parts.push_back(text.substr(first, end == text.npos ? end : end - first));
    if (end == text.npos) return parts;
    first = end + 1;
  }
}

/// A part has so many texts behind its letter: the name of the field first, if it has one.
struct ConditionKind {
  wchar_t letter;
  bool hasField;
  Arrangement::Test test;
  std::size_t textCount;
};
constexpr std::array kConditionKinds = {
    ConditionKind{L'=', true, Arrangement::Test::equal, 3},
    ConditionKind{L'~', true, Arrangement::Test::containing, 2},
    ConditionKind{L'*', false, Arrangement::Test::containing, 1},
    ConditionKind{L'0', true, Arrangement::Test::empty, 1},
    ConditionKind{L'1', true, Arrangement::Test::notEmpty, 1},
    ConditionKind{L'T', true, Arrangement::Test::isTrue, 1},
    ConditionKind{L'F', true, Arrangement::Test::isFalse, 1},
};
constexpr wchar_t kAscending = L'+';
constexpr wchar_t kDescending = L'-';

/// The most that an arrangement has.
constexpr std::size_t kMostOrders = 2;

std::wstring part(wchar_t letter, Arrangement::Letters letters, const std::vector<std::wstring>& texts) {
  std::wstring all = L"/";
  all += letter;
  all += letters == Arrangement::Letters::ignoreCase ? kIgnoreCase : kAsTheyAre;
  for (const std::wstring& text : texts) all += L":" + escaped(text);
  return all;
}

std::wstring partOf(const Arrangement::Condition& condition) {
  for (const ConditionKind& kind : kConditionKinds) {
    if (kind.hasField != condition.field.has_value() || kind.test != condition.test) continue;
    std::vector<std::wstring> texts;
    if (kind.hasField) texts.push_back(*condition.field);
    for (const std::wstring* text : {&condition.value, &condition.shown}) {
      if (texts.size() < kind.textCount) texts.push_back(*text);
    }
    return part(kind.letter, condition.letters, texts);
  }
  return {};
}

bool takeCondition(wchar_t letter, Arrangement::Letters letters, const std::vector<std::wstring>& texts,
                   Arrangement& arrangement) {
  for (const ConditionKind& kind : kConditionKinds) {
    if (kind.letter != letter || kind.textCount != texts.size()) continue;
    Arrangement::Condition condition;
    condition.test = kind.test;
    condition.letters = letters;
    std::size_t next = 0;
    if (kind.hasField) condition.field = texts[next++];
    for (std::wstring* text : {&condition.value, &condition.shown}) {
      if (next < texts.size()) *text = texts[next++];
    }
    arrangement.require(std::move(condition));
    return true;
  }
  return false;
}

/// False for a part that is none of those above.
bool take(std::wstring_view text, Arrangement& arrangement) {
  const std::vector<std::wstring_view> parts = parted(text, L':');
  if (parts[0].size() != 2) return false;
  const wchar_t letterCase = parts[0][1];
  if (letterCase != kIgnoreCase && letterCase != kAsTheyAre) return false;
  const auto letters =
      letterCase == kIgnoreCase ? Arrangement::Letters::ignoreCase : Arrangement::Letters::asTheyAre;
  std::vector<std::wstring> texts;
  for (std::size_t index = 1; index < parts.size(); ++index) {
    std::optional<std::wstring> plain = unescaped(parts[index]);
    if (!plain) return false;
    texts.push_back(std::move(*plain));
  }
  const wchar_t letter = parts[0][0];
  if (letter != kAscending && letter != kDescending) {
    return takeCondition(letter, letters, texts, arrangement);
  }
  if (texts.size() != 1 || arrangement.orders().size() == kMostOrders) return false;
  arrangement.thenBy({texts[0], letter == kDescending, letters});
  return true;
}

}  // namespace

std::wstring Arrangement::toText() const {
  std::wstring text(kVersion);
  for (const Order& order : orders_) {
    text += part(order.isDescending ? kDescending : kAscending, order.letters, {order.field});
  }
  for (const Condition& condition : conditions_) text += partOf(condition);
  return text;
}

Arrangement Arrangement::ofText(std::wstring_view text) {
  const std::vector<std::wstring_view> parts = parted(text, L'/');
  Arrangement arrangement;
  if (parts[0] != kVersion) return {};
  for (std::size_t index = 1; index < parts.size(); ++index) {
    if (!take(parts[index], arrangement)) return {};
  }
  return arrangement;
}
