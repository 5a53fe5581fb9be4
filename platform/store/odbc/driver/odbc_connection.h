#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/store/odbc/driver/call_thread.h"
#include "platform/store/odbc/driver/odbc_session.h"
#include "platform/store/rows/busy.h"
#include "platform/store/rows/secret_text.h"
#include "platform/store/rows/status.h"

namespace store {

/// The way to a server, over as many conversations as it takes: when one was lost, the next call begins
/// another. Everything but stop() is called by one thread.
class OdbcConnection {
 public:
  /// Whether the server at the other end is one that can be talked with.
  using ServerCheck = Status (*)(const OdbcSession& session);

  /// `settings` are statements that each conversation begins with, behind the check of the server.
  OdbcConnection(std::string connectionText, std::vector<std::string> settings, ServerCheck check = nullptr)
      : connectionText_(std::make_shared<SecretText>(std::move(connectionText))),
        settings_(std::move(settings)),
        check_(check) {}
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;

  /// The connection text has no password, and its user is asked for one: from now on this one is used, or
  /// none.
  void usePassword(const std::optional<std::string>& password);
  /// Whether the server takes this one, by a conversation that is ended again; it is used from now on then.
  /// Failures are those of ensureOpen().
  Status tryPassword(const std::string& password);
  /// Why the server let nobody in any more for want of a password, or of another one than it has, once for
  /// each time that it refused a conversation after the first one: passwordWanted. Else done.
  Status takeRefusal() { return std::exchange(refusal_, {}); }

  /// Sees to it that there is a conversation, after ten seconds at the longest. Failures are those of
  /// OdbcSession::connect() and of the settings; stopped when who was asked wanted that.
  Status ensureOpen();

  /// Of the conversation; not null after ensureOpen().
  const std::shared_ptr<OdbcSession>& session() const { return session_; }
  /// Counts the conversations: what was made in an earlier one, as a cursor, is gone.
  std::uint64_t conversations() const { return conversations_; }
  /// A way to the same server for another thread, where nobody is asked.
  std::unique_ptr<OdbcConnection> another() const {
    auto made = std::make_unique<OdbcConnection>(connectionText_->text(), settings_, check_);
    made->password_ = password_;
    return made;
  }
  /// To be told when the server doesn't answer any more.
  void lose();
  /// Nobody heard of that loss: what needs the conversation next fails with it instead of beginning another.
  void tellLater(Status loss) { untold_ = std::move(loss); }

  /// Counts the changes that were made through it: rows that were read before one may be others now.
  std::uint64_t changes() const { return changes_; }
  void noteChange() { ++changes_; }
  /// How many rows these have changed, and how many statements were definitions.
  std::int64_t changedRows() const { return changedRows_; }
  void noteChangedRows(std::int64_t count) { changedRows_ += count; }
  std::uint64_t definitions() const { return definitions_; }
  void noteDefinition() { ++definitions_; }

  void askWhileBusy(BusyQuestion question) { question_ = std::move(question); }
  /// Waits for another thread's work as long as nobody wants it stopped: `isOver` waits so long itself, and
  /// tells whether it was worth it. Else stopped, also by stop().
  Status wait(const std::function<bool(std::chrono::milliseconds)>& isOver);
  /// As Backend::stop().
  void stop();

  /// Makes one call of the driver for `statement`, during which whoever is to be asked is asked again and
  /// again. When he wants it stopped, the server is; when that doesn't answer, or doesn't hear of it, the
  /// conversation is given up. `statement` is the handle; it and `call` keep alive all that they use. Answers
  /// with the call's result, SQL_ERROR when it was given up, which `gaveUp` tells; `wasCancelled` tells
  /// whether the driver was told to stop the statement, by the user or by stop().
  struct Performed {
    SQLRETURN result = SQL_ERROR;
    bool gaveUp = false;
    bool wasCancelled = false;
  };
  Performed perform(std::shared_ptr<void> statement, std::function<SQLRETURN()> call);

  /// The same in two steps, between which the conversation is used for nothing else: whoever waits for the
  /// answer can do something meanwhile, but is not asked. `isWanted`: else the statement is stopped at once.
  void begin(std::shared_ptr<void> statement, std::function<SQLRETURN()> call);
  Performed end(bool isWanted);

 private:
  using Clock = std::chrono::steady_clock;
  struct Attempt {
    Status status;
    std::string refusal;  // in the driver's words
  };

  Status connect(const std::shared_ptr<OdbcSession>& session);
  Attempt connectWith(const SecretText* password, Clock::time_point deadline,
                      const std::shared_ptr<OdbcSession>& session);
  bool isPasswordRefused(const OdbcFunctions& functions, const std::string& refusal,
                         Clock::time_point deadline);
  std::shared_ptr<const SecretText> textWith(const SecretText* password) const;
  Status refusedAnew(const Status& status);
  Status noteProcess();

  std::shared_ptr<const SecretText> connectionText_;  // with the link's password
  std::shared_ptr<const SecretText> password_;        // the user's
  bool asksForPassword_ = false;
  Status refusal_;
  std::vector<std::string> settings_;
  ServerCheck check_;
  BusyQuestion question_;
  std::unique_ptr<CallThread> thread_;  // once somebody was to be asked
  std::mutex mutex_;                    // of session_, which stop() uses from another thread
  std::shared_ptr<OdbcSession> session_;
  std::atomic<std::uint64_t> stops_ = 0;
  std::uint64_t stopsBefore_ = 0;  // what was begun
  std::uint64_t conversations_ = 0;
  std::uint64_t changes_ = 0;
  std::int64_t changedRows_ = 0;
  std::uint64_t definitions_ = 0;
  Status untold_;
};

}  // namespace store
