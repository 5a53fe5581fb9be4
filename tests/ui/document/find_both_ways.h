#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/automation/support/sqlite_file.h"
#include "tests/support/random_values.h"
#include "tests/ui/document/document_fixture.h"
#include "tests/ui/support/search_switch.h"

/// Searches that are run twice, from equal states: with the components' search, and without it, which is the
/// plain way from record to record that says what is right.
class FindBothWaysTest : public DocumentTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(registerBinComponents());
    switch_.emplace();
    DocumentTest::SetUp();
    theAppSettings->options().setGenUpdateRights(kNewRecordsAndDeletions);
  }
  void TearDown() override {
    document().closeDatabase();
    DocumentTest::TearDown();
    switch_.reset();
  }

  SearchSwitch& components() { return *switch_; }

  /// What is entered into the dialog; no field for all of them.
  struct Wanted {
    std::wstring text;
    std::optional<std::uint32_t> field;
    bool matchCase = false;
  };

  /// Makes a database with random values in tables of every kind and with kQueryCount queries for them.
  void fillWith(RandomValues& values, int rowCount) {
    automationtest::SqliteFile file(path().wstring());
    file.run("BEGIN");
    file.run(std::string("CREATE TABLE T ") + kColumns);
    file.run(std::string("CREATE TABLE W ") + kColumns + " WITHOUT ROWID");
    file.run("CREATE VIEW V AS SELECT *, E * 1.25 AS X FROM T");
    file.run("CREATE TABLE QuivaneQueries (QueryName Text, SQL Text)");
    file.run(
        "INSERT INTO QuivaneQueries VALUES ('0', 'Select * from [T]'), ('1', 'Select * from [W]'), "
        "('2', 'Select * from T order by B'), ('3', 'Select * from W order by A desc'), "
        "('4', 'Select * from V'), ('5', 'Select B, E, L, A from T where K % 3 order by K desc')");
    for (const char* table : {"T", "W"}) {
      for (int row = 0; row < rowCount; ++row) file.run(insertInto(table, values));
    }
    file.run("COMMIT");
  }
  static constexpr int kQueryCount = 6;
  static std::string insertInto(const std::string& table, RandomValues& values) {
    std::string literals = std::to_string(values.number(100'000));
    for (int column = 0; column < kValueCount; ++column) literals += ", " + values.literal();
    return "INSERT OR IGNORE INTO " + table + " VALUES (" + literals + ")";
  }

  /// The program is started anew, with a copy of the database as it was made, and with the components' search
  /// or without.
  void startAnew(bool withSearch) {
    document().closeDatabase();
    ASSERT_TRUE(CopyFileW(path().c_str(), copy().c_str(), FALSE)) << GetLastError();
    components().isOn = withSearch;
    restart();
    ASSERT_TRUE(document().openDatabase(copy().c_str()));
  }
  std::filesystem::path copy() const { return file("copy.cdb"); }

  /// The records that the query of this number shows, on the form, and one of them.
  void show(int query, std::uint32_t record) {
    document().setViewMode(ViewMode::queries);
    document().openQuerySelection(query);
    document().setViewMode(ViewMode::form);
    goTo(record);
  }
  void goTo(std::uint32_t record) {
    window().prompts.number = record;
    document().goToRecordNumber();
    messages().clear();
  }
  void enter(const Wanted& wanted) {
    window().prompts.setFind = [&](FindState& state) {
      state.text = wanted.text.c_str();
      state.checkAllFields = wanted.field ? 0 : 1;
      state.fieldName = wanted.field ? document().fieldName(*wanted.field) : String();
      state.matchCase = wanted.matchCase ? 1 : 0;
    };
    document().openFind();
  }
  /// Everything that there is to see.
  std::wstring sight() {
    std::wostringstream seen;
    seen << window().bar.position << L", cursor " << currentRecord << L" and " << components().position()
         << L", field " << window().form.focus << (document().isNewRecordPending() ? L", new" : L"");
    for (const char sign : ", " + window().sight()) seen << static_cast<wchar_t>(sign);
    for (const FakeFieldEditor& field : window().form.fields) seen << L" | " << field.content;
    for (const FakePrompts::Message& message : messages())
      seen << L" # " << message.caption << L": " << message.text;
    return seen.str();
  }
  /// What is to be seen afterwards.
  std::wstring press() {
    document().findNext();
    return sight();
  }
  bool isFound() { return messages().empty(); }

  /// Next again and again, until the search was round once, and then two times more.
  std::vector<std::wstring> pressAround() {
    return pressAround([this](int) { return press(); });
  }
  std::vector<std::wstring> pressAround(const std::function<std::wstring(int number)>& pressOnce) {
    constexpr int kMost = 400;
    std::vector<std::wstring> seen;
    std::uint32_t furthest = 0;
    int left = kMost;
    for (int number = 0; left > 0; ++number, --left) {
      messages().clear();
      seen.push_back(pressOnce(number));
      foundCount_ += isFound() ? 1 : 0;
      // A text that occurs is found again and again.
      const bool isRound = !isFound() || currentRecord <= furthest;
      furthest = std::max(furthest, currentRecord);
      if (isRound) left = std::min(left, 3);
    }
    EXPECT_LT(seen.size(), std::size_t{kMost}) << "it never came round";
    return seen;
  }

  /// Texts that occur, and more that nearly do.
  Wanted anyWanted(RandomValues& values) {
    Wanted wanted;
    wanted.text = values.number(3) == 0 ? std::to_wstring(values.number(120))
                                        : wideOf(values.text(values.number(2) == 0 ? 2 : 1));
    if (values.number(1) == 0)
      wanted.field = static_cast<std::uint32_t>(values.number(document().fieldCount() - 1));
    wanted.matchCase = values.number(1) == 0;
    return wanted;
  }
  /// The parts may end after each record and at each look at the clock.
  void chooseParts(RandomValues& values) {
    constexpr long kNoLimit = std::numeric_limits<long>::max();
    components().mostRecords = values.number(2) == 0 ? 1 + static_cast<long>(values.number(20)) : kNoLimit;
    components().mostMilliseconds = values.number(1) == 0 ? 0 : kNoLimit;
  }

  static std::string described(const std::vector<Wanted>& searches) {
    std::string text;
    for (const Wanted& wanted : searches) {
      text += "; " + testing::PrintToString(wanted.text);
      if (wanted.field) text += " in field " + std::to_string(*wanted.field);
      if (wanted.matchCase) text += " with its case";
    }
    return text;
  }

  static std::wstring wideOf(const std::string& utf8) {
    const auto length = static_cast<int>(utf8.size());
    std::wstring units(utf8.size(), L'\0');
    const int count =
        MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, units.data(), static_cast<int>(units.size()));
    units.resize(static_cast<std::size_t>(std::max(count, 0)));
    return units;
  }
  static std::string narrowOf(const std::wstring& units) {
    const auto count = static_cast<int>(units.size());
    std::string bytes(3 * units.size(), '\0');
    const int length = WideCharToMultiByte(CP_UTF8, 0, units.data(), count, bytes.data(),
                                           static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(std::max(length, 0)));
    return bytes;
  }

  int foundCount_ = 0;  ///< by both ways

 private:
  static constexpr const char* kColumns =
      "(K Integer PRIMARY KEY, A Varchar (20), B Text, C Integer, D SmallInt, E Double, F Bit, G Datetime, "
      "H Varbinary (20), I bigint, J unsigned int, L, M Boolean, N Date)";
  static constexpr int kValueCount = 13;  // beside the key

  std::optional<SearchSwitch> switch_;
};
