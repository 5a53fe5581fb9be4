#include "platform/store/automation/module/database_location.h"

#include <windows.h>

#include "platform/store/automation/values/search_texts.h"

namespace automation {

namespace {

constexpr std::wstring_view kLongPrefix = L"\\\\?\\";
constexpr std::wstring_view kLongUncPrefix = L"\\\\?\\UNC\\";
// Room is left for the longest name that the engine puts beside the file.
constexpr std::size_t kShortPathLength = MAX_PATH - 16;

bool startsWith(std::wstring_view text, std::wstring_view start) {
  return text.substr(0, start.size()) == start;
}

store::DateOrder userDateOrder() {
  DWORD order = 0;
  const int length = GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_IDATE | LOCALE_RETURN_NUMBER,
                                     reinterpret_cast<wchar_t*>(&order), sizeof order / sizeof(wchar_t));
  if (length == 0) return store::DateOrder::monthDayYear;
  if (order == 1) return store::DateOrder::dayMonthYear;
  return order == 2 ? store::DateOrder::yearMonthDay : store::DateOrder::monthDayYear;
}

}  // namespace

std::wstring fullPathOf(const std::wstring& path) {
  // The system would read it to its first zero, and another file than the one that is meant be opened.
  if (path.find(L'\0') != std::wstring::npos) return path;
  std::wstring full(MAX_PATH, L'\0');
  DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (length >= full.size()) {
    full.resize(length);
    length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  }
  if (length == 0 || length >= full.size()) return path;
  full.resize(length);
  if (full.size() < kShortPathLength || startsWith(full, kLongPrefix)) return full;
  if (startsWith(full, L"\\\\")) return std::wstring(kLongUncPrefix) + full.substr(2);
  return std::wstring(kLongPrefix) + full;
}

store::OpenOptions userOptions() {
  store::OpenOptions options;
  options.dateOrder = userDateOrder();
  options.folding = upperCase;
  return options;
}

}  // namespace automation
