#pragma once

#include <string>
#include <string_view>

/// Parts of the statements that arrange records and calculate with them.

/// A name that can't be taken for a text, as one in double quotes is where no field is called so.
std::wstring fieldName(std::wstring_view name);

/// A statement without the blanks, semicolons and comments at its end. Who puts it into parentheses begins a
/// new line before the closing one all the same: a server may know other quotes, and see a comment there.
std::wstring withoutEnd(std::wstring_view sql);
