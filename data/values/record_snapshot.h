#pragma once

#include <cstdint>
#include <vector>

#include "base/string.h"
#include "data/outcome.h"
#include "data/values/record_mark.h"
#include "data/values/value_beginning.h"

/// Of a text or of bytes no more than this is read, in the file's own length. It is more than any control
/// shows.
inline constexpr long kMostReadBytes = 1'000'000;

/// What one field of a record was read as.
struct FieldSnapshot {
  enum class State : std::uint8_t {
    unreadable,  ///< nothing is known of the value, or it says nothing as text
    null,        ///< the field holds no value
    value,
  };

  State state = State::unreadable;
  /// As the user reads it; empty where nothing is known. Of a value that is cut it is the beginning.
  String text;
  /// As the store gave it; kMostReadBytes at most.
  ValueBeginning read;
};

/// One reading of one record, as a value: what the user sees, and what a change is measured against.
/// It is whole or there is none: when one field can't be fetched, no field of the record is in it.
class RecordSnapshot {
 public:
  /// Of no record: nothing was read.
  RecordSnapshot() = default;
  /// Of the record at `position` (from 1). `isNew` for one that is not stored yet.
  RecordSnapshot(std::uint32_t position, bool isNew, std::vector<FieldSnapshot> fields, RecordMark mark);
  /// Of a record that could not be read.
  RecordSnapshot(std::uint32_t position, Outcome failure);

  /// False also when nothing was read.
  bool isReadable() const { return wasRead_ && static_cast<bool>(outcome_); }
  /// No reading was tried.
  bool isEmpty() const { return !wasRead_; }
  /// Why the record could not be read; done for a readable one and for no record.
  const Outcome& outcome() const { return outcome_; }

  std::uint32_t position() const { return position_; }
  bool isNew() const { return isNew_; }
  /// Empty for a record that is not stored yet, and where the components name none.
  const RecordMark& mark() const { return mark_; }
  /// In field order; none of a record that is not readable.
  const std::vector<FieldSnapshot>& fields() const { return fields_; }

 private:
  bool wasRead_ = false;
  bool isNew_ = false;
  std::uint32_t position_ = 0;
  Outcome outcome_;
  std::vector<FieldSnapshot> fields_;
  RecordMark mark_;
};
