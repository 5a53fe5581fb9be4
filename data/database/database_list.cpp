// The rows of the list.
#include <algorithm>
#include <limits>

#include "data/database/database.h"
#include "data/handles/recordset_handle.h"
#include "data/values/field_kinds.h"

namespace {

/// Far more than a cell shows.
constexpr LONG kMostListedBytes = 10'000;

}  // namespace

void Database::expectListRows(std::uint32_t row, std::uint32_t count) {
  if (prepareListRows()) listRows_->readAhead(static_cast<LONG>(row) + 1, static_cast<LONG>(count));
}

bool Database::moveForList(std::uint32_t row) {
  if (!prepareListRows()) return false;
  const LONG distance = static_cast<LONG>(row - listPosition_ + 1);
  // The list position says nothing about a cursor that was just made, or whose last move failed.
  const bool moved = isAtListPosition_ && distance != 0
                         ? listRows_->move(distance, MoveOrigin::current)
                         : listRows_->move(static_cast<LONG>(row), MoveOrigin::first);
  isAtListPosition_ = moved;
  if (moved) listPosition_ = row + 1;
  return moved;
}

Outcome Database::readForList(std::uint32_t row, std::uint32_t field, String& text) {
  if (!prepareListRows()) return Outcome::failure(L"No records are open.");
  if (field >= fieldCount_ || static_cast<LONG>(row) >= listRows_->recordCount()) {
    text.clear();
    return {};
  }
  const bool isAtRow = isAtListPosition_ && listPosition_ == row + 1;
  if (!isAtRow && !moveForList(row)) return Outcome::failure(L"The record can't be reached.");
  ValueBeginning beginning;
  Outcome read = listRows_->field(static_cast<LONG>(field)).readBeginning(kMostListedBytes, beginning);
  if (read) {
    text = textOfBeginning(fieldType(field), beginning);
  } else {
    isAtListPosition_ = false;  // a move back to it reads it anew
  }
  return read;
}

Outcome Database::readRowText(std::uint32_t row, std::wstring& text) {
  if (!prepareListRows() || !moveForList(row)) return Outcome::failure(L"The record can't be reached.");
  std::wstring line;
  std::wstring value;
  for (std::uint32_t field = 0; field < fieldCount_; ++field) {
    if (Outcome read = listRows_->field(static_cast<LONG>(field)).readSeparated(value); !read) {
      isAtListPosition_ = false;  // a move back to it reads it anew
      return read;
    }
    if (field != 0) line += L'\t';
    line += value;
  }
  text = line + L"\r\n";
  return {};
}

Outcome Database::readLiteral(std::uint32_t row, std::uint32_t field, std::uint32_t mostBytes,
                              std::wstring& text) {
  if (!prepareListRows() || !moveForList(row)) return Outcome::failure(L"The record can't be reached.");
  Outcome read = listRows_->field(static_cast<LONG>(field)).readLiteral(static_cast<LONG>(mostBytes), text);
  if (!read) isAtListPosition_ = false;  // a move back to it reads it anew
  return read;
}

RecordSnapshot Database::readListRecord(std::uint32_t row) {
  if (!prepareListRows() || !moveForList(row)) {
    return {row + 1, Outcome::failure(L"The record can't be reached.")};
  }
  return readFrom(*listRows_, row + 1, false);
}

void Database::beginRowSearch(std::uint32_t field, const String& text) {
  // What is shown of other fields is not what the store looks at.
  const bool isText = field < fieldCount_ && fieldKind(fieldType(field)).editor == FieldEditorKind::text;
  if ((isText || isNumeric(field)) && prepareListRows())
    listRows_->beginTextSearch(text.text(), static_cast<LONG>(field), false);
}

std::uint32_t Database::passOverRows(std::uint32_t row, std::uint32_t most, std::uint32_t milliseconds) {
  if (!moveForList(row)) return 0;
  constexpr std::uint32_t kMost = std::numeric_limits<LONG>::max();
  const LONG passed =
      listRows_->passOver(static_cast<LONG>(std::min(most, kMost)), static_cast<LONG>(milliseconds));
  if (passed <= 0) return 0;
  isAtListPosition_ = false;
  return static_cast<std::uint32_t>(passed);
}

void Database::endRowSearch() {
  if (listRows_) listRows_->endTextSearch();
}

/// A new record that a move has stored is in the recordset and not in the copy.
bool Database::prepareListRows() {
  if (listRows_ && listRows_->recordCount() != recordset_->recordCount()) dropListRows();
  if (!listRows_) {
    listRows_ = recordset_->clone();
    isAtListPosition_ = false;
  }
  return listRows_ != nullptr;
}

void Database::dropListRows() {
  listRows_.reset();
  isAtListPosition_ = false;
}
