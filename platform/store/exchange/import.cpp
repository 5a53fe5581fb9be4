#include "platform/store/exchange/import.h"

#include "platform/store/exchange/formats/value_reading.h"
#include "platform/store/rows/utf.h"

namespace store::exchange {

namespace {

constexpr std::int64_t kRecordsBetweenLooks = 1024;
constexpr std::size_t kMostShown = 40;

/// A text of the file as a message shows it.
std::string shown(std::string_view text) {
  if (text.size() <= kMostShown) return "\"" + std::string(text) + "\"";
  return "\"" + std::string(beginningOf(text, kMostShown)) + "...\"";
}

class Import {
 public:
  Import(const ImportPlan& plan, TableLoad& load) : plan_(plan), load_(load), cells_(plan.columns.size()) {
    scratch_.resize(plan.columns.size());
  }

  /// Adds the record; `reason` says why not if it can't be taken.
  Status take(const RecordReader& reader, std::string* reason);

 private:
  bool readValues(const RecordReader& reader, std::string* reason);

  const ImportPlan& plan_;
  TableLoad& load_;
  std::vector<Cell> cells_;
  std::vector<std::string> scratch_;
};

bool Import::readValues(const RecordReader& reader, std::string* reason) {
  const Record& record = reader.record();
  if (!record.problem.empty()) {
    *reason = record.problem;
    return false;
  }
  const std::size_t expected = reader.names().size();
  if (reader.hasFixedFields() && record.fields.size() != expected) {
    const std::size_t count = record.fields.size();
    *reason = (count == 1 ? "there is 1 field" : "there are " + std::to_string(count) + " fields") +
              " instead of " + std::to_string(expected);
    return false;
  }
  for (std::size_t index = 0; index < plan_.columns.size(); ++index) {
    const PlannedColumn& column = plan_.columns[index];
    // In JSON the names that occur later are still missing.
    const Field field =
        column.sourceIndex < record.fields.size() ? record.fields[column.sourceIndex] : Field();
    const char* problem = readValue(field, column.kind, &scratch_[index], &cells_[index]);
    if (problem == nullptr) continue;
    *reason = column.target + ": " + shown(field.text) + " " + problem;
    return false;
  }
  return true;
}

Status Import::take(const RecordReader& reader, std::string* reason) {
  if (!readValues(reader, reason)) return {};
  Status status = load_.add(cells_);
  if (status.code() != ErrorCode::constraint) return status;
  *reason = status.message();
  return {};
}

}  // namespace

Status runImport(Backend& backend, ByteSource& source, const ImportPlan& plan, ImportMode mode,
                 ImportObserver& observer, ImportResult* result) {
  std::unique_ptr<RecordReader> reader;
  if (Status status = openReader(source, plan, &reader); !status) return status;
  LoadTarget target;
  if (plan.isNewTable) target.createStatement = plan.createStatement();
  target.table = plan.table;
  target.keyColumns = plan.keyColumns;
  for (const PlannedColumn& column : plan.columns) target.columns.push_back(column.target);
  std::unique_ptr<TableLoad> load;
  if (Status status = backend.beginLoad(target, &load); !status) return status;

  Import import(plan, *load);
  ImportResult counts;
  std::string reason;
  for (std::int64_t number = 1;; ++number) {
    bool hasRecord = false;
    if (Status status = reader->next(&hasRecord); !status) return status;
    if (!hasRecord) break;
    if (Status status = import.take(*reader, &reason); !status) return status;
    if (reason.empty()) {
      ++counts.added;
    } else {
      ++counts.leftOut;
      if (Status status = observer.rejected(reader->record(), reason); !status) return status;
      reason.clear();
    }
    const bool isToLook = number % kRecordsBetweenLooks == 0;
    if (isToLook && !observer.goesOn(true, reader->bytesRead(), source.length())) return cancelled();
  }
  if (!observer.goesOn(true, source.length(), source.length())) return cancelled();
  counts.replaced = load->replacedCount();
  counts.added -= counts.replaced;
  counts.isStored =
      mode == ImportMode::goodRecords || (mode == ImportMode::allOrNothing && counts.leftOut == 0);
  if (counts.isStored) {
    if (Status status = load->commit(); !status) return status;
  }
  *result = counts;
  return {};
}

}  // namespace store::exchange
