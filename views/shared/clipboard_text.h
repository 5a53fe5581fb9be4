#pragma once

#include <windows.h>

#include <string>

/// The clipboard's text, for `window`; empty when it holds none or another program has it open. Throws
/// std::bad_alloc.
std::wstring clipboardText(HWND window);
/// Puts a text in the place of what the clipboard holds. False when another program has it open, or there is
/// no memory: it may be empty then.
bool setClipboardText(HWND window, const std::wstring& text);
