#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "records/parts/document_part.h"

/// In which order the records are shown, and which of them. It is kept for the table or query in use.
class Arranger : public DocumentPart {
 public:
  explicit Arranger(Document& document) : DocumentPart(document) {}

  const Arrangement& present() const { return wanted().arrangement(); }
  /// On the Form and List pages: what is typed is stored, and the records are shown so, where the current one
  /// is still current if it is among them. False when what is typed can't be stored or the records can't be
  /// opened so, which was told; nothing has changed then.
  bool arrange(Arrangement arrangement) const;
  /// Whether letter case may differ in the values of a field.
  Arrangement::Letters lettersOf(std::uint32_t field) const;
  /// How an order or condition calls the field; none where it can't be told from another one, which was told.
  std::optional<std::wstring> arrangedName(std::uint32_t field) const;
  /// Whether a text is looked for in the field.
  bool canContainText(std::uint32_t field) const;
  /// The condition that the field is what it is in the row that is chosen in the grid.
  Outcome readChosenValue(std::uint32_t field, Arrangement::Condition& condition) const;
  /// Tells count, sum, mean, least and greatest of a field of the records that are shown.
  void calculate(std::uint32_t field) const;

  /// What was kept for the table or query that was chosen just now.
  void recall() const;
  /// Opens the records that are wanted; all of them where the order and filter don't fit any more, which
  /// tellUnfitting then tells, once.
  Outcome openRecords();
  void tellUnfitting();

 private:
  Outcome describe(std::vector<Database::FieldDescription>& fields) const;
  Outcome readArrangedName(std::uint32_t field, std::wstring& name) const;
  Outcome readArrangedNames(const std::vector<std::uint32_t>& fields, std::vector<std::wstring>& names) const;
  Outcome readSearchedFields(std::vector<std::wstring>& names) const;
  void tellNotArranged(const Outcome& failure) const;
  Outcome arrangePending() const;
  const String& sourceName() const;
  void keep() const;
  Outcome openInPlace(const RecordSource& source, std::uint32_t former, std::uint32_t& position,
                      bool& hasOtherFields) const;
  void show(std::uint32_t position) const;
  Outcome readFigures(const String& sql, std::vector<std::wstring>& values) const;

  String unfitting_;  // why an order and filter were given up, to be told
};
