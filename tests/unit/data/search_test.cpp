#include <algorithm>
#include <cwctype>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "data/database/record_counters.h"
#include "data/database/table_search.h"
#include "data/handles/recordset_handle.h"
#include "tests/unit/data/fake_store.h"
#include "tests/unit/data/store_fixture.h"

// The search that passes over records must never pass over one that matchRecord would match.

namespace {

constexpr std::uint32_t kNoLimit = 0xFFFFFFFFu;
constexpr std::uint32_t kLongTime = 60'000;

/// Where a search ended.
struct Found {
  bool found = false;
  std::uint32_t tested = 0;  ///< records passed or tested
  std::uint32_t field = 0;
  std::uint32_t position = 0;
  bool operator==(const Found&) const = default;
};

void PrintTo(const Found& found, std::ostream* stream) {
  *stream << (found.found ? "found" : "not found") << " after " << found.tested << " in field " << found.field
          << ", at " << found.position;
}

class DataSearchTest : public DataTest {
 protected:
  /// From the record `start` on, at most `most` records; with the quick search or without.
  Found search(bool isQuick, const String& text, bool allFields, bool matchCase, std::uint32_t field,
               std::uint32_t start, std::uint32_t most) {
    Found result;
    database_.moveTo(start);
    if (isQuick) {
      database_.beginSearch(allFields, matchCase, field, text);
    } else {
      database_.endSearch();
    }
    while (!result.found && result.tested < most) {
      result.tested += database_.passOver(most - result.tested, kLongTime);
      if (result.tested == most) break;
      result.found = database_.matchRecord(allFields, matchCase, field, text, result.field);
      database_.moveNext();
      ++result.tested;
    }
    result.position = currentRecord;
    database_.endSearch();
    return result;
  }
};

TEST_F(DataSearchTest, PassesOverRecordsAndCountsThem) {
  openTable(L"w Text, n Integer", {L"'apple', 1", L"'pear', 2", L"'plum', 3", L"'fig', 4"});
  database_.moveFirst();
  database_.beginSearch(true, false, 0, L"PLUM");
  EXPECT_EQ(database_.passOver(kNoLimit, kLongTime), 2u);
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_STREQ(database_.valueText(0).text(), L"plum");
  EXPECT_EQ(database_.passOver(kNoLimit, kLongTime), 0u);
  database_.beginSearch(true, false, 0, L"cherry");
  EXPECT_EQ(database_.passOver(1, kLongTime), 1u);
  EXPECT_EQ(database_.passOver(kNoLimit, kLongTime), 1u);
  EXPECT_EQ(currentRecord, 5u);
}

TEST_F(DataSearchTest, WithoutASearchNothingIsPassedOver) {
  EXPECT_EQ(database_.passOver(5, 5), 0u);
  openTable(L"w Text", {L"'a'", L"'b'"});
  EXPECT_EQ(database_.passOver(5, 5), 0u);
  database_.beginSearch(true, false, 0, L"z");
  database_.endSearch();
  EXPECT_EQ(database_.passOver(5, 5), 0u);
  // A field that there is not is left to matchRecord.
  database_.beginSearch(false, false, 1, L"z");
  EXPECT_EQ(database_.passOver(5, 5), 0u);
}

TEST_F(DataSearchTest, ANewRecordIsNotPassedOver) {
  openTable(L"w Text", {L"'a'", L"'b'"});
  ASSERT_TRUE(database_.addNew());
  database_.beginSearch(true, false, 0, L"z");
  EXPECT_EQ(database_.passOver(5, kLongTime), 0u);
}

/// What the plain way says of the current record.
struct Verdict {
  bool isMatch = false;
  bool isPassedOver = false;
  bool operator==(const Verdict&) const = default;
};

void PrintTo(const Verdict& verdict, std::ostream* stream) {
  *stream << (verdict.isMatch ? "a match" : "no match") << (verdict.isPassedOver ? ", passed over" : "");
}

TEST_F(DataSearchTest, EveryPairOfCasesIsFoundInBothDirections) {
  // The letters that fold to the same one, that one among them.
  std::map<wchar_t, std::vector<wchar_t>> letters;
  for (unsigned number = 1; number < 0x10000; ++number) {
    const wchar_t text[] = {static_cast<wchar_t>(number), L'\0'};
    String folded(text);
    folded.toUpperCase();
    letters[folded.text()[0]].push_back(text[0]);
  }
  std::erase_if(letters, [](const auto& each) { return each.second.size() == 1; });
  ASSERT_GT(letters.size(), 500u);
  // Each letter as a record, alone and among others.
  std::vector<wchar_t> records;
  std::wstring values;
  for (const auto& [folded, same] : letters) {
    for (const wchar_t letter : same) {
      records.push_back(letter);
      const std::wstring text{letter};
      values += (values.empty() ? L"('" : L"), ('") + text + L"', 'ab" + text + L"cd'";
    }
  }
  openTable(L"w Text, v Text", {});
  runOn(path_, {(L"INSERT INTO t VALUES " + values + L")").c_str()});
  ASSERT_TRUE(database_.openRecordset(L"Select * from [t]"));
  ASSERT_EQ(database_.recordCount(), records.size());
  const auto verdict = [&](std::uint32_t row, std::uint32_t field, bool matchCase, const std::wstring& text) {
    Verdict found;
    std::uint32_t foundField = 0;
    EXPECT_TRUE(database_.moveTo(row + 1));
    found.isMatch = database_.matchRecord(false, matchCase, field, text.c_str(), foundField);
    database_.beginSearch(false, matchCase, field, text.c_str());
    found.isPassedOver = database_.passOver(1, kLongTime) == 1;
    return found;
  };
  std::uint32_t row = 0;
  for (const auto& [folded, same] : letters) {
    for (const wchar_t recorded : same) {
      ASSERT_EQ(recorded, records[row]);
      for (const wchar_t sought : same) {
        const std::wstring text{sought};
        const auto where = [&] {
          std::ostringstream line;
          line << std::hex << static_cast<unsigned>(recorded) << " by " << static_cast<unsigned>(sought);
          return line.str();
        };
        ASSERT_EQ(verdict(row, 0, false, text), (Verdict{true, false})) << where();
        ASSERT_EQ(verdict(row, 1, false, L"B" + text + L"C"), (Verdict{true, false})) << where();
        const bool isSame = recorded == sought;
        ASSERT_EQ(verdict(row, 0, true, text), (Verdict{isSame, !isSame})) << where();
      }
      ++row;
    }
  }
}

/// Random records and texts from few different signs, so that much is found and more is nearly found.
class DataSearchRandomTest : public DataSearchTest {
 protected:
  std::size_t number(std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random_);
  }

