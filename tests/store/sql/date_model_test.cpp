// Random statements on random dates in many forms, beside a plain model.
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

/// A date with a time in minutes, as the model has it; few of them, so that they often meet.
struct Moment {
  int day = 0;     // from 1 January 2000
  int minute = 0;  // of the day
  auto operator<=>(const Moment&) const = default;
};

class DateModelTest : public StoreTest {
 protected:
  int number(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
  template <class List>
  const auto& oneOf(const List& list) {
    return list[static_cast<std::size_t>(number(static_cast<int>(std::size(list))))];
  }

  Moment moment() {
    static constexpr std::array<int, 4> kMinutes = {0, 0, 1, 1439};
    return {number(40), oneOf(kMinutes)};
  }
  static int monthOf(const Moment& moment) { return moment.day < 31 ? 1 : 2; }
  static int dayOf(const Moment& moment) { return moment.day < 31 ? moment.day + 1 : moment.day - 30; }
  static std::string padded(int value) { return (value < 10 ? "0" : "") + std::to_string(value); }

  std::string isoForm(const Moment& moment) {
    const std::string day = "2000-" + padded(monthOf(moment)) + "-" + padded(dayOf(moment));
    const std::string time = padded(moment.minute / 60) + ":" + padded(moment.minute % 60);
    if (moment.minute == 0 && number(3) == 0) return day;
    static constexpr std::array<const char*, 7> kEnds = {"",        "Z",     ":00",     ":00Z",
                                                         ":00.000", ":00.0", ":00.0004"};
    return day + oneOf(std::array<const char*, 2>{" ", "T"}) + time + oneOf(kEnds);
  }

  std::string literal(const Moment& moment) {
    const std::string month = std::to_string(monthOf(moment));
    const std::string day = std::to_string(dayOf(moment));
    std::string text;
    switch (number(5)) {
      case 0:
        text = month + "/" + day + "/2000";
        break;
      case 1:
        text = "2000/" + padded(monthOf(moment)) + "/" + padded(dayOf(moment));
        break;
      case 2:
        text = month + "/" + day + "/00";
        break;
      case 3:
        text = month + "-" + day + "-2000";
        break;
      default:
        return quoted(isoForm(moment));
    }
    if (moment.minute != 0) {
      text += " " + std::to_string(moment.minute / 60) + ":" + padded(moment.minute % 60) +
              oneOf(std::array<const char*, 2>{"", ":00"});
    }
    return quoted(text);
  }
  std::string quoted(const std::string& text) {
    static constexpr std::array<std::array<const char*, 2>, 4> kQuotes = {
        {{"'", "'"}, {"\"", "\""}, {"('", "')"}, {"(('", "'))"}}};
    const auto& quotes = oneOf(kQuotes);
    return quotes[0] + text + quotes[1];
  }

  static bool holds(const std::string& op, const Moment& left, const Moment& right) {
    if (op == "<") return left < right;
    if (op == "<=") return left <= right;
    if (op == ">") return left > right;
    if (op == ">=") return left >= right;
    return (op == "<>" || op == "!=" || op == "IS NOT") != (left == right);
  }

  /// A condition on `column`, and which of the rows meet it; null meets none but IS NOT.
  std::string condition(const std::string& column, std::vector<bool>* met) {
    static const std::vector<std::string> kOps = {"=",  "==", "<>", "!=", "<",
                                                  "<=", ">",  ">=", "IS", "IS NOT"};
    static const std::vector<std::string> kMirrored = {"=",  "==", "<>", "!=", ">",
                                                       ">=", "<",  "<=", "IS", "IS NOT"};
    met->assign(rows_.size(), false);
    const auto fill = [&](auto&& meets) {
      for (std::size_t row = 0; row < rows_.size(); ++row) {
        if (rows_[row]) (*met)[row] = meets(*rows_[row]);
      }
    };
    const bool isNegated = number(2) == 0;
    switch (number(4)) {
      case 0: {
        const Moment low = moment();
        const Moment high = moment();
        fill([&](const Moment& value) { return isNegated != (low <= value && value <= high); });
        return column + (isNegated ? " NOT" : "") + " BETWEEN " + literal(low) + " AND " + literal(high);
      }
      case 1: {
        std::set<Moment> list;
        std::string text;
        for (int count = 1 + number(3); count > 0; --count) {
          const Moment element = moment();
          list.insert(element);
          text += (text.empty() ? "" : ", ") + literal(element);
        }
        fill([&](const Moment& value) { return isNegated != list.contains(value); });
        return column + (isNegated ? " NOT IN (" : " IN (") + text + ")";
      }
      default: {
        const std::size_t op = static_cast<std::size_t>(number(static_cast<int>(kOps.size())));
        const Moment other = moment();
        fill([&](const Moment& value) { return holds(kOps[op], value, other); });
        if (kOps[op] == "IS NOT") {
          for (std::size_t row = 0; row < rows_.size(); ++row) {
            if (!rows_[row]) (*met)[row] = true;
          }
        }
        if (isNegated) return literal(other) + " " + kMirrored[op] + " " + column;
        return column + " " + kOps[op] + " " + literal(other);
      }
    }
  }

  std::mt19937 random_{20260101};
  std::vector<std::optional<Moment>> rows_;  // by Id
};

TEST_F(DateModelTest, StatementsFindWhatTheModelFinds) {
  struct Place {
    std::string column;
    std::string head;  // up to the condition
    std::string tail;
  };
  const std::vector<Place> places = {
      {"Born", "SELECT Id FROM t WHERE ", ""},
      {"t.Born", "SELECT t.Id FROM u JOIN t USING (Id) WHERE u.Born = '1/1/2000' AND ", ""},
      {"x.[Born]", "SELECT x.Id FROM t AS x WHERE NOT NOT ", " AND 1"},
      {"d", "SELECT n FROM v WHERE ", ""},
      {"k", "SELECT Id FROM (SELECT Id, Born AS k FROM t) WHERE 0 OR ", ""},
      {"k", "SELECT Id, Born AS k FROM t WHERE (", ")"},
      {"c.k", "WITH c(Id, k) AS (SELECT n, d FROM v) SELECT c.Id FROM c WHERE ", ""},
      {"t.Born", "SELECT Id FROM t WHERE EXISTS (SELECT 1 FROM u WHERE u.Id = t.Id AND ", ")"},
      {"Born", "SELECT Id FROM u WHERE Id IN (SELECT Id FROM t WHERE ", ")"},
      {"t.Born", "SELECT t.Id FROM u LEFT JOIN t ON t.Id = u.Id AND ", " WHERE t.Id IS NOT NULL"},
      {"Born", "SELECT Id FROM t WHERE CASE WHEN ", " THEN 1 ELSE 0 END"}};

  for (int round = 0; round < 4; ++round) {
    backend_.reset();
    prepare("DROP VIEW IF EXISTS v; DROP TABLE IF EXISTS t; DROP TABLE IF EXISTS u");
    prepare(
        "CREATE TABLE t (Id INTEGER PRIMARY KEY, Born Date); CREATE TABLE u (Id Integer, Born Text);"
        "CREATE VIEW v AS SELECT Born AS d, Id AS n FROM t");
    if (round % 2 == 1) prepare("CREATE INDEX i ON t (Born)");
    rows_.clear();
    std::string values;
    for (int row = 0; row < 60; ++row) {
      rows_.push_back(number(10) == 0 ? std::nullopt : std::optional<Moment>(moment()));
      const std::string text = rows_.back() ? "'" + isoForm(*rows_.back()) + "'" : "NULL";
      values += (row == 0 ? "(" : ", (") + std::to_string(row) + ", " + text + ")";
    }
    prepare("INSERT INTO t VALUES " + values);
    // The other table's column of the same name holds a text that is no date.
    prepare("INSERT INTO u SELECT Id, '1/1/2000' FROM t");
    open();
    for (int trial = 0; trial < 150; ++trial) {
      const Place& place = oneOf(places);
      std::vector<bool> met;
      const std::string sql = place.head + condition(place.column, &met) + place.tail;
      std::vector<std::string> found;
      const auto recordset = records(sql);
      ASSERT_NE(nullptr, recordset);
      while (!recordset->isEof()) {
        found.push_back(textOf(*recordset, 0));
        ASSERT_TRUE(recordset->moveNext());
      }
      std::vector<std::string> expected;
      for (std::size_t row = 0; row < met.size(); ++row) {
        if (met[row]) expected.push_back(std::to_string(row));
      }
      std::sort(found.begin(), found.end());
      std::sort(expected.begin(), expected.end());
      ASSERT_EQ(found, expected) << sql;
    }
  }
}

}  // namespace
}  // namespace store
