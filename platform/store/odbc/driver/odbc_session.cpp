#include "platform/store/odbc/driver/odbc_session.h"

#include <algorithm>
#include <array>

#include "platform/store/odbc/driver/odbc_text.h"
#include "platform/store/rows/secret_text.h"

namespace store {

namespace {

constexpr std::uintptr_t kLoginSeconds = 8;

SQLPOINTER pointerOf(std::uintptr_t number) {
  return reinterpret_cast<SQLPOINTER>(number);
}

/// PostgreSQL's driver calls every refusal the same; what its library says of a missing password begins like
/// this in each language.
bool wantsPassword(const Diagnosis& diagnosis) {
  const auto says = [&](const char* text) { return diagnosis.message.find(text) != std::string::npos; };
  return diagnosis.state.starts_with("28") || says("fe_sendauth") || says("authentication failed");
}

}  // namespace

OdbcSession::~OdbcSession() {
  if (connection_ == nullptr) return;
  if (isConnected_) functions_.disconnect(connection_);
  functions_.freeHandle(SQL_HANDLE_DBC, connection_);
}

Status OdbcSession::connect(const std::string& connectionText) {
  const Status refused(ErrorCode::cannotOpen,
                       "The system's ODBC doesn't start: its driver manager may be missing.");
  if (!environment_.make(functions_, nullptr)) return refused;
  functions_.setEnvironmentAttribute(environment_.get(), SQL_ATTR_ODBC_VERSION, pointerOf(SQL_OV_ODBC3), 0);
  SQLHANDLE made = nullptr;
  if (!SQL_SUCCEEDED(functions_.allocHandle(SQL_HANDLE_DBC, environment_.get(), &made))) return refused;
  connection_ = made;
  functions_.setConnectionAttribute(connection_, SQL_ATTR_LOGIN_TIMEOUT, pointerOf(kLoginSeconds), 0);
  std::u16string text = toUtf16(connectionText);
  SQLSMALLINT length = 0;
  const SQLRETURN result =
      functions_.driverConnect(connection_, nullptr, wideOf(text), static_cast<SQLSMALLINT>(text.size()),
                               nullptr, 0, &length, SQL_DRIVER_NOPROMPT);
  wipe(&text);
  if (SQL_SUCCEEDED(result)) {
    isConnected_ = true;
    return {};
  }
  const Diagnosis diagnosis = diagnose(functions_, SQL_HANDLE_DBC, connection_);
  refusal_ = diagnosis.message;
  if (wantsPassword(diagnosis)) return {ErrorCode::passwordWanted, diagnosis.message};
  return {ErrorCode::cannotOpen, "The server's database can't be opened: " + statusOf(diagnosis).message()};
}

std::string OdbcSession::information(SQLUSMALLINT what) const {
  std::array<SQLWCHAR, 256> name{};
  SQLSMALLINT length = 0;
  const SQLRETURN result =
      functions_.getInfo(connection_, what, name.data(), static_cast<SQLSMALLINT>(sizeof name), &length);
  if (!SQL_SUCCEEDED(result)) return {};
  return fromWide(name.data(),
                  static_cast<std::size_t>(std::find(name.begin(), name.end(), 0) - name.begin()));
}

void OdbcSession::setRunning(SQLHSTMT statement) {
  const std::lock_guard<std::mutex> lock(mutex_);
  running_ = statement;
}

void OdbcSession::cancel() {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (running_ != nullptr) functions_.cancel(running_);
}

}  // namespace store
