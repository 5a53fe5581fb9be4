#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/settings/app_settings.h"
#include "gmock/gmock.h"
#include "records/document.h"
#include "tests/support/paths.h"
#include "tests/ui/support/fake_pages.h"
#include "tests/ui/support/test_database.h"

/// A Document with fake pages, and a database of the tables "First One" (a: 10, 20, 30), "Second"
/// (b: 1) and "Empty".
class DocumentTest : public testing::Test {
 protected:
  /// The components are registered before the Document makes their objects.
  void SetUp() override {
    theAppSettings = std::make_unique<AppSettings>();
    makeDatabase(path_, {L"CREATE TABLE 'First One' (a Integer)", L"INSERT INTO [First One] VALUES (10)",
                         L"INSERT INTO [First One] VALUES (20)", L"INSERT INTO [First One] VALUES (30)",
                         L"CREATE TABLE 'Second' (b Integer)", L"INSERT INTO Second VALUES (1)",
                         L"CREATE TABLE 'Empty' (c Integer)"});
    window_.emplace();
  }
  void TearDown() override {
    window_.reset();
    theAppSettings.reset();
  }

  FakeWindow& window() { return *window_; }
  Document& document() { return *window_->document; }
  const std::filesystem::path& path() const { return path_; }
  /// A new Document, as after a new start of the program.
  void restart() {
    window_.reset();
    window_.emplace();
  }
  std::filesystem::path file(std::string_view name) const { return folder_.file(name); }
  void open() { ASSERT_TRUE(document().openDatabase(path_.c_str())); }
  void addQueries() {
    runStatements(path_,
                  {L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)",
                   L"INSERT INTO QuivaneQueries VALUES ('big', 'Select * from [First One] where a > 10')",
                   L"INSERT INTO QuivaneQueries VALUES ('wrong', 'Select nothing')"});
  }
  /// The first field of the record that the form shows.
  std::wstring value() {
    const std::vector<FakeFieldEditor>& fields = window().form.fields;
    return fields.empty() ? L"(none)" : fields.front().shown;
  }
  std::vector<FakePrompts::Message>& messages() { return window().prompts.messages; }

  /// The first field of what another connection reads.
  std::vector<std::wstring> stored(const wchar_t* sql) { return stored(sql, path_); }
  static std::vector<std::wstring> stored(const wchar_t* sql, const std::filesystem::path& path) {
    // Both are the program's, and a Database takes them for its own.
    const auto position = currentRecord;
    const auto count = recordCount;
    std::vector<std::wstring> values;
    {
      Database database;
      EXPECT_TRUE(database.open(path.c_str()));
      EXPECT_TRUE(database.openRecordset(sql));
      const std::uint32_t all = database.recordCount();
      for (std::uint32_t row = 0; row < all && database.moveTo(row + 1); ++row)
        values.emplace_back(database.valueText(0).text());
    }
    currentRecord = position;
    recordCount = count;
    return values;
  }

 private:
  testsupport::TempFolder folder_;
  std::filesystem::path path_ = folder_.file("document.cdb");
  std::optional<FakeWindow> window_;
};
