#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>

/// Room for the texts of CREATE and DROP statements, the terminating zero included.
inline constexpr std::size_t kStatementCapacity = 200;

using StatementText = std::array<wchar_t, kStatementCapacity>;

/// Joins `parts` into `statement`. False, with `statement` untouched, when they don't fit.
bool joinStatement(std::initializer_list<const wchar_t*> parts, StatementText& statement);
