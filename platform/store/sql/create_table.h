#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/store/sql/sql_tokens.h"

namespace store {

/// SQLite's SQL for a CREATE TABLE statement of the components' dialect, as readStatement() describes
/// it. `tokens` are those of `text`; the words CREATE TABLE are the tokens `first` and `first` + 1.
/// Empty when the statement is to pass unchanged: SQLite reads it as it stands, or refuses it.
/// Linear in time. May throw std::bad_alloc.
std::optional<std::string> readCreateTable(std::string_view text, const Tokens& tokens, std::size_t first);

}  // namespace store
