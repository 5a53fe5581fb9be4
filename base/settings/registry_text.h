#pragma once

#include <windows.h>

#include "base/string.h"

/// Reads the value `name` of the key `path` below `root` as text, whatever its registered type: its
/// bytes up to the first zero character. False when the key can't be opened or the value can't be
/// read; `text` is then as before.
bool readRegistryText(HKEY root, const wchar_t* path, const wchar_t* name, String& text);

/// The same of a key that is open for reading.
bool readRegistryText(HKEY key, const wchar_t* name, String& text);
