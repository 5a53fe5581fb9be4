#pragma once

#include <memory>
#include <utility>

#include "platform/store/automation/objects/errors.h"
#include "platform/store/automation/values/com_values.h"
#include "platform/store/rows/recordset.h"
#include "platform/store/rows/text_search.h"

namespace automation {

/// The open records behind a Recordset object and the Fields and Field objects made of it, which share
/// it. Whoever closes it (the recordset, its connection) closes it for all: the objects that still hold
/// it report a closed recordset from then on, and nothing of the database is held any more.
class Cursor {
 public:
  Cursor(std::unique_ptr<store::Recordset> records, ComPtr<ErrorsObject> errors)
      : records_(std::move(records)), errors_(std::move(errors)) {}

  /// Null when closed.
  store::Recordset* records() const { return records_.get(); }
  void close() {
    search_.reset();
    records_.reset();
  }
  /// The search in the open records; null when there is none.
  store::TextSearch* search() const { return search_.get(); }
  void setSearch(std::unique_ptr<store::TextSearch> search) { search_ = std::move(search); }
  /// The collection of the connection.
  const ComPtr<ErrorsObject>& errors() const { return errors_; }

 private:
  std::unique_ptr<store::Recordset> records_;
  std::unique_ptr<store::TextSearch> search_;  // ends before the records
  ComPtr<ErrorsObject> errors_;
};

}  // namespace automation
