#include "platform/store/rows/value.h"

#include <bit>

namespace store {
namespace {

template <typename Number>
bool sameBits(Number number, const Value& value) {
  const Number* other = std::get_if<Number>(&value);
  return other != nullptr && std::bit_cast<std::uint64_t>(number) == std::bit_cast<std::uint64_t>(*other);
}

}  // namespace

Cell Row::at(std::size_t index) const {
  const Slot& slot = slots_[index];
  Cell cell;
  cell.kind = slot.kind;
  switch (slot.kind) {
    case CellKind::null:
      break;
    case CellKind::integer:
      cell.integer = slot.word;
      break;
    case CellKind::real:
      cell.real = std::bit_cast<double>(slot.word);
      break;
    case CellKind::text:
    case CellKind::blob:
      cell.bytes = std::string_view(bytes_.data() + slot.word, slot.length);
      break;
  }
  return cell;
}

void Row::addInteger(std::int64_t value) {
  slots_.push_back({CellKind::integer, value, 0});
}

void Row::addReal(double value) {
  slots_.push_back({CellKind::real, std::bit_cast<std::int64_t>(value), 0});
}

void Row::addBytes(CellKind kind, const void* data, std::size_t length) {
  slots_.push_back({kind, static_cast<std::int64_t>(bytes_.size()), length});
  if (length == 0) return;
  try {
    bytes_.append(static_cast<const char*>(data), length);
  } catch (...) {
    slots_.pop_back();
    throw;
  }
}

Value valueOf(const Cell& cell) {
  switch (cell.kind) {
    case CellKind::null:
      break;
    case CellKind::integer:
      return cell.integer;
    case CellKind::real:
      return cell.real;
    case CellKind::text:
      return std::string(cell.bytes);
    case CellKind::blob:
      return Blob{std::string(cell.bytes)};
  }
  return std::monostate();
}

bool sameCell(const Cell& left, const Cell& right) {
  return left.kind == right.kind && left.integer == right.integer &&
         std::bit_cast<std::uint64_t>(left.real) == std::bit_cast<std::uint64_t>(right.real) &&
         left.bytes == right.bytes;
}

bool sameValue(const Cell& cell, const Value& value) {
  switch (cell.kind) {
    case CellKind::null:
      return std::holds_alternative<std::monostate>(value);
    case CellKind::integer:
      return sameBits(cell.integer, value);
    case CellKind::real:
      return sameBits(cell.real, value);
    case CellKind::text: {
      const auto* text = std::get_if<std::string>(&value);
      return text != nullptr && *text == cell.bytes;
    }
    case CellKind::blob: {
      const auto* blob = std::get_if<Blob>(&value);
      return blob != nullptr && blob->bytes == cell.bytes;
    }
  }
  return false;
}

}  // namespace store
