#pragma once

#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <vector>

/// What the file of a long walk holds: the tables and each value, as the form shows it and as SQLite
/// quotes it.

enum class FieldKind { id, small, whole, real, text, longText, flag, date };

struct WalkValue {
  std::wstring shown;  ///< L"-1" and L"0" for a flag
  std::string quoted;
};

using Random = std::mt19937;
/// From 0 to count - 1.
int below(Random& random, int count);

/// A value that a field of this kind can hold; now and then none, where the form can show that.
WalkValue randomValue(Random& random, FieldKind kind);

/// Fields are called by the table's letter and their number: p0, p1. Field 0 is the id, which is never
/// changed.
struct WalkTable {
  std::wstring name;
  wchar_t letter;
  std::vector<FieldKind> kinds;
  std::map<int, std::vector<WalkValue>> records;  ///< by id

  /// The identifier of the form's control for a field.
  int controlOf(std::size_t field) const;
  std::wstring fieldName(std::size_t field) const;
};

struct WalkDatabase {
  std::filesystem::path path;
  std::vector<WalkTable> tables;
  std::vector<std::pair<std::wstring, std::wstring>> queries;  ///< name and text

  /// The table whose fields have this letter; null for a letter of none.
  WalkTable* tableOf(wchar_t letter);
};

/// Two databases: one with tables of every kind of field, an empty table and queries, and one with a single
/// table.
std::vector<WalkDatabase> makeWalkDatabases(const std::filesystem::path& folder, Random& random);

/// Fails the running test where a file is damaged or holds another value than its model.
void expectStored(const WalkDatabase& database);
