#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/store/sqlite/copies/copy_folder.h"
#include "platform/store/sqlite/copies/going_back.h"
#include "platform/store/sqlite/files/file_path.h"
#include "tests/store/store_fixture.h"

namespace store {

/// All that a database holds as one text: its structure and the rows of its tables with their row ids.
inline std::string contentOf(const std::filesystem::path& path) {
  const auto doubled = [](std::string text, char quote) {
    for (std::size_t at = 0; (at = text.find(quote, at)) != std::string::npos; at += 2)
      text.insert(at, 1, quote);
    return quote + text + quote;
  };
  OtherProgram file(path);
  std::string content = file.ask("PRAGMA integrity_check") + "\n";
  content += file.ask(
      "SELECT group_concat(type || ' ' || name || ': ' || ifnull(sql, ''), char(10)) FROM "
      "(SELECT * FROM sqlite_schema ORDER BY name)");
  const std::string names = file.ask(
      "SELECT group_concat(name, char(10)) FROM (SELECT name FROM sqlite_schema WHERE type = 'table' AND "
      "name "
      "NOT LIKE 'sqlite%' ORDER BY name)");
  std::size_t start = 0;
  while (names != "(null)" && start < names.size()) {
    const std::size_t end = std::min(names.find('\n', start), names.size());
    const std::string name = names.substr(start, end - start);
    const std::string quoted = doubled(name, '"');
    const std::string columns = file.ask(
        "SELECT group_concat('quote(\"' || name || '\")', ' || '','' || ') FROM pragma_table_xinfo(" +
        doubled(name, '\'') + ")");
    const bool hasRowIds = file.tryRun("SELECT rowid FROM " + quoted + " LIMIT 1") == SQLITE_OK;
    content += "\n" + name + ":\n" +
               file.ask("SELECT group_concat(" + std::string(hasRowIds ? "rowid || ',' || " : "") + columns +
                        ", char(10)) FROM " + quoted);
    start = end + 1;
  }
  return content;
}

/// A database whose former states are kept, a clock and a disk.
class CopiesTest : public StoreTest {
 protected:
  static constexpr std::int64_t kSecond = 1000;
  static constexpr std::int64_t kHour = 60 * 60 * kSecond;
  static constexpr std::int64_t kDay = 24 * kHour;

  void SetUp() override {
    StoreTest::SetUp();
    prepare(
        "CREATE TABLE t (a Integer, b Text); CREATE INDEX i ON t (b);"
        "INSERT INTO t VALUES (1, 'one'), (2, 'two'), (3, 'three')");
    copies_ = std::make_shared<CopyFolder>(settings());
  }

  CopySettings settings() {
    return {.folder = utf8Of(copiesPath()),
            .now = [this] { return now_; },
            .dayOf = [](std::int64_t time) { return time / kDay; },
            .freeBytes = [this] { return free_; }};
  }
  std::filesystem::path copiesPath() const { return folder_.file("the copies"); }

  void openKeeping() { open({.lockWait = 0, .copies = copies_}); }
  /// A session of one change.
  void change(const std::string& sql) {
    openKeeping();
    run(sql);
    const Status failure = backend_->formerStates()->takeFailure();
    EXPECT_TRUE(failure) << failure.message();
    close();
  }
  void close() { backend_.reset(); }

  std::vector<KeptCopy> kept() { return copies_->copiesOf(utf8Of(path_)); }
  std::filesystem::path pathOfCopy(std::size_t index) {
    const std::vector<KeptCopy> all = kept();
    return index < all.size() ? std::filesystem::path(pathOf(all[index].path)) : std::filesystem::path();
  }
  /// Of all folders of copies.
  std::vector<std::filesystem::path> filesOfCopies() const {
    std::vector<std::filesystem::path> files;
    if (!std::filesystem::exists(copiesPath())) return files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(copiesPath())) {
      if (entry.is_regular_file()) files.push_back(entry.path());
    }
    return files;
  }
  void expectNothingUnfinished() {
    for (const std::filesystem::path& file : filesOfCopies()) {
      const std::string name = utf8Of(file.filename());
      EXPECT_TRUE(copyNameOf(name) || name == "Path.txt" || name == "Too large.txt") << name;
    }
  }

  std::string inFile(const std::string& sql) { return OtherProgram(path_).ask(sql); }
  Status putBack(const std::filesystem::path& copy, BusyQuestion question = nullptr, int lockWait = 0) {
    return GoingBack(*copies_, lockWait, std::move(question)).putBack(utf8Of(path_), utf8Of(copy));
  }

  std::int64_t now_ = 20'000 * kDay + 12 * kHour;
  std::optional<std::int64_t> free_ = std::int64_t{1} << 40;
  std::shared_ptr<CopyFolder> copies_;
};

}  // namespace store
