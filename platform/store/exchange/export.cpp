#include "platform/store/exchange/export.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <vector>

#include "platform/store/exchange/formats/csv_writer.h"
#include "platform/store/exchange/formats/html_writer.h"
#include "platform/store/exchange/formats/json_writer.h"
#include "platform/store/exchange/formats/sql_writer.h"
#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/dialect.h"

namespace store::exchange {

namespace {

std::unique_ptr<RowWriter> makeWriter(const ExportOptions& options, const std::string& name,
                                      TableStatements statements) {
  switch (options.format) {
    case ExportFormat::json:
      return std::make_unique<JsonWriter>(JsonWriter::Shape::array, options.isExact);
    case ExportFormat::jsonLines:
      return std::make_unique<JsonWriter>(JsonWriter::Shape::lines, options.isExact);
    case ExportFormat::html:
      return std::make_unique<HtmlWriter>(name);
    case ExportFormat::sql: {
      const bool isTable = statements.isOfTable;
      return std::make_unique<SqlWriter>(isTable ? name : "Result", std::move(statements));
    }
    case ExportFormat::csv:
      break;
  }
  return std::make_unique<CsvWriter>(
      CsvWriter::Options{options.csv, options.lineEnd, options.hasMark, options.isExact});
}

/// Only columns that take values can be in the statements that make the rows again.
std::string selectOf(const std::string& table, const std::vector<std::string>& columns) {
  std::string list;
  for (const std::string& column : columns) list += (list.empty() ? "" : ", ") + quotedName(column);
  return "SELECT " + list + " FROM " + quotedName(table);
}

}  // namespace

std::string_view nameOf(ExportFormat format) {
  switch (format) {
    case ExportFormat::json:
      return "json";
    case ExportFormat::jsonLines:
      return "jsonl";
    case ExportFormat::html:
      return "html";
    case ExportFormat::sql:
      return "sql";
    case ExportFormat::csv:
      break;
  }
  return "csv";
}

std::optional<ExportFormat> formatOfName(std::string_view path) {
  struct Ending {
    const char* text;
    ExportFormat format;
  };
  static constexpr std::array<Ending, 9> kEndings{{{".csv", ExportFormat::csv},
                                                   {".tsv", ExportFormat::csv},
                                                   {".tab", ExportFormat::csv},
                                                   {".json", ExportFormat::json},
                                                   {".jsonl", ExportFormat::jsonLines},
                                                   {".ndjson", ExportFormat::jsonLines},
                                                   {".html", ExportFormat::html},
                                                   {".htm", ExportFormat::html},
                                                   {".sql", ExportFormat::sql}}};
  const std::string lower = lowerCase(path);
  const auto* found = std::find_if(kEndings.begin(), kEndings.end(),
                                   [&lower](const Ending& ending) { return lower.ends_with(ending.text); });
  return found != kEndings.end() ? std::optional(found->format) : std::nullopt;
}

char separatorOfName(std::string_view path) {
  const std::string lower = lowerCase(path);
  return lower.ends_with(".tsv") || lower.ends_with(".tab") ? '\t' : ',';
}

Status exportSource(Backend& backend, const ExportSource& rows, const ExportOptions& options, ByteSink& sink,
                    ExportObserver& observer, ExportResult* result) {
  std::string source = rows.source;
  SourceKind kind = rows.kind;
  TableStatements statements;
  if (options.format == ExportFormat::sql && kind == SourceKind::table) {
    if (Status status = readTableStatements(backend, source, &statements); !status) return status;
    if (!statements.create.empty()) {
      source = selectOf(source, statements.columns);
      kind = SourceKind::text;
    }
  }
  std::unique_ptr<RowStream> stream;
  if (Status status = backend.openStream(source, kind, &stream); !status) return status;
  const std::unique_ptr<RowWriter> writer = makeWriter(options, rows.name, std::move(statements));
  return exportRows(*stream, *writer, sink, observer, result);
}

}  // namespace store::exchange
