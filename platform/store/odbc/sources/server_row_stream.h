#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/store/odbc/catalogue/server_types.h"
#include "platform/store/odbc/sources/row_reading.h"
#include "platform/store/odbc/sources/row_text.h"
#include "platform/store/rows/backend.h"
#include "platform/store/rows/row_stream.h"

namespace store {

/// The rows of a SELECT, which the server begins to make when the first one is wanted. They come through a
/// conversation of their own: what is done by the other one meanwhile, and what becomes of it, doesn't matter
/// to them.
class ServerRowStream : public RowStream {
 public:
  /// What the stream shares with those before and behind it: a conversation that nobody uses, or null.
  using Spare = std::unique_ptr<OdbcConnection>;

  /// `connection` and `spare` outlive the stream; `forms` are those of the columns.
  ServerRowStream(OdbcConnection& connection, Spare& spare, std::string select, std::vector<Column> columns,
                  std::vector<ValueForm> forms)
      : connection_(connection),
        spare_(spare),
        select_(std::move(select)),
        columns_(std::move(columns)),
        forms_(std::move(forms)) {}
  ~ServerRowStream() override;

  const std::vector<Column>& columns() const override { return columns_; }
  Status next(bool* hasRow) override;
  Cell cell(std::size_t index) override { return row_.at(index); }

 private:
  Status readOn();
  Status setRow();
  Status outcomeOf(const Status& failure);

  OdbcConnection& connection_;
  Spare& spare_;
  std::string select_;
  std::vector<Column> columns_;
  std::vector<ValueForm> forms_;
  std::unique_ptr<RowReading> reading_;
  std::string texts_;  // of the rows that have come
  RowTextReader reader_;
  bool isAtEnd_ = false;
  Status failure_;
  Row row_;
};

}  // namespace store
