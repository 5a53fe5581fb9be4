#pragma once

#include <string>

namespace store::exchange {

/// An escape like \ud800 that is one half of a pair without the other stands for no character, and the parser
/// refuses it. In texts of this system there may be such halves all the same. So they are hidden from the
/// parser behind a character that is no character (U+10FFFF), and found again in what it gives back.

/// Hides them in the text of a JSON value, as escapes and as their three-byte forms.
void hideSurrogates(std::string* json);
/// Brings them back in a text that the parser made of it.
void showSurrogates(std::string* text);

}  // namespace store::exchange
