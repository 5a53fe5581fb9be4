#pragma once

#include <string>
#include <string_view>

#include "platform/store/odbc/driver/odbc_functions.h"
#include "platform/store/rows/status.h"

namespace store {

/// What a driver says of the last call on a handle.
struct Diagnosis {
  std::string state;    ///< five letters and digits (SQLSTATE); empty when it says nothing
  std::string message;  ///< UTF-8, for people: without the names of driver and manager in front
};

/// Reads the first record of the handle's last call; to be called before any other call on it.
Diagnosis diagnose(const OdbcFunctions& functions, SQLSMALLINT handleType, SQLHANDLE handle);

/// The engine's own code for the state. What no other code says is inputOutput for the classes of the
/// connection and of the server's system, and errorsInCommand for the rest.
ErrorCode codeOfState(std::string_view state);

/// Whether after this state nothing can be asked of the server any more by the same connection.
bool endsConnection(std::string_view state);

/// A failure with the driver's sentence.
Status statusOf(const Diagnosis& diagnosis);

}  // namespace store
