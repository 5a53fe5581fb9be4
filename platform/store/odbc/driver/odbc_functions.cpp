#include "platform/store/odbc/driver/odbc_functions.h"

#include <optional>

namespace store {

namespace {

template <typename Function>
bool find(const char* name, Function* function) {
  *function = reinterpret_cast<Function>(findOdbcFunction(name));
  return *function != nullptr;
}

std::optional<OdbcFunctions> findAll() {
  OdbcFunctions all;
  const bool isComplete =
      find("SQLAllocHandle", &all.allocHandle) && find("SQLFreeHandle", &all.freeHandle) &&
      find("SQLSetEnvAttr", &all.setEnvironmentAttribute) &&
      find("SQLSetConnectAttrW", &all.setConnectionAttribute) &&
      find("SQLGetConnectAttr", &all.getConnectionAttribute) &&
      find("SQLSetStmtAttrW", &all.setStatementAttribute) && find("SQLDriverConnectW", &all.driverConnect) &&
      find("SQLDisconnect", &all.disconnect) && find("SQLGetInfoW", &all.getInfo) &&
      find("SQLGetDiagRecW", &all.getDiagnostics) && find("SQLPrepareW", &all.prepare) &&
      find("SQLExecDirectW", &all.executeDirect) && find("SQLExecute", &all.execute) &&
      find("SQLBindParameter", &all.bindParameter) && find("SQLBindCol", &all.bindColumn) &&
      find("SQLFetch", &all.fetch) && find("SQLGetData", &all.getData) &&
      find("SQLNumResultCols", &all.resultColumnCount) && find("SQLColAttributeW", &all.columnAttribute) &&
      find("SQLRowCount", &all.rowCount) && find("SQLFreeStmt", &all.freeStatement) &&
      find("SQLCancel", &all.cancel);
  if (!isComplete) return std::nullopt;
  return all;
}

}  // namespace

Status findOdbc(const OdbcFunctions** functions) {
  static const std::optional<OdbcFunctions> all = findAll();
  if (!all) {
    return {ErrorCode::cannotOpen,
            "This system has no ODBC, through which servers are reached. On Debian it is in the packages "
            "unixodbc "
            "and odbc-postgresql."};
  }
  *functions = &*all;
  return {};
}

}  // namespace store
