#include "base/options.h"

#include "base/app_colors.h"
#include "base/settings_store.h"

namespace {

constexpr const wchar_t* kSubkey = SettingsStore::kOptions;
constexpr const wchar_t* kColorsName = L"GeneralAppColors";

void readOption(const wchar_t* name, std::uint32_t& value) noexcept {
  SettingsStore::readDword(kSubkey, name, 0, value);
}

}  // namespace

bool Options::load() noexcept {
  readOption(L"UsePassword", usePassword_);
  readOption(L"WarningOnDeletion", warningOnDeletion_);
  readOption(L"GenUpdateRights", genUpdateRights_);
  readOption(L"OpenLastTableOnStartup", openLastTableOnStartup_);
  readOption(L"RebarsAtTop", rebarsAtTop_);
  readOption(L"TabLabelStyle", tabLabelStyle_);
  if (!SettingsStore::readBinary(kSubkey, kColorsName, appColors.data(), kAppColorCount)) resetColors();
  return true;
}

bool Options::save() const noexcept {
  SettingsStore::writeDword(kSubkey, L"UsePassword", usePassword_);
  SettingsStore::writeDword(kSubkey, L"WarningOnDeletion", warningOnDeletion_);
  SettingsStore::writeDword(kSubkey, L"GenUpdateRights", genUpdateRights_);
  SettingsStore::writeDword(kSubkey, L"OpenLastTableOnStartup", openLastTableOnStartup_);
  SettingsStore::writeDword(kSubkey, L"RebarsAtTop", rebarsAtTop_);
  SettingsStore::writeDword(kSubkey, L"TabLabelStyle", tabLabelStyle_);
  return SettingsStore::writeBinary(kSubkey, kColorsName, appColors.data(), kAppColorCount);
}

void Options::resetColors() noexcept {
  resetAppColors();
}
