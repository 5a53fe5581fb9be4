#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "records/parts/document_part.h"

/// The fields that refer to records of another table, and the way to those and back.
class LookUps : public DocumentPart {
 public:
  explicit LookUps(Document& document) : DocumentPart(document) {}

  bool isLookUp(std::uint32_t field) const { return !database().lookUpTarget(field).isNone(); }
  /// The name of the record with this key; empty when there is none.
  String nameOf(std::uint32_t field, const String& key) const;
  /// Those from which the user may choose; null when they can't be opened, which was told.
  std::unique_ptr<LookUpRecords> open(std::uint32_t field) const;

  /// Whether the field with the keyboard refers to another table, on the form of a record.
  bool refersElsewhere() const;
  /// Shows the record to which the field with the keyboard refers on the form of its own table. What is typed
  /// is stored first. What can't be done is told.
  void goThere();
  /// Whether goThere went and the user has not come back.
  bool canGoBack() const { return !cameFrom_.empty(); }
  /// Shows the record again from which goThere went last and the user has not come back yet.
  void goBack();
  /// Of another file there is no way back.
  void forgetWay() { cameFrom_.clear(); }

 private:
  /// Where the user came from to a record that another refers to.
  struct CameFrom {
    RecordSource source;
    std::uint32_t position = 0;
    RecordMark mark;  // records may be added and deleted before it
    std::uint32_t field = 0;
  };

  void openOnForm() const;
  void showRecord(std::uint32_t position) const;

  std::vector<CameFrom> cameFrom_;
};
