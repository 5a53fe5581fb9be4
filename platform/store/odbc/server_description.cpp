#include "platform/store/odbc/server_description.h"

#include "platform/store/odbc/driver/answer.h"

namespace store {

namespace {

/// The first word of what the server answers: behind its version there may be its maker's.
std::string firstWord(const Answer& answer) {
  if (answer.empty() || answer[0].empty()) return {};
  const std::string text = answer[0][0].value_or("");
  return text.substr(0, text.find(' '));
}

Status describeEncryption(OdbcConnection& connection, std::string* text) {
  Answer answer;
  const Status status =
      ask(connection, "SELECT ssl::text, version FROM pg_stat_ssl WHERE pid = pg_backend_pid()", {}, &answer);
  if (!status && connection.session() == nullptr) return status;
  if (!status || answer.empty() || answer[0].size() < 2) {
    // A server that is only like PostgreSQL may have no such table.
    *text = "The server doesn't tell whether the connection is encrypted";
  } else if (answer[0][0] != "true") {
    *text = "Not encrypted";
  } else {
    *text = "Encrypted" + (answer[0][1] ? " (" + *answer[0][1] + ")" : std::string());
  }
  return {};
}

}  // namespace

Status describeServer(OdbcConnection& connection, std::string* text) {
  Answer version;
  if (Status status = ask(connection, "SHOW server_version", {}, &version); !status) return status;
  std::string made;
  if (Status status = describeEncryption(connection, &made); !status) return status;
  const std::string product = connection.session()->productName();
  const std::string name = connection.session()->serverName();
  made += ", " + product + " " + firstWord(version);
  if (!name.empty()) made += " at " + name;
  *text = std::move(made);
  return {};
}

}  // namespace store
