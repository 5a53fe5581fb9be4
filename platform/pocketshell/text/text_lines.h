#pragma once

#include <windows.h>

#include <string_view>

#include "platform/pocketshell/text/text_line.h"

/// Texts of several lines with letters of every script, broken at blanks where a line would be too wide.
namespace pocketshell {

/// How wide the widest of the lines is that the text itself ends.
int textLinesWidth(HDC dc, std::wstring_view text);

/// How high drawTextLines draws the whole text in so much width.
int textLinesHeight(HDC dc, std::wstring_view text, int width);

/// Draws the lines from the top of the rectangle down, clipped by it, each like drawTextLine. A word that is
/// wider than the rectangle ends with an ellipsis.
void drawTextLines(HDC dc, std::wstring_view text, const RECT& place, LinePlace where);

}  // namespace pocketshell
