#include "platform/store/odbc/catalogue/statement_names.h"

#include <utility>

#include "platform/store/odbc/catalogue/catalogue_tables.h"
#include "platform/store/sql/dialect.h"

namespace store {

Status StatementNames::readTable(std::string_view name, std::optional<ServerTable>* table) {
  auto known = tables_.find(name);
  if (known == tables_.end()) {
    std::optional<ServerTable> read;
    if (Status status = catalogue_.readTable(name, &read); !status) return status;
    // What is made of the statement asks by the name that the server has.
    if (read) tables_.emplace(read->name, read);
    known = tables_.insert_or_assign(std::string(name), std::move(read)).first;
  }
  *table = known->second;
  return {};
}

Status StatementNames::findTable(std::string_view name, std::optional<NamedTable>* table) {
  const std::string_view own = ServerCatalogue::catalogueTable(name);
  std::optional<NamedTable> made;
  // A table of the database may be called like one of the catalogue but for the letter case.
  if (own.empty() || own != name) {
    std::optional<ServerTable> read;
    if (Status status = readTable(name, &read); !status) return status;
    if (read) {
      made = {.name = read->name, .reference = read->reference, .columns = {}};
      for (const ServerColumn& column : read->columns) made->columns.push_back({column.name, column.values});
    }
  }
  if (!made && !own.empty()) {
    made = {.name = std::string(own), .reference = quotedName(own), .columns = {}};
    for (const std::string_view column : catalogueColumns(own))
      made->columns.push_back({std::string(column)});
    readsCatalogue_ = true;
  }
  *table = std::move(made);
  return {};
}

Status StatementNames::isTable(std::string_view name, bool* found) {
  std::optional<NamedTable> table;
  *found = false;
  if (name.find('\0') != std::string_view::npos) return {};
  if (Status status = findTable(name, &table); !status) return status;
  *found = table.has_value();
  return {};
}

Status StatementNames::selectAllOf(std::string_view name, std::string* select) {
  std::optional<NamedTable> table;
  if (name.find('\0') == std::string_view::npos) {
    if (Status status = findTable(name, &table); !status) return status;
  }
  if (!table) return {ErrorCode::noTable, "no such table: " + std::string(name)};
  *select = "SELECT * FROM " + quotedName(table->name);
  return {};
}

}  // namespace store
