#include <algorithm>
#include <array>
#include <filesystem>

#include "platform/store/cdbtool/commands.h"
#include "platform/store/cdbtool/output_file.h"
#include "platform/store/cdbtool/system.h"
#include "platform/store/exchange/csv_writer.h"
#include "platform/store/exchange/html_writer.h"
#include "platform/store/exchange/json_writer.h"
#include "platform/store/exchange/sql_writer.h"
#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sql/sql_tokens.h"

namespace cdbtool {

using store::Backend;
using store::RowStream;
using store::SourceKind;
using store::Status;
namespace exchange = store::exchange;

namespace {

class Progress : public exchange::ExportObserver {
 public:
  explicit Progress(Console& console) : console_(console) {}
  bool goesOn(std::int64_t rowsDone) override {
    console_.showProgress("exported records:", rowsDone, 0);
    return !wasInterrupted();
  }

 private:
  Console& console_;
};

RowFormat formatOf(const ExportRequest& request) {
  if (request.format) return *request.format;
  struct Ending {
    const char* text;
    RowFormat format;
  };
  static constexpr std::array<Ending, 7> kEndings{{{".csv", RowFormat::csv},
                                                   {".json", RowFormat::json},
                                                   {".jsonl", RowFormat::jsonLines},
                                                   {".ndjson", RowFormat::jsonLines},
                                                   {".html", RowFormat::html},
                                                   {".htm", RowFormat::html},
                                                   {".sql", RowFormat::sql}}};
  const std::string target = store::lowerCase(request.target);
  const auto* found = std::find_if(kEndings.begin(), kEndings.end(),
                                   [&target](const Ending& ending) { return target.ends_with(ending.text); });
  return found != kEndings.end() ? found->format : RowFormat::csv;
}

std::unique_ptr<exchange::RowWriter> makeWriter(const ExportRequest& request, RowFormat format,
                                                exchange::TableStatements statements) {
  switch (format) {
    case RowFormat::json:
      return std::make_unique<exchange::JsonWriter>(exchange::JsonWriter::Shape::array);
    case RowFormat::jsonLines:
      return std::make_unique<exchange::JsonWriter>(exchange::JsonWriter::Shape::lines);
    case RowFormat::html:
      return std::make_unique<exchange::HtmlWriter>(request.what);
    case RowFormat::sql: {
      const bool isName = !statements.create.empty();
      return std::make_unique<exchange::SqlWriter>(isName ? request.what : "Result", std::move(statements));
    }
    default: {
      exchange::CsvWriter::Options options;
      options.format = {request.separator, request.hasHeader, request.nullText};
      options.lineEnd = request.lineEnd == "lf" ? "\n" : "\r\n";
      options.hasMark = request.hasMark;
      return std::make_unique<exchange::CsvWriter>(options);
    }
  }
}

/// Only columns that take values can be in the statements that make the rows again.
std::string selectOf(const std::string& table, const std::vector<std::string>& columns) {
  std::string list;
  for (const std::string& column : columns) list += (list.empty() ? "" : ", ") + store::quotedName(column);
  return "SELECT " + list + " FROM " + store::quotedName(table);
}

Status exportTo(const ExportRequest& request, Backend& backend, Console& console,
                exchange::ExportResult* result) {
  std::string source;
  SourceKind kind = SourceKind::text;
  if (Status status = resolveRows(backend, request.what, &source, &kind); !status) return status;
  const RowFormat format = formatOf(request);
  exchange::TableStatements statements;
  if (format == RowFormat::sql && kind == SourceKind::table) {
    if (Status status = exchange::readTableStatements(backend, source, &statements); !status) return status;
    if (!statements.create.empty()) {
      source = selectOf(source, statements.columns);
      kind = SourceKind::text;
    }
  }
  std::unique_ptr<RowStream> rows;
  if (Status status = backend.openStream(source, kind, &rows); !status) return status;
  const std::unique_ptr<exchange::RowWriter> writer = makeWriter(request, format, std::move(statements));
  Progress progress(console);
  if (request.target == "-") {
    StandardOutput output;
    Status status = exchange::exportRows(*rows, *writer, output, progress, result);
    return status ? StandardOutput::finish() : status;
  }
  OutputFile output;
  if (Status status = output.create(request.target, request.replacesFiles, {request.file}); !status)
    return status;
  Status status = exchange::exportRows(*rows, *writer, output, progress, result);
  return status ? output.keep() : status;
}

}  // namespace

int exportRows(const ExportRequest& request) {
  std::unique_ptr<Backend> backend;
  if (Status status = openFile(request.file, &backend); !status) return failed(status);
  Console console(request.isQuiet);
  exchange::ExportResult result;
  Status status = exportTo(request, *backend, console, &result);
  console.endProgress();
  if (!status) return failed(status);
  if (result.changed > 0) {
    Console::complain(std::to_string(result.changed) +
                      " values are not made of characters and will not come back as they are.");
  }
  console.tell(countOfRecords(result.rows) + " exported");
  return kDone;
}

}  // namespace cdbtool
