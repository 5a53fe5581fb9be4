#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/store/odbc/catalogue/server_catalogue.h"
#include "platform/store/odbc/dialect/server_names.h"
#include "platform/store/sql/source_text.h"

namespace store {

/// The tables that one statement names, each of which the server is asked for once: whatever is made of the
/// statement sees a table as it was at that moment. What another program changes afterwards is seen by the
/// next statement, so this lives no longer than the opening or running of one.
class StatementNames : public NameSource, public TableNames {
 public:
  /// `catalogue` outlives it.
  explicit StatementNames(ServerCatalogue& catalogue) : catalogue_(catalogue) {}

  /// The table or catalogue table for statements. A catalogue table's columns are told, its reference is its
  /// name.
  Status findTable(std::string_view name, std::optional<NamedTable>* table) override;
  Status isTable(std::string_view name, bool* found) override;
  Status selectAllOf(std::string_view name, std::string* select) override;

  /// As ServerCatalogue::readTable().
  Status readTable(std::string_view name, std::optional<ServerTable>* table);

  /// Whether one of the catalogue's own tables was found.
  bool readsCatalogue() const { return readsCatalogue_; }

 private:
  ServerCatalogue& catalogue_;
  bool readsCatalogue_ = false;
  std::map<std::string, std::optional<ServerTable>, std::less<>> tables_;  // by all names asked for
};

}  // namespace store
