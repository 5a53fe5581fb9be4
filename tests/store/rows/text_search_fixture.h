#pragma once

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/text_search.h"
#include "tests/store/rows/search_fixture.h"
#include "tests/store/store_fixture.h"

namespace store {

/// How a search ended: how many records it passed over, and where the recordset stood then.
struct Found {
  std::int64_t passed = 0;
  std::int64_t position = 0;
  bool operator==(const Found&) const = default;
};

inline void PrintTo(const Found& found, std::ostream* stream) {
  *stream << found.passed << " passed, at " << found.position;
}

/// A search, and the plain way to the same records.
class TextSearchFixture : public StoreTest {
 protected:
  using Clock = RowScan::Clock;

  static Clock::time_point never() { return Clock::now() + std::chrono::hours(1); }

  /// The search on `records` from where it stands.
  Found search(Recordset& records, std::u16string_view text, const std::vector<std::size_t>& columns,
               bool matchCase = false, std::int64_t most = std::numeric_limits<std::int64_t>::max()) {
    TextSearch search(records, columns, TextNeedle(text, matchCase ? nullptr : &oddFolding()), texts_);
    Found found;
    const Status status = search.passOver(most, never(), &found.passed);
    EXPECT_TRUE(status) << status.message();
    found.position = records.position();
    return found;
  }
  Found search(Recordset& records, std::u16string_view text) { return search(records, text, all(records)); }

  static std::vector<std::size_t> all(const Recordset& records) {
    std::vector<std::size_t> columns;
    for (std::size_t column = 0; column < records.columns().size(); ++column) columns.push_back(column);
    return columns;
  }

  /// The plain way: record after record by its values.
  Found searchPlainly(Recordset& records, std::u16string_view text, const std::vector<std::size_t>& columns,
                      bool matchCase = false, std::int64_t most = std::numeric_limits<std::int64_t>::max()) {
    Found found;
    while (found.passed < most && records.position() > 0 &&
           !isMatch(records, text, columns, matchCase ? nullptr : &oddFolding())) {
      EXPECT_TRUE(records.moveNext());
      ++found.passed;
    }
    found.position = records.position();
    return found;
  }

  bool isMatch(Recordset& records, std::u16string_view needle, const std::vector<std::size_t>& columns,
               const CaseFolding* folding) {
    for (const std::size_t column : columns) {
      const FieldType& type = records.columns()[column].type;
      if (type.code == TypeCode::boolean || type.code == TypeCode::date) continue;
      Cell cell;
      if (!records.cell(column, &cell)) return needle.empty();
      if (occursPlainly(needle, textOfCell(cell, type), folding)) return true;
    }
    return false;
  }

  std::u16string textOfCell(const Cell& cell, const FieldType& type) {
    std::u16string text;
    switch (cell.kind) {
      case CellKind::null:
        return {};
      case CellKind::text:
        return decoded(cell.bytes);
      case CellKind::blob:
        for (std::size_t at = 0; at < cell.bytes.size() && at < 256; ++at) {
          char pair[4];
          std::snprintf(pair, sizeof pair, " %02X",
                        static_cast<unsigned>(static_cast<unsigned char>(cell.bytes[at])));
          text += decoded(at == 0 ? pair + 1 : pair);
        }
        if (cell.bytes.size() > 256)
          text += u" \u2026 (" + decoded(std::to_string(cell.bytes.size())) + u" bytes)";
        return text;
      case CellKind::integer: {
        const bool isReal = type.code == TypeCode::real && std::abs(cell.integer) <= 1LL << 53;
        return decoded(isReal ? std::to_string(static_cast<double>(cell.integer))
                              : std::to_string(cell.integer));
      }
      case CellKind::real:
        if (type.code == TypeCode::real || !std::isfinite(cell.real))
          return decoded(std::to_string(cell.real));
        texts_.textOf(cell, type, &text);
        return text;
    }
    return {};
  }

  OddTexts texts_;
};

}  // namespace store
