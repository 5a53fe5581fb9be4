#include "tests/ui/program/states/model_database.h"

#include <algorithm>

ModelTable* ModelDatabase::find(const std::wstring& name) {
  const auto found =
      std::find_if(tables.begin(), tables.end(), [&](const ModelTable& table) { return table.name == name; });
  return found == tables.end() ? nullptr : &*found;
}

ModelRecords ModelDatabase::queries() {
  const ModelTable* const table = find(kModelQueryTable);
  if (!table) return {};
  ModelRecords queries = table->records;
  std::stable_sort(queries.begin(), queries.end(),
                   [](const auto& one, const auto& other) { return one->first < other->first; });
  return queries;
}

ModelDatabase ModelDatabase::copy() const {
  ModelDatabase result = *this;
  for (ModelTable& table : result.tables) {
    for (auto& record : table.records) record = std::make_shared<ModelRecord>(*record);
  }
  return result;
}

bool ModelDatabase::holdsTheSameAs(const ModelDatabase& other) const {
  const auto sameRecord = [](const auto& one, const auto& two) {
    return one->first == two->first && one->second == two->second;
  };
  const auto sameTable = [&](const ModelTable& one, const ModelTable& two) {
    return one.name == two.name && std::equal(one.records.begin(), one.records.end(), two.records.begin(),
                                              two.records.end(), sameRecord);
  };
  return path == other.path &&
         std::equal(tables.begin(), tables.end(), other.tables.begin(), other.tables.end(), sameTable);
}
