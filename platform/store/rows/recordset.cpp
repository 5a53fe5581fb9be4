#include "platform/store/rows/recordset.h"

#include <algorithm>
#include <utility>

namespace store {

namespace {

// What a position says of the places that have none (the automation family's PositionEnum).
constexpr std::int64_t kPositionUnknown = -1;
constexpr std::int64_t kPositionBof = -2;
constexpr std::int64_t kPositionEof = -3;

Status noCurrentRecord(const char* message) {
  return {ErrorCode::noCurrentRecord, message};
}

bool sameNameAnyCase(std::string_view left, std::string_view right) {
  const auto lower = [](char sign) {
    return sign >= 'A' && sign <= 'Z' ? static_cast<char>(sign + 32) : sign;
  };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char a, char b) { return lower(a) == lower(b); });
}

Cell cellOf(const Value& value) {
  struct Maker {
    Cell operator()(std::monostate) const { return {}; }
    Cell operator()(std::int64_t integer) const {
      return {.kind = CellKind::integer, .integer = integer, .bytes = {}};
    }
    Cell operator()(double real) const { return {.kind = CellKind::real, .real = real, .bytes = {}}; }
    Cell operator()(const std::string& text) const { return {.kind = CellKind::text, .bytes = text}; }
    Cell operator()(const Blob& blob) const { return {.kind = CellKind::blob, .bytes = blob.bytes}; }
  };
  return std::visit(Maker{}, value);
}

}  // namespace

Recordset::Recordset(std::shared_ptr<Backend> backend, std::unique_ptr<RowSource> rows, CursorType cursor,
                     LockType lock)
    : Recordset(std::move(backend), std::shared_ptr<RowSource>(std::move(rows)), cursor, lock) {}

Recordset::Recordset(std::shared_ptr<Backend> backend, std::shared_ptr<RowSource> rows, CursorType cursor,
                     LockType lock)
    : backend_(std::move(backend)), rows_(std::move(rows)), cursor_(cursor), lock_(lock) {}

Recordset::~Recordset() = default;

Status Recordset::load() {
  std::size_t count = 0;
  if (Status status = rows_->readKeys(&keys_, &count); !status) return status;
  missingCount_ = count - keys_.count();
  goTo(0);
  return {};
}

Status Recordset::clone(std::unique_ptr<Recordset>* copy) {
  if (Status status = needAllKeys(); !status) return status;
  std::unique_ptr<Recordset> made(new Recordset(backend_, rows_, cursor_, lock_));
  made->keys_ = keys_.clone();
  made->goTo(0);
  *copy = std::move(made);
  return {};
}

Status Recordset::needKeys(std::size_t count) {
  if (missingCount_ == 0 || keys_.count() >= count) return {};
  const std::size_t before = keys_.count();
  Status status = rows_->readMoreKeys(&keys_, count);
  missingCount_ -= std::min(missingCount_, keys_.count() - before);
  return status;
}

Status Recordset::findKey(const Key& key, std::size_t* found) {
  *found = keys_.find(key, index_);
  if (*found != KeySet::npos || missingCount_ == 0) return {};
  if (Status status = needAllKeys(); !status) return status;
  *found = keys_.find(key, index_);
  return {};
}

std::optional<std::size_t> Recordset::columnIndex(std::string_view name) const {
  const std::vector<Column>& all = columns();
  auto found =
      std::find_if(all.begin(), all.end(), [&](const Column& column) { return column.name == name; });
  if (found == all.end()) {
    found = std::find_if(all.begin(), all.end(),
                         [&](const Column& column) { return sameNameAnyCase(column.name, name); });
  }
  if (found == all.end()) return std::nullopt;
  return static_cast<std::size_t>(found - all.begin());
}

EditMode Recordset::editMode() const {
  if (place_ == Place::adding) return EditMode::adding;
  return changes_.empty() ? EditMode::none : EditMode::inProgress;
}

bool Recordset::isBof() const {
  return place_ == Place::bof || (place_ == Place::eof && recordCount() == 0);
}

bool Recordset::isEof() const {
  return place_ == Place::eof || (place_ == Place::bof && recordCount() == 0);
}

std::int64_t Recordset::position() const {
  switch (place_) {
    case Place::row:
      return static_cast<std::int64_t>(index_) + 1;
    case Place::bof:
      return kPositionBof;
    case Place::eof:
      return kPositionEof;
    default:
      return kPositionUnknown;
  }
}

Status Recordset::setPosition(std::int64_t position) {
  if (position < 1 || position > recordCount()) {
    return {ErrorCode::invalidArgument, "There is no record at this position."};
  }
  return move(position - 1, MoveOrigin::first);
}

