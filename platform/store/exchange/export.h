#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/store/exchange/formats/csv_format.h"
#include "platform/store/exchange/formats/row_writer.h"

namespace store::exchange {

enum class ExportFormat { csv, json, jsonLines, html, sql };

/// "csv", "json", "jsonl", "html", "sql".
std::string_view nameOf(ExportFormat format);
/// By the ending of a file's name, in any letter case; none for a name without one of the known endings.
std::optional<ExportFormat> formatOfName(std::string_view path);
/// What separates the values in a file of that name: the tab in one that ends so (".tsv", ".tab"), else the
/// comma.
char separatorOfName(std::string_view path);

/// How rows are written; what belongs to one format does not matter to the others.
struct ExportOptions {
  ExportFormat format = ExportFormat::csv;
  CsvFormat csv;
  std::string_view lineEnd = "\r\n";  ///< of separated values
  bool hasMark = false;               ///< a byte-order mark in front of them
  /// Values are written as what they are, not as the types of their columns would have them, so that each
  /// comes back: separated values and JSON, to be imported with ImportOptions::isExact.
  bool isExact = false;
};

/// Which rows.
struct ExportSource {
  std::string source;  ///< as Backend::openStream takes it
  SourceKind kind = SourceKind::text;
  std::string name;  ///< what they are called, in formats that have a title or a table
};

/// Writes the rows into `sink`. In SQL a table is made again with all that belongs to it, other rows become a
/// table called "Result". Fails as Backend::openStream and exportRows do.
Status exportSource(Backend& backend, const ExportSource& rows, const ExportOptions& options, ByteSink& sink,
                    ExportObserver& observer, ExportResult* result);

}  // namespace store::exchange
