#include "platform/store/sqlite/copies/copy_check.h"

#include <string_view>

namespace store {

namespace {

bool isBrokenRule(std::string_view finding) {
  return finding.find(" value in ") != std::string_view::npos ||
         finding.starts_with("CHECK constraint failed");
}

Status damaged(std::string_view reason) {
  return {ErrorCode::damaged, "The copy is damaged: " + std::string(reason)};
}

}  // namespace

Status openWhole(const std::string& copy, const BusyQuestion& question, SqliteConnection* connection) {
  OpenOptions options;
  options.isReadOnly = true;
  options.question = question;
  if (Status status = connection->open(copy, options); !status) {
    const bool isItsFault = status.code() == ErrorCode::cannotOpen || status.code() == ErrorCode::damaged;
    return isItsFault ? damaged(status.message()) : status;
  }
  const ConnectionGuard::Use use(connection->guard());
  const StatementWatch::Asked asked(connection->watch());
  SqliteStatement check;
  if (Status status = connection->prepare("PRAGMA quick_check", &check); !status) return status;
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(check.get())) == SQLITE_ROW) {
    const std::string_view finding = columnText(check.get(), 0);
    if (finding != "ok" && !isBrokenRule(finding)) return damaged(finding);
  }
  Status status = statusOf(connection->handle(), result);
  return status.code() == ErrorCode::damaged ? damaged(status.message()) : status;
}

}  // namespace store
