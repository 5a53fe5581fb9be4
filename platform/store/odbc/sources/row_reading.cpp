#include "platform/store/odbc/sources/row_reading.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/store/odbc/driver/answer.h"
#include "platform/store/odbc/driver/odbc_statement.h"
#include "platform/store/odbc/sources/row_text.h"

namespace store {

namespace {

using namespace std::chrono_literals;

// The driver holds all of an answer, twice, before it hands out the first row of it. So no row of an answer
// is longer than this; those that are come in pieces, as the digits of their bytes.
constexpr std::size_t kMostInOneRow = 3000;
constexpr std::size_t kBytesOfPiece = kMostInOneRow / 2 - 1;
// A letter that is one byte to the server may be three in UTF-8.
static_assert(3 * kMostInOneRow <= OdbcStatement::kMostTextBytes);
// Each question is a way to the server and back, and while it is answered nothing else is made.
constexpr std::size_t kBytesAtOnce = std::size_t{1} << 19;
constexpr std::size_t kFirstRows = 200;
constexpr std::size_t kMostRows = 4000;
constexpr char kMoreFollows = '-';
constexpr char kEnds = '.';
// Beside those that are being read. What is larger than that is read ahead alone.
constexpr std::size_t kMostBytesAhead = 1 << 20;
// A server that is alive ends a statement at once when it is told to.
constexpr auto kEndPatience = 3s;

// A letter that is no ASCII, but in most of the sets of letters that a server may have.
constexpr std::string_view kProbe = "\xC3\xA4";

/// Whether the driver hands out texts as UTF-8, and many at once, when it is asked for bytes.
bool handsOutUtf8(OdbcConnection& connection, OdbcStatement::TextBlock& block) {
  OdbcStatement statement(connection);
  Status status =
      statement.run("SELECT '" + std::string(kProbe) + "'::text FROM pg_catalog.generate_series(1, 2)");
  std::size_t count = 0;
  const auto take = [&](std::string_view text) {
    ++count;
    return text == kProbe;
  };
  if (status) status = statement.readTexts(block, take);
  return status && count == 2;
}

/// The rows as texts, and those that are too long in pieces, each with a sign behind it that tells whether it
/// is the last one. What an SQL can't say without a fence the planner would take apart, and make again for
/// each piece.
std::string declarationOf(const std::string& select, std::size_t columns) {
  std::string texts;
  std::string names;
  for (std::size_t index = 0; index < columns; ++index) {
    const std::string number = std::to_string(index);
    texts += (index == 0 ? "q.c" : ", q.c") + number + "::text";
    names += (index == 0 ? "c" : ", c") + number;
  }
  const std::string piece = std::to_string(kBytesOfPiece);
  return "DECLARE quivane_rows NO SCROLL CURSOR FOR SELECT CASE WHEN p.first IS NULL THEN r.whole ELSE "
         "pg_catalog.encode(pg_catalog.substring(r.bytes, p.first, " +
         piece + "), 'hex') || CASE WHEN p.first + " + piece + " > pg_catalog.octet_length(r.bytes) THEN '" +
         kEnds + "' ELSE '" + kMoreFollows +
         "' END END FROM (SELECT t.whole, CASE WHEN pg_catalog.octet_length(t.whole) > " +
         std::to_string(kMostInOneRow) +
         " THEN pg_catalog.convert_to(t.whole, 'UTF8') END AS bytes FROM (SELECT " + asRowText(texts) +
         " AS whole FROM (" + select + "\n) AS q(" + names +
         ") OFFSET 0) AS t OFFSET 0) AS r LEFT JOIN LATERAL (SELECT g.first FROM "
         "pg_catalog.generate_series(1, "
         "pg_catalog.octet_length(r.bytes), " +
         piece + ") AS g(first) WHERE r.bytes IS NOT NULL OFFSET 0) AS p ON TRUE";
}

int digitOf(char sign) {
  if (sign >= '0' && sign <= '9') return sign - '0';
  if (sign >= 'a' && sign <= 'f') return sign - 'a' + 10;
  return -1;
}

/// Appends the bytes that the digits stand for.
bool appendBytes(std::string_view digits, std::string* bytes) {
  if (digits.size() % 2 != 0) return false;
  for (std::size_t index = 0; index < digits.size(); index += 2) {
    const int high = digitOf(digits[index]);
    const int low = digitOf(digits[index + 1]);
    if (high < 0 || low < 0) return false;
    bytes->push_back(static_cast<char>(high * 16 + low));
  }
  return true;
}

Status unreadable() {
  return {ErrorCode::inputOutput, "The server's answer can't be read."};
}

}  // namespace

/// Also the thread's, which may outlast the reading when the server doesn't answer.
class RowReading::State {
 public:
  State(std::unique_ptr<OdbcConnection> connection, const std::string& select, std::size_t columns)
      : connection_(std::move(connection)), declaration_(declarationOf(select, columns)) {}

  /// Nothing leaves it: there is nobody on that thread to catch it.
  void read() noexcept {
    Status status;
    try {
      status = readAll();
    } catch (...) {
      connection_->lose();
      status = {ErrorCode::outOfMemory, "Out of memory."};
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    status_ = std::move(status);
    isOver_ = true;
    changed_.notify_all();
  }

  void end() {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      isEnding_ = true;
      changed_.notify_all();
    }
    connection_->stop();
  }

