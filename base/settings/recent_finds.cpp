#include "base/settings/recent_finds.h"

#include <cwchar>
#include <utility>

#include "base/settings/settings_store.h"

namespace {

/// Of a place from 1 for the newest text.
Setting settingAt(int position) noexcept {
  return static_cast<Setting>(static_cast<int>(Setting::recentFind) + position - 1);
}

/// The empty text when the value is missing; there is none at position 0.
String read(int position) {
  String text;
  if (position > 0) SettingsStore::read(settingAt(position), text);
  return text;
}

void write(int position, const String& text) noexcept {
  SettingsStore::write(settingAt(position), text);
}

bool isEqual(const String& a, const String& b) noexcept {
  return std::wcscmp(a.text(), b.text()) == 0;
}

bool isStored(const String& text) {
  for (int position = RecentFinds::kCount; position >= 1; --position) {
    if (isEqual(read(position), text)) return true;
  }
  return false;
}

}  // namespace

void RecentFinds::list(NameList& finds) {
  NameList found;
  for (int position = 1; position <= kCount; ++position) {
    String text = read(position);
    if (!text.isEmpty()) found.append(std::move(text));
  }
  finds.swap(found);
}

void RecentFinds::remember(const String& text) {
  int source = isStored(text) ? kCount : kCount - 1;
  int destination = kCount;
  bool dropped = false;
  for (int i = 0; i < kCount; ++i, --source) {
    const String entry = read(source);
    // Free places hold the empty text, too. Where that is remembered one of them makes room; with all of
    // them gone the texts before them would stand in the list twice.
    const bool isKept = dropped && text.isEmpty();
    if (isEqual(entry, text) && !isKept) {
      dropped = true;
      continue;
    }
    write(destination, entry);
    --destination;
  }
  write(1, text);
}