void Recordset::readAhead(std::int64_t position, std::int64_t count) {
  const std::int64_t last = recordCount();
  if (count < 1 || position > last) return;
  const std::int64_t first = std::max<std::int64_t>(position, 1);
  // By differences, as the sum of both may be too large for their type.
  const std::int64_t skipped = first - std::max<std::int64_t>(position, first - count);
  const std::int64_t wanted = std::min(count - skipped, last - first + 1);
  if (wanted > 0) rows_->expect(static_cast<std::size_t>(first - 1), static_cast<std::size_t>(wanted));
}

// `index` may lie outside the records: -1 is BOF, the count is EOF.
void Recordset::goTo(std::int64_t index) {
  rowFetched_ = false;
  if (index < 0) {
    place_ = Place::bof;
    index_ = 0;
  } else if (index >= recordCount()) {
    place_ = Place::eof;
    index_ = static_cast<std::size_t>(recordCount());
  } else {
    place_ = Place::row;
    index_ = static_cast<std::size_t>(index);
  }
}

// Before a move: what was written is stored; a new record into which nothing was written is dropped.
Status Recordset::leaveRecord() {
  if (!changes_.empty()) return update();
  if (place_ == Place::adding) return cancelUpdate();
  return {};
}

Status Recordset::requireBackwards() const {
  if (cursor_ != CursorType::forwardOnly) return {};
  return {ErrorCode::illegalOperation, "A forward-only recordset can't move backwards."};
}

Status Recordset::moveFirst() {
  return move(0, MoveOrigin::first);
}

Status Recordset::moveLast() {
  return move(0, MoveOrigin::last);
}

Status Recordset::moveNext() {
  return move(1, MoveOrigin::current);
}

Status Recordset::movePrevious() {
  return move(-1, MoveOrigin::current);
}

Status Recordset::move(std::int64_t count, MoveOrigin origin) {
  const bool backwards = count < 0 || origin == MoveOrigin::last;
  if (backwards) {
    if (Status status = requireBackwards(); !status) return status;
  }
  if (Status status = leaveRecord(); !status) return status;
  const bool leavesDeleted = place_ == Place::deleted && origin == MoveOrigin::current && count != 0;
  if (recordCount() == 0 && !leavesDeleted) {
    if (place_ == Place::deleted && origin != MoveOrigin::current) goTo(0);
    return noCurrentRecord("There are no records.");
  }
  if (origin == MoveOrigin::current) {
    if (place_ == Place::bof && count < 0) return noCurrentRecord("Before the first record.");
    if (place_ == Place::eof && count > 0) return noCurrentRecord("Behind the last record.");
    if (place_ == Place::deleted && count == 0) return {};
  }
  // A count near the limits of its type still means "past the end".
  const std::int64_t limit = recordCount() + 1;
  goTo(indexOf(origin, count > 0) + std::clamp(count, -limit, limit));
  return {};
}

std::int64_t Recordset::indexOf(MoveOrigin origin, bool forwards) const {
  if (origin == MoveOrigin::first) return 0;
  if (origin == MoveOrigin::last) return recordCount() - 1;
  if (place_ == Place::bof) return -1;
  const auto index = static_cast<std::int64_t>(index_);
  // The record behind a deleted one has already moved up into its place.
  return place_ == Place::deleted && forwards ? index - 1 : index;
}

Status Recordset::moveFromBookmark(std::int64_t count, std::string_view bookmark) {
  if (Status status = requireBackwards(); !status) return status;
  const std::optional<Key> key = keyOfBookmark(bookmark);
  std::size_t found = KeySet::npos;
  if (key) {
    if (Status status = findKey(*key, &found); !status) return status;
  }
  if (found == KeySet::npos) return {ErrorCode::invalidArgument, "The bookmark names no record."};
  if (Status status = leaveRecord(); !status) return status;
  // Storing a record moves no other.
  const std::int64_t limit = recordCount() + 1;
  goTo(static_cast<std::int64_t>(found) + std::clamp(count, -limit, limit));
  return {};
}

std::int64_t Recordset::positionOf(const RecordAddress& record) {
  if (!sameNameAnyCase(rows_->table(), record.table)) return 0;
  std::size_t found = KeySet::npos;
  return findKey(record.key, &found) && found != KeySet::npos ? static_cast<std::int64_t>(found) + 1 : 0;
}

Status Recordset::bookmark(std::string* bookmark) {
  if (place_ != Place::row) return noCurrentRecord("There is no current record.");
  if (Status status = needKeys(index_ + 1); !status) return status;
  *bookmark = bookmarkOf(keys_.keyAt(index_));
  return {};
}

