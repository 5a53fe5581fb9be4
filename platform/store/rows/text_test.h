#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/backend.h"
#include "platform/store/rows/row_scan.h"
#include "platform/store/rows/text_needle.h"

namespace store {

/// The texts of values that only the system can tell, by the user's language and its own rules. Asked by
/// several threads at a time.
class ValueTexts {
 public:
  virtual ~ValueTexts() = default;

  /// Whether the system writes a whole number as its digits with "-" before a negative one.
  virtual bool writesPlainIntegers() const = 0;
  /// All units but digits that can occur in a text that textOf() gives for a number.
  virtual std::u16string_view numberSigns() const = 0;
  /// Replaces `*text` by the text of the value; false when it has none.
  virtual bool textOf(const Cell& cell, const FieldType& type, std::u16string* text) = 0;
};

/// Looks for the rows in which a text occurs in the text of a value, the one by which the user knows it: a
/// text as it is; a whole number's digits; a double in a column of doubles with six decimals; bytes as
/// pairs of hexadecimal digits; any other number as the system writes it. Null has no text.
class TextTest : public RowTest {
 public:
  /// `columns` are the indexes in `all` of those to be looked at; the rest outlives the test. May throw
  /// std::bad_alloc.
  TextTest(const std::vector<Column>& all, std::vector<std::size_t> columns, TextNeedle needle,
           ValueTexts& texts);

  const std::vector<std::size_t>& columns() const override { return columns_; }
  bool ignores(std::size_t number, CellKind kind) const noexcept override;
  bool isWanted(std::size_t number, const Cell& cell) noexcept override;
  std::optional<SoughtText> soughtText() const override;
  std::unique_ptr<RowTest> copy() const override { return std::make_unique<TextTest>(*this); }

 private:
  bool canOccurIn(std::u16string_view units) const;
  bool occursInBytes(std::string_view bytes) noexcept;
  bool occursInInteger(std::int64_t integer, const FieldType& type) noexcept;
  bool occursInReal(double real, const FieldType& type) noexcept;
  bool occursInSystemsText(const Cell& cell, const FieldType& type) noexcept;

  std::vector<std::size_t> columns_;
  std::vector<FieldType> types_;  // of these
  TextNeedle needle_;
  ValueTexts& texts_;
  std::u16string text_;
  bool fitsInteger_;
  bool fitsDecimal_;
  bool fitsInfinite_;
  bool fitsSystemsNumber_;
  bool fitsBytes_;
};

}  // namespace store
