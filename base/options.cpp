#include "base/options.h"

#include "base/app_colors.h"
#include "base/settings_store.h"

namespace {

constexpr const wchar_t* kSubkey = SettingsStore::kOptions;
constexpr const wchar_t* kColorsName = L"GeneralAppColors";

void load(const wchar_t* name, std::uint32_t& value) noexcept {
  SettingsStore::ReadDword(kSubkey, name, 0, value);
}

}  // namespace

bool Options::Load() noexcept {
  load(L"UsePassword", usePassword_);
  load(L"WarningOnDeletion", warningOnDeletion_);
  load(L"GenUpdateRights", genUpdateRights_);
  load(L"OpenLastTableOnStartup", openLastTableOnStartup_);
  load(L"RebarsAtTop", rebarsAtTop_);
  load(L"TabLabelStyle", tabLabelStyle_);
  if (!SettingsStore::ReadBinary(kSubkey, kColorsName, appColors.data(), kAppColorCount)) ResetColors();
  return true;
}

bool Options::Save() const noexcept {
  SettingsStore::WriteDword(kSubkey, L"UsePassword", usePassword_);
  SettingsStore::WriteDword(kSubkey, L"WarningOnDeletion", warningOnDeletion_);
  SettingsStore::WriteDword(kSubkey, L"GenUpdateRights", genUpdateRights_);
  SettingsStore::WriteDword(kSubkey, L"OpenLastTableOnStartup", openLastTableOnStartup_);
  SettingsStore::WriteDword(kSubkey, L"RebarsAtTop", rebarsAtTop_);
  SettingsStore::WriteDword(kSubkey, L"TabLabelStyle", tabLabelStyle_);
  return SettingsStore::WriteBinary(kSubkey, kColorsName, appColors.data(), kAppColorCount);
}

void Options::ResetColors() noexcept {
  resetAppColors();
}
