#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/store/rows/keyset.h"
#include "platform/store/rows/status.h"

namespace store {

/// What a step of the history did to records.
enum class StepKind {
  none = 0,
  added = 1,      ///< a record was added
  changed = 2,    ///< a record was changed
  deleted = 3,    ///< a record was deleted
  imported = 4,   ///< many rows were loaded into a table
  statement = 5,  ///< a statement changed records
};

/// A step as people are told of it.
struct HistoryStep {
  StepKind kind = StepKind::none;
  std::string table;         ///< which it was made to; empty for a statement that changed several
  std::string caption;       ///< what people know the record by: its first text, else its first value; may be
                             ///< empty, and is that of a step of several records
  std::int64_t records = 0;  ///< how many records it changed, without those that triggers and keys changed
};

/// A record of a table.
struct RecordAddress {
  std::string table;
  Key key;
};

/// The changes of records that were made through one open database, each acknowledged one a step, newest
/// last: they can be taken back one by one, and done again as long as no new one was made. What triggers and
/// foreign keys changed along belongs to the step and comes back with it; they don't run again for that.
///
/// A step is taken back, or done again, as a whole and durably or not at all, and only where each record of
/// it still is as the step left it, in a table that is defined as it was. A record comes back under its row
/// id; in a table that has a key of its own beside row ids it gets another one where that is taken meanwhile,
/// and where the file could not be read beside a change that deleted several.
///
/// Some steps are not kept, and then nothing that lies before them is, because steps are taken back in their
/// order: one that would take more memory than it may, or changed tables in which a virtual one keeps its
/// content, a record whose declared key holds a null, a key into one that its collation takes for the same,
/// or a table of 2,000 columns without a key of its own. Of many steps the oldest are forgotten.
class ChangeHistory {
 public:
  virtual ~ChangeHistory() = default;

  enum class Way { back, again };

  /// Begins to keep what is changed from now on, in at most `mostBytes` for all steps together and half of
  /// them for one; with 0 forgets everything and keeps nothing, as at first.
  virtual void keep(std::size_t mostBytes) = 0;

  /// The step that is next to be taken back, or to be done again. Null when there is none; valid until the
  /// next change, taking back or doing again.
  virtual const HistoryStep* next(Way way) const = 0;

  /// Takes that step back, or does it again. On failure nothing has changed:
  ///  - noCurrentRecord without such a step;
  ///  - changedElsewhere when a record is no longer as the step left it, is gone, or another one stands in
  ///    its place; structureChanged when a table is gone or defined otherwise; constraint when a rule of the
  ///    database is in the way. Such a step is forgotten: it can never be taken any more;
  ///  - what else can happen to a change, after which it can be tried again.
  virtual Status take(Way way) = 0;

  /// The record that the step taken last is about, as it stands now; empty when that has deleted it, was
  /// about no single one, or none was taken.
  virtual const std::optional<RecordAddress>& taken() const = 0;

  /// Whether the step taken last changed values alone: no row of any table has come, gone or got another key
  /// by it. False when none was taken.
  virtual bool hasKeptRows() const = 0;
};

}  // namespace store