  std::wstring text(std::size_t most) {
    static const std::wstring signs =
        L"aAbBkKiIsS019.-eE+,nfN "
        L"ß\x0130\x0131\x017F\x212A\x03C2\x03C3\x03A3\x0301\x00E9\x00C9\x4E2D\xD83D\xDE00"
        L"\xFFFD\x2400\x00FF\x0178";
    std::wstring units;
    for (std::size_t count = number(most); count > 0; --count) units += signs[number(signs.size() - 1)];
    return units;
  }

  std::wstring hex(std::size_t most) {
    std::wstring digits;
    for (std::size_t count = 2 * number(most); count > 0; --count) digits += L"0123456789ABCDEF"[number(15)];
    return digits;
  }

  std::wstring literal() {
    switch (number(11)) {
      case 0:
        return L"NULL";
      case 1:
        return std::to_wstring(static_cast<long long>(number(3000)) - 1500);
      case 2:
        return std::to_wstring(static_cast<long long>(random_()));
      case 3:
        return std::to_wstring(static_cast<double>(number(100'000)) / 128 - 300);
      case 4: {
        static constexpr const wchar_t* kOdd[] = {L"9e999", L"-9e999", L"1.5e300", L"-1e-7",
                                                  L"0.1",   L"1e15",   L"1e16",    L"9007199254740993"};
        return kOdd[number(7)];
      }
      case 5:
        return L"x'" + hex(5) + L"'";
      case 6:  // bytes that are no text, zeros among them
        return L"CAST(x'61" + hex(3) + L"0041" + hex(2) + L"' AS TEXT)";
      default:
        return L"'" + text(6) + L"'";
    }
  }

  static constexpr int kDateColumn = 6;  // behind the key

  void fill(const wchar_t* table, int count) {
    ConnectionHandle connection;
    ASSERT_TRUE(connection.setConnectionString(path_.c_str()));
    ASSERT_EQ(connection.open(), ConnectionHandle::kOpened);
    std::wstring rows;
    for (int row = 0; row < count; ++row) {
      rows += (row == 0 ? L"(" : L"), (") + std::to_wstring(number(100'000));
      // A text that is no date is refused for the field of dates, unless an expression makes it.
      for (int column = 0; column < 11; ++column) {
        rows += column == kDateColumn ? L", CAST(" + literal() + L" AS TEXT)" : L", " + literal();
      }
    }
    const std::wstring sql = std::wstring(L"INSERT OR IGNORE INTO ") + table + L" VALUES " + rows + L")";
    ASSERT_TRUE(connection.execute(sql.c_str()));
  }

  std::mt19937_64 random_{20010309};
};

TEST_F(DataSearchRandomTest, FindsWhatThePlainWayFinds) {
  const std::wstring columns =
      L" (k Integer PRIMARY KEY, a Varchar (20), b Text, c Integer, d SmallInt, e Double, f Bit, g Datetime, "
      L"h "
      L"Varbinary (20), i bigint, j unsigned int, l)";
  openWith({(L"CREATE TABLE t" + columns).c_str(), (L"CREATE TABLE u" + columns + L" WITHOUT ROWID").c_str(),
            L"CREATE VIEW v AS SELECT *, e * 1.25 AS x FROM t"});
  fill(L"t", 150);
  fill(L"u", 150);
  static constexpr const wchar_t* kSources[] = {
      L"Select * from [t]",          L"Select * from [u]",
      L"Select * from t order by b", L"Select * from v",
      L"Select * from u order by a", L"Select b, e, l, a from t where k % 3 order by k desc"};
  int found = 0;
  for (int round = 0; round < 60; ++round) {
    ASSERT_TRUE(database_.openRecordset(kSources[number(5)]));
    if (round % 6 == 5) {
      // What another program does in between, both ways see alike.
      runOn(path_, {L"DELETE FROM t WHERE k % 41 = 7", L"UPDATE t SET a = b WHERE k % 17 = 3",
                    L"DELETE FROM u WHERE k % 37 = 9"});
      fill(L"t", 5);
      fill(L"u", 5);
    }
    for (int step = 0; step < 25; ++step) {
      std::wstring units = text(2);
      if (number(3) == 0) units = std::to_wstring(number(120));
      if (number(60) == 0) units.clear();
      const String needle(units.c_str());
      const bool allFields = number(1) == 0;
      const bool matchCase = number(1) == 0;
      const auto field = static_cast<std::uint32_t>(allFields ? 0 : number(database_.fieldCount() - 1));
      const auto start = static_cast<std::uint32_t>(1 + number(database_.recordCount() - 1));
      const auto most = static_cast<std::uint32_t>(number(4) == 0 ? number(20) : database_.recordCount() + 2);
      const Found plain = search(false, needle, allFields, matchCase, field, start, most);
      const Found quick = search(true, needle, allFields, matchCase, field, start, most);
      found += plain.found ? 1 : 0;
      ASSERT_EQ(plain, quick) << "round " << round << ", field " << field << (allFields ? ", all" : "")
                              << (matchCase ? ", case" : "") << ", from " << start << ", at most " << most
                              << ", text " << testing::PrintToString(units);
    }
  }
  EXPECT_GT(found, 300);
  EXPECT_LT(found, 1450);
}

/// The search of a whole table, beside the values of its records one by one.
TEST_F(DataSearchRandomTest, FindsInATableWhatThePlainWayFinds) {
  using Place = std::pair<std::uint32_t, std::wstring>;
  const std::wstring columns =
      L" (k Integer PRIMARY KEY, a Varchar (20), b Text, c Integer, d SmallInt, e Double, f Bit, g Datetime, "
      L"h Varbinary (20), i bigint, j unsigned int, l)";
  openWith({(L"CREATE TABLE t" + columns).c_str(), (L"CREATE TABLE u" + columns + L" WITHOUT ROWID").c_str(),
            L"CREATE VIEW v AS SELECT *, e * 1.25 AS x FROM t", L"CREATE TABLE w (a Text)"});
  fill(L"t", 150);
  fill(L"u", 150);
  std::size_t found = 0;
  for (int round = 0; round < 40; ++round) {
    static constexpr const wchar_t* kTables[] = {L"t", L"u", L"v", L"w"};
    const wchar_t* table = kTables[number(3)];
    if (round % 6 == 5)
      runOn(path_, {L"DELETE FROM t WHERE k % 41 = 7", L"UPDATE t SET a = b WHERE k % 17 = 3"});
    const std::wstring units = number(3) == 0 ? std::to_wstring(number(120)) : L"a" + text(1);
    String capitals(units.c_str());
    capitals.toUpperCase();

    std::vector<Place> plain;
    ASSERT_TRUE(database_.openRecordset((std::wstring(L"Select * from [") + table + L"]").c_str()));
    for (std::uint32_t record = 1; record <= database_.recordCount(); ++record) {
      ASSERT_TRUE(database_.moveTo(record));
      for (std::uint32_t field = 0; field < database_.fieldCount(); ++field) {
        const FieldType type = database_.fieldType(field);
        String shown = database_.valueText(field);
        shown.toUpperCase();
        const bool isSearched = type != FieldType::bit && type != FieldType::date;
        if (isSearched && shown.find(capitals.text()) >= 0)
          plain.emplace_back(record, database_.fieldName(field).text());
      }
    }

    TableSearch quick;
    ASSERT_TRUE(database_.beginTableSearch(table, units.c_str(), quick));
    EXPECT_EQ(quick.recordCount(), database_.recordCount());
    std::vector<TableSearch::Match> matches;
    const auto slice = static_cast<std::uint32_t>(number(1) == 0 ? 0 : kLongTime);
    while (!quick.isOver()) ASSERT_TRUE(quick.step(slice, matches));
    std::vector<Place> places;
    for (const TableSearch::Match& match : matches) {
      places.emplace_back(match.record, match.field.text());
      EXPECT_FALSE(match.excerpt.empty());
    }
    ASSERT_EQ(plain, places) << "round " << round << ", table " << testing::PrintToString(std::wstring(table))
                             << ", text " << testing::PrintToString(units);
    found += places.size();
  }
  EXPECT_GT(found, 300u);
}

/// A component that lacks the search.
TEST(DataSearchFakeTest, WithoutTheInterfaceThePlainWayRuns) {
  FakeStore store;
  FakeStoreRegistration registration(store);
  RecordsetHandle recordset;
  EXPECT_FALSE(recordset.beginTextSearch(L"a", std::nullopt, false));
  EXPECT_EQ(recordset.passOver(5, 5), 0);
  recordset.endTextSearch();
}

}  // namespace
