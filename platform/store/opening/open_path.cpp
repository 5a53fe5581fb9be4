#include "platform/store/opening/open_path.h"

#include "platform/store/dsn/file_dsn.h"
#include "platform/store/odbc/server_database.h"
#include "platform/store/sqlite/database_file.h"

namespace store {

Status openPath(const std::string& path, const OpenOptions& options, std::unique_ptr<Backend>* backend) {
  // The link is looked for last: on some systems the closing of any handle gives up the locks that this
  // program has on a database.
  Status status = openDatabase(path, options, backend);
  if (status.code() != ErrorCode::cannotOpen || !isFileDsnAt(path)) return status;
  FileDsn dsn;
  if (status = readFileDsnAt(path, &dsn); !status) return status;
  ServerOptions server;
  server.dateOrder = options.dateOrder;
  server.question = options.question;
  server.password = options.password;
  // The link that is open is a link, and not deleted anyway.
  server.fileStatements = [](const Statement& statement) { return runDatabaseStatement(statement, {}); };
  return openServerDatabase(dsn, server, backend);
}

}  // namespace store
