// Imports whose connection is lost while the server ends them.
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <string>

#include "tests/server/server_load_fixture.h"

namespace store {
namespace {

/// As long as it lives the end of each change waits for another server that there is not.
class WaitingForNobody {
 public:
  WaitingForNobody() { set("'nobody'"); }
  ~WaitingForNobody() { set("''"); }

 private:
  static void set(const std::string& name) {
    runOnServer("ALTER SYSTEM SET synchronous_standby_names = " + name, "postgres");
    runOnServer("SELECT pg_reload_conf()", "postgres");
  }
};

class LostCommitTest : public ServerLoadFixture {
 protected:
  /// Imports one record, and ends its conversation when that waits for `event`.
  Status importAndEndIn(const std::string& event) {
    const std::string importing =
        " FROM pg_stat_activity WHERE wait_event = '" + event + "' AND datname = '" + database_ + "'";
    OtherProgram other(path_);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    // The server needs a moment until it waits for the other one.
    for (int number = 1; std::chrono::steady_clock::now() < deadline; ++number) {
      number_ = std::to_string(number);
      std::future<Status> import =
          std::async(std::launch::async, [this] { return tryImport("k,v\n" + number_ + ",a\n"); });
      while (import.wait_for(std::chrono::milliseconds(20)) != std::future_status::ready) {
        if (other.ask("SELECT count(*)" + importing) == "0") {
          if (std::chrono::steady_clock::now() < deadline) continue;
          // Nothing else would end it.
          other.ask(
              "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE pid <> pg_backend_pid() AND "
              "datname = '" +
              database_ + "'");
          import.wait();
          return {ErrorCode::illegalOperation, "It waited for something else."};
        }
        if (beforeTheEnd_) beforeTheEnd_();
        other.ask("SELECT pg_terminate_backend(pid)" + importing);
        hasEnded_ = true;
        return import.get();
      }
      if (Status status = import.get(); !status) return status;
    }
    return {ErrorCode::illegalOperation, "It never waited."};
  }

  std::string number_;  // of the record
  std::function<void()> beforeTheEnd_;
  std::atomic<bool> hasEnded_ = false;
};

TEST_F(LostCommitTest, AnImportThatWasStoredBeforeTheConnectionWasLostHasNotFailed) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v text)", database_);
  open();
  const WaitingForNobody waiting;
  const Status status = importAndEndIn("SyncRep");
  EXPECT_EQ("1", onServer("SELECT count(*) FROM t WHERE k = " + number_));
  EXPECT_TRUE(status) << status.message();
  EXPECT_TRUE(result_.isStored);
}

TEST_F(LostCommitTest, AnImportThatTheServerHasUndoneIsNotStored) {
  runOnServer(
      "CREATE TABLE t (k integer PRIMARY KEY, v text); CREATE FUNCTION wait() RETURNS trigger LANGUAGE "
      "plpgsql AS 'BEGIN PERFORM pg_sleep(60); RETURN NULL; END'; CREATE CONSTRAINT TRIGGER wait AFTER "
      "INSERT ON t DEFERRABLE INITIALLY DEFERRED FOR EACH ROW EXECUTE FUNCTION wait()",
      database_);
  open();
  const Status status = importAndEndIn("PgSleep");
  EXPECT_EQ("0", onServer("SELECT count(*) FROM t"));
  EXPECT_EQ(ErrorCode::inputOutput, status.code());
  EXPECT_NE(std::string::npos, status.message().find("nothing was stored")) << status.message();
}

TEST_F(LostCommitTest, WhetherAnImportIsStoredIsNotGuessed) {
  runOnServer("CREATE TABLE t (k integer PRIMARY KEY, v text)", database_);
  open();
  const auto letIn = [this](const std::string& whether) {
    runOnServer(
        "SET synchronous_commit TO local; ALTER DATABASE " + database_ + " ALLOW_CONNECTIONS " + whether,
        "postgres");
  };
  // Nobody can be asked any more, and the user doesn't wait for it.
  beforeTheEnd_ = [&] { letIn("false"); };
  backend_->askWhileBusy([this](Busy) { return hasEnded_.load(); });
  Status status;
  {
    const WaitingForNobody waiting;
    status = importAndEndIn("SyncRep");
  }
  letIn("true");
  EXPECT_EQ(ErrorCode::inputOutput, status.code());
  EXPECT_NE(std::string::npos, status.message().find("Whether it is stored is not known"))
      << status.message();
  EXPECT_EQ("1", onServer("SELECT count(*) FROM t WHERE k = " + number_));
}

}  // namespace
}  // namespace store
