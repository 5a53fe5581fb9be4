#pragma once

#include <windows.h>

/// How many objects of the graphics system (fonts, brushes, pens, bitmaps) a process has; -1 when that can't
/// be told. `process` may be read.
int graphicsObjectCount(HANDLE process = GetCurrentProcess());
