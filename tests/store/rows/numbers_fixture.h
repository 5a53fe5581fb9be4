#pragma once

#include <memory>
#include <store_under_test.h>
#include <string>

#include "platform/store/rows/recordset.h"

namespace store {

/// A table Numbers of (10, "row 1"), (20, "row 2") and so on, opened as a recordset.
class NumbersTest : public StoreTest {
 protected:
  void openNumbers(int count) {
    prepare("CREATE TABLE Numbers (N Integer, Name Varchar (20))");
    OtherProgram other(path_);
    for (int n = 1; n <= count; ++n) {
      other.run("INSERT INTO Numbers VALUES (" + std::to_string(n * 10) + ", 'row " + std::to_string(n) +
                "')");
    }
    open();
    numbers_ = records("Select * from [Numbers]");
    ASSERT_NE(nullptr, numbers_);
  }

  /// The number of the current record.
  std::string current() { return textOf(*numbers_, 0); }
  /// The answer of another program to the same file.
  std::string inFile(const std::string& sql) { return OtherProgram(path_).ask(sql); }

  std::unique_ptr<Recordset> numbers_;
};

}  // namespace store
