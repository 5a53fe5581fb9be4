#include "data/handles/history_handle.h"

#include "data/handles/last_error.h"
#include "data/values/value_conversion.h"

namespace {

constexpr LONG kMegabytes = 128;

}  // namespace

HistoryHandle::HistoryHandle(const ConnectionHandle& connection) {
  const ComPtr<IAdoceConnection> object = ComPtr<IAdoceConnection>::share(connection.get());
  if (object && FAILED(object.query(history_))) history_.reset();
}

void HistoryHandle::keep() {
  if (history_) history_->KeepHistory(kMegabytes);
}

HistoryStep HistoryHandle::next(HistoryWay way) const {
  HistoryStep step;
  LONG kind = 0;
  UniqueBstr table;
  UniqueBstr record;
  hyper records = 0;
  if (!history_ ||
      FAILED(history_->GetHistoryStep(static_cast<LONG>(way), &kind, table.put(), record.put(), &records))) {
    return step;
  }
  step.kind = static_cast<HistoryStep::Kind>(kind);
  step.table = textOfBstr(table.get());
  step.record = textOfBstr(record.get());
  step.records = records;
  return step;
}

Outcome HistoryHandle::take(HistoryWay way) {
  if (!history_) return Outcome::failure(L"The data-access components keep no changes.");
  return outcomeOf(history_->TakeHistoryStep(static_cast<LONG>(way)));
}

LONG HistoryHandle::find(const RecordsetHandle& records) const {
  LONG position = 0;
  const bool found =
      history_ && records.get() && SUCCEEDED(history_->FindHistoryRecord(records.get(), &position));
  return found ? position : 0;
}

bool HistoryHandle::hasKeptRecords() const {
  VARIANT_BOOL hasKept = VARIANT_FALSE;
  return history_ && SUCCEEDED(history_->HistoryHasKeptRecords(&hasKept)) && hasKept != VARIANT_FALSE;
}
