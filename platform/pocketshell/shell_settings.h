#pragma once

#include <windows.h>

/// What the user has set for the shell, in the registry of the current user under
/// "Software\MorvaleSoftware\Pocket Shell".
namespace pocketshell {

enum class PanelPolicy : DWORD {
  automatic = 0,  ///< for users with a touch screen
  asHandheld = 1,
  never = 2,
};

/// "Zoom" in per cent, 0 for the monitor's own, which is also what a value out of range means.
int readZoomSetting();
/// False when it can't be written.
bool writeZoomSetting(int percent);

/// "Size": whether a frame always has the handheld's size, and can't be sized by the user.
bool readKeepsHandheldSize();

/// A number of the shell's own, 0 where there is none.
DWORD readShellNumber(const wchar_t* name);
/// False when it can't be written.
bool writeShellNumber(const wchar_t* name, DWORD number);

/// "InputPanel"; what is missing or not understood means automatic.
PanelPolicy readPanelPolicy();

/// While one lives their key stays open for all who read them, and is asked for once.
class ShellSettingsReading {
 public:
  ShellSettingsReading();
  ~ShellSettingsReading();
  ShellSettingsReading(const ShellSettingsReading&) = delete;
  ShellSettingsReading& operator=(const ShellSettingsReading&) = delete;

 private:
  bool isOutermost_;
};

}  // namespace pocketshell
