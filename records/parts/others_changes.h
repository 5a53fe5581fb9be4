#pragma once

#include "records/parts/document_part.h"

/// What other programs have changed in the file, which shows by itself as soon as that disturbs nobody.
class OthersChanges : public DocumentPart {
 public:
  explicit OthersChanges(Document& document) : DocumentPart(document) {}

  /// Shows what other programs have changed since the file was opened or this was called last: the lists of
  /// tables and queries, how many records there are, the grid and the form, with the same record, the same
  /// rows in view and the same place in a text. Nothing is told or asked. What is typed stays; such a record
  /// is shown anew by a later call, and so is what was not to be had now or took so long that the user went
  /// on.
  void show();
  /// Of another file everything is new.
  void forget() { areNamesOutdated_ = areRecordsOutdated_ = false; }

 private:
  bool showTables() const;
  bool showQueries() const;
  bool showRecords() const;
  void showForm(RecordSnapshot present, std::uint32_t place, bool wasEmpty, bool isBehind) const;

  bool areNamesOutdated_ = false;    // another program may have changed the tables and queries,
  bool areRecordsOutdated_ = false;  // and the records
};
