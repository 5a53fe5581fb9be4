#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/odbc/driver/odbc_connection.h"
#include "platform/store/rows/status.h"

namespace store {

/// One statement and what it answers. All values come and go as texts, which is the form in which a server
/// has each of its types without loss.
class OdbcStatement {
 public:
  /// Values for the question marks of a statement, in UTF-8; nothing is null.
  using Parameters = std::vector<std::optional<std::string>>;

  /// What a statement does that the server was left alone with.
  enum class Effect {
    nothing,  ///< what it reads, or what is undone with its transaction
    change,   ///< it may have been stored
  };

  /// `connection` outlives the statement.
  explicit OdbcStatement(OdbcConnection& connection, Effect effect = Effect::nothing);
  ~OdbcStatement();
  OdbcStatement(const OdbcStatement&) = delete;
  OdbcStatement& operator=(const OdbcStatement&) = delete;

  /// Runs it, in another conversation when the former one was lost. What an earlier run answered is gone.
  /// stopped when who was asked wanted that, and nothing was changed; inputOutput when the server was lost
  /// meanwhile, or did not end a change that was to be stopped: whether it was stored is then unknown.
  /// conversion for a parameter with a zero character, which no server's text can hold.
  Status run(std::string_view sql, const Parameters& parameters = {});

  /// The same, for a statement that is run again and again: the server reads and plans it once, as long as
  /// one run after the other has this text, and each of them is one question. With a new text it is two.
  Status runPrepared(std::string_view sql, const Parameters& parameters);

  /// runPrepared() in two steps, between which the connection is used for nothing else: the server works
  /// while something else is done. What was begun has to be ended before the connection or the statement is.
  Status beginPrepared(std::string_view sql, const Parameters& parameters);
  Status endPrepared();
  /// The same when it is not wanted any more: the server is told to stop it.
  void abandonPrepared();

  /// Lets the server tell the columns of a statement without running it.
  Status describe(std::string_view sql);

  std::size_t columnCount() const { return columnCount_; }
  /// The name of the column, and of its type as the driver knows it. Empty when the driver doesn't tell.
  std::string columnName(std::size_t index) const;
  std::string columnTypeName(std::size_t index) const;

  /// Whether what the last run answered can be relied on. Not when it was to be stopped just as it ended:
  /// some drivers then throw the answer away, and it looks like none. The statement itself has been run;
  /// stopped where only the answer mattered, inputOutput for a change. What reads the answer sees to that by
  /// itself.
  Status answered() const;

  /// How many rows were changed, or came.
  std::int64_t affected() const { return affected_; }

  /// Goes to the first row of the answer, and then to the next one.
  Status next(bool* hasRow);
  /// The value of the row's column, each one at most once and in growing order; nothing is null.
  Status read(std::size_t index, std::optional<std::string>* value);

  /// What readTexts() reads into; it may serve one statement after the other.
  class TextBlock;
  /// Hands the texts of the only column of all rows that are left to `take`, one after the other, nothing as
  /// an empty one. They come as the driver has them from the server, many at once and without a way through
  /// UTF-16: read() takes many times as long. Only where the driver is known to hand out UTF-8 so, and for
  /// texts of up to kMostTextBytes; for longer ones inputOutput, as when `take` answers false.
  static constexpr std::size_t kMostTextBytes = 9216;
  Status readTexts(TextBlock& block, const std::function<bool(std::string_view text)>& take);

  /// Appends the only column of all rows that are left, whole numbers without a null among them.
  Status readIntegers(std::vector<std::int64_t>* integers);

 private:
  struct Call;

  Status prepareHandle();
  bool isPrepared(const std::u16string& sql) const;
  Status bind(const Parameters& parameters);
  /// Makes ready what `*call` then does.
  Status prepareCall(std::string_view sql, const Parameters& parameters, std::function<SQLRETURN()>* call);
  /// Makes the call by which the statement runs, and notes what it answers.
  Status execute(std::function<SQLRETURN()> call);
  Status noteAnswer(const OdbcConnection::Performed& performed);
  Status outcomeOf(SQLRETURN result, bool gaveUp);
  std::string columnText(std::size_t index, SQLUSMALLINT what) const;

  OdbcConnection& connection_;
  Effect effect_;
  std::shared_ptr<Call> call_;
  std::size_t columnCount_ = 0;
  std::int64_t affected_ = 0;
  bool wasCancelled_ = false;
};

class OdbcStatement::TextBlock {
 public:
  TextBlock();

 private:
  friend OdbcStatement;

  std::string_view at(std::size_t row) const;

  std::vector<char> texts_;
  std::vector<SQLLEN> lengths_;
};

}  // namespace store
