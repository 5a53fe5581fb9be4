#pragma once

#include <vector>

#include "platform/store/odbc/catalogue/server_types.h"
#include "platform/store/odbc/sources/server_cursor.h"
#include "platform/store/rows/backend.h"
#include "platform/store/rows/row_stream.h"

namespace store {

/// The rows of a SELECT, from the server block after block.
class ServerRowStream : public RowStream {
 public:
  /// `connection` outlives the stream; `forms` are those of the columns.
  ServerRowStream(OdbcConnection& connection, std::vector<Column> columns, std::vector<ValueForm> forms)
      : cursor_(connection), columns_(std::move(columns)), forms_(std::move(forms)) {}

  /// Lets the server take the rows. To be called once, before all else.
  Status take(const std::string& select) { return cursor_.open(select, columns_.size()); }

  const std::vector<Column>& columns() const override { return columns_; }
  Status next(bool* hasRow) override;
  Cell cell(std::size_t index) override { return row_.at(index); }

 private:
  ServerCursor cursor_;
  std::vector<Column> columns_;
  std::vector<ValueForm> forms_;
  Answer block_;
  std::size_t place_ = 0;  // of the next row in the block
  bool isAtEnd_ = false;
  Row row_;
};

}  // namespace store
