#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/string.h"

/// In which order the records of a table or query are shown, and which of them: up to two fields to order by,
/// and conditions that all hold. It is a value, which becomes a statement (toSql) and a text to be kept
/// (toText).
class Arrangement {
 public:
  /// Whether letter case is to be ignored, which it is in texts; numbers and dates have none.
  enum class Letters { ignoreCase, asTheyAre };

  struct Order {
    std::wstring field;
    bool isDescending = false;
    Letters letters = Letters::ignoreCase;
    bool operator==(const Order&) const = default;
  };

  /// A truth value is true or not: what the file holds for true is not the same everywhere.
  enum class Test { equal, containing, empty, notEmpty, isTrue, isFalse };
  struct Condition {
    /// None for a text that any field may contain.
    std::optional<std::wstring> field;
    Test test = Test::empty;
    /// Of Test::equal a literal of SQL, of Test::containing the text.
    std::wstring value;
    /// Of Test::equal how the user reads the value.
    std::wstring shown;
    Letters letters = Letters::ignoreCase;
    bool operator==(const Condition&) const = default;
  };

  bool isEmpty() const { return orders_.empty() && conditions_.empty(); }
  bool operator==(const Arrangement&) const = default;

  /// The first is what counts most.
  const std::vector<Order>& orders() const { return orders_; }
  const std::vector<Condition>& conditions() const { return conditions_; }
  /// Of this field; null when there is none.
  const Order* orderOf(std::wstring_view field) const;
  const Condition* conditionOf(std::wstring_view field) const;

  /// By this field alone.
  void orderBy(Order order);
  /// By this field where the first one is equal; the direction of the first one where it is that field. The
  /// first one when there is none.
  void thenBy(Order order);
  /// In the place of the condition on the same field, or on all of them.
  void require(Condition condition);

  /// The statement that has the records of `plain`, a SELECT, so; `isTable` where that is all of one table.
  /// `fields` are the fields in which a text is looked for that any of them may contain. `plain` itself when
  /// the arrangement is empty. A saved query keeps its own order where this one has none.
  std::wstring toSql(std::wstring_view plain, bool isTable, const std::vector<std::wstring>& fields) const;

  /// A statement that has the fields of `plain` and no record.
  static std::wstring withoutRecords(std::wstring_view plain);

  /// For the user, a line for the order and one for the conditions; empty when there is neither.
  std::wstring describe() const;

  /// In one line, without any character below the blank and without "|".
  std::wstring toText() const;
  /// Empty for anything that toText does not make.
  static Arrangement ofText(std::wstring_view text);

 private:
  std::vector<Order> orders_;
  std::vector<Condition> conditions_;
};
