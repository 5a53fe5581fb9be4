#include "platform/store/odbc/driver/odbc_session.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/store/odbc/driver/odbc_text.h"
#include "platform/store/rows/secret_text.h"

namespace store {

namespace {

constexpr std::uintptr_t kLoginSeconds = 8;
// The driver only sends a word to a server; who waits for the end of the statement has a multiple of it.
constexpr auto kDriverPatience = std::chrono::milliseconds(300);

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

/// The statement whose call runs, and its cancelling. The threads that cancel keep it alive, and not the
/// session: the end of a conversation is not to wait for them.
class OdbcSession::Running : public std::enable_shared_from_this<Running> {
 public:
  explicit Running(const OdbcFunctions& functions) : functions_(functions) {}

  void noteProcess(std::shared_ptr<const SecretText> connectionText, const std::string& number);
  void begin(std::shared_ptr<void> statement);
  bool end(std::chrono::milliseconds patience);
  void cancel();

 private:
  void endCancelling();
  bool isDriverHeldUp(std::uint64_t run);
  void cancelByAnother(std::uint64_t run);

  const OdbcFunctions& functions_;
  std::mutex mutex_;
  std::condition_variable cancelled_;
  std::shared_ptr<void> statement_;
  std::uint64_t runs_ = 0;
  bool isCancelling_ = false;
  int othersCancelling_ = 0;  // conversations that are about to stop it
  std::shared_ptr<const SecretText> connectionText_;
  std::string stopStatement_;  // empty when nobody else can stop this one
};

OdbcSession::OdbcSession(const OdbcFunctions& functions)
    : functions_(functions), running_(std::make_shared<Running>(functions)) {}

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

void OdbcSession::beginRunning(std::shared_ptr<void> statement) {
  running_->begin(std::move(statement));
}

bool OdbcSession::endRunning(std::chrono::milliseconds patience) {
  return running_->end(patience);
}

void OdbcSession::cancel() {
  running_->cancel();
}

void OdbcSession::noteProcess(std::shared_ptr<const SecretText> connectionText, const std::string& number) {
  running_->noteProcess(std::move(connectionText), number);
}

void OdbcSession::Running::begin(std::shared_ptr<void> statement) {
  const std::lock_guard<std::mutex> lock(mutex_);
  statement_ = std::move(statement);
  ++runs_;
}

bool OdbcSession::Running::end(std::chrono::milliseconds patience) {
  // It goes behind the lock: the end of a statement may be the end of the session.
  std::shared_ptr<void> ended;
  std::unique_lock<std::mutex> lock(mutex_);
  ended.swap(statement_);
  cancelled_.notify_all();
  return cancelled_.wait_for(lock, patience, [this] { return !isCancelling_ && othersCancelling_ == 0; });
}

void OdbcSession::Running::endCancelling() {
  const std::lock_guard<std::mutex> lock(mutex_);
  isCancelling_ = false;
  cancelled_.notify_all();
}

void OdbcSession::Running::cancel() {
  std::shared_ptr<void> statement;
  std::uint64_t run = 0;
  bool hasAnotherWay = false;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (statement_ == nullptr || isCancelling_) return;
    statement = statement_;
    run = runs_;
    hasAnotherWay = !stopStatement_.empty();
    isCancelling_ = true;
  }
  const std::shared_ptr<Running> self = shared_from_this();
  try {
    // Nothing of the statement stays here: its end would meet the next one's call.
    std::thread([self, statement = std::move(statement)]() mutable {
      self->functions_.cancel(statement.get());
      // Before anybody goes on: it must not go while the driver is used again.
      statement.reset();
      self->endCancelling();
    }).detach();
  } catch (const std::exception&) {
    // Whoever waits for the statement gives it up, and can ask again.
    endCancelling();
    return;
  }
  if (!hasAnotherWay) return;
  try {
    std::thread([self, run] {
      try {
        if (self->isDriverHeldUp(run)) self->cancelByAnother(run);
      } catch (const std::exception&) {
        // There is nobody on this thread to be told, and the driver is asked already.
      }
    }).detach();
  } catch (const std::exception&) {
    // The driver is asked already, which nearly always is enough.
  }
}

void OdbcSession::Running::noteProcess(std::shared_ptr<const SecretText> connectionText,
                                       const std::string& number) {
  const bool isNumber = !number.empty() && number.find_first_not_of("0123456789") == std::string::npos;
  const std::lock_guard<std::mutex> lock(mutex_);
  connectionText_ = std::move(connectionText);
  stopStatement_ = isNumber ? "SELECT pg_catalog.pg_cancel_backend(" + number + ")" : std::string();
}

/// Whether the driver has not come back from its cancelling after a while, and the statement runs still.
bool OdbcSession::Running::isDriverHeldUp(std::uint64_t run) {
  std::unique_lock<std::mutex> lock(mutex_);
  const auto isOver = [&] { return !isCancelling_ || statement_ == nullptr || runs_ != run; };
  return !cancelled_.wait_for(lock, kDriverPatience, isOver);
}

void OdbcSession::Running::cancelByAnother(std::uint64_t run) {
  // Who has given it up must not end its conversation yet: the process's number may be another's then.
  std::shared_ptr<void> stopped;
  OdbcSession another(functions_);
  if (!another.connect(connectionText_->text())) return;
  OdbcStatementHandle statement;
  if (!statement.make(functions_, another.handle())) return;
  std::u16string sql = toUtf16(stopStatement_);
  {
    // From here on the end of the statement waits: the next one would be stopped.
    const std::lock_guard<std::mutex> lock(mutex_);
    if (statement_ == nullptr || runs_ != run) return;
    stopped = statement_;
    ++othersCancelling_;
  }
  functions_.executeDirect(statement.get(), wideOf(sql), static_cast<SQLINTEGER>(sql.size()));
  stopped.reset();
  const std::lock_guard<std::mutex> lock(mutex_);
  --othersCancelling_;
  cancelled_.notify_all();
}

}  // namespace store
