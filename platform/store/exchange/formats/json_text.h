#pragma once

#include <string>
#include <string_view>

namespace store::exchange {

/// Appends `text` as a JSON string with its quotes. Characters that are none (halves of surrogate pairs)
/// become escapes; ill-formed bytes become U+FFFD. False when the text will not be read as it was: because of
/// such bytes, or of two halves that are read as a pair.
bool appendJsonText(std::string_view text, std::string* json);

}  // namespace store::exchange
