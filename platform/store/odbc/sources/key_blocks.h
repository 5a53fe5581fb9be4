#pragma once

#include <cstddef>
#include <string>

#include "platform/store/odbc/driver/odbc_connection.h"
#include "platform/store/odbc/driver/odbc_statement.h"
#include "platform/store/rows/keyset.h"

namespace store {

/// As many keys as are read at once: few enough to be asked between whether to go on.
inline constexpr std::size_t kKeysAtOnce = 20000;

/// A transaction that is taken back at its end.
class ReadTransaction {
 public:
  /// `connection` outlives it.
  explicit ReadTransaction(OdbcConnection& connection) : connection_(connection) {}
  ~ReadTransaction();
  ReadTransaction(const ReadTransaction&) = delete;
  ReadTransaction& operator=(const ReadTransaction&) = delete;

  /// All that it reads is of one moment.
  Status begin();

 private:
  OdbcConnection& connection_;
  bool isOpen_ = false;
};

/// Begins to read what `select` selects, within a transaction: keys of one whole number, or texts for tuples.
Status declareKeys(OdbcConnection& connection, const std::string& select);

/// Appends the next ones, up to `most`.
Status fetchKeys(OdbcConnection& connection, std::size_t most, KeySet* keys);

/// Appends all that a statement answers.
Status takeKeys(OdbcStatement& statement, KeySet* keys);

}  // namespace store
