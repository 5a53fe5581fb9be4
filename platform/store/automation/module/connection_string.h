#pragma once

#include <string>
#include <string_view>

namespace automation {

/// What a connection string asks for.
struct ConnectionTarget {
  std::wstring provider;  ///< empty when none is named
  std::wstring path;      ///< empty for the store without a database
};

/// Reads a connection string: a bare path, or parts "name=value" divided by semicolons among which
/// Provider or Data Source stands, names in any letter case, values bare or in quotes of either kind;
/// other parts are passed over. Throws std::bad_alloc.
ConnectionTarget readConnectionString(std::wstring_view text);

}  // namespace automation
