#pragma once

#include <windows.h>

/// Keeps the paragraphs of an edit control of many lines short while the user pastes and types: a long one
/// gets soft line ends (views/shared/shown_text.h), which its owner takes out of the text again.
void breakLongParagraphs(HWND edit);
