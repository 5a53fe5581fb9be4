#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace store {

/// The server's CREATE TABLE for one of the components' dialect, as readStatement() gives it: with the
/// server's types for the handheld's (serverTypeFor), with the letter case of all names, and with a key of
/// its own (kHiddenKey) when it declares none. An INTEGER PRIMARY KEY numbers its rows by itself, as the
/// components' does. Empty for any other statement, a CREATE TABLE ... AS included.
std::optional<std::string> toServerDefinition(std::string_view sql);

/// The server's type for a declared type of the handheld's vocabulary or one of its synonyms; anything else
/// is the server's own and stays as it is. Text for nothing.
std::string serverTypeFor(std::string_view declaredType);

}  // namespace store
