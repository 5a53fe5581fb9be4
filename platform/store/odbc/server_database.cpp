#include "platform/store/odbc/server_database.h"

#include <utility>

#include "platform/store/odbc/driver/answer.h"
#include "platform/store/odbc/session_passwords.h"
#include "platform/store/rows/ascii_case.h"

namespace store {

namespace {

constexpr std::string_view kProduct = "PostgreSQL";

/// Of PostgreSQL's two drivers the one that knows no Unicode: psqlodbca.so, psqlodbc30a.dll.
bool isOneAlphabetsDriver(const std::string& file) {
  const std::string name = lowerCase(file);
  return name.find("psqlodbc") != std::string::npos && name.substr(0, name.find('.')).ends_with('a');
}

Status checkProduct(const OdbcSession& session) {
  const std::string product = session.productName();
  if (product == kProduct && isOneAlphabetsDriver(session.driverName())) {
    return {ErrorCode::cannotOpen,
            "The link's driver knows the letters of one language alone: it must be "
            "PostgreSQL Unicode instead of PostgreSQL ANSI."};
  }
  if (product == kProduct) return {};
  return {ErrorCode::cannotOpen, "The server is " + (product.empty() ? "unknown" : product) +
                                     "; only those can be opened that speak PostgreSQL's SQL."};
}

const char* orderOf(DateOrder order) {
  switch (order) {
    case DateOrder::dayMonthYear:
      return "DMY";
    case DateOrder::yearMonthDay:
      return "YMD";
    case DateOrder::monthDayYear:
      break;
  }
  return "MDY";
}

/// Every value is to come as the one text that loses nothing.
std::vector<std::string> settingsFor(DateOrder order) {
  return {std::string("SET datestyle TO 'ISO, ") + orderOf(order) +
          "'; SET intervalstyle TO 'postgres'; SET bytea_output TO 'hex'; SET extra_float_digits TO 1; "
          "SET standard_conforming_strings TO on; SET array_nulls TO on; SET client_min_messages TO warning"};
}

bool isPasswordKeyword(std::string_view keyword) {
  return equalsIgnoringCase(keyword, "PWD") || equalsIgnoringCase(keyword, "PASSWORD");
}

bool hasPassword(const FileDsn& dsn) {
  return dsn.find("PWD") != nullptr || dsn.find("PASSWORD") != nullptr;
}

void addUnlessGiven(FileDsn* dsn, std::string_view keyword, std::string_view value) {
  if (dsn->find(keyword) == nullptr) dsn->entries.push_back({std::string(keyword), std::string(value)});
}

/// The link with what PostgreSQL's driver has to be told, where the link itself says nothing of it: that the
/// conversation is to be encrypted if the server can, that line ends stay as they are, that transactions
/// are its user's own, and that a server whose machine or line is dead is found out within ten seconds.
FileDsn completed(const FileDsn& dsn) {
  FileDsn complete = dsn;
  // As the system's own tools leave it for a user who is to be asked.
  std::erase_if(complete.entries, [](const FileDsn::Entry& entry) {
    return isPasswordKeyword(entry.keyword) && entry.value.empty();
  });
  const std::string* driver = dsn.find("DRIVER");
  const bool isKnown = driver != nullptr && lowerCase(*driver).find("postgres") != std::string::npos;
  if (!isKnown) return complete;
  addUnlessGiven(&complete, "SSLmode", "prefer");
  addUnlessGiven(&complete, "LFConversion", "0");
  addUnlessGiven(&complete, "Protocol", "7.4-0");
  addUnlessGiven(&complete, "pqopt",
                 "keepalives_idle=4 keepalives_interval=2 keepalives_count=2 tcp_user_timeout=8000");
  return complete;
}

}  // namespace

Status openServerDatabase(const FileDsn& dsn, const ServerOptions& options,
                          std::unique_ptr<Backend>* backend) {
  const FileDsn complete = completed(dsn);
  const std::string link = connectionTextOf(complete);
  const bool hasOwnPassword = hasPassword(complete);
  const std::optional<std::string> password =
      hasOwnPassword || options.password ? options.password : rememberedPassword(link);
  auto connection = std::make_unique<OdbcConnection>(link, settingsFor(options.dateOrder), checkProduct);
  if (!hasOwnPassword) connection->usePassword(password);
  connection->askWhileBusy(options.question);
  if (Status status = connection->ensureOpen(); !status) {
    if (status.code() != ErrorCode::passwordWanted) return status;
    if (hasOwnPassword)
      return {ErrorCode::cannotOpen, "The server does not take the link's password: " + status.message()};
    forgetPassword(link);
    if (!password) return {ErrorCode::passwordWanted, "The server wants a password."};
    return {ErrorCode::passwordWanted, "The server does not take the password: " + status.message()};
  }
  Answer answer;
  if (Status status = ask(*connection, "SHOW transaction_read_only", {}, &answer); !status) return status;
  const bool isReadOnly = !answer.empty() && answer[0][0] == "on";
  if (!hasOwnPassword && password) rememberPassword(link, *password);
  *backend = std::make_unique<ServerBackend>(std::move(connection), hasOwnPassword ? std::string() : link,
                                             isReadOnly, options.fileStatements);
  return {};
}

}  // namespace store
