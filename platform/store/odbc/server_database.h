#pragma once

#include <memory>
#include <optional>
#include <string>

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
  /// For a link without a password; what a server has taken is remembered as long as the program runs.
  std::optional<std::string> password = std::nullopt;
  /// Runs CREATE DATABASE and DROP DATABASE.
  ServerBackend::FileStatements fileStatements;
};

/// Opens the server's database that the link names. cannotOpen when there is no ODBC, no such driver, no such
/// server or database, when it doesn't let the user in, or when the server doesn't speak PostgreSQL's SQL.
/// passwordWanted, with the reason for the user, when the link has no password and the server wants one, or
/// not the one of `options`. On failure `*backend` is untouched.
Status openServerDatabase(const FileDsn& dsn, const ServerOptions& options,
                          std::unique_ptr<Backend>* backend);

}  // namespace store
