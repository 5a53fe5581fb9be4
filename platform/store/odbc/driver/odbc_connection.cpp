#include "platform/store/odbc/driver/odbc_connection.h"

#include <chrono>
#include <condition_variable>
#include <thread>

#include "platform/store/odbc/driver/odbc_statement.h"

namespace store {

namespace {

using namespace std::chrono_literals;
constexpr auto kQuestionInterval = 50ms;
// A server that is asked to stop a statement and alive does so at once.
constexpr auto kCancelPatience = 3s;

/// A call of the driver on a thread of its own.
struct BackgroundCall {
  std::mutex mutex;
  std::condition_variable done;
  bool isDone = false;
  SQLRETURN result = SQL_ERROR;

  bool waitFor(std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(mutex);
    return done.wait_for(lock, time, [this] { return isDone; });
  }
};

}  // namespace

Status OdbcConnection::ensureOpen() {
  if (session_ != nullptr) return {};
  const OdbcFunctions* functions = nullptr;
  if (Status status = findOdbc(&functions); !status) return status;
  auto session = std::make_shared<OdbcSession>(*functions);
  if (Status status = session->connect(connectionText_); !status) return status;
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

void OdbcConnection::perform(SQLHSTMT statement, std::function<SQLRETURN()> call, SQLRETURN* result,
                             bool* gaveUp) {
  *gaveUp = false;
  const std::shared_ptr<OdbcSession> session = session_;
  session->setRunning(statement);
  if (!question_) {
    *result = call();
    session->setRunning(nullptr);
    return;
  }
  auto background = std::make_shared<BackgroundCall>();
  std::thread([background, session, call = std::move(call)] {
    const SQLRETURN returned = call();
    session->setRunning(nullptr);
    const std::lock_guard<std::mutex> lock(background->mutex);
    background->result = returned;
    background->isDone = true;
    background->done.notify_all();
  }).detach();
  bool isStopped = false;
  while (!isStopped && !background->waitFor(kQuestionInterval)) isStopped = question_(Busy::working);
  if (isStopped) {
    std::thread([session] { session->cancel(); }).detach();
    *gaveUp = !background->waitFor(kCancelPatience);
  }
  *result = *gaveUp ? SQL_ERROR : background->result;
}

}  // namespace store
