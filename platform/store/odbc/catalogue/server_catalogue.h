#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/odbc/catalogue/server_types.h"
#include "platform/store/odbc/dialect/server_names.h"
#include "platform/store/odbc/driver/odbc_connection.h"
#include "platform/store/rows/table_schema.h"

namespace store {

/// A column of a table, as the server has it at the moment.
struct ServerColumn {
  std::string name;
  std::string spelledType;  ///< for people: "character varying(20)"
  std::string castType;     ///< for a cast, quoted and without a size, so that the cast cuts nothing off
  ServerType type;
  NamedTable::Values values = NamedTable::Values::others;
  bool holdsTexts = false;  ///< also an empty one, which for the server is no value of any other type
  int keyPosition = 0;      ///< 1-based place in the primary key
  bool notNull = false;
  bool isReadable = true;   ///< by this user: what is not is no field
  bool isWritable = false;  ///< by this user, and not computed by the server
  Reference reference;
};

/// A table or view, with all that is needed to read and change its rows.
struct ServerTable {
  std::int64_t id = 0;
  std::string name;       ///< as in NamedTable
  std::string reference;  ///< as in NamedTable
  std::string ownRows;    ///< the reference, without the rows of tables that inherit from it
  bool isTable = false;   ///< and not a view or another server's table
  bool hasHeirs = false;  ///< tables that inherit from it, for whose rows its key does not count
  bool canInsert = false;
  bool canUpdate = false;
  bool canDelete = false;
  std::vector<ServerColumn> columns;  ///< in their order, the hidden key included

  bool hasHiddenKey() const;
  /// The key columns in the key's order; none where the user may not read all of them.
  std::vector<const ServerColumn*> keyColumns() const;
  const ServerColumn* find(std::string_view column) const;
  /// The names of all columns that are fields.
  std::vector<std::string> fieldNames() const;
};

/// Which tables a server's database has. What it has once told is remembered until a name is asked for that
/// it did not tell, or until forget().
class ServerCatalogue {
 public:
  /// `connection` outlives the catalogue.
  explicit ServerCatalogue(OdbcConnection& connection) : connection_(connection) {}

  /// Asks the server for the table or view; nothing when there is none called so. Catalogue tables are not
  /// among them.
  Status readTable(std::string_view name, std::optional<ServerTable>* table);

  void forget() { isKnown_ = false; }

  /// One of the components' catalogue tables, in any letter case; empty for another name.
  static std::string_view catalogueTable(std::string_view name);
  /// What has to stand in front of a SELECT that reads catalogue tables, up to its first word: "WITH ... ",
  /// or with a comma at the end for one that begins with WITH itself.
  static std::string catalogueClause(bool isContinued);

 private:
  struct KnownTable {
    std::int64_t id = 0;
    std::string reference;
    std::string itself;  // behind "c.oid = " of pg_class c: as long as the table has this name
  };

  Status learn();
  Status find(std::string_view name, std::string* foundName, KnownTable* found, bool* isFound);
  const std::pair<const std::string, KnownTable>* look(std::string_view name) const;
  Status readColumns(ServerTable* table);
  Status readReferences(ServerTable* table);

  OdbcConnection& connection_;
  bool isKnown_ = false;
  std::map<std::string, KnownTable> tables_;
};

}  // namespace store
