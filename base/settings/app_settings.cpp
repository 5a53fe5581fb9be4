#include "base/settings/app_settings.h"

#include <windows.h>

std::unique_ptr<AppSettings> theAppSettings;
bool appUnlocked = true;

AppSettings::AppSettings() : options_(std::make_unique<Options>()) {
  // load succeeds in every case today; the question stays for the day when it does not.
  if (!options_->load()) {
    MessageBoxW(nullptr,
                L"Failed to read options from registry!\n"
                L"You may experience problems using this application.",
                L"Quivane", MB_ICONEXCLAMATION);
  }
}
