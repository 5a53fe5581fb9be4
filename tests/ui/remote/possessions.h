#pragma once

#include <windows.h>

/// What a running process has of the system's.
struct Possessions {
  int windows = 0;   ///< also those that are never shown
  int handles = 0;   ///< files, events, threads and the like; not the keys of the registry
  int keys = 0;      ///< of the registry
  int graphics = 0;  ///< fonts, brushes, pens, bitmaps
  long memory = 0;   ///< in KiB, as far as it is in use
};

/// `process` has every right. -1 for what can't be counted.
Possessions possessionsOf(DWORD processId, HANDLE process);
