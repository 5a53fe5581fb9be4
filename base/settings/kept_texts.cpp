#include "base/settings/kept_texts.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cwchar>
#include <vector>

#include "base/settings/settings_store.h"
#include "base/source_number.h"

// All of them are one value: the number of the source in 16 hexadecimal digits and its text, with "|"
// between.

namespace kepttexts {

namespace {

constexpr std::size_t kMostSources = 32;
constexpr std::size_t kNumberCount = 16;

std::wstring labelOf(const wchar_t* file, bool isQuery, const wchar_t* name) {
  std::array<wchar_t, kNumberCount + 1> digits{};
  const std::uint64_t number = numberOfSource(file, isQuery, name);
  std::swprintf(digits.data(), digits.size(), L"%016llX", static_cast<unsigned long long>(number));
  return digits.data();
}

/// False when they can't be read; then there are none.
bool readAll(std::vector<std::wstring>& all) {
  all.clear();
  String kept;
  if (SettingsStore::find(Setting::arrangements, kept) == SettingsStore::Reading::unreadable) return false;
  const std::wstring_view text = kept.text();
  for (std::size_t first = 0; first < text.size() && all.size() < kMostSources;) {
    const std::size_t end = std::min(text.find(L'|', first), text.size());
    if (end - first > kNumberCount) all.emplace_back(text.substr(first, end - first));
    first = end + 1;
  }
  return true;
}

bool isOf(const std::wstring& entry, const std::wstring& label) {
  return entry.compare(0, kNumberCount, label) == 0;
}

/// Empty when there is none.
std::wstring textOf(const std::vector<std::wstring>& all, const std::wstring& label) {
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const std::wstring& entry) { return isOf(entry, label); });
  return found != all.end() ? found->substr(kNumberCount) : std::wstring();
}

}  // namespace

std::wstring read(const wchar_t* file, bool isQuery, const wchar_t* name) {
  std::vector<std::wstring> all;
  readAll(all);
  return textOf(all, labelOf(file, isQuery, name));
}

void write(const wchar_t* file, bool isQuery, const wchar_t* name, const std::wstring& text) {
  const std::wstring label = labelOf(file, isQuery, name);
  const bool isKept = !text.empty() && text.size() <= kMostCount;
  std::vector<std::wstring> all;
  // Without the others none is written: they would be gone.
  if (!readAll(all) || textOf(all, label) == (isKept ? text : std::wstring())) return;
  std::erase_if(all, [&](const std::wstring& entry) { return isOf(entry, label); });
  if (isKept) all.insert(all.begin(), label + text);
  if (all.size() > kMostSources) all.resize(kMostSources);
  std::wstring joined;
  for (const std::wstring& entry : all) joined += (joined.empty() ? L"" : L"|") + entry;
  SettingsStore::write(Setting::arrangements, String(joined.c_str()));
}

}  // namespace kepttexts
