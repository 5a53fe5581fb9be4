#include "platform/store/rows/table_schema.h"

#include <algorithm>

#include "platform/store/rows/ascii_case.h"

namespace store {

std::string TableSchema::rowIdName() const {
  for (const char* name : {"rowid", "_rowid_", "oid"}) {
    if (find(name) == nullptr) return name;
  }
  const std::vector<std::string> keys = keyColumns();
  return rowIdIsColumn && keys.size() == 1 ? keys.front() : std::string();
}

std::vector<std::string> TableSchema::keyColumns() const {
  std::vector<std::pair<int, std::string>> keys;
  for (const Column& column : columns) {
    if (column.keyPosition > 0) keys.emplace_back(column.keyPosition, column.name);
  }
  std::sort(keys.begin(), keys.end());
  std::vector<std::string> names;
  names.reserve(keys.size());
  for (auto& key : keys) names.push_back(std::move(key.second));
  return names;
}

const TableSchema::Column* TableSchema::find(std::string_view name) const {
  for (const Column& column : columns) {
    if (equalsIgnoringCase(column.name, name)) return &column;
  }
  return nullptr;
}

}  // namespace store
