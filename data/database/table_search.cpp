#include "data/database/table_search.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>

#include "data/database/sql_names.h"
#include "data/handles/recordset_handle.h"
#include "data/values/field_kinds.h"

namespace {

/// Of the value before the text and in all.
constexpr std::size_t kMostBefore = 20;
constexpr std::size_t kMostShown = 80;

std::wstring excerptOf(const String& value, std::size_t place) {
  const std::wstring whole = value.text();
  const std::size_t first = place > kMostBefore ? place - kMostBefore : 0;
  std::wstring part = whole.substr(first, kMostShown);
  for (wchar_t& unit : part) {
    if (unit < L' ') unit = L' ';
  }
  if (first > 0) part.insert(0, L"...");
  if (first + kMostShown < whole.size()) part += L"...";
  return part;
}

}  // namespace

TableSearch::TableSearch() : records_(std::make_unique<RecordsetHandle>()) {}

TableSearch::~TableSearch() = default;

Outcome TableSearch::begin(const ConnectionHandle& connection, const String& table, const String& text) {
  const std::wstring sql = L"Select * from " + selectedName(table);
  Outcome opened = records_->open(sql.c_str(), &connection, CursorType::keyset, SourceKind::text);
  if (!opened) return opened;
  text_ = text;
  text_.toUpperCase();
  position_ = 1;
  count_ = static_cast<std::uint32_t>(std::max(records_->recordCount(), 0L));
  // Where the components have no search of their own each record is tested.
  records_->beginTextSearch(text.text(), std::nullopt, false);
  return opened;
}

Outcome TableSearch::step(std::uint32_t milliseconds, std::vector<Match>& matches) {
  if (isOver()) return {};
  constexpr LONG kMost = 1'000'000'000;
  const auto left = static_cast<LONG>(std::min<std::uint32_t>(count_ - position_ + 1, kMost));
  const LONG passed = records_->passOver(left, static_cast<LONG>(milliseconds));
  position_ += static_cast<std::uint32_t>(std::max(passed, 0L));
  if (isOver()) return {};
  Outcome matched = matchRecord(matches);
  // One that another program has deleted meanwhile holds nothing.
  if (!matched && matched.cause() != Outcome::Cause::recordGone) {
    position_ = count_ + 1;
    return matched;
  }
  ++position_;
  records_->moveNext();
  return {};
}

Outcome TableSearch::matchRecord(std::vector<Match>& matches) {
  const LONG count = records_->fieldCount();
  for (LONG index = 0; index < count; ++index) {
    FieldHandle& field = records_->field(index);
    const FieldKind& kind = fieldKind(FieldType{field.type()});
    if (!kind.isSearched) continue;
    Variant value;
    if (Outcome read = field.read(value); !read) return read;
    const String shown = kind.textOf(value);
    String capitals = shown;
    capitals.toUpperCase();
    const std::ptrdiff_t place = capitals.find(text_.text());
    if (place < 0) continue;
    matches.push_back({position_, field.name(), excerptOf(shown, static_cast<std::size_t>(place))});
  }
  return {};
}
