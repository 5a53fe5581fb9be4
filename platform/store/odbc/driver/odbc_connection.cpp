#include "platform/store/odbc/driver/odbc_connection.h"

#include <chrono>
#include <thread>

#include "platform/store/odbc/driver/odbc_statement.h"

namespace store {

namespace {

using namespace std::chrono_literals;
constexpr auto kQuestionInterval = 50ms;
// A server that is asked to stop a statement and alive does so at once.
constexpr auto kCancelPatience = 3s;
// A name may have several addresses, and the driver has its patience with each.
constexpr auto kConnectPatience = 10s;

}  // namespace

/// Connects, as long as nobody wants it stopped. The driver can't be told so: it is left alone then.
Status OdbcConnection::connect(const std::shared_ptr<OdbcSession>& session) {
  // What stands here when there was no memory for anything else.
  const auto outcome = std::make_shared<Status>(ErrorCode::outOfMemory, "Out of memory.");
  CallThread thread;
  thread.begin([session, outcome, text = connectionText_] {
    *outcome = session->connect(text->text());
    return *outcome ? SQL_SUCCESS : SQL_ERROR;
  });
  const auto deadline = std::chrono::steady_clock::now() + kConnectPatience;
  while (!thread.waitFor(kQuestionInterval)) {
    if (question_ && question_(Busy::working)) {
      return {ErrorCode::stopped, "The connecting to the server was stopped."};
    }
    if (std::chrono::steady_clock::now() > deadline) {
      return {ErrorCode::cannotOpen, "The server's database can't be opened: the server does not answer."};
    }
  }
  return *outcome;
}

Status OdbcConnection::ensureOpen() {
  if (session_ != nullptr) return {};
  const OdbcFunctions* functions = nullptr;
  if (Status status = findOdbc(&functions); !status) return status;
  auto session = std::make_shared<OdbcSession>(*functions);
  if (Status status = connect(session); !status) return status;
  if (check_ != nullptr) {
    if (Status status = check_(*session); !status) return status;
  }
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    session_ = std::move(session);
  }
  ++conversations_;
  for (const std::string& setting : settings_) {
    OdbcStatement statement(*this);
    if (Status status = statement.run(setting); !status) {
      lose();
      return status;
    }
  }
  return {};
}

void OdbcConnection::lose() {
  std::shared_ptr<OdbcSession> lost;
  const std::lock_guard<std::mutex> lock(mutex_);
  lost.swap(session_);
}

void OdbcConnection::stop() {
  std::shared_ptr<OdbcSession> session;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    session = session_;
  }
  if (session != nullptr) session->cancel();
}

Status OdbcConnection::wait(const std::function<bool(std::chrono::milliseconds)>& isOver) {
  while (!isOver(kQuestionInterval)) {
    if (question_ && question_(Busy::working)) return {ErrorCode::stopped, "The reading was stopped."};
  }
  return {};
}

void OdbcConnection::perform(SQLHSTMT statement, std::function<SQLRETURN()> call, SQLRETURN* result,
                             bool* gaveUp) {
  *gaveUp = false;
  OdbcSession& session = *session_;
  session.setRunning(statement);
  if (!question_) {
    *result = call();
    session.setRunning(nullptr);
    return;
  }
  if (thread_ == nullptr) thread_ = std::make_unique<CallThread>();
  thread_->begin(std::move(call));
  bool isStopped = false;
  while (!isStopped && !thread_->waitFor(kQuestionInterval)) isStopped = question_(Busy::working);
  if (isStopped) {
    // That it asks the server may take long, too.
    std::thread([kept = session_] { kept->cancel(); }).detach();
    *gaveUp = !thread_->waitFor(kCancelPatience);
  }
  session.setRunning(nullptr);
  *result = *gaveUp ? SQL_ERROR : thread_->result();
  if (*gaveUp) thread_.reset();
}

}  // namespace store
