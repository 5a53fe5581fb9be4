#pragma once

#include <windows.h>

#include <string>
#include <string_view>

/// Texts on one line with letters of every script. The system's controls draw with one font, and on some
/// systems its missing letters are boxes and some scripts aren't put together; only their edit controls look
/// for other fonts.
namespace pocketshell {

/// Whether the font that is selected into `dc` lacks a letter of the text: then a control may draw it
/// wrongly.
bool needsOtherFonts(HDC dc, std::wstring_view text);

/// The text with a blank for each line end, tab and other control character, of which a font has boxes alone.
std::wstring onOneLine(std::wstring_view text);

enum class LinePlace { left, centre };

/// Draws the text into the rectangle, in the middle of its height and clipped by it, with the font, the
/// colour and the background mode of `dc`; each letter that the font lacks in one that has it. What is too
/// long ends with an ellipsis. Draws nothing when the system refuses the text.
void drawTextLine(HDC dc, std::wstring_view text, const RECT& place, LinePlace where);

/// How wide drawTextLine draws the whole text; 0 when the system refuses it.
int textLineWidth(HDC dc, std::wstring_view text);

}  // namespace pocketshell
