#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/store/odbc/dialect/server_names.h"
#include "platform/store/rows/ascii_case.h"

namespace store {

/// Books (Title, Pages, InPrint of booleans, "order", Price of decimals, Weight of singles, Cover of bytes),
/// members (id, name), and sales.orders (Number).
class KnownNames : public NameSource {
 public:
  Status findTable(std::string_view name, std::optional<NamedTable>* table) override {
    static const std::vector<NamedTable> kTables = {
        {"Books",
         "\"Books\"",
         {{"Title"},
          {"Pages"},
          {"InPrint", NamedTable::Values::truth},
          {"order"},
          {"Price", NamedTable::Values::measured},
          {"Weight", NamedTable::Values::single},
          {"Cover", NamedTable::Values::bytes}}},
        {"members", "\"members\"", {{"id"}, {"name"}}},
        {"sales.orders", "\"sales\".\"orders\"", {{"Number"}}},
    };
    table->reset();
    for (const NamedTable& known : kTables) {
      if (equalsIgnoringCase(known.name, name)) *table = known;
    }
    return {};
  }
};

}  // namespace store
