#include "platform/store/odbc/sources/server_result_rows.h"

#include <algorithm>

namespace store {

namespace {

// As long as it is not known how large they are.
constexpr std::size_t kFirstRows = 16;

/// How large a row is, on the average; at least 1.
std::size_t bytesOfRows(const Answer& answer) {
  std::size_t bytes = 0;
  for (const AnswerRow& row : answer) {
    for (const std::optional<std::string>& value : row) bytes += value ? value->size() : 0;
  }
  return answer.empty() ? 1 : std::max<std::size_t>(bytes / answer.size(), 1);
}

/// A row's place is all that tells it from others.
Key keyOf(std::size_t place) {
  return static_cast<std::int64_t>(place);
}

Status readOnlyRows() {
  return {ErrorCode::readOnly, "The records of this statement can only be read."};
}

}  // namespace

void setRow(const std::vector<ValueForm>& forms, const AnswerRow& values, Row* row) {
  row->clear();
  for (std::size_t index = 0; index < forms.size(); ++index) addServerValue(forms[index], values[index], row);
}

Status ServerResultRows::take(const std::string& select) {
  if (Status status = cursor_.open(select, columns_.size()); !status) return status;
  return cursor_.count(&count_);
}

Status ServerResultRows::readKeys(KeySet* keys, std::size_t* count) {
  KeySet read(KeySet::Kind::rowId);
  for (std::int64_t number = 1; number <= count_; ++number) read.append(number);
  *count = read.count();
  *keys = std::move(read);
  return {};
}

Status ServerResultRows::fetch(const KeySet& keys, std::size_t index, Row* row) {
  row->clear();
  const auto place = static_cast<std::size_t>(keys.rowIdAt(index) - 1);
  RowsAhead::FoundRow found;
  // What it shows doesn't change any more.
  constexpr std::uint64_t kNoChanges = 0;
  if (!ahead_.take(place, keyOf(place), kNoChanges, &found)) {
    const std::size_t most =
        rowBytes_ == 0 ? kFirstRows
                       : std::clamp<std::size_t>(RowsAhead::kMostBytes / rowBytes_, 1, RowsAhead::kMostRows);
    const RowsAhead::Block block = ahead_.blockFor(place, static_cast<std::size_t>(count_), most);
    Answer answer;
    if (Status status = cursor_.readFrom(static_cast<std::int64_t>(block.first), block.count, &answer);
        !status) {
      return status;
    }
    rowBytes_ = bytesOfRows(answer);
    std::vector<RowsAhead::FoundRow> rows;
    for (AnswerRow& values : answer) {
      const Key key = keyOf(block.first + rows.size());
      rows.push_back({RowsAhead::FoundRow::State::found, std::move(values), key});
    }
    found = ahead_.keep(block.first, std::move(rows), place, kNoChanges);
  }
  if (found.state != RowsAhead::FoundRow::State::found)
    return {ErrorCode::noCurrentRecord, "There is no such record."};
  setRow(forms_, found.values, row);
  return {};
}

std::unique_ptr<RowScan> ServerResultRows::makeScan(RowTest& test) {
  return makeFetchingScan(*this, test);
}

Status ServerResultRows::insert(const std::vector<Change>&, KeySet*) {
  return readOnlyRows();
}
Status ServerResultRows::update(const std::vector<Change>&, KeySet*, std::size_t, const Row&) {
  return readOnlyRows();
}
Status ServerResultRows::remove(KeySet*, std::size_t, const Row*) {
  return readOnlyRows();
}

}  // namespace store
