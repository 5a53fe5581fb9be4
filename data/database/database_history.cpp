// Changes that are taken back and done again.
#include "data/database/database.h"
#include "data/handles/connection_handle.h"
#include "data/handles/history_handle.h"
#include "data/handles/recordset_handle.h"

HistoryStep Database::nextStep(HistoryWay way) const {
  return isOpen_ ? HistoryHandle(*connection_).next(way) : HistoryStep();
}

Outcome Database::takeStep(HistoryWay way) {
  dropListRows();
  return HistoryHandle(*connection_).take(way);
}

std::uint32_t Database::positionOfStep() const {
  return static_cast<std::uint32_t>(HistoryHandle(*connection_).find(*recordset_));
}

bool Database::hasStepKeptRecords() const {
  return HistoryHandle(*connection_).hasKeptRecords();
}
