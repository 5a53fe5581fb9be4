#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/string.h"
#include "data/outcome.h"

class ConnectionHandle;
class RecordsetHandle;

/// The field of another table to whose values those of a field refer.
struct LookUpTarget {
  String table;  ///< empty when they refer to none
  String field;

  bool isNone() const { return table.isEmpty(); }
};

/// A record of the other table as the user tells it from the rest.
struct LookUpRecord {
  String key;
  String name;  ///< empty where no text field is there
};

/// Chooses the field that names the records of the table: the first text field other than the key in whose
/// first values there are letters and none occurs twice, or else the first with letters; none when there is
/// no such field. `field` is untouched after a failure.
Outcome findNameField(const ConnectionHandle& connection, const LookUpTarget& target, String& field);

/// The name of the record whose key is written as `key`; empty when there is no such record, and when it
/// can't be read. `nameField` is what findNameField gives.
String nameOfKey(const ConnectionHandle& connection, const LookUpTarget& target, const String& nameField,
                 const String& key);

/// The records of the table to which a field refers. Rows count from 0.
class LookUpRecords {
 public:
  /// Lives no longer than the connection's Database. `records` is untouched after a failure.
  static Outcome open(const ConnectionHandle& connection, const LookUpTarget& target,
                      std::unique_ptr<LookUpRecords>& records);
  ~LookUpRecords();
  LookUpRecords(const LookUpRecords&) = delete;
  LookUpRecords& operator=(const LookUpRecords&) = delete;

  std::uint32_t count() const { return count_; }
  /// What the user sees of the record: no more than the beginning of a long key or name. `record` is
  /// untouched when it can't be read.
  Outcome read(std::uint32_t row, LookUpRecord& record);
  /// The whole key, to be stored in a field that refers to it. Fails when it can't be read, and where the
  /// text would not give the same value again; `key` is untouched then.
  Outcome readKey(std::uint32_t row, String& key);

  /// Begins to look for the records whose key or name has this text in any letter case.
  void beginSearch(const String& text);
  /// Appends the rows that have it to `found`, until that holds `most` of them, or for about so many
  /// milliseconds; `goesOn` is false then when there is no more to be looked for. Fails, and does not go on,
  /// at the first record that can't be read for another reason than that it is gone.
  Outcome searchOn(std::uint32_t milliseconds, std::size_t most, std::vector<std::uint32_t>& found,
                   bool& goesOn);

 private:
  explicit LookUpRecords(std::unique_ptr<RecordsetHandle> records);
  bool moveTo(std::uint32_t row);
  bool isWanted(const LookUpRecord& record) const;

  std::unique_ptr<RecordsetHandle> records_;
  std::uint32_t count_ = 0;
  bool hasName_ = false;
  String wanted_;           // in capital letters
  std::uint32_t next_ = 0;  // row of the search
};
