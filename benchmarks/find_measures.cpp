#include "benchmarks/find_measures.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <numeric>
#include <utility>

#include "benchmarks/bare_database.h"
#include "platform/store/rows/text_search.h"
#include "platform/store/sqlite/database_file.h"
#include "records/search_parts.h"

namespace bench {

namespace {

using Clock = store::RowScan::Clock;

// The fields of the table but for the truth value and the date.
constexpr std::array<const char*, 8> kFields{"Id",    "Station", "Observer", "Place",
                                             "Count", "Level",   "Reading",  "Remarks"};
constexpr const char* kOneField = "Remarks";

constexpr const char* kAllRecords = "Select * from [Measurements]";
constexpr const char* kSortedRecords = "Select * from [Measurements] order by [Level]";
constexpr const char* kViewRecords = "Select * from [Bench view]";
constexpr const char* kKeyedRecords = "Select * from [Bench keyed]";

// No record holds these.
constexpr const char* kLetters = "heron on the gaugf";
constexpr const char* kDigits = "99999999";

void require(const store::Status& status) {
  if (status) return;
  std::fprintf(stderr, "bench: %s\n", status.message().c_str());
  std::exit(1);
}

/// Letters as in most European languages: enough for a measurement.
char16_t upperCase(char16_t unit) {
  const bool isLower = (unit >= u'a' && unit <= u'z') || (unit >= 0xE0 && unit <= 0xFE && unit != 0xF7) ||
                       (unit >= 0x3B1 && unit <= 0x3C9) || (unit >= 0x430 && unit <= 0x44F);
  return isLower ? static_cast<char16_t>(unit - 0x20) : unit;
}

/// The table holds no value whose text only a system can tell.
class NoTexts : public store::ValueTexts {
 public:
  bool writesPlainIntegers() const override { return true; }
  std::u16string_view numberSigns() const override { return u""; }
  bool textOf(const store::Cell&, const store::FieldType&, std::u16string*) override { return false; }
};

/// The engine's search in the records of a statement.
class Finder {
 public:
  Finder(const std::shared_ptr<store::Backend>& backend, const char* sql) : folding_(upperCase) {
    std::unique_ptr<store::RowSource> rows;
    require(backend->openRows(sql, store::SourceKind::text, &rows));
    records_ = std::make_unique<store::Recordset>(backend, std::move(rows), store::CursorType::keyset,
                                                  store::LockType::optimistic);
    require(records_->load());
  }

  /// Seconds for a search through all records, which finds nothing.
  double searchAll(const char* text, bool matchCase, const char* field) {
    require(records_->moveFirst());
    return secondsOf([&] { go(text, matchCase, field, records_->recordCount()); });
  }

  /// Seconds for as many searches as kMatches, each from the record behind the last match.
  double searchMatches(const char* text) {
    require(records_->moveFirst());
    return secondsOf([&] {
      for (int match = 0; match < kMatches; ++match) {
        go(text, false, nullptr, 0);
        require(records_->moveNext());
      }
    });
  }

 private:
  void go(const char* text, bool matchCase, const char* field, std::int64_t expected) {
    std::vector<std::size_t> columns(records_->columns().size());
    std::iota(columns.begin(), columns.end(), std::size_t{0});
    if (field != nullptr) columns = {records_->columnIndex(field).value()};
    const std::string narrow = text;
    store::TextNeedle needle(std::u16string(narrow.begin(), narrow.end()), matchCase ? nullptr : &folding_);
    store::TextSearch search(*records_, columns, std::move(needle), texts_);
    // In the program's own parts. A search that has come to its end or to a match stops before its time.
    const Clock::time_point silence = Clock::now() + kSearchSilence;
    std::int64_t all = 0;
    for (bool isOutOfTime = true; isOutOfTime;) {
      const Clock::time_point until = std::max(silence, Clock::now() + kSearchPart);
      std::int64_t passed = 0;
      require(search.passOver(records_->recordCount(), until, &passed));
      all += passed;
      isOutOfTime = Clock::now() >= until;
    }
    if (all == expected) return;
    std::fprintf(stderr, "bench: a search for %s passed over %lld records\n", text,
                 static_cast<long long>(all));
    std::exit(1);
  }