  Status take(std::chrono::milliseconds time, std::string* texts, bool* hasCome) {
    std::unique_lock<std::mutex> lock(mutex_);
    *hasCome = changed_.wait_for(lock, time, [this] { return !ahead_.empty() || isOver_; });
    if (!*hasCome) return {};
    if (ahead_.empty()) {
      if (status_) texts->clear();
      return status_;
    }
    *texts = std::move(ahead_.front());
    ahead_.pop_front();
    bytesAhead_ -= texts->size();
    changed_.notify_all();
    return {};
  }

  /// Once the thread has ended.
  std::unique_ptr<OdbcConnection> release() {
    return connection_->session() != nullptr ? std::move(connection_) : nullptr;
  }

 private:
  Status readAll() {
    Status status = begin();
    for (bool isAtEnd = false; status && !isAtEnd;) {
      std::string rows;
      status = readOn(&rows, &isAtEnd);
      if (status && !rows.empty()) status = hand(std::move(rows));
    }
    if (status && !piece_.empty()) status = unreadable();
    if (connection_->session() == nullptr) return status;
    // What could not be ended must not go on with another's statements.
    const Status ended = runStatement(*connection_, status ? "COMMIT" : "ROLLBACK");
    if (!ended) connection_->lose();
    return status ? ended : status;
  }

  Status begin() {
    // A conversation that was used before may have been lost since.
    if (connection_->session() != nullptr && !runStatement(*connection_, "SELECT 1")) connection_->lose();
    if (Status status = connection_->ensureOpen(); !status) return status;
    asBytes_ = handsOutUtf8(*connection_, block_);
    // All of the rows will be read, and nothing is worth long thought about how; not every server knows
    // these.
    static_cast<void>(runStatement(*connection_, "SET cursor_tuple_fraction TO 1"));
    static_cast<void>(runStatement(*connection_, "SET jit TO off"));
    Status status = runStatement(*connection_, "BEGIN ISOLATION LEVEL REPEATABLE READ");
    if (status) status = runStatement(*connection_, declaration_);
    return status;
  }

  /// Appends the next rows, whole ones, to `*rows`.
  Status readOn(std::string* rows, bool* isAtEnd) {
    OdbcStatement fetch(*connection_);
    Status status = fetch.run("FETCH FORWARD " + std::to_string(rowsAtOnce_) + " FROM quivane_rows");
    std::size_t count = 0;
    std::size_t bytes = 0;
    const auto take = [&](std::string_view text) {
      ++count;
      bytes += text.size();
      return takeText(text, rows);
    };
    if (status) status = asBytes_ ? fetch.readTexts(block_, take) : readEach(fetch, take);
    *isAtEnd = count < rowsAtOnce_;
    rowsAtOnce_ = std::clamp(kBytesAtOnce / std::max<std::size_t>(bytes / std::max<std::size_t>(count, 1), 1),
                             kFirstRows / 2, kMostRows);
    return status;
  }

  /// As OdbcStatement::readTexts(), through UTF-16.
  static Status readEach(OdbcStatement& fetch, const std::function<bool(std::string_view text)>& take) {
    for (bool hasRow = true;;) {
      std::optional<std::string> text;
      if (Status status = fetch.next(&hasRow); !status || !hasRow) return status;
      if (Status status = fetch.read(0, &text); !status) return status;
      if (!take(text ? std::string_view(*text) : std::string_view())) return unreadable();
    }
  }

  /// Appends a row to `*rows`, of one that comes in pieces with the last of them.
  bool takeText(std::string_view text, std::string* rows) {
    if (text.starts_with('(')) {
      rows->append(text);
      return true;
    }
    if (text.empty() || (text.back() != kEnds && text.back() != kMoreFollows)) return false;
    if (!appendBytes(text.substr(0, text.size() - 1), &piece_)) return false;
    if (text.back() == kMoreFollows) return true;
    *rows += piece_;
    // Its memory goes, too.
    piece_ = std::string();
    return true;
  }

  /// Waits until there is room for them.
  Status hand(std::string rows) {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return bytesAhead_ < kMostBytesAhead || isEnding_; });
    if (isEnding_) return {ErrorCode::stopped, "The reading was ended."};
    bytesAhead_ += rows.size();
    ahead_.push_back(std::move(rows));
    changed_.notify_all();
    return {};
  }

  std::unique_ptr<OdbcConnection> connection_;  // but for stop() the thread's
  std::string declaration_;
  bool asBytes_ = false;
  OdbcStatement::TextBlock block_;
  std::size_t rowsAtOnce_ = kFirstRows;  // as large as the last ones were
  std::string piece_;                    // of a row whose last piece is to come
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::string> ahead_;
  std::size_t bytesAhead_ = 0;
  Status status_;
  bool isEnding_ = false;
  bool isOver_ = false;
};

RowReading::RowReading(std::unique_ptr<OdbcConnection> connection, const std::string& select,
                       std::size_t columns)
    : state_(std::make_shared<State>(std::move(connection), select, columns)) {
  thread_.begin([state = state_] {
    state->read();
    return SQL_SUCCESS;
  });
}

RowReading::~RowReading() {
  if (state_ != nullptr) release();
}

Status RowReading::take(std::chrono::milliseconds time, std::string* texts, bool* hasCome) {
  return state_->take(time, texts, hasCome);
}

std::unique_ptr<OdbcConnection> RowReading::release() {
  const std::shared_ptr<State> state = std::exchange(state_, nullptr);
  state->end();
  return thread_.waitFor(kEndPatience) ? state->release() : nullptr;
}

}  // namespace store
