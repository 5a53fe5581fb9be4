#pragma once

#include <cstdint>
#include <string>

#include "platform/store/odbc/driver/answer.h"
#include "platform/store/odbc/driver/odbc_connection.h"

namespace store {

/// The rows of a SELECT as they were at one moment, kept by the server until the cursor goes, however many
/// they are. It lives in one conversation: after a loss of the connection it fails with structureChanged.
class ServerCursor {
 public:
  /// `connection` outlives the cursor.
  explicit ServerCursor(OdbcConnection& connection) : connection_(connection) {}
  ~ServerCursor();
  ServerCursor(const ServerCursor&) = delete;
  ServerCursor& operator=(const ServerCursor&) = delete;

  /// Lets the server take the rows of `select`, which has `columnCount` columns. To be called once, before
  /// all else.
  Status open(const std::string& select, std::size_t columnCount);

  /// The number of rows. Leaves the cursor anywhere.
  Status count(std::int64_t* count);

  /// Appends up to `count` rows from the 0-based `first` on.
  Status readFrom(std::int64_t first, std::size_t count, Answer* answer);

 private:
  Status checkConversation() const;

  OdbcConnection& connection_;
  std::string name_;
  std::uint64_t conversation_ = 0;
  std::size_t columnCount_ = 0;
};

}  // namespace store
