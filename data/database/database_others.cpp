// What other programs have changed in the open file.
#include <algorithm>
#include <memory>
#include <utility>

#include "data/database/database.h"
#include "data/handles/connection_handle.h"
#include "data/handles/recordset_handle.h"

bool Database::othersHaveChanged() {
  std::int64_t count = 0;
  if (!isOpen_ || !connection_->countOthersChanges(count)) return false;
  return std::exchange(othersChanges_, count) != count;
}

/// Of a file that was just opened.
void Database::rememberOthersChanges() {
  othersChanges_.reset();
  othersHaveChanged();
}

Outcome Database::reopenInPlace(std::vector<std::uint32_t>& positions, RecordSnapshot& read) {
  // Nobody is told of either.
  if (newRecordPending_) return Outcome::failure(String());
  auto reopened = std::make_unique<RecordsetHandle>();
  if (Outcome opened =
          reopened->open(recordsetSql_.text(), connection_.get(), CursorType::keyset, SourceKind::text);
      !opened) {
    return opened;
  }
  if (!hasSameFields(*reopened)) {
    return Outcome::failure(String(), Outcome::Cause::structureChanged);
  }
  const std::uint32_t count = countOf(*reopened);
  std::vector<std::uint32_t> found;
  // The first one last, so that it is current afterwards.
  for (auto each = positions.rbegin(); each != positions.rend(); ++each)
    found.insert(found.begin(), placeAmong(*reopened, count, *each));
  RecordSnapshot present;
  if (count != 0 && !found.empty()) {
    present = readFrom(*reopened, found.front(), false);
    if (!present.isReadable()) return present.outcome();
  }
  takeInPlace(std::move(reopened));
  setRecordCount(count);
  positions.swap(found);
  read = std::move(present);
  return {};
}

/// Leaves that record current in `others`.
std::uint32_t Database::placeAmong(RecordsetHandle& others, std::uint32_t count, std::uint32_t position) {
  // To look for one that is gone takes a look at each key.
  constexpr std::uint32_t kMostNeighbours = 8;
  if (count == 0) return 0;
  // The one behind a record that is gone has moved up into its place.
  for (std::uint32_t step = 0; step <= kMostNeighbours; ++step) {
    const std::uint32_t at = position + step;
    if (const std::uint32_t found = findAgain(others, markRecord(at), at); found != 0) return found;
  }
  for (std::uint32_t step = 1; step <= kMostNeighbours && step < position; ++step) {
    const std::uint32_t at = position - step;
    if (const std::uint32_t found = findAgain(others, markRecord(at), at); found != 0) return found;
  }
  const std::uint32_t place = std::clamp(position, 1u, count);
  others.move(static_cast<LONG>(place - 1), MoveOrigin::first);
  return place;
}

bool Database::isSameReading(const RecordSnapshot& one, const RecordSnapshot& other) {
  return one.isReadable() && other.isReadable() &&
         std::equal(one.fields().begin(), one.fields().end(), other.fields().begin(), other.fields().end(),
                    [](const FieldSnapshot& field, const FieldSnapshot& otherField) {
                      return isSameBeginning(field.read, otherField.read);
                    });
}
