#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace store {

/// A column of a table to whose values those of another column refer, by a foreign key of one column.
struct Reference {
  std::string table;  ///< empty when there is none
  std::string column;
};

/// What is known of one table.
struct TableSchema {
  struct Column {
    std::string name;
    std::string declaredType;
    /// A type of the components' vocabulary that has the same values; empty when declaredType is to be read
    /// so.
    std::string_view valueType = {};
    int keyPosition = 0;  ///< 1-based place in the primary key, 0 outside it
    /// By which the key of a table without row ids tells texts apart; elsewhere empty.
    std::string keyCollation = {};
    bool notNull = false;
    bool generated = false;
    Reference reference;  ///< by the first foreign key that it has for itself
  };

  bool ordinary = false;  ///< a table of its own rows: not a view, not virtual
  bool withoutRowId = false;
  bool rowIdIsColumn = false;   ///< an INTEGER PRIMARY KEY: row ids survive a rebuilding of the file
  std::vector<Column> columns;  ///< empty when there is no such table

  /// A name under which the row id can be read, i.e. one that no column takes. Empty when all are taken.
  std::string rowIdName() const;
  /// The columns of the primary key in its order.
  std::vector<std::string> keyColumns() const;
  const Column* find(std::string_view name) const;
};

}  // namespace store
