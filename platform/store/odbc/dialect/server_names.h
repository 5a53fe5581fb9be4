#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/status.h"

namespace store {

/// Tables that the components make on a server have no key of the user's choice, and a server has no row ids:
/// so they get a column of this name that numbers the rows. It is the key, and no field.
inline constexpr std::string_view kHiddenKey = "quivane_row";

/// A table or view as statements name it.
struct NamedTable {
  /// What statements have to know of a column's values.
  enum class Values {
    others,
    truth,
    bytes,
    single,    ///< numbers with decimals of 32 bits: what is compared with them has to be such a number, too
    measured,  ///< texts to the components, which the server orders by what they say: numbers and the like
  };
  struct Column {
    std::string name;
    Values values = Values::others;
  };
  std::string name;  ///< as the catalogue tells it: in another schema than the user's own, "schema.table"
  std::string reference;  ///< as the server's SQL names it, quoted, with its schema
  std::vector<Column> columns;
};

/// What a database knows of the names in a statement.
class NameSource {
 public:
  virtual ~NameSource() = default;

  /// Stores the table called so: exactly, else in any letter case of ASCII; nothing when there is none.
  virtual Status findTable(std::string_view name, std::optional<NamedTable>* table) = 0;
};

}  // namespace store
