#pragma once

#include <windows.h>

#include <adoce.h>
#include <cstdint>
#include <limits>

#include "owners/com_handles.h"

/// While it lives, the recordsets that this process makes are the components' own, each behind an object that
/// answers for its search: it gives it, in parts that may be small, or lacks it. One exists, made before the
/// first recordset; it outlives all of them.
class SearchSwitch {
 public:
  SearchSwitch();
  ~SearchSwitch();
  SearchSwitch(const SearchSwitch&) = delete;
  SearchSwitch& operator=(const SearchSwitch&) = delete;

  /// The cursor of the recordset that was last asked for its search, as AbsolutePosition tells it.
  long position() const;

  bool isOn = true;
  /// Of one part, whatever is asked for.
  long mostRecords = std::numeric_limits<long>::max();
  long mostMilliseconds = std::numeric_limits<long>::max();

  std::int64_t passedCount = 0;  ///< records that were passed over
  int refusedCount = 0;          ///< how often the search was asked for in vain

  /// For the objects.
  void wasAsked(IAdoceRecordset* recordset) { searched_ = recordset; }
  void isGone(const IAdoceRecordset* recordset) {
    if (searched_ == recordset) searched_ = nullptr;
  }

 private:
  IAdoceRecordset* searched_ = nullptr;
  DWORD registration_ = 0;
};
