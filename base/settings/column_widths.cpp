#include "base/settings/column_widths.h"

#include <algorithm>
#include <memory>
#include <span>

#include "base/settings/settings_store.h"
#include "base/source_number.h"

namespace {

std::uint32_t numberOfField(const wchar_t* name) {
  const std::uint64_t number = numberOf(name);
  const auto folded = static_cast<std::uint32_t>(number ^ (number >> 32));
  return folded != 0 ? folded : 1;
}

template <typename Entries>
std::span<std::uint32_t> wordsOf(Entries& entries) {
  return {reinterpret_cast<std::uint32_t*>(entries.data()), sizeof(Entries) / sizeof(std::uint32_t)};
}

}  // namespace

ColumnWidths::ColumnWidths(const wchar_t* file, bool isQuery, const wchar_t* name) {
  const std::uint64_t source = numberOfSource(file, isQuery, name);
  entry_.source = static_cast<std::uint32_t>(source);
  entry_.source2 = static_cast<std::uint32_t>(source >> 32);
  const auto kept = std::make_unique<Entries>();
  read(*kept);
  const auto found =
      std::find_if(kept->begin(), kept->end(), [this](const Entry& each) { return isOfSame(each); });
  if (found != kept->end()) entry_ = *found;
}

std::optional<int> ColumnWidths::of(const wchar_t* field) const {
  const std::uint32_t name = numberOfField(field);
  for (const Field& each : entry_.fields) {
    // Somebody may have written anything.
    if (each.name == name) return static_cast<int>(std::clamp<std::uint32_t>(each.width, kLeast, kMost));
  }
  return std::nullopt;
}

void ColumnWidths::set(const wchar_t* field, int width) {
  const int wanted = std::clamp(width, kLeast, kMost);
  if (of(field) == wanted) return;
  const std::uint32_t name = numberOfField(field);
  const auto place = std::find_if(entry_.fields.begin(), entry_.fields.end(),
                                  [=](const Field& each) { return each.name == name; });
  // The latest is the first.
  std::move_backward(entry_.fields.begin(), place == entry_.fields.end() ? place - 1 : place,
                     place == entry_.fields.end() ? place : place + 1);
  entry_.fields.front() = {name, static_cast<std::uint32_t>(wanted)};
  isChanged_ = true;
}

void ColumnWidths::keep() {
  if (!isChanged_) return;
  const auto entries = std::make_unique<Entries>();
  // Without the others none is written: they would be gone.
  if (!read(*entries)) return;
  auto place =
      std::find_if(entries->begin(), entries->end(), [this](const Entry& each) { return isOfSame(each); });
  if (place == entries->end()) --place;
  std::move_backward(entries->begin(), place, place + 1);
  entries->front() = entry_;
  isChanged_ = !SettingsStore::write(Setting::columnWidths, wordsOf(*entries));
}

/// False when they can't be read; then there are none.
bool ColumnWidths::read(Entries& entries) noexcept {
  using Reading = SettingsStore::Reading;
  const Reading reading = SettingsStore::find(Setting::columnWidths, wordsOf(entries));
  if (reading != Reading::value) entries = {};
  return reading != Reading::unreadable;
}
