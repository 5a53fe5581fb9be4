#include "platform/store/exchange/import.h"

#include <utility>

#include "platform/store/exchange/formats/value_reading.h"
#include "platform/store/exchange/kept_records.h"
#include "platform/store/rows/utf.h"

namespace store::exchange {

namespace {

constexpr std::int64_t kRecordsBetweenLooks = 1024;
constexpr std::size_t kMostShown = 40;
/// Records that wait to be told of, when none of them goes to the load.
constexpr std::size_t kMostWaiting = 10'000;
constexpr std::size_t kMostWaitingBytes = std::size_t{8} << 20;

/// A text of the file as a message shows it.
std::string shown(std::string_view text) {
  if (text.size() <= kMostShown) return "\"" + std::string(text) + "\"";
  return "\"" + std::string(beginningOf(text, kMostShown)) + "...\"";
}

class Import {
 public:
  Import(const ImportPlan& plan, TableLoad& load, ImportObserver& observer)
      : plan_(plan), load_(load), observer_(observer), cells_(plan.columns.size()) {
    scratch_.resize(plan.columns.size());
  }

  /// Adds the record, or tells why it can't be taken, at the latest in settle().
  Status take(const RecordReader& reader);
  /// Sees to it that what became of all records is known.
  Status settle();

  std::int64_t addedCount() const { return added_; }
  std::int64_t leftOutCount() const { return leftOut_; }

 private:
  Status add(const RecordReader& reader, std::string* reason);
  Status passOn();
  Status learn();
  Status note(const Record& record, const std::string& reason);
  bool readValues(const RecordReader& reader, std::string* reason);

  const ImportPlan& plan_;
  TableLoad& load_;
  ImportObserver& observer_;
  std::vector<Cell> cells_;
  std::vector<std::string> scratch_;
  std::string reason_;
  /// Of which the load has not told yet, and those between them.
  struct Waiting {
    KeptRecords records;
    std::vector<std::size_t> loaded;  // the places of those that the load has
  };
  Waiting waiting_;
  Waiting settling_;  // the load is about to tell of these
  std::int64_t added_ = 0;
  std::int64_t leftOut_ = 0;
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

Status Import::add(const RecordReader& reader, std::string* reason) {
  reason->clear();
  if (!readValues(reader, reason)) return {};
  Status status = load_.add(cells_);
  if (status.code() != ErrorCode::constraint) return status;
  *reason = status.message();
  return {};
}

Status Import::note(const Record& record, const std::string& reason) {
  if (reason.empty()) {
    ++added_;
    return {};
  }
  ++leftOut_;
  return observer_.rejected(record, reason);
}

Status Import::take(const RecordReader& reader) {
  if (Status status = add(reader, &reason_); !status) return status;
  if (!load_.isPuttingOff()) return note(reader.record(), reason_);
  // They are told in the order of the file.
  if (reason_.empty()) waiting_.loaded.push_back(waiting_.records.count());
  waiting_.records.keep(reader.record(), reason_);
  const bool isMuch =
      waiting_.records.count() >= kMostWaiting || waiting_.records.byteCount() >= kMostWaitingBytes;
  return load_.isFull() || isMuch ? passOn() : Status();
}

/// The load stores them while the next ones are read.
Status Import::passOn() {
  if (Status status = learn(); !status) return status;
  if (Status status = load_.beginSettling(); !status) return status;
  std::swap(waiting_, settling_);
  return {};
}

/// What became of those that were passed on.
Status Import::learn() {
  std::vector<TableLoad::Refusal> refused;
  if (Status status = load_.settle(&refused); !status) return status;
  for (TableLoad::Refusal& refusal : refused) {
    settling_.records.problem(settling_.loaded[refusal.number]) = std::move(refusal.reason);
  }
  for (std::size_t index = 0; index < settling_.records.count(); ++index) {
    const Record record = settling_.records.recordAt(index);
    if (Status status = note(record, record.problem); !status) return status;
  }
  settling_.records.clear();
  settling_.loaded.clear();
  return {};
}

Status Import::settle() {
  if (Status status = passOn(); !status) return status;
  return learn();
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

  Import import(plan, *load, observer);
  ImportResult counts;
  for (std::int64_t number = 1;; ++number) {
    bool hasRecord = false;
    if (Status status = reader->next(&hasRecord); !status) return status;
    if (!hasRecord) break;
    if (Status status = import.take(*reader); !status) return status;
    const bool isToLook = number % kRecordsBetweenLooks == 0;
    if (isToLook && !observer.goesOn(true, reader->bytesRead(), source.length())) return cancelled();
  }
  if (Status status = import.settle(); !status) return status;
  if (!observer.goesOn(true, source.length(), source.length())) return cancelled();
  counts.added = import.addedCount();
  counts.leftOut = import.leftOutCount();
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
