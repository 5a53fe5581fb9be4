// Changes, takings back, doings again and other programs' writes at random, beside a model.
#include <algorithm>
#include <map>
#include <optional>
#include <random>

#include "tests/store/sqlite/history_fixture.h"

namespace store {
namespace {

using Way = ChangeHistory::Way;

// Each use of a file takes long under Wine.
constexpr int kSteps = std::filesystem::path::preferred_separator == '/' ? 5000 : 600;
constexpr std::int64_t kMostKeys = 9;

struct Record {
  std::string text;
  std::int64_t number = 0;
  bool operator==(const Record&) const = default;
};

/// The rows of a table by their keys: row ids, and in the table without them two digits of one number.
using Rows = std::map<std::int64_t, Record>;
using Tables = std::map<std::string, Rows>;

/// One row before and behind a step.
struct RowChange {
  std::string table;
  std::int64_t key = 0;
  std::optional<Record> before;
  std::optional<Record> behind;
};
using Step = std::vector<RowChange>;

class HistoryWalkTest : public HistoryTest {
 protected:
  void begin(const std::string& mode) {
    remake("PRAGMA journal_mode=" + mode +
           "; CREATE TABLE free(a TEXT, b INTEGER);"
           "CREATE TABLE keyed(a TEXT, b INTEGER, k INTEGER PRIMARY KEY);"
           "CREATE TABLE pairs(a TEXT, b INTEGER, x INTEGER, y INTEGER, PRIMARY KEY(y, x)) WITHOUT ROWID;"
           "CREATE TABLE log(a TEXT, b INTEGER, n INTEGER PRIMARY KEY);"
           "CREATE TRIGGER note AFTER UPDATE ON keyed BEGIN INSERT INTO log(a, b) VALUES(old.a, new.b); END");
    tables_ = {{"free", {}}, {"keyed", {}}, {"pairs", {}}, {"log", {}}};
    done_.clear();
    undone_.clear();
    openKeeping();
  }

  std::int64_t upTo(std::int64_t most) {
    return std::uniform_int_distribution<std::int64_t>(0, most)(random_);
  }
  Record anyRecord() { return {"text " + std::to_string(upTo(5)), upTo(3)}; }
  std::string anyTable() {
    return std::array{"free", "keyed", "pairs"}.at(static_cast<std::size_t>(upTo(2)));
  }
  std::int64_t keyFor(const std::string& table) {
    const Rows& rows = tables_.at(table);
    if (table == "pairs") return upTo(kMostKeys) * 10 + upTo(kMostKeys);
    return rows.empty() ? 1 : rows.rbegin()->first + 1;
  }

  // ---- Through the store

  void add() {
    const std::string table = anyTable();
    const std::int64_t key = keyFor(table);
    const Record record = anyRecord();
    const auto rows = records("Select * from [" + table + "]");
    ASSERT_TRUE(rows->addNew());
    ASSERT_TRUE(rows->setValue(0, record.text));
    ASSERT_TRUE(rows->setValue(1, record.number));
    if (table == "pairs") {
      ASSERT_TRUE(rows->setValue(2, key % 10));
      ASSERT_TRUE(rows->setValue(3, key / 10));
    }
    const bool isFree = !tables_.at(table).contains(key);
    const Status stored = rows->update();
    ASSERT_EQ(isFree, static_cast<bool>(stored)) << stored.message();
    if (isFree) did({{table, key, std::nullopt, record}});
  }

  void change() {
    const std::string table = anyTable();
    Rows& content = tables_.at(table);
    if (content.empty()) return;
    const auto rows = records("Select * from [" + table + "]");
    const std::int64_t index = upTo(static_cast<std::int64_t>(content.size()) - 1);
    ASSERT_TRUE(rows->setPosition(index + 1));
    const auto place = std::next(content.begin(), index);
    const Record record = anyRecord();
    if (record == place->second) return;
    ASSERT_TRUE(rows->setValue(0, record.text));
    ASSERT_TRUE(rows->setValue(1, record.number));
    const Status stored = rows->update();
    ASSERT_TRUE(stored) << stored.message();
    Step step{{table, place->first, place->second, record}};
    if (table == "keyed") {
      step.push_back({"log", keyFor("log"), std::nullopt, Record{place->second.text, record.number}});
    }
    did(step);
  }

  void remove() {
    const std::string table = anyTable();
    Rows& content = tables_.at(table);
    if (content.empty()) return;
    const auto rows = records("Select * from [" + table + "]");
    const std::int64_t index = upTo(static_cast<std::int64_t>(content.size()) - 1);
    ASSERT_TRUE(rows->setPosition(index + 1));
    ASSERT_TRUE(rows->remove());
    const auto place = std::next(content.begin(), index);
    did({{table, place->first, place->second, std::nullopt}});
  }

  void did(const Step& step) {
    for (const RowChange& change : step) put(change.table, change.key, change.behind);
    done_.push_back(step);
    undone_.clear();
  }

