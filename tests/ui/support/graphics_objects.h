#pragma once

#include <windows.h>

/// How many objects of the graphics system (fonts, brushes, pens, bitmaps) the process has.
int graphicsObjectCount();
