#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/store/rows/busy.h"
#include "platform/store/rows/status.h"
#include "platform/store/sqlite/copies/copy_folder.h"

struct sqlite3;

namespace store {

class SqliteConnection;

/// What is done with whole databases and their copies. The database is not open in this program; other
/// programs may have it open.
class GoingBack {
 public:
  /// `lockWait` is how long another program's lock is waited for, in milliseconds. `question` is
  /// asked on the thread of the caller whether to give up. The folder outlives it.
  GoingBack(CopyFolder& folder, int lockWait, BusyQuestion question)
      : folder_(folder), lockWait_(lockWait), question_(std::move(question)) {}

  /// Keeps the database as it is now, before it is deleted or replaced; a file that is none is not kept.
  /// Fails when it can't be kept, as CopyFolder::begin and CopyInMaking::make.
  Status keepBeforeDeletion(const std::string& database);

  /// Puts the copy in the place of the database, in one transaction of SQLite's, so that other programs which
  /// have it open see it like any change; the database as it was is kept as a copy first. One that is gone is
  /// made anew. One that is so damaged that SQLite can't write to it is replaced as a file, and kept as it
  /// is.
  ///
  /// On failure the database is as it was: damaged when the copy is, readOnly, locked, stopped, inputOutput,
  /// outOfMemory, and what keepBeforeDeletion can fail with. Where the system leaves open whether it is, or
  /// the file has lost its name meanwhile, the copy of it as it was stays: fileGone, fileReplaced,
  /// inputOutput.
  Status putBack(const std::string& database, const std::string& copy);

  /// The tables of the copy that the database does not have, in the order of their making; all of them where
  /// it can't be read.
  Status listMissingTables(const std::string& database, const std::string& copy,
                           std::vector<std::string>* tables);

  /// Makes such a table anew, with its records, indexes and triggers, as one durable transaction; the
  /// database as it was is kept as a copy first. What foreign keys changed in other tables when it was
  /// deleted stays. tableExists, noTable, constraint when its records would refer to some that are not there
  /// any more; else as putBack.
  Status putTableBack(const std::string& database, const std::string& copy, const std::string& table);

 private:
  class Target;
  /// The copy of the database as it was.
  struct FormerState {
    std::string path;       // empty until it is made
    bool isNeeded = false;  // although nothing may have been changed
  };

  Status keep(sqlite3* connection, const std::string& database, CopyReason reason, std::string* kept);
  Status settle(const Status& status, const FormerState& kept, const std::string& database,
                const std::string& copy);
  Status putIntoFile(const std::string& database, sqlite3* copy, FormerState* kept);
  Status putInto(Target& target, sqlite3* copy, const std::string& database, FormerState* kept);
  Status makeAnew(const std::string& database, sqlite3* copy, bool replaces);
  Status insertTable(SqliteConnection& connection, const std::string& database, SqliteConnection& copy,
                     const std::string& table, FormerState* kept);
  bool isToStop() const { return question_ && question_(Busy::working); }

  CopyFolder& folder_;
  int lockWait_;
  BusyQuestion question_;
};

}  // namespace store
