#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/store/odbc/catalogue/server_catalogue.h"
#include "platform/store/odbc/driver/answer.h"
#include "platform/store/odbc/driver/odbc_connection.h"
#include "platform/store/odbc/driver/odbc_statement.h"
#include "platform/store/rows/table_load.h"

namespace store {

/// Adds rows to a table of a server: some thousand by each statement, in one transaction. While the server
/// stores them the next ones are added. Those among which one can't be in the table are sent again, fewer at
/// once, until that one is found.
class ServerTableLoad : public TableLoad {
 public:
  /// Both outlive the load.
  ServerTableLoad(OdbcConnection& connection, ServerCatalogue& catalogue)
      : connection_(connection), catalogue_(catalogue), statement_(connection) {}
  ~ServerTableLoad() override;

  /// Begins the transaction and runs `createSql` (the server's SQL; may be empty) in it. To be called once,
  /// before anything else.
  Status begin(const LoadTarget& target, const std::string& createSql);

  Status add(std::span<const Cell> values) override;
  bool isPuttingOff() const override { return true; }
  bool isFull() const override;
  Status beginSettling() override;
  Status settle(std::vector<Refusal>* refused) override;
  Status commit() override;
  std::int64_t replacedCount() const override { return replacedCount_; }

 private:
  /// The values of one column of the rows that wait, each as it stands in an array's text, with a comma in
  /// front.
  struct WaitingColumn {
    std::string texts;
    std::vector<std::size_t> ends;  // of each row's value in `texts`
  };
  struct WaitingRows {
    std::vector<WaitingColumn> columns;
    std::vector<std::size_t> nullKeyRows;  // those with a null in the key, in their order
    std::size_t count = 0;
    std::size_t bytes = 0;

    void clear();
  };
  /// What became of some rows that were sent together.
  struct Sent {
    std::int64_t rows = 0;
    std::int64_t distinctKeys = 0;
    std::int64_t found = 0;      // of which there was one with the key
    std::int64_t ambiguous = 0;  // of which there were several
    std::int64_t replaced = 0;
    std::int64_t inserted = 0;
  };

  /// Runs a statement of the transaction, and only there: never in a conversation that began after it.
  Status runInside(std::string_view sql, const OdbcStatement::Parameters& parameters = {});
  Status checkConversation() const;
  Status prepare(const LoadTarget& target, const ServerTable& table);
  void writeInsert(const LoadTarget& target, const ServerTable& table);
  Status writeReplacement(const LoadTarget& target, const ServerTable& table);
  /// The statement that replaces rows. Where it finds `nulls` in keys as well, no index of the table's is of
  /// use to it.
  std::string replacementSql(const LoadTarget& target, const ServerTable& table, bool nulls) const;
  const std::string& sqlFor(std::size_t first, std::size_t count) const;
  OdbcStatement::Parameters arraysOf(std::size_t first, std::size_t count) const;
  Status send(std::size_t first, std::size_t count, Sent* sent);
  Status takeOutcome(std::size_t count, Sent* sent);
  Status conclude(const Status& status, const Sent& sent, std::size_t count, bool* isKept);
  Status sendApart(std::vector<Refusal>* refused);
  bool isWhole(const Sent& sent, std::size_t count) const;
  std::string reasonOf(const Sent& sent) const;
  Status fail(Status status);
  Status findOutcome(const std::string& number);

  OdbcConnection& connection_;
  ServerCatalogue& catalogue_;
  OdbcStatement statement_;  // by which rows are sent
  std::uint64_t conversation_ = 0;
  bool isOpen_ = false;  // a transaction
  bool hasFailed_ = false;
  bool replaces_ = false;
  std::string sql_;
  std::string sqlForNulls_;  // for rows of which some have a null in the key; empty when none can
  std::vector<bool> isKey_;  // of each column
  std::vector<ValueForm> forms_;
  WaitingRows waiting_;   // that were added
  WaitingRows settling_;  // that beginSettling() has sent
  bool isSettling_ = false;
  Status begun_;  // the sending of all of them
  std::int64_t replacedCount_ = 0;
  std::int64_t storedCount_ = 0;  // with those that replace others
  bool makesTable_ = false;
};

}  // namespace store
