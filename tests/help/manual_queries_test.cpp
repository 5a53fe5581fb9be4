// The worked queries of the manual against the example database: each finds what the manual says of it.
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/store/rows/recordset.h"
#include "platform/store/sqlite/database_file.h"

namespace store {
namespace {

struct WorkedQuery {
  std::string sql;
  std::int64_t recordCount = -1;
  std::string firstValue;  // of the first field of the first record; empty where the manual does not say
};

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string unescaped(std::string text) {
  constexpr std::pair<std::string_view, std::string_view> kSigns[] = {
      {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}};
  for (const auto& [written, sign] : kSigns) {
    for (std::size_t at = text.find(written); at != std::string::npos; at = text.find(written, at + 1)) {
      text.replace(at, written.size(), sign);
    }
  }
  return text;
}

/// The value of an attribute within a tag, empty when there is none.
std::string attribute(std::string_view tag, const std::string& name) {
  const std::string opening = " " + name + "=\"";
  const std::size_t found = tag.find(opening);
  if (found == std::string_view::npos) return {};
  const std::size_t start = found + opening.size();
  return unescaped(std::string(tag.substr(start, tag.find('"', start) - start)));
}

std::vector<WorkedQuery> queriesOf(const std::string& page) {
  constexpr std::string_view kOpening = "<pre class=\"query\"";
  constexpr std::string_view kClosing = "</pre>";
  std::vector<WorkedQuery> queries;
  for (std::size_t at = page.find(kOpening); at != std::string::npos; at = page.find(kOpening, at + 1)) {
    const std::size_t text = page.find('>', at) + 1;
    const std::string_view tag = std::string_view(page).substr(at, text - at);
    WorkedQuery query;
    query.sql = unescaped(page.substr(text, page.find(kClosing, text) - text));
    const std::string count = attribute(tag, "data-records");
    std::from_chars(count.data(), count.data() + count.size(), query.recordCount);
    query.firstValue = attribute(tag, "data-first");
    queries.push_back(std::move(query));
  }
  return queries;
}

std::string textOf(const Cell& cell) {
  return cell.kind == CellKind::integer ? std::to_string(cell.integer) : std::string(cell.bytes);
}

class ManualQueriesTest : public testing::Test {
 protected:
  void SetUp() override {
    std::ifstream file(variable("QUIVANE_MANUAL"), std::ios::binary);
    queries_ = queriesOf({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
    std::unique_ptr<Backend> backend;
    const Status opened = openDatabase(variable("QUIVANE_EXAMPLE"), {}, &backend);
    ASSERT_TRUE(opened) << opened.message();
    backend_ = std::move(backend);
  }

  void expectFound(const WorkedQuery& query) {
    SCOPED_TRACE(query.sql);
    std::unique_ptr<RowSource> rows;
    const Status opened = backend_->openRows(query.sql, SourceKind::text, &rows);
    ASSERT_TRUE(opened) << opened.message();
    ASSERT_NE(rows, nullptr);
    Recordset records(backend_, std::move(rows), CursorType::keyset, LockType::optimistic);
    const Status loaded = records.load();
    ASSERT_TRUE(loaded) << loaded.message();
    EXPECT_EQ(records.recordCount(), query.recordCount);
    if (query.firstValue.empty()) return;
    Cell cell;
    const Status read = records.cell(0, &cell);
    ASSERT_TRUE(read) << read.message();
    EXPECT_EQ(textOf(cell), query.firstValue);
  }

  std::vector<WorkedQuery> queries_;
  std::shared_ptr<Backend> backend_;
};

TEST_F(ManualQueriesTest, EachFindsWhatTheManualSays) {
  ASSERT_GE(queries_.size(), 20u);
  for (const WorkedQuery& query : queries_) expectFound(query);
}

TEST_F(ManualQueriesTest, EachCanBeTypedIntoTheQueryWindow) {
  for (const WorkedQuery& query : queries_) {
    EXPECT_TRUE(query.sql.starts_with("SELECT ")) << query.sql;
    EXPECT_EQ(query.sql.find(';'), std::string::npos) << query.sql;
    EXPECT_GE(query.recordCount, 1) << query.sql << ": the manual does not say how many records";
  }
}

}  // namespace
}  // namespace store
