#include <filesystem>
#include <memory>
#include <system_error>

#include "platform/store/cdbtool/commands.h"
#include "platform/store/cdbtool/system.h"
#include "platform/store/cdbtool/text_table.h"
#include "platform/store/exchange/formats/csv_writer.h"
#include "platform/store/exchange/formats/json_writer.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sqlite/files/file_path.h"

namespace cdbtool {

using store::Backend;
using store::RowStream;
using store::SourceKind;
using store::Status;
namespace exchange = store::exchange;

namespace {

constexpr const char* kSavedQueries = "QuivaneQueries";

class UntilInterrupted : public exchange::ExportObserver {
 public:
  bool goesOn(std::int64_t /*rowsDone*/) override { return !wasInterrupted(); }
};

Status firstText(Backend& backend, const std::string& sql, std::string* text) {
  std::vector<std::string> texts;
  if (Status status = readTexts(backend, sql, &texts); !status) return status;
  if (!texts.empty()) *text = texts.front();
  return {};
}

}  // namespace

Status readTexts(Backend& backend, const std::string& sql, std::vector<std::string>* texts) {
  std::unique_ptr<RowStream> rows;
  if (Status status = backend.openStream(sql, SourceKind::text, &rows); !status) return status;
  for (bool hasRow = true;;) {
    if (Status status = rows->next(&hasRow); !status) return status;
    if (!hasRow) return {};
    texts->push_back(shownText(rows->cell(0), exchange::ValueKind::any));
  }
}

Status userTables(Backend& backend, std::vector<std::string>* names) {
  std::unique_ptr<RowStream> rows;
  Status status =
      backend.openStream("SELECT TableName FROM MSysTables WHERE TableFlags = 0", SourceKind::text, &rows);
  for (bool hasRow = true; status;) {
    status = rows->next(&hasRow);
    if (!status || !hasRow) break;
    names->emplace_back(rows->cell(0).bytes);
  }
  return status;
}

int listTables(const DatabaseFile& file, bool withCounts) {
  std::unique_ptr<Backend> backend;
  if (Status status = openFile(file, &backend); !status) return failed(status);
  std::vector<std::string> names;
  if (Status status = userTables(*backend, &names); !status) return failed(status);
  StandardOutput output;
  for (const std::string& name : names) {
    std::string line = name;
    if (withCounts) {
      std::string count;
      Status status = firstText(*backend, "SELECT count(*) FROM " + store::quotedName(name), &count);
      if (!status) return failed({status.code(), name + ": " + status.message()});
      line += "\t" + count;
    }
    if (Status status = output.write(line + "\n"); !status) return failed(status);
  }
  Status status = StandardOutput::finish();
  return status ? kDone : failed(status);
}

Status resolveRows(Backend& backend, const std::string& what, std::string* source, SourceKind* kind) {
  store::TableSchema schema;
  if (Status status = backend.describeTable(what, &schema); !status) return status;
  Status asTable;
  if (schema.columns.empty()) {
    // The components' own tables are told by opening them alone.
    std::unique_ptr<RowStream> rows;
    asTable = backend.openStream(what, SourceKind::table, &rows);
  }
  if (asTable) {
    *source = what;
    *kind = SourceKind::table;
    return {};
  }
  if (asTable.code() != store::ErrorCode::noTable) return asTable;
  *kind = SourceKind::text;
  if (Status status = backend.describeTable(kSavedQueries, &schema); !status) return status;
  if (schema.columns.size() >= 2) {
    std::string saved;
    std::unique_ptr<RowStream> found;
    Status status = backend.openStream(
        std::string("SELECT SQL FROM ") + kSavedQueries + " WHERE QueryName = " + store::quotedText(what),
        SourceKind::text, &found);
    bool hasRow = false;
    if (status) status = found->next(&hasRow);
    if (!status) return status;
    if (hasRow) {
      *source = found->cell(0).bytes;
      return {};
    }
  }
  if (what.find_first_of(" \t\r\n(") == std::string::npos) {
    return {store::ErrorCode::noTable, "There is no table, view or saved query called " + what + "."};
  }
  *source = what;
  return {};
}

Status writeRows(RowStream& rows, RowFormat format) {
  TextTableWriter text;
  exchange::CsvWriter::Options csvOptions;
  csvOptions.lineEnd = "\n";
  exchange::CsvWriter csv(csvOptions);
  exchange::JsonWriter json(exchange::JsonWriter::Shape::array);
  exchange::RowWriter* writer = &text;
  if (format == RowFormat::csv) writer = &csv;
  if (format == RowFormat::json) writer = &json;
  StandardOutput output;
  UntilInterrupted observer;
  exchange::ExportResult result;
  if (Status status = exchange::exportRows(rows, *writer, output, observer, &result); !status) return status;
  Status status = StandardOutput::finish();
  // Only an export can be exact.
  if (status) tellChanged(result.changed, format, true);
  return status;
}

int show(const ShowRequest& request) {
  std::unique_ptr<Backend> backend;
  std::string source;
  SourceKind kind = SourceKind::text;
  Status status = openFile(request.file, &backend);
  if (status) status = resolveRows(*backend, request.what, &source, &kind);
  std::unique_ptr<RowStream> rows;
  if (status) status = backend->openStream(source, kind, &rows);
  if (status) status = writeRows(*rows, request.format);
  return status ? kDone : failed(status);
}

int query(const DatabaseFile& file, const std::string& statement, RowFormat format, bool isQuiet) {
  std::unique_ptr<Backend> backend;
  if (Status status = openFile(file, &backend); !status) return failed(status);
  std::unique_ptr<RowStream> rows;
  Status status = backend->openStream(statement, SourceKind::text, &rows);
  if (status) {
    status = writeRows(*rows, format);
    return status ? kDone : failed(status);
  }
  // What can't be streamed may be a change.
  if (status.code() != store::ErrorCode::illegalOperation) return failed(status);
  std::int64_t affected = 0;
  std::unique_ptr<store::RowSource> source;
  if (status = backend->run(statement, &affected, &source); !status) return failed(status);
  Console(isQuiet).tell(countOfRecords(affected) + " changed");
  return kDone;
}

int info(const DatabaseFile& file) {
  std::unique_ptr<Backend> backend;
  if (Status status = openFile(file, &backend); !status) return failed(status);
  std::error_code error;
  const auto size = std::filesystem::file_size(store::pathOf(file.path), error);
  std::vector<std::string> tables;
  Status status = userTables(*backend, &tables);
  std::int64_t records = 0;
  for (std::size_t index = 0; status && index < tables.size(); ++index) {
    std::string count;
    status = firstText(*backend, "SELECT count(*) FROM " + store::quotedName(tables[index]), &count);
    if (status) records += std::stoll(count);
  }
  struct Question {
    const char* label;
    const char* sql;
  };
  static constexpr Question kQuestions[] = {
      {"page size", "PRAGMA page_size"},
      {"pages", "PRAGMA page_count"},
      {"free pages", "PRAGMA freelist_count"},
      {"encoding", "PRAGMA encoding"},
  };
  std::string text = "file: " + file.path + "\nbytes: " + (error ? "unknown" : std::to_string(size)) +
                     "\ntables: " + std::to_string(tables.size()) + "\nrecords: " + std::to_string(records) +
                     "\n";
  // What a server keeps its data in is its own affair.
  const bool isServers = backend->isServers();
  for (const Question& question : kQuestions) {
    std::string answer;
    if (status && !isServers) status = firstText(*backend, question.sql, &answer);
    if (!isServers) text += std::string(question.label) + ": " + answer + "\n";
  }
  text += std::string("can be written: ") + (backend->isReadOnly() ? "no" : "yes") + "\n";
  if (!status) return failed(status);
  StandardOutput output;
  status = output.write(text);
  if (status) status = StandardOutput::finish();
  return status ? kDone : failed(status);
}

}  // namespace cdbtool