  void take(Way way) {
    std::vector<Step>& from = way == Way::back ? done_ : undone_;
    std::vector<Step>& to = way == Way::back ? undone_ : done_;
    ASSERT_EQ(from.empty(), history().next(way) == nullptr);
    if (from.empty()) return;
    const Step step = from.back();
    from.pop_back();
    const auto present = [&](const RowChange& change) {
      return way == Way::back ? change.behind : change.before;
    };
    const auto wanted = [&](const RowChange& change) {
      return way == Way::back ? change.before : change.behind;
    };
    const bool isAsLeft = std::all_of(step.begin(), step.end(), [&](const RowChange& change) {
      return get(change.table, change.key) == present(change);
    });
    const Status taken = history().take(way);
    ASSERT_EQ(isAsLeft, static_cast<bool>(taken)) << taken.message();
    ++(isAsLeft ? taken_ : refused_);
    if (!isAsLeft) return;
    for (const RowChange& change : step) put(change.table, change.key, wanted(change));
    to.push_back(step);
  }

  // ---- Past it

  void writeElsewhere(OtherProgram& other) {
    const std::string table = upTo(4) == 0 ? "log" : anyTable();
    Rows& content = tables_.at(table);
    const Record record = anyRecord();
    const std::string values = "'" + record.text + "', " + std::to_string(record.number);
    if (content.empty() || upTo(2) == 0) {
      const std::int64_t key = keyFor(table);
      if (content.contains(key)) return;
      const std::string columns = table == "pairs" ? "a, b, y, x" : "a, b, " + keyOf(table);
      const std::string keys =
          table == "pairs" ? std::to_string(key / 10) + ", " + std::to_string(key % 10) : std::to_string(key);
      other.run("INSERT INTO " + table + "(" + columns + ") VALUES(" + values + ", " + keys + ")");
      content[key] = record;
      return;
    }
    const auto place = std::next(content.begin(), upTo(static_cast<std::int64_t>(content.size()) - 1));
    const std::string where = " WHERE " + keyOf(table) + " = " + std::to_string(place->first);
    if (upTo(1) == 0) {
      other.run("DELETE FROM " + table + where);
      content.erase(place);
    } else if (table != "keyed") {
      other.run("UPDATE " + table + " SET (a, b) = (" + values + ")" + where);
      place->second = record;
    }
  }

  static std::string keyOf(const std::string& table) {
    if (table == "pairs") return "y * 10 + x";
    return table == "keyed" ? "k" : table == "log" ? "n" : "rowid";
  }

  void expectModel(OtherProgram& other) {
    for (const auto& [table, rows] : tables_) {
      std::string expected;
      for (const auto& [key, record] : rows) {
        expected += std::to_string(key) + record.text + "," + std::to_string(record.number) + ";";
      }
      const std::string key = keyOf(table);
      const std::string content =
          other.ask("SELECT ifnull(group_concat(row, ''), '') FROM (SELECT (" + key +
                    ") || a || ',' || b || ';' AS row FROM " + table + " ORDER BY " + key + ")");
      ASSERT_EQ(expected, content) << table;
    }
  }

  std::optional<Record> get(const std::string& table, std::int64_t key) const {
    const Rows& rows = tables_.at(table);
    const auto found = rows.find(key);
    return found != rows.end() ? std::optional(found->second) : std::nullopt;
  }
  void put(const std::string& table, std::int64_t key, const std::optional<Record>& record) {
    if (record) {
      tables_.at(table)[key] = *record;
    } else {
      tables_.at(table).erase(key);
    }
  }

  std::mt19937 random_{20261122};
  Tables tables_;
  std::vector<Step> done_;
  std::vector<Step> undone_;
  int taken_ = 0;
  int refused_ = 0;
};

TEST_F(HistoryWalkTest, EveryStateIsTheModels) {
  for (const char* mode : {"WAL", "DELETE"}) {
    SCOPED_TRACE(mode);
    begin(mode);
    OtherProgram other(path_);
    for (int step = 0; step < kSteps / 2; ++step) {
      SCOPED_TRACE(step);
      const std::int64_t what = upTo(19);
      if (what < 4) {
        add();
      } else if (what < 7) {
        change();
      } else if (what < 9) {
        remove();
      } else if (what < 14) {
        take(Way::back);
      } else if (what < 18) {
        take(Way::again);
      } else {
        writeElsewhere(other);
      }
      if (HasFatalFailure()) return;
      expectModel(other);
      if (HasFatalFailure()) return;
    }
    EXPECT_EQ("ok", other.ask("PRAGMA integrity_check"));
  }
  std::printf("%d taken, %d refused\n", taken_, refused_);
  EXPECT_GT(taken_, kSteps / 5);
  EXPECT_GT(refused_, kSteps / 600);
}

}  // namespace
}  // namespace store
