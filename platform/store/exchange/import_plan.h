#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/store/exchange/bytes/encoding.h"
#include "platform/store/exchange/formats/csv_format.h"
#include "platform/store/exchange/formats/record_reader.h"
#include "platform/store/exchange/formats/value_kind.h"
#include "platform/store/rows/backend.h"

namespace store::exchange {

/// What the user has chosen; everything else is found out.
struct ImportOptions {
  enum class Target { any, newTable, existingTable };

  std::string table;
  Target target = Target::any;
  std::optional<bool> isJson;
  std::optional<Encoding> encoding;
  std::optional<char> separator;
  std::optional<bool> hasHeader;
  std::string nullText;
  /// Columns of the file with the types that they are to have in a new table.
  std::vector<std::pair<std::string, std::string>> types;
  /// Columns of the file with the names that they are to have in the table.
  std::vector<std::pair<std::string, std::string>> map;
  std::vector<std::string> skipped;  ///< columns of the file that are to be left out
  /// Those for which an existing table has no place are left out, too, instead of being told.
  bool skipsUnknown = false;
  /// A record takes the place of the one with the same key: the given columns of the table, or its primary
  /// key.
  bool replaces = false;
  std::vector<std::string> keyColumns;
  /// Each value is taken as what it is in the file, whatever the type of its column.
  bool isExact = false;
};

struct PlannedColumn {
  std::string source;           ///< its name in the file
  std::size_t sourceIndex = 0;  ///< its place among the reader's names
  std::string target;
  std::string declaredType;
  ValueKind kind = ValueKind::text;
};

/// How a file is to go into a table.
struct ImportPlan {
  bool isJson = false;
  Encoding encoding = Encoding::utf8;
  BytePlace notUtf8;  ///< the byte because of which the encoding was not taken for UTF-8
  CsvFormat csv;
  std::string table;
  bool isNewTable = false;
  bool isEncodingInDoubt = false;        ///< it was taken for want of a better one
  bool isHeaderInDoubt = false;          ///< the first record may be names as well as a record
  std::vector<std::string> fileColumns;  ///< all that the file has, those too that are left out
  std::vector<PlannedColumn> columns;
  std::vector<std::string> primaryKey;  ///< of a table that is there
  std::vector<std::string> keyColumns;  ///< empty unless records are replaced
  bool isExact = false;

  /// The statement that makes the new table.
  std::string createStatement() const;
};

/// Whether a new column can have the type: invalidArgument for what is no type, and for one that isn't known.
/// (SQLite takes any word, and makes numbers of the texts in a column of one that it doesn't know.)
Status checkType(const std::string& type);

/// Gives a column of a new table another type, in the place of the one that was found out. invalidArgument
/// for a table that is there and for what is no type.
Status setColumnType(ImportPlan& plan, std::size_t column, const std::string& type);

/// Whether a plan whose columns became fewer still has some, and all of its key: badColumn if not.
Status checkColumns(const ImportPlan& plan);

/// Hears of an import while it goes on.
class ImportObserver {
 public:
  virtual ~ImportObserver() = default;
  /// Called every now and then; false cancels the import. `isStoring` is false while the file is only looked
  /// through.
  virtual bool goesOn(bool isStoring, std::int64_t bytesDone, std::int64_t bytesTotal) = 0;
  /// A record that can't be taken, and why. Fails when that can't be noted, which ends the import.
  virtual Status rejected(const Record& record, const std::string& reason) = 0;
};

/// Opens `source` from its beginning as the plan says.
Status openReader(ByteSource& source, const ImportPlan& plan, std::unique_ptr<RecordReader>* reader);

/// What an import that was cancelled fails with.
Status cancelled();

/// Looks through all of `source` as far as that is needed and finds out what the user has not chosen. Changes
/// nothing. Fails with
///  - invalidArgument: a table's name or a type that can't be one or isn't known, a choice that names no
///  column;
///  - tableExists, noTable: the table is not as `target` says;
///  - badColumn: a column of the file that has no place in the table, or two that have the same;
///  - conversion: no columns are found in the file;
///  - illegalOperation when the observer has cancelled it;
///  - whatever can happen to files.
Status planImport(Backend& backend, ByteSource& source, const ImportOptions& options,
                  ImportObserver& observer, ImportPlan* plan);

}  // namespace store::exchange
