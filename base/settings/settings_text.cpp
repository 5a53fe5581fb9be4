#include "base/settings/settings_text.h"

#include <cstring>
#include <utility>

namespace settings {

namespace {

constexpr std::wstring_view kHeading = L"Windows Registry Editor Version 5.00";
constexpr std::wstring_view kRoot = L"HKEY_CURRENT_USER\\";
constexpr std::wstring_view kLineEnd = L"\r\n";
constexpr wchar_t kDigits[] = L"0123456789abcdef";

// ---- Writing

void appendNumber(std::wstring& text, DWORD number, int digitCount) {
  for (int shift = 4 * (digitCount - 1); shift >= 0; shift -= 4) text += kDigits[(number >> shift) & 15];
}

void appendQuoted(std::wstring& text, std::wstring_view content) {
  text += L'"';
  for (const wchar_t sign : content) {
    if (sign == L'"' || sign == L'\\') text += L'\\';
    text += sign;
  }
  text += L'"';
}

void appendBytes(std::wstring& text, const Value& value) {
  text += L"hex";
  if (value.type != REG_BINARY) {
    text += L'(';
    appendNumber(text, value.type, value.type > 0xF ? 8 : 1);
    text += L')';
  }
  text += L':';
  for (std::size_t i = 0; i < value.bytes.size(); ++i) {
    if (i != 0) text += L',';
    appendNumber(text, value.bytes[i], 2);
  }
}

/// The text of a value that can stand between quotes on one line: whole characters, the last of which is the
/// only zero, and none that ends lines.
std::optional<std::wstring> lineOf(const Value& value) {
  if (value.type != REG_SZ || value.bytes.empty() || value.bytes.size() % sizeof(wchar_t) != 0) return {};
  std::wstring text(value.bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), value.bytes.data(), value.bytes.size());
  if (text.back() != L'\0') return {};
  text.pop_back();
  for (const wchar_t sign : text) {
    if (sign < L' ') return {};
  }
  return text;
}

void appendValue(std::wstring& text, const std::wstring& name, const Value& value) {
  appendQuoted(text, name);
  text += L'=';
  if (const std::optional<std::wstring> line = lineOf(value)) {
    appendQuoted(text, *line);
  } else if (value.type == REG_DWORD && value.bytes.size() == sizeof(DWORD)) {
    DWORD number = 0;
    std::memcpy(&number, value.bytes.data(), sizeof(number));
    text += L"dword:";
    appendNumber(text, number, 8);
  } else {
    appendBytes(text, value);
  }
  text += kLineEnd;
}

// ---- Reading

/// Takes one line off the beginning of `text`, without its end; one that ends with a backslash goes on in the
/// next.
std::wstring takeLine(std::wstring_view& text) {
  std::wstring line;
  bool goesOn = true;
  while (goesOn && !text.empty()) {
    const std::size_t end = text.find(L'\n');
    std::wstring_view part = text.substr(0, end);
    text.remove_prefix(end == std::wstring_view::npos ? text.size() : end + 1);
    if (part.ends_with(L'\r')) part.remove_suffix(1);
    const std::size_t start = line.empty() ? 0 : part.find_first_not_of(L' ');
    part.remove_prefix(start == std::wstring_view::npos ? part.size() : start);
    goesOn = part.ends_with(L",\\");
    if (goesOn) part.remove_suffix(1);
    line += part;
  }
  return line;
}

int digitOf(wchar_t sign) {
  if (sign >= L'0' && sign <= L'9') return sign - L'0';
  if (sign >= L'a' && sign <= L'f') return sign - L'a' + 10;
  if (sign >= L'A' && sign <= L'F') return sign - L'A' + 10;
  return -1;
}

std::optional<DWORD> numberOf(std::wstring_view digits, std::size_t mostDigits) {
  if (digits.empty() || digits.size() > mostDigits) return {};
  DWORD number = 0;
  for (const wchar_t sign : digits) {
    const int digit = digitOf(sign);
    if (digit < 0) return {};
    number = number * 16 + static_cast<DWORD>(digit);
  }
  return number;
}

/// Takes a text in quotes off the beginning of `line`.
std::optional<std::wstring> takeQuoted(std::wstring_view& line) {
  if (!line.starts_with(L'"')) return {};
  std::wstring content;
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] == L'"') {
      line.remove_prefix(i + 1);
      return content;
    }
    if (line[i] == L'\\' && i + 1 < line.size()) ++i;
    content += line[i];
  }
  return {};
}

