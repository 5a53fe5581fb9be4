#include <filesystem>

#include "platform/store/cdbtool/commands.h"
#include "platform/store/cdbtool/system.h"
#include "platform/store/exchange/bytes/output_file.h"
#include "platform/store/exchange/export.h"

namespace cdbtool {

using store::Backend;
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

exchange::ExportFormat formatOf(const ExportRequest& request) {
  using exchange::ExportFormat;
  if (!request.format) return exchange::formatOfName(request.target).value_or(ExportFormat::csv);
  switch (*request.format) {
    case RowFormat::json:
      return ExportFormat::json;
    case RowFormat::jsonLines:
      return ExportFormat::jsonLines;
    case RowFormat::html:
      return ExportFormat::html;
    case RowFormat::sql:
      return ExportFormat::sql;
    case RowFormat::text:
    case RowFormat::csv:
      break;
  }
  return ExportFormat::csv;
}

exchange::ExportOptions optionsOf(const ExportRequest& request) {
  exchange::ExportOptions options;
  options.format = formatOf(request);
  options.csv = {request.separator, request.hasHeader, request.nullText};
  options.lineEnd = request.lineEnd == "lf" ? "\n" : "\r\n";
  options.hasMark = request.hasMark;
  return options;
}

Status exportTo(const ExportRequest& request, Backend& backend, Console& console,
                exchange::ExportResult* result) {
  exchange::ExportSource rows;
  rows.name = request.what;
  if (Status status = resolveRows(backend, request.what, &rows.source, &rows.kind); !status) return status;
  const exchange::ExportOptions options = optionsOf(request);
  Progress progress(console);
  if (request.target == "-") {
    StandardOutput output;
    Status status = exchange::exportSource(backend, rows, options, output, progress, result);
    return status ? StandardOutput::finish() : status;
  }
  exchange::OutputFile output;
  Status status = withForceHint(output.create(request.target, request.replacesFiles, {request.file}));
  if (status) status = exchange::exportSource(backend, rows, options, output, progress, result);
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
