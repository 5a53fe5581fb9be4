// Records between the database and other files.
#include <filesystem>

#include "platform/store/automation/module/database_location.h"
#include "platform/store/automation/objects/busy_question.h"
#include "platform/store/automation/objects/connection.h"
#include "platform/store/automation/objects/import.h"
#include "platform/store/automation/values/text.h"
#include "platform/store/exchange/bytes/output_file.h"
#include "platform/store/exchange/export.h"
#include "platform/store/exchange/names.h"
#include "platform/store/sqlite/files/file_path.h"

namespace automation {

namespace exchange = store::exchange;

namespace {

class ExportProgress final : public exchange::ExportObserver {
 public:
  explicit ExportProgress(IDispatch* question) : question_(ComPtr<IDispatch>::share(question)) {}
  bool goesOn(std::int64_t rowsDone) override { return question_.goesOn(Moving::writing, rowsDone, 0); }

 private:
  ProgressQuestion question_;
};

Outcome closedConnection() {
  return {kInvalidConnection, "The connection is closed."};
}

exchange::ExportFormat formatOf(const std::string& path) {
  return exchange::formatOfName(path).value_or(exchange::ExportFormat::csv);
}

/// The name of a file without its ending, as a table may be called.
std::string tableNameOf(const std::string& path) {
  const std::u8string stem = store::pathOf(path).stem().u8string();
  return exchange::validTableName({reinterpret_cast<const char*>(stem.data()), stem.size()});
}

}  // namespace

std::vector<std::string> ConnectionObject::filesInUse() const {
  std::vector<std::string> files;
  if (!databasePath_.empty()) files.push_back(utf8Of(databasePath_));
  return files;
}

HRESULT ConnectionObject::ExportRows(BSTR source, long options, BSTR name, BSTR path, IDispatch* question,
                                     hyper* changed, hyper* records) {
  return call([&]() -> Outcome {
    if (changed == nullptr || records == nullptr) return nullPointer();
    if (!isOpen()) return closedConnection();
    if (options != kTextCommand && options != kTableCommand) {
      return {kInvalidArgument, "The options of an export are 1 or 2."};
    }
    const std::string target = utf8Of(fullPathOf(std::wstring(viewOf(path))));
    exchange::ExportSource rows;
    rows.source = utf8Of(viewOf(source));
    rows.kind = options == kTableCommand ? store::SourceKind::table : store::SourceKind::text;
    rows.name = utf8Of(viewOf(name));
    exchange::ExportOptions format;
    format.format = formatOf(target);
    format.csv.separator = exchange::separatorOfName(target);
    // By it spreadsheets find out that the letters are UTF-8.
    format.hasMark = format.format == exchange::ExportFormat::csv;
    ExportProgress progress(question);
    exchange::OutputFile output;
    exchange::ExportResult result;
    store::Status status = output.create(target, true, filesInUse());
    if (status) status = exchange::exportSource(*backend_, rows, format, output, progress, &result);
    if (status) status = output.keep();
    if (!status) return status;
    *changed = result.changed;
    *records = result.rows;
    return {};
  });
}

HRESULT ConnectionObject::OpenImport(BSTR path, IAdoceImport** import) {
  return call([&]() -> Outcome {
    if (import == nullptr) return nullPointer();
    if (!isOpen()) return closedConnection();
    const std::string file = utf8Of(fullPathOf(std::wstring(viewOf(path))));
    std::unique_ptr<exchange::ByteSource> source;
    if (store::Status status = exchange::openSource(file, &source); !status) return status;
    *import = makeObject<ImportObject>(ComPtr<ConnectionObject>::share(this), std::move(source), file,
                                       tableNameOf(file))
                  .release();
    return {};
  });
}

HRESULT ConnectionObject::ExportFormat(BSTR path, BSTR* name) {
  return call([&]() -> Outcome {
    if (name == nullptr) return nullPointer();
    *name = newText(exchange::nameOf(formatOf(utf8Of(viewOf(path)))));
    return {};
  });
}

}  // namespace automation
