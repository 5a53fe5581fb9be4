#pragma once

#include <string>

namespace store::exchange {

/// How a file of separated values is written, apart from its encoding. Source: RFC 4180.
struct CsvFormat {
  char separator = ',';
  bool hasHeader = true;      ///< the first record has the names of the columns
  std::string nullText = {};  ///< what stands for null where there are no quotes around it
};

}  // namespace store::exchange