Status Recordset::setBookmark(std::string_view bookmark) {
  return moveFromBookmark(0, bookmark);
}

Status Recordset::fetchRow() {
  switch (place_) {
    case Place::row:
      break;
    case Place::deleted:
      return noCurrentRecord("The record was deleted.");
    default:
      return noCurrentRecord("There is no current record.");
  }
  if (rowFetched_) return {};
  if (Status status = needKeys(index_ + 1); !status) return status;
  Status status = rows_->fetch(keys_, index_, &row_);
  rowFetched_ = static_cast<bool>(status);
  return status;
}

const Value* Recordset::pendingValue(std::size_t column) const {
  for (const Change& change : changes_) {
    if (change.column == column) return &change.value;
  }
  return nullptr;
}

Status Recordset::cell(std::size_t column, Cell* cell) {
  if (column >= columns().size()) return {ErrorCode::itemNotFound, "There is no such field."};
  if (const Value* pending = pendingValue(column)) {
    *cell = cellOf(*pending);
    return {};
  }
  if (place_ == Place::adding) {
    *cell = {};
    return {};
  }
  if (Status status = fetchRow(); !status) return status;
  *cell = row_.at(column);
  return {};
}

Status Recordset::setValue(std::size_t column, Value value) {
  if (column >= columns().size()) return {ErrorCode::itemNotFound, "There is no such field."};
  Cell stored;
  if (place_ != Place::adding) {
    if (Status status = fetchRow(); !status) return status;
    stored = row_.at(column);
  }
  const auto change = std::find_if(changes_.begin(), changes_.end(),
                                   [&](const Change& other) { return other.column == column; });
  if (sameValue(stored, value)) {
    if (change != changes_.end()) changes_.erase(change);
    return {};
  }
  if (lock_ == LockType::readOnly || !rows_->isUpdatable() || !columns()[column].updatable) {
    return {ErrorCode::readOnly, "The field " + columns()[column].name + " can't be written."};
  }
  if (change != changes_.end()) {
    change->value = std::move(value);
  } else {
    changes_.push_back({column, std::move(value)});
  }
  return {};
}

Status Recordset::addNew() {
  if (!isUpdatable()) return {ErrorCode::readOnly, "The records can only be read."};
  if (Status status = leaveRecord(); !status) return status;
  placeBeforeAdd_ = place_;
  indexBeforeAdd_ = index_;
  place_ = Place::adding;
  rowFetched_ = false;
  return {};
}

Status Recordset::update() {
  if (place_ == Place::adding) {
    // The new one stands behind all of them.
    if (Status status = needAllKeys(); !status) return status;
    if (Status status = rows_->insert(changes_, &keys_); !status) return status;
    ++keyChanges_;
    changes_.clear();
    goTo(recordCount() - 1);
    return {};
  }
  if (changes_.empty()) return {};
  if (Status status = rows_->update(changes_, &keys_, index_, row_); !status) return status;
  ++keyChanges_;
  changes_.clear();
  rowFetched_ = false;
  return {};
}

Status Recordset::cancelUpdate() {
  // What kept the changes from being stored may be that the row is not what it was.
  if (!changes_.empty()) rowFetched_ = false;
  changes_.clear();
  if (place_ == Place::adding) {
    place_ = placeBeforeAdd_;
    index_ = indexBeforeAdd_;
    rowFetched_ = false;
  }
  return {};
}

Status Recordset::passOver(RowScan& scan, std::int64_t most, RowScan::Clock::time_point until,
                           std::int64_t* passed) {
  *passed = 0;
  if (place_ != Place::row || !changes_.empty() || most <= 0) return {};
  const std::size_t last =
      index_ + static_cast<std::size_t>(std::min(most, recordCount() - static_cast<std::int64_t>(index_)));
  if (Status status = needKeys(last); !status) return status;
  std::size_t next = index_;
  Status status = scan.passOver(keys_, index_, last, until, &next);
  *passed = static_cast<std::int64_t>(next - index_);
  if (*passed > 0) goTo(static_cast<std::int64_t>(next));
  return status;
}

Status Recordset::remove() {
  if (!isUpdatable()) return {ErrorCode::readOnly, "The records can only be read."};
  if (place_ == Place::adding) return cancelUpdate();
  if (place_ != Place::row) return noCurrentRecord("There is no record to delete.");
  if (Status status = needKeys(index_ + 1); !status) return status;
  if (Status status = rows_->remove(&keys_, index_, rowFetched_ ? &row_ : nullptr); !status) return status;
  ++keyChanges_;
  changes_.clear();
  rowFetched_ = false;
  place_ = Place::deleted;
  return {};
}

}  // namespace store
