#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/string.h"
#include "data/outcome.h"

class BusyListener;
struct IAdoceImport;

/// A column of a file that is to be imported.
struct ImportColumn {
  String source;  ///< its name in the file
  String target;  ///< that in the table; empty when it is left out
  String type;    ///< its type there, or what it would be
  /// Otherwise it can only be left out.
  bool hasPlace = false;
};

/// A record that can't be taken.
struct RejectedRecord {
  std::int64_t line = 0;  ///< of the file, where it begins
  String reason;
};

/// What an import came to.
struct ImportCounts {
  std::int64_t added = 0;
  std::int64_t replaced = 0;
  std::int64_t leftOut = 0;  ///< of these; unless they were to be left out nothing was stored then
};

/// A file of records that is to go into a table of the open database: what is known of it, what the user has
/// chosen, and the storing. Made by Database::openImport. What is set takes effect with the next examine().
class ImportFile {
 public:
  /// Takes a reference of the object that exists; `listener` hears of what takes its time and outlives this.
  ImportFile(IAdoceImport* object, BusyListener* listener);
  ~ImportFile();
  ImportFile(const ImportFile&) = delete;
  ImportFile& operator=(const ImportFile&) = delete;

  /// The names of encodings and the characters that part fields are those of IAdoceImport. Empty when that is
  /// not known yet, the delimiter also for a file that has none.
  String table() const;
  String encoding() const;
  String delimiter() const;
  bool hasHeader() const;
  bool replaces() const;
  void setTable(const String& name);
  void setEncoding(const String& name);
  void setDelimiter(const String& character);
  void setHeader(bool hasHeader);
  void setReplaces(bool replaces);
  /// "csv" or "json".
  String format() const;
  void setFormat(const String& name);
  /// What stands for a value that is none, in separated values.
  String nullText() const;
  void setNullText(const String& text);

  /// Looks through the file and finds out what was not set. What was chosen of a column of the same name
  /// stays. After a failure all that follows is as before.
  Outcome examine();

  bool isNewTable() const;
  std::vector<ImportColumn> columns() const;
  /// Gives the column another type, in a new table; with an empty text it is left out of any.
  Outcome setType(std::uint32_t index, const String& type);
  /// Whether a column, of a table that is there, is a part of the key by which records are replaced. That is
  /// the primary key unless the user chooses another, in each table anew. Nothing happens where it can't be
  /// one.
  bool isKey(std::uint32_t index) const;
  void setKey(std::uint32_t index, bool isKey);
  /// What examine found out and could not be sure of.
  bool isEncodingInDoubt() const;
  bool isHeaderInDoubt() const;
  /// The beginnings of the texts of the first records, at most `most`.
  Outcome preview(std::uint32_t most, std::vector<std::vector<String>>& records) const;

  /// Stores the records in one transaction: all of them or none, or with `keepsGood` those that can be taken.
  /// A failure has changed nothing; `counts` is as before then.
  Outcome run(bool keepsGood, ImportCounts& counts);
  /// Those of the last run, a thousand at most.
  std::vector<RejectedRecord> rejected() const;
  /// Writes all of them into a file of separated values, each with its line, the reason and its fields. A
  /// file that is there is replaced, but neither the database nor the one that is imported. After a failure
  /// nothing was made or replaced.
  Outcome saveRejected(const String& path) const;

 private:
  struct Object;
  std::unique_ptr<Object> object_;
  BusyListener* listener_;
};
