// What was changed is taken back and done again, an interface of its own.
#include "owners/com_handles.h"
#include "platform/store/automation/objects/connection.h"
#include "platform/store/automation/objects/recordset.h"
#include "platform/store/automation/values/text.h"
#include "platform/store/rows/change_history.h"

namespace automation {

namespace {

// More than this can't be meant.
constexpr long kMostMegabytes = 1024;
constexpr std::size_t kMegabyte = 1024 * 1024;

constexpr long kBack = 0;
constexpr long kAgain = 1;

Outcome closedConnection() {
  return {kInvalidConnection, "The connection is closed."};
}

Outcome readDirection(long direction, store::ChangeHistory::Way* way) {
  if (direction != kBack && direction != kAgain) return {kInvalidArgument, "A direction is 0 or 1."};
  *way = direction == kBack ? store::ChangeHistory::Way::back : store::ChangeHistory::Way::again;
  return {};
}

}  // namespace

store::ChangeHistory* ConnectionObject::history() const {
  return isOpen() ? backend()->history() : nullptr;
}

HRESULT ConnectionObject::KeepHistory(LONG megabytes) {
  return call([&]() -> Outcome {
    if (megabytes < 0 || megabytes > kMostMegabytes) {
      return {kInvalidArgument, "A history has at most 1024 megabytes."};
    }
    if (!isOpen()) return closedConnection();
    if (history() != nullptr) history()->keep(static_cast<std::size_t>(megabytes) * kMegabyte);
    return {};
  });
}

HRESULT ConnectionObject::GetHistoryStep(LONG direction, LONG* kind, BSTR* table, BSTR* record,
                                         hyper* records) {
  return call([&]() -> Outcome {
    if (kind == nullptr || table == nullptr || record == nullptr || records == nullptr) return nullPointer();
    store::ChangeHistory::Way way{};
    if (Outcome outcome = readDirection(direction, &way); !outcome) return outcome;
    if (!isOpen()) return closedConnection();
    const store::HistoryStep* const next = history() != nullptr ? history()->next(way) : nullptr;
    const store::HistoryStep step = next != nullptr ? *next : store::HistoryStep();
    UniqueBstr name(newText(step.table));
    *record = newText(step.caption);
    *table = name.release();
    *kind = static_cast<long>(step.kind);
    *records = step.records;
    return {};
  });
}

HRESULT ConnectionObject::TakeHistoryStep(LONG direction) {
  return call([&]() -> Outcome {
    store::ChangeHistory::Way way{};
    if (Outcome outcome = readDirection(direction, &way); !outcome) return outcome;
    if (!isOpen()) return closedConnection();
    if (history() == nullptr) return {kNotAvailable, "Nothing is kept of what is changed here."};
    return history()->take(way);
  });
}

HRESULT ConnectionObject::FindHistoryRecord(IAdoceRecordset* records, LONG* position) {
  return call([&]() -> Outcome {
    if (records == nullptr || position == nullptr) return nullPointer();
    if (!isOpen()) return closedConnection();
    const ComPtr<RecordsetObject> own = RecordsetObject::of(records);
    if (!own) return {kInvalidArgument, "The records are not of these components."};
    store::Recordset* const open = own->records();
    if (open == nullptr) return closedRecordset();
    const bool isTaken = history() != nullptr && history()->taken() && own->isOn(*this);
    *position = isTaken ? static_cast<long>(open->positionOf(*history()->taken())) : 0;
    return {};
  });
}

HRESULT ConnectionObject::HistoryHasKeptRecords(VARIANT_BOOL* hasKept) {
  return call([&]() -> Outcome {
    if (hasKept == nullptr) return nullPointer();
    if (!isOpen()) return closedConnection();
    *hasKept = history() != nullptr && history()->hasKeptRows() ? VARIANT_TRUE : VARIANT_FALSE;
    return {};
  });
}

}  // namespace automation
