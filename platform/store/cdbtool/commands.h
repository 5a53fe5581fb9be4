#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/store/cdbtool/console.h"
#include "platform/store/exchange/import_plan.h"
#include "platform/store/rows/backend.h"
#include "platform/store/rows/case_folding.h"

namespace cdbtool {

/// One function for each sub-command. It is given what the user has asked for and returns the exit code;
/// failures it has told itself.

/// A database as the user names it. Both are paths in UTF-8.
struct DatabaseFile {
  std::string path;
  std::string passwordFile;  ///< whose first line is the password for a server; empty for none
};

/// Opens the database. Where a server wants a password that neither its link nor the user's file has, the
/// user is asked for it, once, if he is there.
store::Status openFile(const DatabaseFile& file, std::unique_ptr<store::Backend>* backend);

/// Which letters count as one, as the system has it.
const store::CaseFolding& lettersOfSystem();

int listTables(const DatabaseFile& file, bool withCounts);

/// How rows are shown or written.
enum class RowFormat { text, csv, json, jsonLines, html, sql };

struct ShowRequest {
  DatabaseFile file;
  std::string what;  ///< a table, a view, a saved query or a SELECT
  RowFormat format = RowFormat::text;
};
int show(const ShowRequest& request);

/// Runs one statement: shows its rows, or tells how many records it has changed.
int query(const DatabaseFile& file, const std::string& statement, RowFormat format, bool isQuiet);

struct FindRequest {
  DatabaseFile file;
  std::string text;
  std::string table;  ///< all of them when it is empty
  bool matchesCase = false;
};
int find(const FindRequest& request);

struct ImportRequest {
  DatabaseFile file;
  std::string source;  ///< "-" for the standard input
  store::exchange::ImportOptions options;
  bool keepsGoodRows = false;
  bool isTrial = false;
  std::string rejectsFile;  ///< "-" for the standard output, empty for none
  bool replacesFiles = false;
  bool isQuiet = false;
};
int import(const ImportRequest& request);

struct ExportRequest {
  DatabaseFile file;
  std::string what;
  std::string target = "-";
  std::optional<RowFormat> format;  ///< by the name of the target when it is not given
  std::optional<char> separator;    ///< likewise
  bool hasHeader = true;
  std::string nullText;
  std::string lineEnd = "crlf";
  bool hasMark = false;
  bool isExact = false;
  bool replacesFiles = false;
  bool isQuiet = false;
};
int exportRows(const ExportRequest& request);

int makeDatabase(const std::string& file);
int backUp(const DatabaseFile& file, const std::string& target);
int check(const DatabaseFile& file, bool isQuiet);
int info(const DatabaseFile& file);

/// What the user means by `what`: the name of a table or view, the statement of the saved query of that name,
/// or a statement.
store::Status resolveRows(store::Backend& backend, const std::string& what, std::string* source,
                          store::SourceKind* kind);
/// Says how many values will not come back from a file of that format; nothing when there are none.
void tellChanged(std::int64_t count, RowFormat format, bool isExact);
/// Writes the rows to the standard output.
store::Status writeRows(store::RowStream& rows, RowFormat format);
/// The texts in the first column of a statement.
store::Status readTexts(store::Backend& backend, const std::string& sql, std::vector<std::string>* texts);
/// The names of the tables that are the user's, in the order of their making.
store::Status userTables(store::Backend& backend, std::vector<std::string>* names);

}  // namespace cdbtool
