#pragma once

#include "base/variant.h"

/// By what a record is found again after its records were opened anew: its key, as the data-access components
/// name it. It outlives the recordset and the file.
class RecordMark {
 public:
  bool isEmpty() const { return key_.type() == VT_EMPTY; }

 private:
  friend class Database;
  Variant key_;
  unsigned rebuilds_ = 0;  // what the Database had counted of them when the record was marked
};
