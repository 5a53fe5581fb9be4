#pragma once

#include <memory>
#include <string>
#include <vector>

/// What a database of the model holds.

/// Of a record only the first two fields are kept: the others are never changed.
struct ModelRecord {
  std::wstring first;
  std::wstring second;
};
using ModelRecords = std::vector<std::shared_ptr<ModelRecord>>;

struct ModelTable {
  std::wstring name;
  std::vector<std::wstring> fields;
  ModelRecords records;
  bool isStrict = false;  ///< takes no record without a first value
};

/// A statement that a query of the model may have, and what it selects: the records of a table from a
/// first value on.
struct ModelStatement {
  std::wstring sql;
  std::wstring table;  ///< empty for one that does not run
  int above = -1;
  bool readOnly = false;
};

inline constexpr wchar_t kModelQueryTable[] = L"QuivaneQueries";

/// The saved queries are the records of the table QuivaneQueries: name and text.
struct ModelDatabase {
  std::wstring path;
  std::vector<ModelTable> tables;

  ModelTable* find(const std::wstring& name);
  /// Sorted by their names.
  ModelRecords queries();
  /// With records of its own.
  ModelDatabase copy() const;
  bool holdsTheSameAs(const ModelDatabase& other) const;
};
