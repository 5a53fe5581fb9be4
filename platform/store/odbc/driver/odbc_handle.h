#pragma once

#include <utility>

#include "platform/store/odbc/driver/odbc_functions.h"

namespace store {

/// Owns one handle of ODBC. It is freed before the one that it was made from.
template <SQLSMALLINT kType>
class OdbcHandle {
 public:
  OdbcHandle() = default;
  ~OdbcHandle() { reset(); }
  OdbcHandle(const OdbcHandle&) = delete;
  OdbcHandle& operator=(const OdbcHandle&) = delete;

  /// Makes a handle in the place of the former one. False when the system refuses.
  bool make(const OdbcFunctions& functions, SQLHANDLE parent) {
    reset();
    functions_ = &functions;
    if (!SQL_SUCCEEDED(functions.allocHandle(kType, parent, &handle_))) handle_ = nullptr;
    return handle_ != nullptr;
  }
  void reset() {
    if (handle_ == nullptr) return;
    functions_->freeHandle(kType, std::exchange(handle_, nullptr));
  }
  SQLHANDLE get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }

 private:
  const OdbcFunctions* functions_ = nullptr;
  SQLHANDLE handle_ = nullptr;
};

using OdbcEnvironment = OdbcHandle<SQL_HANDLE_ENV>;
using OdbcStatementHandle = OdbcHandle<SQL_HANDLE_STMT>;

}  // namespace store
