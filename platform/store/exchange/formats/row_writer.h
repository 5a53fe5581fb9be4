#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/store/exchange/bytes/byte_sink.h"
#include "platform/store/exchange/formats/value_kind.h"
#include "platform/store/rows/backend.h"

namespace store::exchange {

/// Writes rows in some format, one after the other.
class RowWriter {
 public:
  virtual ~RowWriter() = default;

  /// What stands in front of the rows. To be called once, before anything else.
  virtual void begin(const std::vector<Column>& columns, TextOutput& output) = 0;
  /// The present row of `rows`.
  virtual void writeRow(RowStream& rows, TextOutput& output) = 0;
  /// What stands behind them.
  virtual void end(TextOutput& output) = 0;

  /// How many values were written that don't come back as they are in the database: they are of another kind
  /// than their column, or texts that are not made of characters.
  std::int64_t changedCount() const { return changedCount_; }

 protected:
  void countChanged() { ++changedCount_; }

 private:
  std::int64_t changedCount_ = 0;
};

std::vector<ValueKind> kindsOf(const std::vector<Column>& columns);

/// Appends a number as every format writes it.
void putInteger(std::int64_t value, TextOutput& output);
/// `keepsPoint`: a whole number gets a point and a zero, which tell it from an integer.
void putReal(double value, bool keepsPoint, TextOutput& output);
void putHex(std::string_view bytes, TextOutput& output);
void appendHex(std::string_view bytes, std::string* text);
/// What putReal writes.
std::string realText(double value, bool keepsPoint);

/// Hears of an export while it goes on.
class ExportObserver {
 public:
  virtual ~ExportObserver() = default;
  /// Called every now and then; false cancels the export.
  virtual bool goesOn(std::int64_t rowsDone) = 0;
};

struct ExportResult {
  std::int64_t rows = 0;
  std::int64_t changed = 0;  ///< values that don't come back as they are
};

/// Writes all rows of `rows` into `sink`. Fails when they can't be read, what was read before being written,
/// or can't be written, and with illegalOperation when the observer has cancelled it.
Status exportRows(RowStream& rows, RowWriter& writer, ByteSink& sink, ExportObserver& observer,
                  ExportResult* result);

}  // namespace store::exchange
