#include "platform/store/odbc/driver/odbc_connection.h"

#include <chrono>

#include "platform/store/dsn/file_dsn.h"
#include "platform/store/odbc/driver/answer.h"

namespace store {

namespace {

using namespace std::chrono_literals;
constexpr auto kQuestionInterval = 50ms;
// A server that is asked to stop a statement and alive does so at once.
constexpr auto kCancelPatience = 3s;
// A name may have several addresses, and the driver has its patience with each.
constexpr auto kConnectPatience = 10s;

}  // namespace

void OdbcConnection::usePassword(const std::optional<std::string>& password) {
  asksForPassword_ = true;
  password_ = password ? std::make_shared<SecretText>(*password) : nullptr;
}

Status OdbcConnection::tryPassword(const std::string& password) {
  const std::unique_ptr<OdbcConnection> trial = another();
  trial->usePassword(password);
  trial->askWhileBusy(question_);
  if (Status status = trial->ensureOpen(); !status) return status;
  password_ = trial->password_;
  return {};
}

Status OdbcConnection::connect(const std::shared_ptr<OdbcSession>& session) {
  const Clock::time_point deadline = Clock::now() + kConnectPatience;
  const Attempt attempt = connectWith(password_.get(), deadline, session);
  const bool mayBeOfPassword = attempt.status.code() == ErrorCode::cannotOpen && password_ != nullptr;
  if (!mayBeOfPassword || attempt.refusal.empty()) return attempt.status;
  if (!isPasswordRefused(session->functions(), attempt.refusal, deadline)) return attempt.status;
  return {ErrorCode::passwordWanted, attempt.refusal};
}

/// Whether the server that gave this reason doesn't take the password. PostgreSQL's driver gives one state
/// for all reasons, and the server writes them in its own language; so the reason is compared with the one
/// why a password that nobody has is not taken.
bool OdbcConnection::isPasswordRefused(const OdbcFunctions& functions, const std::string& refusal,
                                       Clock::time_point deadline) {
  const auto tryWith = [&](const SecretText* password) {
    return connectWith(password, deadline, std::make_shared<OdbcSession>(functions));
  };
  // Whom it wants no password of, it has refused for something else.
  if (tryWith(nullptr).status.code() != ErrorCode::passwordWanted) return false;
  const SecretText nobodys("this is nobody's password");
  return tryWith(&nobodys).refusal == refusal;
}

/// Connects, as long as nobody wants it stopped. The driver can't be told so: it is left alone then.
OdbcConnection::Attempt OdbcConnection::connectWith(const SecretText* password, Clock::time_point deadline,
                                                    const std::shared_ptr<OdbcSession>& session) {
  // What stands here when there was no memory for anything else.
  const auto outcome = std::make_shared<Status>(ErrorCode::outOfMemory, "Out of memory.");
  CallThread thread;
  thread.begin([session, outcome, text = textWith(password)] {
    *outcome = session->connect(text->text());
    return *outcome ? SQL_SUCCESS : SQL_ERROR;
  });
  while (!thread.waitFor(kQuestionInterval)) {
    if (question_ && question_(Busy::working)) {
      return {{ErrorCode::stopped, "The connecting to the server was stopped."}, {}};
    }
    if (Clock::now() > deadline) {
      return {{ErrorCode::cannotOpen, "The server's database can't be opened: the server does not answer."},
              {}};
    }
  }
  return {*outcome, session->refusal()};
}

std::shared_ptr<const SecretText> OdbcConnection::textWith(const SecretText* password) const {
  if (password == nullptr) return connectionText_;
  FileDsn entries;
  entries.entries.push_back({"PWD", password->text()});
  std::string entry = connectionTextOf(entries);
  std::string text;
  text.reserve(connectionText_->text().size() + entry.size());
  text = connectionText_->text();
  text += entry;
  wipe(&entries.entries.front().value);
  wipe(&entry);
  return std::make_shared<const SecretText>(std::move(text));
}

Status OdbcConnection::ensureOpen() {
  if (session_ != nullptr) return {};
  if (!untold_) return std::exchange(untold_, {});
  const OdbcFunctions* functions = nullptr;
  if (Status status = findOdbc(&functions); !status) return status;
  auto session = std::make_shared<OdbcSession>(*functions);
  if (Status status = connect(session); !status) return conversations_ == 0 ? status : refusedAnew(status);
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
  return noteProcess();
}

/// Failures are those that end the conversation. Who doesn't know the number of its process can do without.
Status OdbcConnection::noteProcess() {
  Answer answer;
  Status status = ask(*this, "SELECT pg_catalog.pg_backend_pid()", {}, &answer);
  if (session_ == nullptr) return status;
  if (status.code() == ErrorCode::stopped) {
    lose();
    return status;
  }
  if (status && answer.size() == 1 && answer[0].size() == 1) {
    session_->noteProcess(textWith(password_.get()), answer[0][0].value_or(""));
  }
  return {};
}

/// The failure of a conversation that is not the first one.
Status OdbcConnection::refusedAnew(const Status& status) {
  if (status.code() != ErrorCode::passwordWanted) return status;
  if (!asksForPassword_) {
    return {ErrorCode::cannotOpen,
            "The server does not take the link's password any more: " + status.message()};
  }
  refusal_ = {ErrorCode::passwordWanted,
              "The server does not take the password any more: " + status.message()};
  return refusal_;
}

void OdbcConnection::lose() {
  std::shared_ptr<OdbcSession> lost;
  const std::lock_guard<std::mutex> lock(mutex_);
  lost.swap(session_);
}

void OdbcConnection::stop() {
  ++stops_;
  std::shared_ptr<OdbcSession> session;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    session = session_;
  }
  if (session != nullptr) session->cancel();
}

Status OdbcConnection::wait(const std::function<bool(std::chrono::milliseconds)>& isOver) {
  const std::uint64_t stops = stops_;
  while (!isOver(kQuestionInterval)) {
    const bool isStopped = stops_ != stops || (question_ && question_(Busy::working));
    if (isStopped) return {ErrorCode::stopped, "The reading was stopped."};
  }
  return {};
}

OdbcConnection::Performed OdbcConnection::perform(std::shared_ptr<void> statement,
                                                  std::function<SQLRETURN()> call) {
  if (question_) {
    begin(std::move(statement), std::move(call));
    return end(true);
  }
  const std::uint64_t stops = stops_;
  Performed done;
  session_->beginRunning(std::move(statement));
  done.result = call();
  done.gaveUp = !session_->endRunning(kCancelPatience);
  done.wasCancelled = stops_ != stops;
  return done;
}

void OdbcConnection::begin(std::shared_ptr<void> statement, std::function<SQLRETURN()> call) {
  stopsBefore_ = stops_;
  if (thread_ == nullptr) thread_ = std::make_unique<CallThread>();
  session_->beginRunning(std::move(statement));
  thread_->begin(std::move(call));
}

OdbcConnection::Performed OdbcConnection::end(bool isWanted) {
  Performed done;
  bool isStopped = !isWanted;
  while (!isStopped && !thread_->waitFor(kQuestionInterval)) {
    isStopped = question_ && question_(Busy::working);
  }
  if (isStopped) {
    session_->cancel();
    done.gaveUp = !thread_->waitFor(kCancelPatience);
  }
  if (!session_->endRunning(done.gaveUp ? std::chrono::milliseconds(0) : kCancelPatience)) done.gaveUp = true;
  done.wasCancelled = isStopped || stops_ != stopsBefore_;
  if (done.gaveUp) {
    thread_.reset();
  } else {
    done.result = thread_->result();
  }
  return done;
}

}  // namespace store