Value valueOfText(const std::wstring& text) {
  Value value{REG_SZ, std::vector<BYTE>((text.size() + 1) * sizeof(wchar_t))};
  std::memcpy(value.bytes.data(), text.c_str(), value.bytes.size());
  return value;
}

std::optional<Value> valueOfBytes(DWORD type, std::wstring_view list) {
  Value value{type, {}};
  while (!list.empty()) {
    const std::size_t comma = list.find(L',');
    const std::optional<DWORD> byte = numberOf(list.substr(0, comma), 2);
    if (!byte) return {};
    value.bytes.push_back(static_cast<BYTE>(*byte));
    list.remove_prefix(comma == std::wstring_view::npos ? list.size() : comma + 1);
  }
  return value;
}

std::optional<Value> valueOf(std::wstring_view line) {
  constexpr std::wstring_view kNumber = L"dword:";
  constexpr std::wstring_view kBytes = L"hex:";
  constexpr std::wstring_view kTyped = L"hex(";
  if (line.starts_with(L'"')) {
    const std::optional<std::wstring> text = takeQuoted(line);
    if (!text || !line.empty()) return {};
    return valueOfText(*text);
  }
  if (line.starts_with(kNumber)) {
    const std::optional<DWORD> number = numberOf(line.substr(kNumber.size()), 8);
    if (!number) return {};
    Value value{REG_DWORD, std::vector<BYTE>(sizeof(DWORD))};
    std::memcpy(value.bytes.data(), &*number, sizeof(DWORD));
    return value;
  }
  if (line.starts_with(kBytes)) return valueOfBytes(REG_BINARY, line.substr(kBytes.size()));
  if (!line.starts_with(kTyped)) return {};
  line.remove_prefix(kTyped.size());
  const std::size_t end = line.find(L"):");
  if (end == std::wstring_view::npos) return {};
  const std::optional<DWORD> type = numberOf(line.substr(0, end), 8);
  if (!type) return {};
  return valueOfBytes(*type, line.substr(end + 2));
}

/// The path of the key that a line in brackets names; empty for one elsewhere in a registry.
std::wstring keyOf(std::wstring_view line) {
  if (!line.ends_with(L']')) return {};
  line.remove_prefix(1);
  line.remove_suffix(1);
  return line.starts_with(kRoot) ? std::wstring(line.substr(kRoot.size())) : std::wstring();
}

}  // namespace

bool LessIgnoringCase::operator()(const std::wstring& left, const std::wstring& right) const noexcept {
  return CompareStringOrdinal(left.c_str(), static_cast<int>(left.size()), right.c_str(),
                              static_cast<int>(right.size()), TRUE) == CSTR_LESS_THAN;
}

std::optional<Keys> keysOf(std::wstring_view text) {
  if (takeLine(text) != kHeading) return {};
  Keys keys;
  Values* values = nullptr;
  while (!text.empty()) {
    const std::wstring line = takeLine(text);
    if (line.starts_with(L'[')) {
      const std::wstring key = keyOf(line);
      values = key.empty() ? nullptr : &keys[key];
      continue;
    }
    std::wstring_view rest = line;
    const std::optional<std::wstring> name = takeQuoted(rest);
    if (!values || !name || !rest.starts_with(L'=')) continue;
    if (std::optional<Value> value = valueOf(rest.substr(1))) (*values)[*name] = std::move(*value);
  }
  return keys;
}

std::wstring textOf(const Keys& keys) {
  std::wstring text(kHeading);
  text += kLineEnd;
  for (const auto& [key, values] : keys) {
    text.append(kLineEnd).append(L"[").append(kRoot).append(key).append(L"]").append(kLineEnd);
    for (const auto& [name, value] : values) appendValue(text, name, value);
  }
  return text;
}

}  // namespace settings
