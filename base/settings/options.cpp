#include "base/settings/options.h"

#include "base/settings/app_colors.h"
#include "base/settings/settings_store.h"

struct Options::Row {
  Setting setting;
  std::uint32_t Options::*value;
};

/// In the order in which they are read and written.
constexpr Options::Row Options::kRows[] = {
    {Setting::usePassword, &Options::usePassword_},
    {Setting::warningOnDeletion, &Options::warningOnDeletion_},
    {Setting::updateRights, &Options::genUpdateRights_},
    {Setting::openLastTable, &Options::openLastTableOnStartup_},
    {Setting::rebarsAtTop, &Options::rebarsAtTop_},
    {Setting::tabLabelStyle, &Options::tabLabelStyle_},
};

bool Options::load() noexcept {
  for (const Row& row : kRows) SettingsStore::read(row.setting, this->*row.value);
  if (!SettingsStore::read(Setting::colors, appColors)) resetColors();
  return true;
}

bool Options::save() const noexcept {
  for (const Row& row : kRows) SettingsStore::write(row.setting, this->*row.value);
  return SettingsStore::write(Setting::colors, appColors);
}

void Options::resetColors() noexcept {
  resetAppColors();
}
