#include "platform/store/cdbtool/commands.h"
#include "platform/store/cdbtool/system.h"
#include "platform/store/exchange/bytes/output_file.h"
#include "platform/store/exchange/formats/csv_reader.h"
#include "platform/store/exchange/import.h"
#include "platform/store/exchange/names.h"
#include "platform/store/exchange/reject_list.h"
#include "platform/store/rows/ascii_case.h"
#include "platform/store/sql/sql_tokens.h"
#include "platform/store/sqlite/files/file_path.h"

namespace cdbtool {

using store::Backend;
using store::Status;
namespace exchange = store::exchange;

namespace {

constexpr std::int64_t kMostRejectsShown = 20;

/// Shows how far an import is and tells which records were left out.
class Observer : public exchange::ImportObserver {
 public:
  Observer(const ImportRequest& request, Console& console) : request_(request), console_(console) {}

  bool goesOn(bool isStoring, std::int64_t bytesDone, std::int64_t bytesTotal) override {
    console_.showProgress(isStoring ? "importing" : "looking through", bytesDone, bytesTotal);
    return !wasInterrupted();
  }

  Status rejected(const exchange::Record& record, const std::string& reason) override {
    ++count_;
    console_.endProgress();
    if (count_ <= kMostRejectsShown) {
      Console::complain("line " + std::to_string(record.line) + ": " + reason);
    }
    if (request_.rejectsFile.empty()) return {};
    if (count_ == 1) {
      Status status = openList();
      if (status) status = list_->write(exchange::kRejectTitles);
      if (!status) return status;
    }
    return list_->write(exchange::rejectLine(record, reason));
  }

  /// Tells how many were not shown, and keeps the file with all of them.
  Status finish() {
    if (count_ > kMostRejectsShown) {
      Console::complain("... and " + std::to_string(count_ - kMostRejectsShown) + " more" +
                        (request_.rejectsFile.empty() ? " (--rejects FILE lists all of them)" : ""));
    }
    if (file_.isOpen()) return file_.keep();
    return list_ != nullptr ? StandardOutput::finish() : Status();
  }

 private:
  Status openList() {
    if (request_.rejectsFile == kStandardStream) {
      list_ = &output_;
      return {};
    }
    std::vector<std::string> inUse{request_.file.path};
    if (request_.source != kStandardStream) inUse.push_back(request_.source);
    list_ = &file_;
    return withForceHint(file_.create(request_.rejectsFile, request_.replacesFiles, inUse),
                         request_.replacesFiles);
  }

