#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "records/parts/document_part.h"

/// The former states of databases, as they are kept before the first change of a session, and the way back to
/// them. What can't be done is told.
class FormerStates : public DocumentPart {
 public:
  explicit FormerStates(Document& document) : DocumentPart(document) {}

  /// From the next opening on they are kept in this folder.
  void keepIn(const String& folder) { database().keepCopiesIn(folder); }
  /// That the state before the first change could not be kept, if that is news.
  void tellNotKept();
  /// Before something is deleted, `what`: whether it was kept, or the user wants it gone for good.
  bool mayDelete(const Outcome& kept, const std::wstring& what);

  /// The databases that have copies; the one that is open, or of which a copy is looked at, first.
  std::vector<String> databases();
  /// Newest first. Records are counted as far as nobody notices it.
  std::vector<DatabaseCopy> copiesOf(const String& database);

  /// Whether what is open is a copy, which can only be read.
  bool isLooking() const;
  /// The database that is open, or of which a copy is looked at; empty when none is.
  const String& presentDatabase() const;

  /// Opens a copy of the database to be looked at, on the page that is shown.
  void look(const String& database, const DatabaseCopy& copy);
  /// Opens the database itself again.
  void returnToPresent();
  /// Puts the copy in the place of its database, after asking, and shows that if it is the one that is open
  /// or none is.
  void putBack(const String& database, const DatabaseCopy& copy);
  /// The tables of a copy that its database does not have; none when they can't be listed, which was told, or
  /// when there is none, which is told too.
  NameList missingTables(const String& database, const DatabaseCopy& copy);
  /// Makes one of them anew.
  void putTableBack(const String& database, const DatabaseCopy& copy, const String& table);

 private:
  String presentPathOf(const String& database, const DatabaseCopy& copy);
  bool openInstead(const String& path);
  template <typename Work>
  void workOn(const String& database, Work work);

  String lookedAt_;    // the copy that was opened last to be looked at,
  String lookedFrom_;  // and its database
};
