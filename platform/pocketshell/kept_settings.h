#pragma once

#include <windows.h>

#include "platform/pocketshell/aygshell.h"

/// Where the shell keeps what the user sets for it, numbers by their names: in the registry unless somebody
/// else does.
struct HandheldSettings {
  /// False where there is no such number; `*number` is then as before.
  BOOL (*read)(const wchar_t* name, DWORD* number);
  /// False when it could not be stored.
  BOOL (*write)(const wchar_t* name, DWORD number);
};

/// From now on the shell's settings are kept by `keeper`, a copy of which is taken; with null in the
/// registry. To be called before the first window is made, because what was read before is not read again.
AYGSHELL_API void HandheldKeepSettings(const HandheldSettings* keeper);