  const ImportRequest& request_;
  Console& console_;
  StandardOutput output_;
  exchange::OutputFile file_;
  exchange::ByteSink* list_ = nullptr;  // the one of them in which the records are noted
  std::int64_t count_ = 0;
};

std::string nameOfSeparator(char separator) {
  switch (separator) {
    case ',':
      return "comma";
    case ';':
      return "semicolon";
    case '\t':
      return "tab";
    case '|':
      return "bar";
    default:
      return std::string(1, separator);
  }
}

std::string describe(const exchange::ImportPlan& plan) {
  std::string text = "table: " + plan.table + (plan.isNewTable ? " (new)" : " (exists)") + "\n";
  text += "encoding: " + std::string(exchange::nameOf(plan.encoding)) + "\n";
  if (plan.isJson) {
    text += "format: json\n";
  } else {
    text += "format: csv\ndelimiter: " + nameOfSeparator(plan.csv.separator) +
            "\nheader: " + (plan.csv.hasHeader ? "yes" : "no") + "\n";
  }
  for (const exchange::PlannedColumn& column : plan.columns) {
    text += "column: " + column.source + " -> " + column.target + " " + column.declaredType + "\n";
  }
  for (const std::string& key : plan.keyColumns) text += "key: " + key + "\n";
  return text;
}

Status openInput(const ImportRequest& request, std::unique_ptr<exchange::ByteSource>* source) {
  if (request.source == kStandardStream) return exchange::copyStream(stdin, source);
  return exchange::openSource(request.source, source);
}

/// The table's name when the user gives none: the file's.
std::string tableOf(const ImportRequest& request) {
  if (!request.options.table.empty()) return request.options.table;
  const std::u8string stem = store::pathOf(request.source).stem().u8string();
  return exchange::validTableName({reinterpret_cast<const char*>(stem.data()), stem.size()});
}

/// What was found out about the file, so that a wrong guess is seen at once.
void tellReading(const exchange::ImportPlan& plan, Console& console) {
  std::string text = "read as " + std::string(exchange::nameOf(plan.encoding));
  if (plan.isJson) {
    text += ", JSON";
  } else {
    text += ", parted by " + nameOfSeparator(plan.csv.separator) + ", ";
    text += plan.csv.hasHeader ? "the first line has the names" : "the first line is a record";
  }
  if (plan.isHeaderInDoubt) text += plan.csv.hasHeader ? " (or --no-header)" : " (or --header)";
  console.tell(text);
  if (plan.notUtf8.line == 0) return;
  console.tell(
      "line " + std::to_string(plan.notUtf8.line) + ": byte " + std::to_string(plan.notUtf8.offset + 1) +
      " of the file is no UTF-8, so all of it is read as " + std::string(exchange::nameOf(plan.encoding)) +
      "; with --encoding utf-8 only such records are left out");
}

/// Where a column has not gone where its name says.
void tellRenaming(const exchange::ImportPlan& plan, Console& console) {
  for (const exchange::PlannedColumn& column : plan.columns) {
    if (!store::equalsIgnoringCase(column.source, column.target)) {
      console.tell("column " + column.source + " -> " + column.target);
    }
  }
}

int finish(const ImportRequest& request, const exchange::ImportPlan& plan,
           const exchange::ImportResult& result, Console& console) {
  std::string text = plan.table + ": " + countOfRecords(result.added);
  text += request.isTrial ? " would be added" : " added";
  if (result.replaced > 0) text += ", " + std::to_string(result.replaced) + " replaced";
  if (result.leftOut == 0) {
    console.tell(text);
    return kDone;
  }
  if (request.isTrial || result.isStored) {
    console.tell(text + ", " + std::to_string(result.leftOut) + " left out");
    return kRowsLeftOut;
  }
  Console::complain(countOfRecords(result.leftOut) +
                    " can't be taken, so nothing was imported; --keep-good takes the others.");
  return kFailed;
}

}  // namespace

int import(const ImportRequest& request) {
  std::unique_ptr<Backend> backend;
  std::unique_ptr<exchange::ByteSource> source;
  if (Status status = openFile(request.file, &backend); !status) return failed(status);
  if (Status status = openInput(request, &source); !status) return failed(status);
  Console console(request.isQuiet);
  Observer observer(request, console);
  exchange::ImportOptions options = request.options;
  options.table = tableOf(request);
  exchange::ImportPlan plan;
  Status status = exchange::planImport(*backend, *source, options, observer, &plan);
  console.endProgress();
  if (!status) return failed(status);
  if (request.isTrial) {
    StandardOutput output;
    status = output.write(describe(plan));
    if (status) status = StandardOutput::finish();
    if (!status) return failed(status);
  }
  tellReading(plan, console);
  tellRenaming(plan, console);
  const exchange::ImportMode mode = request.isTrial         ? exchange::ImportMode::trial
                                    : request.keepsGoodRows ? exchange::ImportMode::goodRecords
                                                            : exchange::ImportMode::allOrNothing;
  exchange::ImportResult result;
  status = exchange::runImport(*backend, *source, plan, mode, observer, &result);
  console.endProgress();
  const Status told = observer.finish();
  if (!status) return failed(status);
  if (!told) return failed(told);
  return finish(request, plan, result, console);
}

}  // namespace cdbtool
