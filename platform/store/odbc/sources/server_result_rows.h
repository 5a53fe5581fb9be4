#pragma once

#include <string>
#include <vector>

#include "platform/store/odbc/catalogue/server_types.h"
#include "platform/store/odbc/sources/rows_ahead.h"
#include "platform/store/odbc/sources/server_cursor.h"
#include "platform/store/rows/backend.h"

namespace store {

/// The rows of a SELECT that are no single table's, or of a table without a key: as they were when it was
/// opened, told apart by their place, and read-only.
class ServerResultRows : public RowSource {
 public:
  /// `connection` outlives the rows; `forms` are those of the columns.
  ServerResultRows(OdbcConnection& connection, std::vector<Column> columns, std::vector<ValueForm> forms)
      : connection_(connection),
        cursor_(connection),
        columns_(std::move(columns)),
        forms_(std::move(forms)) {}

  /// Lets the server take the rows. To be called once, before all else.
  Status take(const std::string& select);

  const std::vector<Column>& columns() const override { return columns_; }
  bool isUpdatable() const override { return false; }
  Status readKeys(KeySet* keys, std::size_t* count) override;
  Status fetch(const KeySet& keys, std::size_t index, Row* row) override;
  void expect(std::size_t index, std::size_t count) override { ahead_.expect({index, count}); }
  std::unique_ptr<RowScan> makeScan(RowTest& test) override;
  Status insert(const std::vector<Change>& changes, KeySet* keys) override;
  Status update(const std::vector<Change>& changes, KeySet* keys, std::size_t index,
                const Row& read) override;
  Status remove(KeySet* keys, std::size_t index, const Row* read) override;

 private:
  OdbcConnection& connection_;
  ServerCursor cursor_;
  std::vector<Column> columns_;
  std::vector<ValueForm> forms_;
  std::int64_t count_ = 0;
  std::size_t rowBytes_ = 0;  // of those that were read last, on the average
  RowsAhead ahead_;
};

/// Replaces `*row` by the values of an answer's row. Throws std::bad_alloc.
void setRow(const std::vector<ValueForm>& forms, const AnswerRow& values, Row* row);

}  // namespace store
