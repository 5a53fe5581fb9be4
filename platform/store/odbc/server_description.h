#pragma once

#include <string>

#include "platform/store/odbc/driver/odbc_connection.h"
#include "platform/store/rows/status.h"

namespace store {

/// Stores a line for people: whether the conversation is encrypted and by which version of the protocol, by
/// what the server says of it, and what the server is and is called. Connects anew when the conversation was
/// lost; on failure `*text` is untouched.
Status describeServer(OdbcConnection& connection, std::string* text);

}  // namespace store
