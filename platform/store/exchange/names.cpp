#include "platform/store/exchange/names.h"

#include <set>

#include "platform/store/exchange/bytes/encoding.h"
#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/sql_tokens.h"

namespace store::exchange {

namespace {

constexpr std::size_t kMostTableCharacters = 31;
constexpr std::size_t kMostFieldCharacters = 64;

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The first `most` characters.
std::string_view shortened(std::string_view text, std::size_t most) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!isContinuation(text[at]) && count++ == most) return text.substr(0, at);
  }
  return text;
}

std::string valid(std::string_view text, std::size_t most) {
  std::string name;
  if (isWellFormed(text)) {
    for (const char character : text) {
      const auto byte = static_cast<unsigned char>(character);
      const bool isForbidden = std::string_view("`.!'[]\"*?").find(character) != std::string_view::npos;
      name += byte < 0x20 || byte == 0x7F ? ' ' : isForbidden ? '_' : character;
    }
  }
  const auto isLetterOrDigit = [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= 'a' && byte <= 'z');
  };
  while (!name.empty() && !isLetterOrDigit(name.front())) name.erase(0, 1);
  name = shortened(name, most);
  while (!name.empty() && (name.back() == ' ' || name.back() == '.')) name.pop_back();
  return name;
}

}  // namespace

std::string validTableName(std::string_view text) {
  std::string name = valid(text, kMostTableCharacters);
  if (name.empty()) return "Table1";
  // The catalogue's tables and SQLite's own begin so.
  const std::string lower = lowerCase(name);
  const bool isReserved = lower.starts_with("msys") || lower.starts_with("sqlite_");
  return isReserved ? valid("Table " + name, kMostTableCharacters) : name;
}

std::vector<std::string> validFieldNames(const std::vector<std::string>& texts) {
  std::vector<std::string> names;
  std::set<std::string> taken;
  for (const std::string& text : texts) {
    std::string base = valid(text, kMostFieldCharacters);
    if (base.empty()) base = "Field" + std::to_string(names.size() + 1);
    std::string name = base;
    for (int number = 2; !taken.insert(lowerCase(name)).second; ++number) {
      const std::string suffix = " " + std::to_string(number);
      name = std::string(shortened(base, kMostFieldCharacters - suffix.size())) + suffix;
    }
    names.push_back(std::move(name));
  }
  return names;
}

}  // namespace store::exchange
