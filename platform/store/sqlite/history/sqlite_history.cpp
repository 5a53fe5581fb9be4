#include "platform/store/sqlite/history/sqlite_history.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "platform/store/sqlite/history/step_application.h"

namespace store {

namespace {

/// Whether a step that failed so would fail so again, whatever happens.
bool isForGood(const Status& status) {
  switch (status.code()) {
    case ErrorCode::changedElsewhere:
    case ErrorCode::structureChanged:
    case ErrorCode::constraint:
      return true;
    default:
      return false;
  }
}

UniqueSession makeSleeper(sqlite3* connection) {
  UniqueSession session = makeSession(connection);
  if (session) sqlite3session_enable(session.get(), 0);
  return session;
}

/// Has the session end and begin anew, for a scope.
class Awake {
 public:
  Awake(UniqueSession& session, sqlite3* connection) : session_(session), connection_(connection) {
    session_.reset();
  }
  ~Awake() { session_ = makeSleeper(connection_); }
  Awake(const Awake&) = delete;
  Awake& operator=(const Awake&) = delete;

 private:
  UniqueSession& session_;
  sqlite3* connection_;
};

// Those that were prepared before there was a session.
void prepareStatementsAnew(sqlite3* connection) {
  for (const int enabled : {0, 1})
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, enabled, nullptr);
}

}  // namespace

SqliteHistory::SqliteHistory(SqliteConnection& connection)
    : connection_(connection), recorder_(connection.handle()), tables_(connection) {}

SqliteHistory::~SqliteHistory() {
  keep(0);
}

void SqliteHistory::keep(std::size_t mostBytes) {
  const ConnectionGuard::Use use(connection_.guard());
  forget();
  tables_.clear();
  taken_.reset();
  hasKeptRows_ = false;
  recorder_.end();
  mostBytes_ = mostBytes;
  connection_.watch().accompany({});
  connection_.setChangeListener(nullptr);
  asleep_.reset();
  if (mostBytes == 0) return;
  asleep_ = makeSleeper(connection_.handle());
  if (!asleep_) return;
  prepareStatementsAnew(connection_.handle());
  connection_.watch().accompany([this] { recorder_.checkSize(); });
  connection_.setChangeListener(this);
}

const HistoryStep* SqliteHistory::next(Way way) const {
  const Steps& steps = way == Way::back ? done_ : undone_;
  return steps.empty() ? nullptr : &steps.back().told;
}

void SqliteHistory::changeBegins() {
  recording_ = Recording::nothing;
  recorder_.begin(asleep_ ? mostBytes_ / 2 : 0);
}

Status SqliteHistory::changeIsComplete(const ChangeNote& note) {
  // Of many rows it takes its time.
  const StatementWatch::Asked asked(connection_.watch());
  bool isKnown = false;
  Changeset changes;
  if (Status status = recorder_.read(&isKnown, &changes); !status) return status;
  RecordedStep step;
  Recording recording = Recording::notKept;
  if (isKnown) {
    // What can't be taken back is done none the less.
    Status status = makeStep(recorder_, std::move(changes), note, tables_, &recording, &step);
    if (status.code() == ErrorCode::stopped) return status;
  }
  // It stands at the end of the list, and counts once it is acknowledged.
  if (recording == Recording::kept) done_.push_back(std::move(step));
  recording_ = recording;
  return {};
}

void SqliteHistory::changeIsOver(bool isAcknowledged) noexcept {
  recorder_.end();
  const Recording recording = std::exchange(recording_, Recording::nothing);
  if (recording == Recording::nothing) return;
  if (!isAcknowledged) {
    if (recording == Recording::kept) done_.pop_back();
  } else if (recording == Recording::kept) {
    undone_.clear();
    makeRoom();
  } else {
    forget();
  }
}

void SqliteHistory::forget() {
  done_.clear();
  undone_.clear();
}

void SqliteHistory::makeRoom() {
  std::size_t bytes = 0;
  auto first = done_.end();
  while (first != done_.begin() && bytes + (first - 1)->bytes() <= mostBytes_) bytes += (--first)->bytes();
  done_.erase(done_.begin(), first);
}

Status SqliteHistory::take(Way way) {
  const ConnectionGuard::Use use(connection_.guard());
  Steps& from = way == Way::back ? done_ : undone_;
  Steps& to = way == Way::back ? undone_ : done_;
  taken_.reset();
  hasKeptRows_ = false;
  if (from.empty()) return {ErrorCode::noCurrentRecord, "There is no such step."};
  if (to.size() == to.capacity()) to.reserve(to.size() + 16);
  RecordedStep& step = from.back();
  std::optional<RecordAddress> address;
  const std::optional<Key>& key = way == Way::back ? step.before : step.after;
  if (key) address = {step.told.table, *key};
  Status status = takeStep(way, step);
  if (status) {
    to.push_back(std::move(step));
    taken_ = std::move(address);
  }
  if (status || isForGood(status)) from.pop_back();
  return status;
}

Status SqliteHistory::takeStep(Way way, RecordedStep& step) {
  // Two can't hear of the rows at once.
  const Awake awake(asleep_, connection_.handle());
  SqliteConnection::WriteTransaction transaction(connection_);
  if (Status status = transaction.begin(); !status) return status;
  StepApplication application(connection_, tables_, step, way);
  if (Status status = application.run(); !status) return status;
  std::vector<std::uint64_t> images = application.takeImages();
  std::vector<std::optional<std::int64_t>> rowIds = application.takeRowIds();
  if (Status status = transaction.commit(); !status) return status;
  step.images = std::move(images);
  step.rowIds = std::move(rowIds);
  hasKeptRows_ = application.keepsRows();
  return {};
}

}  // namespace store
