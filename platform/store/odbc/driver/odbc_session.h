#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/store/odbc/driver/diagnostics.h"
#include "platform/store/odbc/driver/odbc_functions.h"
#include "platform/store/odbc/driver/odbc_handle.h"
#include "platform/store/rows/secret_text.h"

namespace store {

/// One conversation with a server, from the connecting to the end of it. Everything but cancel() is called by
/// one thread at a time. Whoever uses it keeps it alive: a call of the driver may outlast the patience of its
/// caller.
class OdbcSession {
 public:
  explicit OdbcSession(const OdbcFunctions& functions);
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

  /// Marks the statement whose call runs, so that cancel() finds it. It is the handle, together with all that
  /// its call uses.
  void beginRunning(std::shared_ptr<void> statement);
  /// Its call has come back, or is left alone. Waits for a cancelling that is under way, which could meet the
  /// next statement; false when that has no end within this time: the conversation is of no use any more.
  bool endRunning(std::chrono::milliseconds patience);
  /// Asks the server to end the statement that runs, by a thread of its own: nobody knows how long the server
  /// takes to hear of it. From any thread; nothing happens when none runs. Where the driver manager keeps
  /// that thread waiting for the very statement, as Wine 10's does, and noteProcess() was called, the server
  /// is asked by another conversation.
  void cancel();
  /// How the server is reached by another conversation, and the number that it has for this one's process.
  void noteProcess(std::shared_ptr<const SecretText> connectionText, const std::string& number);

 private:
  std::string information(SQLUSMALLINT what) const;

  class Running;

  const OdbcFunctions& functions_;
  OdbcEnvironment environment_;
  SQLHDBC connection_ = nullptr;
  bool isConnected_ = false;
  std::string refusal_;
  std::shared_ptr<Running> running_;
};

}  // namespace store
