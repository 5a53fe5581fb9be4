// What other programs have changed in the open file.
#include <algorithm>
#include <memory>
#include <utility>

#include "base/variant.h"
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
  const auto count = static_cast<std::uint32_t>(std::max(reopened->recordCount(), 0L));
  std::vector<std::uint32_t> found;
  // The first one last, so that it is current afterwards.
  for (auto each = positions.rbegin(); each != positions.rend(); ++each)
    found.insert(found.begin(), placeAmong(*reopened, count, *each));
  RecordSnapshot present;
  if (count != 0 && !found.empty()) {
    present = readFrom(*reopened, found.front(), false);
    if (!present.isReadable()) return present.outcome();
  }
  dropListRows();
  recordset_ = std::move(reopened);
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
    if (goToSame(others, count, position + step)) return static_cast<std::uint32_t>(others.position());
  }
  for (std::uint32_t step = 1; step <= kMostNeighbours && step < position; ++step) {
    if (goToSame(others, count, position - step)) return static_cast<std::uint32_t>(others.position());
  }
  const std::uint32_t place = std::clamp(position, 1u, count);
  others.move(static_cast<LONG>(place - 1), MoveOrigin::first);
  return place;
}

/// Makes the record current in `others` that stands at this position in the current recordset.
bool Database::goToSame(RecordsetHandle& others, std::uint32_t count, std::uint32_t position) {
  Variant bookmark;
  if (position == 0 || position > recordCount_ || !moveForList(position - 1) ||
      !listRows_->bookmark(bookmark))
    return false;
  // It is looked for from the present place outwards, and stands near its former one.
  others.move(static_cast<LONG>(std::min(position, count) - 1), MoveOrigin::first);
  return others.goTo(bookmark);
}

bool Database::isSameReading(const RecordSnapshot& one, const RecordSnapshot& other) {
  return one.isReadable() && other.isReadable() &&
         std::equal(one.fields().begin(), one.fields().end(), other.fields().begin(), other.fields().end(),
                    [](const FieldSnapshot& field, const FieldSnapshot& otherField) {
                      return isSameBeginning(field.read, otherField.read);
                    });
}
