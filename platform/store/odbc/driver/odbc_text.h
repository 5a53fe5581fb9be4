#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/store/odbc/driver/odbc_functions.h"

namespace store {

/// Texts between the engine, UTF-8, and ODBC, UTF-16 in units whose type differs from system to system.

std::u16string toUtf16(std::string_view text);

/// The units as ODBC takes them. It doesn't write to those of a statement.
inline SQLWCHAR* wideOf(std::u16string& text) {
  static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
  return reinterpret_cast<SQLWCHAR*>(text.data());
}

std::string fromWide(const SQLWCHAR* units, std::size_t count);

}  // namespace store
