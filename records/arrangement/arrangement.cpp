#include "records/arrangement/arrangement.h"

#include <algorithm>
#include <utility>

#include "records/arrangement/statement_parts.h"

namespace {

std::wstring quoted(std::wstring_view text) {
  std::wstring all = L"'";
  for (const wchar_t unit : text) {
    all += unit;
    if (unit == L'\'') all += unit;
  }
  return all + L"'";
}

std::wstring folded(const std::wstring& expression, Arrangement::Letters letters) {
  return letters == Arrangement::Letters::ignoreCase ? L"quivane_fold(" + expression + L")" : expression;
}

/// A function takes a hundred arguments on every build of SQLite.
constexpr std::size_t kMostValues = 90;

std::wstring anyContains(const std::wstring& text, const std::vector<std::wstring>& fields) {
  if (fields.empty()) return L"0";
  std::wstring all;
  for (std::size_t first = 0; first < fields.size(); first += kMostValues) {
    all += (first == 0 ? L"" : L" OR ");
    all += L"quivane_contains(" + quoted(text);
    const std::size_t end = std::min(fields.size(), first + kMostValues);
    for (std::size_t field = first; field < end; ++field) all += L", " + fieldName(fields[field]);
    all += L")";
  }
  return fields.size() > kMostValues ? L"(" + all + L")" : all;
}

std::wstring conditionSql(const Arrangement::Condition& condition, const std::vector<std::wstring>& fields) {
  if (!condition.field) return anyContains(condition.value, fields);
  const std::wstring name = fieldName(*condition.field);
  switch (condition.test) {
    case Arrangement::Test::equal:
      return folded(name, condition.letters) + L" = " + folded(condition.value, condition.letters);
    case Arrangement::Test::containing:
      return L"quivane_contains(" + quoted(condition.value) + L", " + name + L")";
    // Not even the order in which its field compares texts is needed for that.
    case Arrangement::Test::empty:
      return L"ifnull(" + name + L", '') IN ('', x'')";
    case Arrangement::Test::notEmpty:
      return L"ifnull(" + name + L", '') NOT IN ('', x'')";
    case Arrangement::Test::isTrue:
      return L"ifnull(" + name + L", 0) <> 0";
    case Arrangement::Test::isFalse:
      return L"ifnull(" + name + L", 0) = 0";
  }
  return L"1";
}

/// The line end is that of a comment with which a query may end (withoutEnd).
std::wstring inParentheses(std::wstring_view sql) {
  return L"SELECT * FROM (" + withoutEnd(sql) + L"\n)";
}

std::wstring describeCondition(const Arrangement::Condition& condition) {
  const std::wstring subject = condition.field ? *condition.field : L"any column";
  switch (condition.test) {
    case Arrangement::Test::equal:
      return subject + L" is '" + condition.shown + L"'";
    case Arrangement::Test::containing:
      return subject + L" contains '" + condition.value + L"'";
    case Arrangement::Test::empty:
      return subject + L" is empty";
    case Arrangement::Test::notEmpty:
      return subject + L" is not empty";
    case Arrangement::Test::isTrue:
      return subject + L" is 'True'";
    case Arrangement::Test::isFalse:
      return subject + L" is 'False'";
  }
  return {};
}

}  // namespace

const Arrangement::Order* Arrangement::orderOf(std::wstring_view field) const {
  const auto found =
      std::find_if(orders_.begin(), orders_.end(), [&](const Order& order) { return order.field == field; });
  return found == orders_.end() ? nullptr : &*found;
}

const Arrangement::Condition* Arrangement::conditionOf(std::wstring_view field) const {
  const auto found = std::find_if(conditions_.begin(), conditions_.end(),
                                  [&](const Condition& condition) { return condition.field == field; });
  return found == conditions_.end() ? nullptr : &*found;
}

void Arrangement::orderBy(Order order) {
  orders_.clear();
  orders_.push_back(std::move(order));
}

void Arrangement::thenBy(Order order) {
  if (!orders_.empty() && orders_.front().field != order.field) orders_.resize(1);
  if (!orders_.empty() && orders_.front().field == order.field) {
    orders_.front() = std::move(order);
  } else {
    orders_.push_back(std::move(order));
  }
}

void Arrangement::require(Condition condition) {
  const auto same = std::find_if(conditions_.begin(), conditions_.end(),
                                 [&](const Condition& other) { return other.field == condition.field; });
  if (same == conditions_.end()) {
    conditions_.push_back(std::move(condition));
  } else {
    *same = std::move(condition);
  }
}

std::wstring Arrangement::withoutRecords(std::wstring_view plain) {
  return inParentheses(plain) + L" WHERE 0";
}

std::wstring Arrangement::toSql(std::wstring_view plain, bool isTable,
                                const std::vector<std::wstring>& fields) const {
  if (isEmpty()) return std::wstring(plain);
  std::wstring sql = isTable ? std::wstring(plain) : inParentheses(plain);
  for (std::size_t number = 0; number < conditions_.size(); ++number) {
    sql += number == 0 ? L" WHERE " : L" AND ";
    sql += conditionSql(conditions_[number], fields);
  }
  for (std::size_t number = 0; number < orders_.size(); ++number) {
    sql += number == 0 ? L" ORDER BY " : L", ";
    sql += folded(fieldName(orders_[number].field), orders_[number].letters);
    if (orders_[number].isDescending) sql += L" DESC";
  }
  return sql;
}

std::wstring Arrangement::describe() const {
  std::wstring text;
  for (std::size_t number = 0; number < orders_.size(); ++number) {
    text += number == 0 ? L"Ordered by " : L", then by ";
    text += orders_[number].field;
    if (orders_[number].isDescending) text += L" (descending)";
  }
  for (std::size_t number = 0; number < conditions_.size(); ++number) {
    if (number == 0) text += text.empty() ? L"Only where " : L"\nOnly where ";
    if (number != 0) text += L" and ";
    text += describeCondition(conditions_[number]);
  }
  return text;
}
