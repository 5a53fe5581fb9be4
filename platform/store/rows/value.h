#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace store {

struct Blob {
  std::string bytes;
  bool operator==(const Blob&) const = default;
};

/// A value on its way into the database: null, an integer, a double, a text (UTF-8) or bytes.
using Value = std::variant<std::monostate, std::int64_t, double, std::string, Blob>;

enum class CellKind : std::uint8_t { null, integer, real, text, blob };

/// A value of a fetched row. `bytes` points into the row and holds until the row is fetched anew.
struct Cell {
  CellKind kind = CellKind::null;
  std::int64_t integer = 0;
  double real = 0;
  std::string_view bytes;  ///< text as UTF-8, or the bytes of a blob
};

/// The values of one record, copied out of the database so that no lock outlives the reading.
/// Reused from record to record without new allocations.
class Row {
 public:
  std::size_t count() const { return slots_.size(); }

  /// The value at `index`, which is less than count().
  Cell at(std::size_t index) const;

  void clear() {
    slots_.clear();
    bytes_.clear();
  }
  void addNull() { slots_.push_back({}); }
  void addInteger(std::int64_t value);
  void addReal(double value);

  /// Copies a text or a blob. When memory is refused (std::bad_alloc), the row is as it was. `data` may
  /// be null when `length` is 0.
  void addBytes(CellKind kind, const void* data, std::size_t length);

 private:
  struct Slot {
    CellKind kind = CellKind::null;
    std::int64_t word = 0;   // the integer, the double's bits, or the offset into bytes_
    std::size_t length = 0;  // bytes of a text or blob
  };
  std::vector<Slot> slots_;
  std::string bytes_;
};

/// The value that a cell holds, owned.
Value valueOf(const Cell& cell);

/// Whether both are the same value of the same kind (a double equals itself bit by bit).
bool sameValue(const Cell& cell, const Value& value);
bool sameCell(const Cell& left, const Cell& right);

}  // namespace store
