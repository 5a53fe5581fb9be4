#pragma once

#include <mutex>
#include <string>

#include "platform/store/odbc/driver/diagnostics.h"
#include "platform/store/odbc/driver/odbc_functions.h"
#include "platform/store/odbc/driver/odbc_handle.h"

namespace store {

/// One conversation with a server, from the connecting to the end of it. Everything but cancel() is called by
/// one thread at a time. Whoever uses it keeps it alive: a call of the driver may outlast the patience of its
/// caller.
class OdbcSession {
 public:
  explicit OdbcSession(const OdbcFunctions& functions) : functions_(functions) {}
  ~OdbcSession();
  OdbcSession(const OdbcSession&) = delete;
  OdbcSession& operator=(const OdbcSession&) = delete;

  /// Connects, and gives up after some seconds. cannotOpen; passwordWanted, with the driver's words, when the
  /// server wants a password or not this one.
  Status connect(const std::string& connectionText);

  /// What the driver said when the connecting failed.
  const std::string& refusal() const { return refusal_; }

  const OdbcFunctions& functions() const { return functions_; }
  SQLHDBC handle() const { return connection_; }
  /// What the driver calls the server's kind, as in "PostgreSQL", and the server. Empty when it doesn't tell.
  std::string productName() const { return information(SQL_DBMS_NAME); }
  std::string serverName() const { return information(SQL_SERVER_NAME); }
  /// The driver's file, as in "psqlodbcw.so".
  std::string driverName() const { return information(SQL_DRIVER_NAME); }

  /// Marks the statement whose call runs, so that cancel() finds it; null for none.
  void setRunning(SQLHSTMT statement);
  /// Asks the server to end the statement that runs. From any thread; nothing happens when none does.
  void cancel();

 private:
  std::string information(SQLUSMALLINT what) const;

  const OdbcFunctions& functions_;
  OdbcEnvironment environment_;
  SQLHDBC connection_ = nullptr;
  bool isConnected_ = false;
  std::string refusal_;
  std::mutex mutex_;
  SQLHSTMT running_ = nullptr;
};

}  // namespace store
