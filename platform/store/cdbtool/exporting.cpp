#include <algorithm>
#include <iterator>

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

struct NamedFormat {
  RowFormat format;
  exchange::ExportFormat written;
};
// The first is that of a name that tells none.
constexpr NamedFormat kFormats[] = {{RowFormat::csv, exchange::ExportFormat::csv},
                                    {RowFormat::json, exchange::ExportFormat::json},
                                    {RowFormat::jsonLines, exchange::ExportFormat::jsonLines},
                                    {RowFormat::html, exchange::ExportFormat::html},
                                    {RowFormat::sql, exchange::ExportFormat::sql}};

const NamedFormat& formatOf(const ExportRequest& request) {
  const std::optional<exchange::ExportFormat> ofName = exchange::formatOfName(request.target);
  const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats), [&](const NamedFormat& row) {
    return request.format ? row.format == *request.format : row.written == ofName;
  });
  return found != std::end(kFormats) ? *found : kFormats[0];
}

exchange::ExportOptions optionsOf(const ExportRequest& request) {
  exchange::ExportOptions options;
  options.format = formatOf(request).written;
  const char separator = request.separator.value_or(exchange::separatorOfName(request.target));
  options.csv = {separator, request.hasHeader, request.nullText};
  options.lineEnd = request.lineEnd == "lf" ? "\n" : "\r\n";
  options.hasMark = request.hasMark;
  options.isExact = request.isExact;
  return options;
}

Status exportTo(const ExportRequest& request, Backend& backend, Console& console,
                exchange::ExportResult* result) {
  exchange::ExportSource rows;
  rows.name = request.what;
  if (Status status = resolveRows(backend, request.what, &rows.source, &rows.kind); !status) return status;
  const exchange::ExportOptions options = optionsOf(request);
  Progress progress(console);
  if (request.target == kStandardStream) {
    StandardOutput output;
    Status status = exchange::exportSource(backend, rows, options, output, progress, result);
    return status ? StandardOutput::finish() : status;
  }
  exchange::OutputFile output;
  Status status = withForceHint(output.create(request.target, request.replacesFiles, {request.file.path}),
                                request.replacesFiles);
  if (status) status = exchange::exportSource(backend, rows, options, output, progress, result);
  return status ? output.keep() : status;
}

}  // namespace

void tellChanged(std::int64_t count, RowFormat format, bool isExact) {
  if (count == 0) return;
  if (format == RowFormat::html) {
    return Console::complain(counted(count, "text") + " with bytes that are no characters");
  }
  std::string text = counted(count, "value") + " will not come back from this as in the database";
  const bool canBeExact =
      format == RowFormat::csv || format == RowFormat::json || format == RowFormat::jsonLines;
  if (!isExact && canBeExact) {
    text +=
        ": not of the kind of their columns, or not made of characters. With --exact, at the export and at "
        "the "
        "import, all values do.";
  } else {
    text += '.';
  }
  Console::complain(text);
}

int exportRows(const ExportRequest& request) {
  std::unique_ptr<Backend> backend;
  if (Status status = openFile(request.file, &backend); !status) return failed(status);
  Console console(request.isQuiet);
  exchange::ExportResult result;
  Status status = exportTo(request, *backend, console, &result);
  console.endProgress();
  if (!status) return failed(status);
  tellChanged(result.changed, formatOf(request).format, request.isExact);
  console.tell(countOfRecords(result.rows) + " exported");
  return kDone;
}

}  // namespace cdbtool
