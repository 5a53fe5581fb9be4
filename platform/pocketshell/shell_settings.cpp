#include "platform/pocketshell/shell_settings.h"

#include <optional>

#include "owners/handles.h"
#include "platform/pocketshell/kept_settings.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

namespace {

constexpr wchar_t kKey[] = L"Software\\MorvaleSoftware\\Pocket Shell";
constexpr wchar_t kZoomValue[] = L"Zoom";
constexpr wchar_t kPanelValue[] = L"InputPanel";
constexpr wchar_t kSizeValue[] = L"Size";
constexpr DWORD kHandheldSize = 1;

/// Without functions for the registry.
HandheldSettings keeper{};

/// As long as there is a ShellSettingsReading; null when there is no key.
std::optional<UniqueRegistryKey> openedKey;

UniqueRegistryKey openKey() {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) return {};
  return UniqueRegistryKey(opened);
}

}  // namespace

ShellSettingsReading::ShellSettingsReading() : isOutermost_(!keeper.read && !openedKey) {
  if (isOutermost_) openedKey = openKey();
}

ShellSettingsReading::~ShellSettingsReading() {
  if (isOutermost_) openedKey.reset();
}

DWORD readShellNumber(const wchar_t* name) {
  DWORD number = 0;
  if (keeper.read) return keeper.read(name, &number) ? number : 0;
  const ShellSettingsReading reading;
  DWORD size = sizeof(number);
  const bool isRead = openedKey && *openedKey &&
                      RegGetValueW(openedKey->get(), nullptr, name, RRF_RT_REG_DWORD, nullptr, &number,
                                   &size) == ERROR_SUCCESS;
  return isRead ? number : 0;
}

bool writeShellNumber(const wchar_t* name, DWORD number) {
  if (keeper.write) return keeper.write(name, number) != FALSE;
  HKEY opened = nullptr;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &opened, nullptr) !=
      ERROR_SUCCESS) {
    return false;
  }
  const UniqueRegistryKey key(opened);
  // There may have been none.
  if (openedKey && !*openedKey) openedKey = openKey();
  return RegSetValueExW(key.get(), name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                        sizeof(number)) == ERROR_SUCCESS;
}

int readZoomSetting() {
  const DWORD percent = readShellNumber(kZoomValue);
  return percent <= kLargestZoom && isZoom(static_cast<int>(percent)) ? static_cast<int>(percent) : 0;
}

bool writeZoomSetting(int percent) {
  return writeShellNumber(kZoomValue, static_cast<DWORD>(percent));
}

bool readKeepsHandheldSize() {
  return readShellNumber(kSizeValue) == kHandheldSize;
}

PanelPolicy readPanelPolicy() {
  const auto policy = static_cast<PanelPolicy>(readShellNumber(kPanelValue));
  return policy == PanelPolicy::asHandheld || policy == PanelPolicy::never ? policy : PanelPolicy::automatic;
}

}  // namespace pocketshell

void HandheldKeepSettings(const HandheldSettings* settings) {
  pocketshell::keeper = settings ? *settings : HandheldSettings{};
}
