#include "base/string.h"

#include <algorithm>
#include <clocale>
#include <cstring>
#include <cwchar>
#include <new>
#include <utility>

#include "base/string_layout.h"

namespace {

using Buffer = std::unique_ptr<wchar_t[]>;

/// The desktop's _wcsupr folds nothing but A to Z unless a locale is set. Any locale other than "C"
/// folds all of Unicode; a fixed one keeps the result the same for every user.
_locale_t foldingLocale() noexcept {
  static const _locale_t locale = _create_locale(LC_CTYPE, "English_United States.1252");
  return locale;
}

/// An exact copy of `count` units and a terminator. Null for an empty range.
Buffer copyOf(const wchar_t* text, std::size_t count) {
  if (count == 0) return nullptr;
  auto copy = std::make_unique_for_overwrite<wchar_t[]>(count + 1);
  std::memcpy(copy.get(), text, count * sizeof(wchar_t));
  copy[count] = L'\0';
  return copy;
}

Buffer copyOf(const wchar_t* text) {
  return text ? copyOf(text, std::wcslen(text)) : nullptr;
}

/// Reads until `byteCount` bytes have come or no more do; pipes deliver less than is asked for.
DWORD readBytes(HANDLE file, void* bytes, DWORD byteCount) noexcept {
  DWORD total = 0;
  while (total < byteCount) {
    DWORD arrived = 0;
    if (!ReadFile(file, static_cast<char*>(bytes) + total, byteCount - total, &arrived, nullptr)) break;
    if (arrived == 0) break;
    total += arrived;
  }
  return total;
}

bool writeBytes(HANDLE file, const void* bytes, DWORD byteCount) noexcept {
  DWORD written = 0;
  return WriteFile(file, bytes, byteCount, &written, nullptr) != FALSE && written == byteCount;
}

}  // namespace

// The analyzer does not see that the buffer is deleted with its String.
// NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks)
String::String(const wchar_t* text) : buffer_(copyOf(text)) {}

String::String(const String& other) : buffer_(copyOf(other.text())) {}
// NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)

String& String::operator=(const wchar_t* text) {
  assign(text);
  return *this;
}

String& String::operator=(const String& other) {
  if (this != &other) assign(other.text());
  return *this;
}

void String::assign(const wchar_t* text) {
  // The copy is complete before the old buffer goes: `text` may lie inside it.
  buffer_ = copyOf(text);
}

static_assert(String::kMaxFileByteCount == stringlayout::kMaxByteCount);

String String::fromFile(HANDLE file) {
  const std::u16string units = stringlayout::read([file](void* bytes, std::size_t byteCount) {
    return readBytes(file, bytes, static_cast<DWORD>(byteCount));
  });
  return String(reinterpret_cast<const wchar_t*>(units.c_str()));
}

bool String::writeToFile(HANDLE file) const noexcept {
  const std::uint32_t byteCount = stringlayout::byteCountOf(length());
  if (byteCount == kMaxFileByteCount) return false;
  if (!writeBytes(file, &byteCount, sizeof byteCount)) return false;
  return byteCount == 0 || writeBytes(file, buffer_.get(), byteCount);
}

std::size_t String::length() const noexcept {
  return std::wcslen(text());
}

void String::trim() noexcept {
  if (!buffer_) return;
  const wchar_t* first = buffer_.get();
  while (*first == L' ') ++first;
  const wchar_t* last = first + std::wcslen(first);
  while (last > first && last[-1] == L' ') --last;
  const auto count = static_cast<std::size_t>(last - first);
  if (count == 0) {
    clear();
    return;
  }
  std::memmove(buffer_.get(), first, count * sizeof(wchar_t));
  buffer_[count] = L'\0';
}

void String::wipe() noexcept {
  if (buffer_) SecureZeroMemory(buffer_.get(), length() * sizeof(wchar_t));
  clear();
}

void String::toUpperCase() noexcept {
  if (buffer_) _wcsupr_l(buffer_.get(), foldingLocale());
}

void String::toLowerCase() noexcept {
  if (buffer_) _wcslwr_l(buffer_.get(), foldingLocale());
}

void String::upperCasePrefix(std::size_t count) noexcept {
  if (!buffer_) return;
  // A terminator is set for the time of folding, so that no scratch copy is needed.
  wchar_t& end = buffer_[std::min(count, length())];
  const wchar_t kept = std::exchange(end, L'\0');
  toUpperCase();
  end = kept;
}

bool String::left(std::size_t count, String& destination) const noexcept {
  return middle(0, count, destination);
}

bool String::right(std::size_t count, String& destination) const noexcept {
  const std::size_t all = length();
  return middle(all - std::min(count, all), count, destination);
}

bool String::middle(std::size_t start, std::size_t count, String& destination) const noexcept {
  const std::size_t all = length();
  const std::size_t first = std::min(start, all);
  try {
    destination.buffer_ = copyOf(text() + first, std::min(count, all - first));
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

std::ptrdiff_t String::find(const wchar_t* text) const noexcept {
  // Systems disagree on where the empty text occurs in an empty one.
  if (!text || text[0] == L'\0') return 0;
  const wchar_t* whole = this->text();
  const wchar_t* match = std::wcsstr(whole, text);
  return match ? match - whole : -1;
}

// Takes a copy, as a literal would be one anyway. NOLINTNEXTLINE(performance-unnecessary-value-param)
std::ptrdiff_t String::find(String text) const noexcept {
  return find(text.text());
}
