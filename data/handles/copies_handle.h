#pragma once

#include <adoce.h>
#include <vector>

#include "base/name_list.h"
#include "data/handles/connection_handle.h"
#include "data/handles/database_copy.h"
#include "data/outcome.h"
#include "owners/com_handles.h"

/// The former states of databases, by way of a connection, which need not be open. Components that have
/// nothing of the kind keep none.
class CopiesHandle {
 public:
  explicit CopiesHandle(const ConnectionHandle& connection);

  /// From the next opening of the connection on former states are kept in this folder.
  void keepIn(const String& folder);
  /// Why the state before the first change was not kept, once; else empty.
  String takeFailure();
  /// Of the open database, before a table is deleted.
  Outcome keepBeforeDeletion();
  /// Of one that is not open, before it is deleted or replaced.
  Outcome keepDatabase(const String& path);

  /// The databases that have copies, the one with the newest first.
  std::vector<String> databases();
  /// Newest first.
  std::vector<DatabaseCopy> copiesOf(const String& database);
  bool isCopy(const String& path);
  /// DatabaseCopy::kNotCounted when it takes longer.
  std::int64_t countRecords(const String& copy, unsigned milliseconds);

  /// The database is not open in this program. Whole and durably, after keeping it as it was; on failure it
  /// is as it was.
  Outcome putBack(const String& database, const String& copy);
  Outcome putTableBack(const String& database, const String& copy, const String& table);
  /// The tables of the copy that the database does not have. On failure `names` is untouched.
  Outcome listMissingTables(const String& database, const String& copy, NameList& names);

 private:
  ComPtr<IAdoceCopies> copies_;
};
