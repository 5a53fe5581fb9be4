#pragma once

#include <windows.h>

#include <string>

/// The clipboard's text, for `window`; empty when it holds none or another program has it open. Throws
/// std::bad_alloc.
std::wstring clipboardText(HWND window);
