#pragma once

#include <string>
#include <string_view>

namespace store {

/// Equality in any letter case of ASCII, as SQLite compares names.
bool equalsIgnoringCase(std::string_view left, std::string_view right);

/// `text` with the upper case letters of ASCII made lower case.
std::string lowerCase(std::string_view text);

}  // namespace store
