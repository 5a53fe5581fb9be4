#pragma once

#include <array>
#include <string>
#include <vector>

#include "tests/store/store_fixture.h"

namespace store {

/// A database whose changes can be taken back.
class HistoryTest : public StoreTest {
 protected:
  static constexpr std::size_t kPlenty = 100'000'000;

  ChangeHistory& history() { return *backend_->history(); }

  void openKeeping(const OpenOptions& options = {}) {
    open(options);
    history().keep(kPlenty);
  }

  void remake(const std::string& sql) {
    backend_.reset();
    std::filesystem::remove(path_);
    ASSERT_TRUE(createDatabase(utf8Of(path_)));
    prepare(sql);
  }

  void addTo(const std::string& table, const std::string& text) {
    const auto rows = records("Select * from [" + table + "]");
    ASSERT_TRUE(rows->addNew());
    ASSERT_TRUE(rows->setValue(0, text));
    const Status stored = rows->update();
    ASSERT_TRUE(stored) << stored.message();
  }
  void addTo(const std::string& table, const std::string& text, std::int64_t number) {
    const auto rows = records("Select * from [" + table + "]");
    ASSERT_TRUE(rows->addNew());
    ASSERT_TRUE(rows->setValue(0, text));
    ASSERT_TRUE(rows->setValue(1, number));
    const Status stored = rows->update();
    ASSERT_TRUE(stored) << stored.message();
  }
  void change(const std::string& table, std::int64_t position, std::size_t column, const std::string& text) {
    const auto rows = records("Select * from [" + table + "]");
    ASSERT_TRUE(rows->setPosition(position));
    ASSERT_TRUE(rows->setValue(column, text));
    const Status stored = rows->update();
    ASSERT_TRUE(stored) << stored.message();
  }
  void remove(const std::string& table, std::int64_t position) {
    const auto rows = records("Select * from [" + table + "]");
    ASSERT_TRUE(rows->setPosition(position));
    const Status removed = rows->remove();
    ASSERT_TRUE(removed) << removed.message();
  }
  void load(const std::string& table, const std::vector<std::string>& texts) {
    std::unique_ptr<TableLoad> load;
    ASSERT_TRUE(backend_->beginLoad({.table = table, .columns = {"a"}}, &load));
    for (const std::string& text : texts) {
      const std::array<Cell, 1> cells{{{.kind = CellKind::text, .bytes = text}}};
      ASSERT_TRUE(load->add(cells));
    }
    ASSERT_TRUE(load->commit());
  }

  void takeBack() { take(ChangeHistory::Way::back); }
  void doAgain() { take(ChangeHistory::Way::again); }
  void take(ChangeHistory::Way way) {
    const Status taken = history().take(way);
    EXPECT_TRUE(taken) << taken.message();
  }
  void expectRefusal(ChangeHistory::Way way, ErrorCode code, const std::string& message) {
    const Status refused = history().take(way);
    EXPECT_EQ(code, refused.code());
    EXPECT_EQ(message, refused.message());
  }

  /// The next step in words; empty when there is none.
  std::string told(ChangeHistory::Way way) {
    const HistoryStep* const step = history().next(way);
    if (step == nullptr) return {};
    constexpr std::array kKinds{"none", "added", "changed", "deleted", "imported", "statement"};
    return std::string(kKinds.at(static_cast<std::size_t>(step->kind))) + " " + step->table + " '" +
           step->caption + "' " + std::to_string(step->records);
  }

  /// All rows with their row ids, if the table has them, as another program sees them.
  std::string contentOf(const std::string& table) {
    OtherProgram other(path_);
    std::string content;
    sqlite3_stmt* statement = nullptr;
    const bool hasRowIds =
        sqlite3_prepare_v2(other.handle(), ("SELECT rowid, * FROM " + table + " ORDER BY rowid").c_str(), -1,
                           &statement, nullptr) == SQLITE_OK;
    if (!hasRowIds) {
      EXPECT_EQ(SQLITE_OK, sqlite3_prepare_v2(other.handle(), ("SELECT * FROM " + table).c_str(), -1,
                                              &statement, nullptr));
    }
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int column = 0; column < sqlite3_column_count(statement); ++column) {
        if (column > 0) content += hasRowIds && column == 1 ? '|' : ',';
        content += valueOf(statement, column);
      }
      content += ';';
    }
    sqlite3_finalize(statement);
    return content;
  }

 private:
  static std::string valueOf(sqlite3_stmt* statement, int column) {
    const int type = sqlite3_column_type(statement, column);
    if (type == SQLITE_NULL) return "null";
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
    const std::string text(bytes != nullptr ? bytes : "", length);
    return type == SQLITE_BLOB ? "x" + text : text;
  }
};

}  // namespace store
