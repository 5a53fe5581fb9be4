#pragma once

#include <memory>

#include "platform/store/dsn/file_dsn.h"
#include "platform/store/odbc/server_backend.h"
#include "platform/store/rows/backend.h"
#include "platform/store/sql/local_date.h"

namespace store {

struct ServerOptions {
  /// How dates are read that a statement holds.
  DateOrder dateOrder = DateOrder::monthDayYear;
  /// Whom to ask from the opening on, as Backend::askWhileBusy() does.
  BusyQuestion question = nullptr;
  /// Runs CREATE DATABASE and DROP DATABASE.
  ServerBackend::FileStatements fileStatements;
};

/// Opens the server's database that the link names. cannotOpen when there is no ODBC, no such driver, no such
/// server or database, when it doesn't let the user in, or when the server doesn't speak PostgreSQL's SQL. On
/// failure
/// `*backend` is untouched.
Status openServerDatabase(const FileDsn& dsn, const ServerOptions& options,
                          std::unique_ptr<Backend>* backend);

}  // namespace store
