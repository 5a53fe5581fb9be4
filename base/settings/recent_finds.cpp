#include "base/settings/recent_finds.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <span>

#include "base/settings/settings_store.h"

namespace {

/// Of a place from 1 for the newest text.
Setting settingAt(int position) noexcept {
  return static_cast<Setting>(static_cast<int>(Setting::recentFind) + position - 1);
}

bool isEqual(const String& a, const String& b) noexcept {
  return std::wcscmp(a.text(), b.text()) == 0;
}

}  // namespace

void RecentFinds::list(NameList& finds) {
  std::array<String, kCount> texts;
  NameList found;
  if (SettingsStore::findAll(settingAt(1), texts)) {
    for (const String& text : texts) {
      if (!text.isEmpty()) found.append(text);
    }
  }
  finds.swap(found);
}

void RecentFinds::remember(const String& text) {
  std::array<String, kCount + 1> former;  // the one in front of the newest is empty
  // Written back would be a list without what can't be read.
  if (!SettingsStore::findAll(settingAt(1), std::span(former).subspan(1))) return;
  const bool isStored =
      std::any_of(former.begin() + 1, former.end(), [&](const String& each) { return isEqual(each, text); });
  // Where writing failed on the way a text stands in its former place, too, which is free then.
  const auto twice =
      std::adjacent_find(former.begin() + 1, former.end(),
                         [](const String& a, const String& b) { return !a.isEmpty() && isEqual(a, b); });
  // The next one of many steps of a search: nothing moves.
  const auto times = std::count_if(former.begin() + 1, former.end(),
                                   [&](const String& each) { return isEqual(each, text); });
  if (!text.isEmpty() && isEqual(former[1], text) && times == 1 && twice == former.end()) return;
  const int freePlace = isStored || twice == former.end() ? 0 : static_cast<int>(twice - former.begin()) + 1;
  int source = isStored || freePlace != 0 ? kCount : kCount - 1;
  int destination = kCount;
  bool dropped = false;
  for (int i = 0; i < kCount; ++i, --source) {
    const String& entry = former[source];
    // Free places hold the empty text, too. Where that is remembered one of them makes room; with all of
    // them gone the texts before them would stand in the list twice.
    const bool isKept = dropped && text.isEmpty();
    if ((isEqual(entry, text) && !isKept) || source == freePlace) {
      dropped = true;
      continue;
    }
    // The next one would take the place of one that has not moved on.
    if (!SettingsStore::write(settingAt(destination), entry)) return;
    --destination;
  }
  SettingsStore::write(settingAt(1), text);
}