  std::unique_ptr<store::Recordset> records_;
  store::CaseFolding folding_;
  NoTexts texts_;
};

/// A statement's condition: the text occurs in one of the fields, by LIKE or by instr().
std::string condition(const char* text, bool matchCase, const char* field) {
  const auto test = [&](const char* name) {
    return matchCase ? "instr([" + std::string(name) + "], '" + text + "')"
                     : "[" + std::string(name) + "] LIKE '%" + text + "%'";
  };
  if (field != nullptr) return test(field);
  std::string all;
  for (const char* name : kFields) all += (all.empty() ? "" : " OR ") + test(name);
  return all;
}

double askBare(BareDatabase& bare, const std::string& sql) {
  return secondsOf([&] { bare.runToEnd(sql); });
}

/// Both sides' ways to the same records, made when they are measured first.
struct FindBench {
  explicit FindBench(const std::string& path) : bare(path) {
    require(store::openDatabase(path, {}, &opened));
  }

  Finder& finder(const char* sql) {
    if (!backend) backend = std::move(opened);
    std::unique_ptr<Finder>& made = finders[sql];
    if (!made) made = std::make_unique<Finder>(backend, sql);
    return *made;
  }

  BareDatabase bare;
  std::unique_ptr<store::Backend> opened;
  std::shared_ptr<store::Backend> backend;
  std::map<std::string, std::unique_ptr<Finder>> finders;
};

}  // namespace

std::vector<Measure> makeFindMeasures(const std::string& path) {
  auto bench = std::make_shared<FindBench>(path);
  const auto add = [bench](std::vector<Measure>& measures, const char* name, double limit, const char* source,
                           const char* bareSource, const char* text, bool matchCase, const char* field) {
    const std::string order = source == kSortedRecords ? " ORDER BY Level" : "";
    const std::string statement =
        "SELECT 1 FROM " + std::string(bareSource) + " WHERE " + condition(text, matchCase, field) + order;
    measures.push_back({name, "ms", 1e3, 1, limit,
                        [=] { return bench->finder(source).searchAll(text, matchCase, field); },
                        [=] { return askBare(bench->bare, statement); }, kLongRounds});
  };
  std::vector<Measure> measures;
  add(measures, "find letters, all fields", 0.6, kAllRecords, "Measurements", kLetters, false, nullptr);
  add(measures, "find digits, all fields", 1.0, kAllRecords, "Measurements", kDigits, false, nullptr);
  add(measures, "find with case, all fields", 0.6, kAllRecords, "Measurements", kLetters, true, nullptr);
  add(measures, "find letters, one field", 1.0, kAllRecords, "Measurements", kLetters, false, kOneField);
  add(measures, "find, in an order of its own", 2.0, kSortedRecords, "Measurements", kLetters, false,
      nullptr);
  add(measures, "find, in a view", 2.0, kViewRecords, "[Bench view]", kLetters, false, nullptr);
  add(measures, "find, without row ids", 2.0, kKeyedRecords, "[Bench keyed]", kLetters, false, nullptr);
  return measures;
}

void prepareFind(const std::string& path) {
  BareDatabase bare(path);
  if (bare.runToEnd("SELECT 1 FROM sqlite_schema WHERE name = '" + std::string(kKeyedTable) + "'") > 0)
    return;
  bare.runToEnd("CREATE VIEW [Bench view] AS SELECT * FROM Measurements");
  bare.runToEnd(
      "CREATE TABLE [Bench keyed] (Id Integer PRIMARY KEY, Station Varchar (40), Observer "
      "Varchar (60), Place Varchar (255), Count SmallInt, Level Integer, Valid Bit, Taken Datetime, "
      "Reading Double, Remarks Text) WITHOUT ROWID");
  bare.runToEnd("INSERT INTO [Bench keyed] SELECT * FROM Measurements");
  bare.runToEnd("CREATE TABLE QuivaneQueries (QueryName Text, SQL Text)");
  bare.runToEnd("INSERT INTO QuivaneQueries VALUES ('" + std::string(kSortedQuery) + "', '" + kSortedRecords +
                "')");
}

std::vector<BareSearch> bareSearches() {
  const auto statement = [](const char* text, bool matchCase) {
    return "SELECT 1 FROM Measurements WHERE " + condition(text, matchCase, nullptr);
  };
  return {{"Find, letters", kLetters, false, statement(kLetters, false), 0.6},
          {"Find, digits", kDigits, false, statement(kDigits, false), 1.0},
          {"Find, with case", kLetters, true, statement(kLetters, true), 0.6}};
}

double secondsOfMatch(const std::string& path) {
  FindBench bench(path);
  return bench.finder(kAllRecords).searchMatches(kTextOfEveryRecord) / kMatches;
}

}  // namespace bench
