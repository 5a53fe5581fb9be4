#pragma once

#include <odbc_system.h>

#include "platform/store/rows/status.h"

namespace store {

/// The functions of the system's ODBC that are used here. They are looked up when a server is wanted first,
/// so that whoever has none of it, or has none, needs no driver manager. Texts are UTF-16 in all of them:
/// that form alone is the same for every driver, locale and system. Attributes of a connection are read by
/// the form without texts: only numbers are read so, and the other one leaves the connection locked under
/// Wine 10.
struct OdbcFunctions {
  decltype(&::SQLAllocHandle) allocHandle = nullptr;
  decltype(&::SQLFreeHandle) freeHandle = nullptr;
  decltype(&::SQLSetEnvAttr) setEnvironmentAttribute = nullptr;
  decltype(&::SQLSetConnectAttrW) setConnectionAttribute = nullptr;
  decltype(&::SQLGetConnectAttr) getConnectionAttribute = nullptr;
  decltype(&::SQLSetStmtAttrW) setStatementAttribute = nullptr;
  decltype(&::SQLDriverConnectW) driverConnect = nullptr;
  decltype(&::SQLDisconnect) disconnect = nullptr;
  decltype(&::SQLGetInfoW) getInfo = nullptr;
  decltype(&::SQLGetDiagRecW) getDiagnostics = nullptr;
  decltype(&::SQLPrepareW) prepare = nullptr;
  decltype(&::SQLExecDirectW) executeDirect = nullptr;
  decltype(&::SQLExecute) execute = nullptr;
  decltype(&::SQLBindParameter) bindParameter = nullptr;
  decltype(&::SQLBindCol) bindColumn = nullptr;
  decltype(&::SQLFetch) fetch = nullptr;
  decltype(&::SQLGetData) getData = nullptr;
  decltype(&::SQLNumResultCols) resultColumnCount = nullptr;
  decltype(&::SQLColAttributeW) columnAttribute = nullptr;
  decltype(&::SQLRowCount) rowCount = nullptr;
  decltype(&::SQLFreeStmt) freeStatement = nullptr;
  decltype(&::SQLCancel) cancel = nullptr;
};

/// Finds the functions, once for the process; `*functions` is valid as long as that lives. cannotOpen when
/// the system has no ODBC.
Status findOdbc(const OdbcFunctions** functions);

/// The address of a function of the system's driver manager; null when there is none. One of these for each
/// system.
void* findOdbcFunction(const char* name);

}  // namespace store
