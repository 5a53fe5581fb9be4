#pragma once

#include <cstddef>

/// What is calculated of a column is one record. Its fields, in their order; those behind `filled` are of the
/// kind.
enum FigurePlace : std::size_t {
  kRecords,
  kFilled,
  // ColumnKind::values
  kIntegers,
  kHighSum,
  kLowSum,
  kReals,
  kSum,
  kMean,
  kLeastNumber,
  kGreatestNumber,
  kLeastText,
  kGreatestText,
  kValuesCount,
  // ColumnKind::dates
  kLeastDate = kIntegers,
  kGreatestDate,
  kDatesCount,
  // ColumnKind::truth
  kTrue = kIntegers,
  kTruthCount,
};
