#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace store::exchange {

/// Makes names that the handheld's tables may have out of any texts: at most 31 characters for a table and 64
/// for a field, beginning with a letter or digit, no blank or full stop at either end, without control
/// characters and ` . ! ' [ ] " * ?, which become blanks or low lines. What has nothing left is called
/// "Table1" or "Field" and its number.
std::string validTableName(std::string_view text);
/// Each of them is another one, in any letter case; those that would be the same get a number at their end.
std::vector<std::string> validFieldNames(const std::vector<std::string>& texts);

}  // namespace store::exchange
